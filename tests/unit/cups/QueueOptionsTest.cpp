#include "cups/QueueOptions.h"

#include "devices/escpos/EscPosSettings.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>

namespace {

QString writePpd(const QTemporaryDir &dir, const QByteArray &text)
{
    const QString path = dir.filePath(QStringLiteral("queue.ppd"));
    FILE *file = std::fopen(qPrintable(path), "wb");
    std::fwrite(text.constData(), 1, text.size(), file);
    std::fclose(file);
    return path;
}

} // namespace

TEST(QueueOptionsTest, PpdDefaultsSetTheSettings)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString ppd = writePpd(dir, "*PPD-Adobe: \"4.3\"\n"
                                      "*DefaultPageSize: Roll80\n"
                                      "*DefaultBristelCodePage: PC850\n"
                                      "*BristelCodePage PC437/PC437: \"\"\n"
                                      "*DefaultBristelColumns: 42\r\n"
                                      "*DefaultBristelCut: Full\n"
                                      "*DefaultBristelDrawerPin: 5\n");
    QueueOptions options;
    ASSERT_TRUE(options.addPpdDefaults(ppd));
    EscPosSettings settings;
    EXPECT_TRUE(options.applyTo(settings).isEmpty());
    EXPECT_EQ(settings.codePage, QStringLiteral("PC850"));
    EXPECT_EQ(settings.codePageNumber, 2);
    EXPECT_EQ(settings.columns, 42);
    EXPECT_EQ(settings.cut, EscPosSettings::Cut::Full);
    EXPECT_EQ(settings.drawerPin, 5);
}

TEST(QueueOptionsTest, AnUnreadablePpdAddsNothing)
{
    QueueOptions options;
    EXPECT_FALSE(options.addPpdDefaults(QStringLiteral("/nonexistent/queue.ppd")));
    EscPosSettings settings;
    options.applyTo(settings);
    EXPECT_EQ(settings.codePage, EscPosSettings().codePage);
}

TEST(QueueOptionsTest, JobOptionsWinOverThePpd)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QueueOptions options;
    ASSERT_TRUE(
        options.addPpdDefaults(writePpd(dir, "*DefaultBristelCut: Full\n*DefaultBristelCodePage: PC850\n")));
    options.addJobOptions("job-uuid=urn:uuid:1 bristelcut=none BristelCodePage='WPC1252' number-up=1");
    EscPosSettings settings;
    EXPECT_TRUE(options.applyTo(settings).isEmpty());
    EXPECT_EQ(settings.cut, EscPosSettings::Cut::None);
    EXPECT_EQ(settings.codePage, QStringLiteral("WPC1252"));
    EXPECT_EQ(settings.codePageNumber, 16);
}

TEST(QueueOptionsTest, ANumberForTheCodePageStandsBesideItsName)
{
    // The PPD names the table, the user gives the maker's own number for it: the name must
    // not put Epson's number back.
    QueueOptions options;
    options.addJobOptions("BristelCodePageNumber=7");
    options.add(QStringLiteral("BristelCodePage"), QStringLiteral("PC858"));
    EscPosSettings settings;
    EXPECT_TRUE(options.applyTo(settings).isEmpty());
    EXPECT_EQ(settings.codePage, QStringLiteral("PC858"));
    EXPECT_EQ(settings.codePageNumber, 7);
}

TEST(QueueOptionsTest, AnUnusableValueIsReportedAndLeavesTheSetting)
{
    QueueOptions options;
    options.addJobOptions("BristelCodePage=KLINGON BristelColumns=0 BristelCut=Partial");
    EscPosSettings settings;
    settings.cut = EscPosSettings::Cut::Full;
    const QStringList problems = options.applyTo(settings);
    ASSERT_EQ(problems.size(), 2);
    EXPECT_TRUE(problems.at(0).contains(QStringLiteral("KLINGON")));
    EXPECT_TRUE(problems.at(1).contains(QStringLiteral("BristelColumns")));
    EXPECT_EQ(settings.codePage, EscPosSettings().codePage);
    EXPECT_EQ(settings.columns, EscPosSettings().columns);
    EXPECT_EQ(settings.cut, EscPosSettings::Cut::Partial);
}

TEST(QueueOptionsTest, ThePpdFilesOfferEveryOptionUnderItsName)
{
    for (const char *name :
         {"bristel-escpos-58mm.ppd", "bristel-escpos-80mm.ppd", "bristel-escpos-80mm-180dpi.ppd"}) {
        QueueOptions options;
        ASSERT_TRUE(options.addPpdDefaults(QStringLiteral(BRISTEL_PPD_DIR "/") + QLatin1String(name)));
        EscPosSettings settings;
        settings.cut = EscPosSettings::Cut::None;
        settings.codePage = QString();
        EXPECT_TRUE(options.applyTo(settings).isEmpty()) << name;
        EXPECT_EQ(settings.codePage, QStringLiteral("PC858")) << name;
        EXPECT_EQ(settings.cut, EscPosSettings::Cut::Partial) << name;
    }
}
