// bristel-render: renders a print job as the command file, as ESC/POS bytes for a receipt
// printer, or as a readable listing of those bytes.

#include "app/HeapTuning.h"
#include "app/JobConfiguration.h"
#include "app/JobExitStatus.h"
#include "app/RenderJob.h"
#include "backend/EscPosCodePage.h"
#include "config/OutputFile.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <memory>
#include <optional>

namespace {

void report(const QString &message)
{
    std::fprintf(stderr, "bristel-render: %s\n", qUtf8Printable(message));
}

std::optional<RenderFormat> formatByName(const QString &name)
{
    if (name == QLatin1String("text"))
        return RenderFormat::Text;
    if (name == QLatin1String("escpos"))
        return RenderFormat::EscPos;
    if (name == QLatin1String("listing"))
        return RenderFormat::Listing;
    return std::nullopt;
}

// Without --format the output's suffix decides: .txt a command file, .lst a listing, anything
// else (or standard output) the printer's bytes.
RenderFormat formatBySuffix(const QString &output)
{
    const QString suffix = QFileInfo(output).suffix().toLower();
    if (suffix == QLatin1String("txt"))
        return RenderFormat::Text;
    if (suffix == QLatin1String("lst"))
        return RenderFormat::Listing;
    return RenderFormat::EscPos;
}

struct SettingOption
{
    QCommandLineOption option;
    bool (EscPosSettings::*set)(const QString &);
};

} // namespace

int main(int argc, char **argv)
{
    tuneHeapForOneRun(); // one job per process, as bristel-compile
    // A reader gone early (bristel-render job.xml | head) is a failed write, not a silent end.
    OutputFile::reportClosedPipesAsWriteErrors();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("bristel-render"));
    QCoreApplication::setApplicationVersion(QStringLiteral(BRISTEL_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate(
        "main", "Renders a print job as the command file, as ESC/POS bytes for a receipt printer, "
                "or as a readable listing of those bytes."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("input"),
                                 QCoreApplication::translate("main", "The job (XML); - for standard input."));
    parser.addPositionalArgument(
        QStringLiteral("output"),
        QCoreApplication::translate("main", "Where to write; - or nothing for standard output."),
        QStringLiteral("[output]"));
    const QCommandLineOption formatOption(
        {QStringLiteral("f"), QStringLiteral("format")},
        QCoreApplication::translate("main", "text, escpos or listing (default: by the output's suffix, "
                                            ".txt text, .lst listing, else escpos)."),
        QStringLiteral("format"));
    const QCommandLineOption configOption(
        {QStringLiteral("c"), QStringLiteral("config")},
        QCoreApplication::translate("main",
                                    "The configuration file (default: ~/.bristel/conf/bristel.conf)."),
        QStringLiteral("file"));
    const QCommandLineOption logoOption(QStringLiteral("logo"),
                                        QCoreApplication::translate("main", "The logo, a PBM image file."),
                                        QStringLiteral("file"));
    const SettingOption settingOptions[] = {
        {QCommandLineOption(QStringLiteral("codepage"),
                            QCoreApplication::translate("main", "The printer's character table: %1.")
                                .arg(EscPosCodePage::names().join(QLatin1String(", "))),
                            QStringLiteral("name")),
         &EscPosSettings::setCodePage},
        {QCommandLineOption(QStringLiteral("codepage-number"),
                            QCoreApplication::translate("main",
                                                        "The number of that table in ESC t, for "
                                                        "printers that number their tables their own way."),
                            QStringLiteral("n")),
         &EscPosSettings::setCodePageNumber},
        {QCommandLineOption(QStringLiteral("columns"),
                            QCoreApplication::translate("main",
                                                        "Characters per line where a profile sets no "
                                                        "paper width (32 for 58 mm, 42 or 48 for 80 mm)."),
                            QStringLiteral("n")),
         &EscPosSettings::setColumns},
        {QCommandLineOption(QStringLiteral("cut"),
                            QCoreApplication::translate("main", "full, partial or none."),
                            QStringLiteral("kind")),
         &EscPosSettings::setCut},
        {QCommandLineOption(
             QStringLiteral("cut-feed"),
             QCoreApplication::translate("main", "Feed past the cutter before cutting, 0 to 255."),
             QStringLiteral("n")),
         &EscPosSettings::setCutFeed},
        {QCommandLineOption(QStringLiteral("drawer-pin"),
                            QCoreApplication::translate("main", "The cash drawer's pin, 2 or 5."),
                            QStringLiteral("pin")),
         &EscPosSettings::setDrawerPin},
        {QCommandLineOption(QStringLiteral("drawer-on"),
                            QCoreApplication::translate("main", "The drawer pulse's length in ms, 0 to 510."),
                            QStringLiteral("ms")),
         &EscPosSettings::setDrawerOnMs},
        {QCommandLineOption(QStringLiteral("drawer-off"),
                            QCoreApplication::translate("main", "The pause after the pulse in ms, 0 to 510."),
                            QStringLiteral("ms")),
         &EscPosSettings::setDrawerOffMs},
        {QCommandLineOption(QStringLiteral("codes"),
                            QCoreApplication::translate("main",
                                                        "QR codes and barcodes drawn by the printer (native) "
                                                        "or printed as pictures (raster)."),
                            QStringLiteral("how")),
         &EscPosSettings::setCodes},
    };
    parser.addOption(formatOption);
    parser.addOption(configOption);
    for (const SettingOption &setting : settingOptions)
        parser.addOption(setting.option);
    parser.addOption(logoOption);
    parser.process(application); // --help, --version and unknown options: the usual way

    const QStringList operands = parser.positionalArguments();
    if (operands.isEmpty() || operands.size() > 2) {
        report(QStringLiteral("expected an input and at most one output; see --help"));
        return UsageError;
    }
    const QString inputName = operands.at(0);
    const QString outputName = operands.size() > 1 ? operands.at(1) : QStringLiteral("-");

    RenderFormat format = formatBySuffix(outputName == QLatin1String("-") ? QString() : outputName);
    if (parser.isSet(formatOption)) {
        const std::optional<RenderFormat> named = formatByName(parser.value(formatOption));
        if (!named) {
            report(QStringLiteral("--format: unknown format \"%1\" (text, escpos or listing)")
                       .arg(parser.value(formatOption)));
            return BadOptionValue;
        }
        format = *named;
    }

    // A missing user file means defaults, as for bristel-compile; a named file must be readable.
    JobConfiguration job;
    if (!job.loadForCommandLine(parser, configOption, report))
        return BadOptionValue;
    EscPosSettings settings = job.settings();
    for (const SettingOption &setting : settingOptions) {
        if (parser.isSet(setting.option) && !(settings.*setting.set)(parser.value(setting.option))) {
            report(EscPosSettings::unusableValue(QLatin1String("--") + setting.option.names().constFirst(),
                                                 parser.value(setting.option), setting.set));
            return BadOptionValue;
        }
    }
    if (parser.isSet(logoOption))
        settings.logo = parser.value(logoOption);

    QFile input;
    const bool inputOpened = inputName == QLatin1String("-")
                                 ? input.open(stdin, QIODevice::ReadOnly)
                                 : (input.setFileName(inputName), input.open(QIODevice::ReadOnly));
    if (!inputOpened || QFileInfo(input.fileName()).isDir()) {
        report(QStringLiteral("%1: %2").arg(inputName, input.errorString()));
        return InputUnreadable;
    }
    OutputFile output(outputName, OutputFile::Dash::IsStandardOutput);
    if (!output.open()) {
        report(QStringLiteral("%1: %2").arg(outputName, output.errorString()));
        return OutputUnwritable;
    }

    const RenderResult result = renderJob(&input, output.device(), format, job.configuration(), settings);
    // What was rendered before a fault in the document is still written; after a failed write
    // the output is given up, and a file keeps its old bytes.
    if (result.status != RenderResult::Status::WriteFailed && !output.commit()) {
        report(QStringLiteral("%1: %2").arg(outputName == QLatin1String("-") ? QStringLiteral("<stdout>")
                                                                             : outputName,
                                            output.errorString()));
        return OutputUnwritable;
    }
    for (const QString &warning : result.warnings.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        report(warning);
    const QString where = inputName == QLatin1String("-") ? QStringLiteral("<stdin>") : inputName;
    switch (result.status) {
    case RenderResult::Status::Ok:
        return Success;
    case RenderResult::Status::MalformedDocument:
    case RenderResult::Status::InvalidCode:
        report(QStringLiteral("%1:%2:%3: %4")
                   .arg(where)
                   .arg(result.line)
                   .arg(result.column)
                   .arg(result.message));
        return MalformedDocument;
    case RenderResult::Status::UnknownMethod:
        report(QStringLiteral("%1:%2:%3: %4")
                   .arg(where)
                   .arg(result.line)
                   .arg(result.column)
                   .arg(result.message));
        return UnknownMethod;
    case RenderResult::Status::WriteFailed:
        report(QStringLiteral("%1: %2").arg(
            outputName == QLatin1String("-") ? QStringLiteral("<stdout>") : outputName, result.message));
        return OutputUnwritable;
    }
    return Success;
}
