#include "cups/PrinterSettingAttribute.h"

#include "cups/PaperFamily.h"
#include "cups/QueueOptions.h"
#include "devices/escpos/EscPosSettings.h"
#include "job/PrinterSettingTable.h"

#include <gtest/gtest.h>

namespace {

const PrinterSettingAttribute *find(const QList<PrinterSettingAttribute> &attributes, const QString &name)
{
    for (const PrinterSettingAttribute &attribute : attributes) {
        if (attribute.name() == name)
            return &attribute;
    }
    return nullptr;
}

} // namespace

TEST(PrinterSettingAttributeTest, OffersTheSixSettingsOfTheReceiptPrinter)
{
    QStringList names;
    for (const PrinterSettingAttribute &attribute : PrinterSettingAttribute::all(paperFamilies().front()))
        names.append(attribute.name());
    EXPECT_EQ(names,
              QStringList({QStringLiteral("bristel-code-page"), QStringLiteral("bristel-columns"),
                           QStringLiteral("bristel-cut"), QStringLiteral("bristel-cut-feed"),
                           QStringLiteral("bristel-drawer-pin"), QStringLiteral("bristel-drawer-pulse")}));
}

TEST(PrinterSettingAttributeTest, TakesItsValuesFromTheChoicesOfTheQueues)
{
    const QList<PrinterSettingAttribute> attributes = PrinterSettingAttribute::all(paperFamilies().front());
    const PrinterSettingAttribute *cut = find(attributes, QStringLiteral("bristel-cut"));
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->syntax(), PrinterSettingAttribute::Syntax::Keyword);
    EXPECT_EQ(cut->keywords(),
              QStringList({QStringLiteral("partial"), QStringLiteral("full"), QStringLiteral("none")}));
    const PrinterSettingAttribute *codePage = find(attributes, QStringLiteral("bristel-code-page"));
    ASSERT_TRUE(codePage);
    EXPECT_TRUE(codePage->keywords().contains(QStringLiteral("pc858")));
    const PrinterSettingAttribute *pin = find(attributes, QStringLiteral("bristel-drawer-pin"));
    ASSERT_TRUE(pin);
    EXPECT_EQ(pin->syntax(), PrinterSettingAttribute::Syntax::Integer);
    EXPECT_EQ(pin->integers(), QList<int>({2, 5}));
    // "As in bristel.conf" is the absence of a value, not a value.
    const PrinterSettingAttribute *pulse = find(attributes, QStringLiteral("bristel-drawer-pulse"));
    ASSERT_TRUE(pulse);
    EXPECT_EQ(pulse->syntax(), PrinterSettingAttribute::Syntax::IntegerRange);
    EXPECT_EQ(pulse->lowest(), 0);
    EXPECT_EQ(pulse->highest(), 510);
    const PrinterSettingAttribute *feed = find(attributes, QStringLiteral("bristel-cut-feed"));
    ASSERT_TRUE(feed);
    EXPECT_EQ(feed->highest(), 255);
    const PrinterSettingAttribute *columns = find(attributes, QStringLiteral("bristel-columns"));
    ASSERT_TRUE(columns);
    EXPECT_EQ(columns->syntax(), PrinterSettingAttribute::Syntax::IntegerRange);
    EXPECT_EQ(columns->lowest(), 1);
    EXPECT_EQ(columns->highest(), 64);
}

TEST(PrinterSettingAttributeTest, ValuesApplyAsTheQueueOptionsOfTheSameSettings)
{
    QueueOptions options;
    EXPECT_TRUE(PrinterSettingAttribute::addTo(options, QStringLiteral("bristel-code-page"),
                                               QStringLiteral("pc437")));
    EXPECT_TRUE(
        PrinterSettingAttribute::addTo(options, QStringLiteral("bristel-cut"), QStringLiteral("none")));
    EXPECT_TRUE(PrinterSettingAttribute::addTo(options, QStringLiteral("bristel-drawer-pulse"),
                                               QStringLiteral("100")));
    EXPECT_FALSE(PrinterSettingAttribute::addTo(options, QStringLiteral("bristel-columns"), QString()));
    EXPECT_FALSE(
        PrinterSettingAttribute::addTo(options, QStringLiteral("print-quality"), QStringLiteral("high")));
    EscPosSettings settings;
    EXPECT_TRUE(options.applyTo(settings).isEmpty());
    EXPECT_EQ(settings.codePage, QStringLiteral("PC437"));
    EXPECT_EQ(settings.codePageNumber, 0);
    EXPECT_EQ(settings.cut, EscPosSettings::Cut::None);
    EXPECT_EQ(settings.drawerOnMs, 100);
    EXPECT_EQ(settings.columns, EscPosSettings().columns);
}
