// Every row of the printer settings table reaches every part that deals with printer settings:
// the configuration reader, the programs' options, the PPD files, the CUPS filter's options and
// the printer application's attributes.  A setting is added by one row of the table; these
// tests fail for a row that one of them does not know.

#include "config/BRConfiguration.h"
#include "cups/PaperFamily.h"
#include "cups/PrinterSettingAttribute.h"
#include "cups/QueueOptions.h"
#include "devices/escpos/EscPosSettings.h"
#include "job/PrinterSettingOptions.h"
#include "job/PrinterSettingTable.h"

#include <QCommandLineParser>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <tuple>

namespace {

auto fieldsOf(const EscPosSettings &settings)
{
    return std::make_tuple(settings.codePage, settings.codePageNumber, settings.columns, settings.cut,
                           settings.cutFeed, settings.drawerPin, settings.drawerOnMs, settings.drawerOffMs,
                           settings.logo, settings.codes);
}

bool same(const EscPosSettings &a, const EscPosSettings &b)
{
    return fieldsOf(a) == fieldsOf(b);
}

// A value the setting's setter takes that changes the defaults: one of the PPD's choices where
// the setting has them, else a plain word.
QString anotherValue(const PrinterSetting &setting)
{
    QStringList candidates;
    if (setting.choices) {
        for (const PrinterSettingChoice &choice : setting.choices(paperFamilies().front().columns))
            candidates.append(choice.value);
    }
    candidates << QStringLiteral("1") << QStringLiteral("another");
    for (const QString &candidate : candidates) {
        EscPosSettings settings;
        if ((settings.*setting.set)(candidate) && !same(settings, EscPosSettings()))
            return candidate;
    }
    return QString();
}

// The settings with only this setting changed to value, as its setter changes them.
EscPosSettings expectedWith(const PrinterSetting &setting, const QString &value)
{
    EscPosSettings settings;
    EXPECT_TRUE((settings.*setting.set)(value)) << setting.configurationKey << "=" << qPrintable(value);
    return settings;
}

QByteArray readPpd(const PaperFamily &paper)
{
    QFile file(QStringLiteral(BRISTEL_PPD_DIR "/") + paper.fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString helpOf(const char *program)
{
    QProcess process;
    process.start(QLatin1String(BRISTEL_BIN_DIR "/") + QLatin1String(program), {QStringLiteral("--help")});
    EXPECT_TRUE(process.waitForFinished()) << program;
    return QString::fromUtf8(process.readAllStandardOutput());
}

EscPosSettings fromCommandLine(PrinterSettingOptions::Program program, const PrinterSetting &setting,
                               const QString &value)
{
    const PrinterSettingOptions options(program);
    QCommandLineParser parser;
    options.addTo(parser);
    EXPECT_TRUE(parser.parse(
        {QStringLiteral("program"), QLatin1String("--") + QLatin1String(setting.commandLineOption), value}))
        << qPrintable(parser.errorText());
    EscPosSettings settings;
    PrinterSettingOptions::Refusal refusal;
    EXPECT_TRUE(options.applyTo(parser, settings, &refusal))
        << qPrintable(PrinterSettingOptions::describe(refusal));
    return settings;
}

} // namespace

TEST(PrinterSettingConsumersTest, EveryRowHasAValueThatChangesTheDefaults)
{
    for (const PrinterSetting &setting : printerSettings())
        EXPECT_FALSE(anotherValue(setting).isEmpty()) << setting.configurationKey;
}

TEST(PrinterSettingConsumersTest, TheConfigurationReaderReadsEveryRowsKey)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    for (const PrinterSetting &setting : printerSettings()) {
        const QString key = QLatin1String(setting.configurationKey);
        ASSERT_TRUE(key.startsWith(QLatin1String("bristel.escpos."))) << setting.configurationKey;
        const QString value = anotherValue(setting);
        const QString path = dir.filePath(QLatin1String(setting.commandLineOption) + QLatin1String(".conf"));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QStringLiteral("bristel : { escpos : { %1 = \"%2\"; }; };\n")
                       .arg(key.mid(qsizetype(sizeof("bristel.escpos.") - 1)), value)
                       .toUtf8());
        file.close();
        QString problems;
        const EscPosSettings read =
            printerSettingsFromConfiguration(BRConfiguration(path, QStringLiteral("cfg")), &problems);
        EXPECT_TRUE(problems.isEmpty()) << qPrintable(problems);
        EXPECT_TRUE(same(read, expectedWith(setting, value))) << setting.configurationKey;
    }
}

TEST(PrinterSettingConsumersTest, EveryRowIsAnOptionOfBristelRender)
{
    const QString help = helpOf("bristel-render");
    for (const PrinterSetting &setting : printerSettings()) {
        EXPECT_TRUE(help.contains(
            QStringLiteral("  --%1 <%2>  ")
                .arg(QLatin1String(setting.commandLineOption), QLatin1String(setting.valueName))))
            << setting.commandLineOption;
        const QString value = anotherValue(setting);
        EXPECT_TRUE(same(fromCommandLine(PrinterSettingOptions::Program::Render, setting, value),
                         expectedWith(setting, value)))
            << setting.commandLineOption;
    }
}

TEST(PrinterSettingConsumersTest, BristelPreviewOffersTheRowsWithAPreviewHelp)
{
    for (const PrinterSetting &setting : printerSettings()) {
        if (!setting.previewHelp)
            continue;
        const QString value = anotherValue(setting);
        EXPECT_TRUE(same(fromCommandLine(PrinterSettingOptions::Program::Preview, setting, value),
                         expectedWith(setting, value)))
            << setting.commandLineOption;
    }
}

TEST(PrinterSettingConsumersTest, EveryPpdAndTheFilterKnowEveryQueueOption)
{
    for (const PrinterSetting &setting : printerSettings()) {
        if (!setting.cupsOption)
            continue;
        ASSERT_TRUE(setting.choices) << setting.cupsOption;
        for (const PaperFamily &paper : paperFamilies())
            EXPECT_TRUE(readPpd(paper).contains("*OpenUI *" + QByteArray(setting.cupsOption) + "/"))
                << setting.cupsOption << " in " << qPrintable(paper.fileName);
        EXPECT_TRUE(QueueOptions::names().contains(QLatin1String(setting.cupsOption)));
        const QString value = anotherValue(setting);
        QueueOptions options;
        options.add(QLatin1String(setting.cupsOption), value);
        EscPosSettings settings;
        EXPECT_TRUE(options.applyTo(settings).isEmpty()) << setting.cupsOption;
        EXPECT_TRUE(same(settings, expectedWith(setting, value))) << setting.cupsOption;
    }
}

TEST(PrinterSettingConsumersTest, ThePrinterApplicationOffersEveryAttribute)
{
    for (const PrinterSetting &setting : printerSettings()) {
        if (!setting.ippAttribute)
            continue;
        ASSERT_TRUE(setting.cupsOption) << setting.ippAttribute;
        for (const PaperFamily &paper : paperFamilies()) {
            bool offered = false;
            for (const PrinterSettingAttribute &attribute : PrinterSettingAttribute::all(paper))
                offered = offered || attribute.name() == QLatin1String(setting.ippAttribute);
            EXPECT_TRUE(offered) << setting.ippAttribute << " for " << qPrintable(paper.fileName);
        }
        // IPP spells keywords in lower case; the setters take either.
        const QString value = anotherValue(setting);
        QueueOptions options;
        ASSERT_TRUE(
            PrinterSettingAttribute::addTo(options, QLatin1String(setting.ippAttribute), value.toLower()));
        EscPosSettings settings;
        EXPECT_TRUE(options.applyTo(settings).isEmpty()) << setting.ippAttribute;
        EXPECT_TRUE(same(settings, expectedWith(setting, value))) << setting.ippAttribute;
    }
}
