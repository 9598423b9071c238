#include "cups/PrinterSettingTable.h"

#include "config/BRConfiguration.h"
#include "cups/QueueOptions.h"
#include "devices/escpos/EscPosSettings.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QByteArray readPpd(const PaperFamily &paper)
{
    QFile file(QStringLiteral(BRISTEL_PPD_DIR "/") + paper.fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A value of the setting other than its default, which the setter takes.
QString anotherValue(const PrinterSetting &setting)
{
    const QList<PrinterSettingChoice> choices = setting.choices(paperFamilies().front());
    return choices.last().value;
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
            const QByteArray name(setting.cupsOption);
            EXPECT_TRUE(ppd.contains("*OpenUI *" + name + "/"))
                << setting.cupsOption << " in " << qPrintable(paper.fileName);
            for (const PrinterSettingChoice &choice : setting.choices(paper))
                EXPECT_TRUE(ppd.contains("\n*" + name + " " + choice.value.toLatin1() + "/"))
                    << setting.cupsOption << "=" << qPrintable(choice.value);
        }
    }
}

TEST(PrinterSettingTableTest, EveryChoiceIsAValueTheFilterCanUse)
{
    for (const PaperFamily &paper : paperFamilies()) {
        for (const PrinterSetting &setting : printerSettings()) {
            for (const PrinterSettingChoice &choice : setting.choices(paper)) {
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

TEST(PrinterSettingTableTest, EachSettingIsReadFromItsConfigurationKey)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    for (const PrinterSetting &setting : printerSettings()) {
        const QString key = QString::fromLatin1(setting.configurationKey);
        ASSERT_TRUE(key.startsWith(QLatin1String("bristel.escpos."))) << setting.configurationKey;
        const QString value = anotherValue(setting);
        const QString path = dir.filePath(QLatin1String(setting.cupsOption));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QStringLiteral("bristel : { escpos : { %1 = \"%2\"; }; };\n")
                       .arg(key.mid(qsizetype(sizeof("bristel.escpos.") - 1)), value)
                       .toUtf8());
        file.close();

        const BRConfiguration configuration(path, QStringLiteral("cfg"));
        const EscPosSettings fromFile = EscPosSettings::fromConfiguration(configuration);
        QueueOptions options;
        options.add(QLatin1String(setting.cupsOption), value);
        EscPosSettings fromQueue;
        ASSERT_TRUE(options.applyTo(fromQueue).isEmpty());
        EXPECT_EQ(fromFile.codePage, fromQueue.codePage) << setting.configurationKey;
        EXPECT_EQ(fromFile.codePageNumber, fromQueue.codePageNumber) << setting.configurationKey;
        EXPECT_EQ(fromFile.columns, fromQueue.columns) << setting.configurationKey;
        EXPECT_EQ(fromFile.cut, fromQueue.cut) << setting.configurationKey;
        EXPECT_EQ(fromFile.cutFeed, fromQueue.cutFeed) << setting.configurationKey;
        EXPECT_EQ(fromFile.drawerPin, fromQueue.drawerPin) << setting.configurationKey;
        EXPECT_EQ(fromFile.drawerOnMs, fromQueue.drawerOnMs) << setting.configurationKey;
        EXPECT_EQ(fromFile.drawerOffMs, fromQueue.drawerOffMs) << setting.configurationKey;
    }
}

TEST(PrinterSettingTableTest, EachSettingIsAnOptionOfBristelRender)
{
    QProcess render;
    render.start(QStringLiteral(BRISTEL_BIN_DIR "/bristel-render"), {QStringLiteral("--help")});
    ASSERT_TRUE(render.waitForFinished());
    const QString help = QString::fromUtf8(render.readAllStandardOutput());
    for (const PrinterSetting &setting : printerSettings())
        EXPECT_TRUE(help.contains(QStringLiteral("--%1 ").arg(QLatin1String(setting.commandLineOption))))
            << setting.commandLineOption;
}
