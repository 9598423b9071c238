// bristel-render: renders a print job as the command file, as ESC/POS bytes for a receipt
// printer, or as a readable listing of those bytes.

#include "compiler/HeapTuning.h"
#include "config/OutputFile.h"
#include "devices/escpos/EscPosCodePage.h"
#include "job/JobConfiguration.h"
#include "job/JobExitStatus.h"
#include "job/PrinterSettingOptions.h"
#include "job/ProgramMessage.h"
#include "job/RenderJob.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <optional>

namespace {

void report(const QString &message)
{
    printProgramMessage("bristel-render", message);
}

// Every way the program gives up: the message, then the status the manual page lists for it.
int fail(int status, const QString &message)
{
    report(message);
    return status;
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

// "-" stands for a standard stream; messages call it by that stream's name.
bool isStandardStream(const QString &name)
{
    return name == QLatin1String("-");
}

QString inputPlace(const QString &inputName)
{
    return isStandardStream(inputName) ? QStringLiteral("<stdin>") : inputName;
}

QString outputPlace(const QString &outputName)
{
    return isStandardStream(outputName) ? QStringLiteral("<stdout>") : outputName;
}

// The program's options, made once the application's translation can apply to their texts.
struct RenderOptions
{
    QCommandLineOption format{
        {QStringLiteral("f"), QStringLiteral("format")},
        QCoreApplication::translate("main", "text, escpos or listing (default: by the output's suffix, "
                                            ".txt text, .lst listing, else escpos)."),
        QStringLiteral("format")};
    QCommandLineOption config{{QStringLiteral("c"), QStringLiteral("config")},
                              QCoreApplication::translate(
                                  "main", "The configuration file (default: ~/.bristel/conf/bristel.conf)."),
                              QStringLiteral("file")};
    PrinterSettingOptions settings{PrinterSettingOptions::Program::Render};
};

void describeCommandLine(QCommandLineParser *parser, const RenderOptions &options)
{
    parser->setApplicationDescription(QCoreApplication::translate(
        "main", "Renders a print job as the command file, as ESC/POS bytes for a receipt printer, "
                "or as a readable listing of those bytes."));
    parser->addHelpOption();
    parser->addVersionOption();
    parser->addPositionalArgument(
        QStringLiteral("input"), QCoreApplication::translate("main", "The job (XML); - for standard input."));
    parser->addPositionalArgument(
        QStringLiteral("output"),
        QCoreApplication::translate("main", "Where to write; - or nothing for standard output."),
        QStringLiteral("[output]"));
    parser->addOption(options.format);
    parser->addOption(options.config);
    options.settings.addTo(*parser);
}

// What the command line asks for, every value checked.
struct RenderRequest
{
    QString inputName;
    QString outputName; // "-" for standard output
    RenderFormat format = RenderFormat::EscPos;
    EscPosSettings settings;
};

// Fills request from the operands and --format; Success, or the status it failed with.
int readOperands(const QCommandLineParser &parser, const RenderOptions &options, RenderRequest *request)
{
    const QStringList operands = parser.positionalArguments();
    if (operands.isEmpty() || operands.size() > 2)
        return fail(UsageError, QStringLiteral("expected an input and at most one output; see --help"));
    request->inputName = operands.at(0);
    request->outputName = operands.size() > 1 ? operands.at(1) : QStringLiteral("-");
    request->format = formatBySuffix(isStandardStream(request->outputName) ? QString() : request->outputName);
    if (!parser.isSet(options.format))
        return Success;
    const std::optional<RenderFormat> named = formatByName(parser.value(options.format));
    if (!named) {
        return fail(BadOptionValue,
                    QStringLiteral("--format: unknown format \"%1\" (text, escpos or listing)")
                        .arg(parser.value(options.format)));
    }
    request->format = *named;
    return Success;
}

// The printer's settings: the configuration's, then the options over them.  A missing user
// file means defaults, as for bristel-compile; a named file must be readable.
int readSettings(const QCommandLineParser &parser, const RenderOptions &options, JobConfiguration *job,
                 RenderRequest *request)
{
    if (!job->loadForCommandLine(parser, options.config, report))
        return BadOptionValue;
    request->settings = job->settings();
    PrinterSettingOptions::Refusal refusal;
    if (!options.settings.applyTo(parser, request->settings, &refusal))
        return fail(BadOptionValue, PrinterSettingOptions::describe(refusal));
    return Success;
}

bool openInput(const QString &inputName, QFile *input)
{
    const bool opened = isStandardStream(inputName)
                            ? input->open(stdin, QIODevice::ReadOnly)
                            : (input->setFileName(inputName), input->open(QIODevice::ReadOnly));
    return opened && !QFileInfo(input->fileName()).isDir();
}

// The status of a rendered job, its warnings and its fault reported.
int statusOf(const RenderResult &result, const RenderRequest &request)
{
    for (const QString &warning : result.warnings.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        report(warning);
    const QString fault = QStringLiteral("%1:%2:%3: %4")
                              .arg(inputPlace(request.inputName))
                              .arg(result.line)
                              .arg(result.column)
                              .arg(result.message);
    switch (result.status) {
    case RenderResult::Status::Ok:
        return Success;
    case RenderResult::Status::MalformedDocument:
    case RenderResult::Status::InvalidCode:
        return fail(MalformedDocument, fault);
    case RenderResult::Status::UnknownMethod:
        return fail(UnknownMethod, fault);
    case RenderResult::Status::WriteFailed:
        return fail(OutputUnwritable,
                    QStringLiteral("%1: %2").arg(outputPlace(request.outputName), result.message));
    }
    return Success;
}

int render(const RenderRequest &request, const JobConfiguration &job)
{
    QFile input;
    if (!openInput(request.inputName, &input))
        return fail(InputUnreadable, QStringLiteral("%1: %2").arg(request.inputName, input.errorString()));
    OutputFile output(request.outputName, OutputFile::Dash::IsStandardOutput);
    if (!output.open())
        return fail(OutputUnwritable, QStringLiteral("%1: %2").arg(request.outputName, output.errorString()));

    const RenderResult result =
        renderJob(&input, output.device(), request.format, job.configuration(), request.settings);
    // What was rendered before a fault in the document is still written; after a failed write
    // the output is given up, and a file keeps its old bytes.
    if (result.status != RenderResult::Status::WriteFailed && !output.commit()) {
        return fail(OutputUnwritable,
                    QStringLiteral("%1: %2").arg(outputPlace(request.outputName), output.errorString()));
    }
    return statusOf(result, request);
}

} // namespace

int main(int argc, char **argv)
{
    tuneHeapForOneRun(); // one job per process, as bristel-compile
    // A reader gone early (bristel-render job.xml | head) is a failed write, not a silent end.
    OutputFile::reportClosedPipesAsWriteErrors();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("bristel-render"));
    QCoreApplication::setApplicationVersion(QStringLiteral(BRISTEL_VERSION));

    const RenderOptions options;
    QCommandLineParser parser;
    describeCommandLine(&parser, options);
    parser.process(application); // --help, --version and unknown options: the usual way

    RenderRequest request;
    if (const int status = readOperands(parser, options, &request); status != Success)
        return status;
    JobConfiguration job;
    if (const int status = readSettings(parser, options, &job, &request); status != Success)
        return status;
    return render(request, job);
}
