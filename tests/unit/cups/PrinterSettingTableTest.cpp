#include "job/PrinterSettingTable.h"

#include "config/BRConfiguration.h"
#include "cups/PaperFamily.h"
#include "cups/QueueOptions.h"
#include "devices/escpos/EscPosSettings.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

QByteArray readPpd(const PaperFamily &paper)
{
    QFile file(QStringLiteral(BRISTEL_PPD_DIR "/") + paper.fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TEST(PrinterSettingTableTest, ThereIsAPpdForEachPaperFamily)
{
    ASSERT_EQ(paperFamilies().size(), 3u);
    for (const PaperFamily &paper : paperFamilies()) {
        const QByteArray ppd = readPpd(paper);
        ASSERT_FALSE(ppd.isEmpty()) << qPrintable(paper.fileName);
        EXPECT_TRUE(ppd.contains("*DefaultResolution: " + QByteArray::number(paper.dotsPerInch) + "dpi\n"));
        EXPECT_TRUE(ppd.contains("*DefaultBristelColumns: " + QByteArray::number(paper.columns) + "\n"));
        // A receipt printer never answers the supply query; CUPS would wait for it on every job.
        EXPECT_TRUE(ppd.contains("*cupsSNMPSupplies: False\n")) << qPrintable(paper.fileName);
    }
    EXPECT_EQ(paperFamilies().at(0).printableDots, 384);
    EXPECT_EQ(paperFamilies().at(1).printableDots, 576);
    EXPECT_EQ(paperFamilies().at(2).printableDots, 512);
    EXPECT_EQ(paperFamilies().at(2).dotsPerInch, 180);
    EXPECT_EQ(paperFamilies().at(0).columnsFontB, 42);
    EXPECT_EQ(paperFamilies().at(1).columnsFontB, 64);
    EXPECT_EQ(paperFamilies().at(2).columnsFontB, 56);
}

TEST(PrinterSettingTableTest, EveryPpdOffersEverySettingWithEveryChoice)
{
    for (const PaperFamily &paper : paperFamilies()) {
        const QByteArray ppd = readPpd(paper);
        for (const PrinterSetting &setting : printerSettings()) {
            if (!setting.cupsOption)
                continue;
            const QByteArray name(setting.cupsOption);
            EXPECT_TRUE(ppd.contains("*OpenUI *" + name + "/"))
                << setting.cupsOption << " in " << qPrintable(paper.fileName);
            for (const PrinterSettingChoice &choice : setting.choices(paper.columns))
                EXPECT_TRUE(ppd.contains("\n*" + name + " " + choice.value.toLatin1() + "/"))
                    << setting.cupsOption << "=" << qPrintable(choice.value);
        }
    }
}

TEST(PrinterSettingTableTest, EveryChoiceIsAValueTheFilterCanUse)
{
    for (const PaperFamily &paper : paperFamilies()) {
        for (const PrinterSetting &setting : printerSettings()) {
            if (!setting.cupsOption)
                continue;
            for (const PrinterSettingChoice &choice : setting.choices(paper.columns)) {
                QueueOptions options;
                options.add(QLatin1String(setting.cupsOption), choice.value);
                EscPosSettings settings;
                EXPECT_TRUE(options.applyTo(settings).isEmpty())
                    << setting.cupsOption << "=" << qPrintable(choice.value);
            }
        }
    }
}

TEST(PrinterSettingTableTest, TheConfiguredChoiceLeavesTheFilesValue)
{
    QueueOptions options;
    options.add(QStringLiteral("BristelCutFeed"), QStringLiteral("Configured"));
    options.add(QStringLiteral("BristelDrawerOnTime"), QStringLiteral("Configured"));
    EscPosSettings settings;
    settings.cutFeed = 3;
    settings.drawerOnMs = 100;
    EXPECT_TRUE(options.applyTo(settings).isEmpty());
    EXPECT_EQ(settings.cutFeed, 3);
    EXPECT_EQ(settings.drawerOnMs, 100);
}
