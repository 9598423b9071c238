// bristel-preview: draws what a receipt printer would print for a job (XML, rendered through
// the ESC/POS back-end) or for an ESC/POS file, as PNG, SVG or PDF; and turns a picture into
// the printer's logo.

#include "config/OutputFile.h"
#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/EscPosPaperFamily.h"
#include "job/JobConfiguration.h"
#include "job/JobDetection.h"
#include "job/JobExitStatus.h"
#include "job/PrinterSettingOptions.h"
#include "job/PrinterSettingTable.h"
#include "job/PrivateRuntimeDirectory.h"
#include "job/ProgramMessage.h"
#include "preview/LogoMaker.h"
#include "preview/PaperPainter.h"
#include "preview/PreviewJob.h"
#include "preview/PreviewWriter.h"
#include "virtualprinter/VirtualPrinter.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>

#include <memory>
#include <optional>

namespace {

// The statuses of the preview's own, beside the shared ones; the manual page lists them all.
enum PreviewExitStatus
{
    TooLong = 7,
    CannotDraw = 8,
    NotAllDrawn = 9
};

// The longest sheet one picture holds: 2 metres of paper.  A PNG of it takes about 45 MiB of
// memory while it is drawn.
constexpr int maximumLength = 16000;

void report(const QString &message)
{
    printProgramMessage("bristel-preview", message);
}

// Every way the program gives up: the message, then the status the manual page lists for it.
int fail(int status, const QString &message)
{
    report(message);
    return status;
}

// out.png -> out-001.png, out-002.png, ...
QString pieceName(const QString &output, int number)
{
    const QFileInfo info(output);
    const QString stem = info.suffix().isEmpty() ? output : output.chopped(info.suffix().size() + 1);
    return QStringLiteral("%1-%2.%3").arg(stem).arg(number, 3, 10, QLatin1Char('0')).arg(info.suffix());
}

int makeLogo(const QStringList &operands, const QString &widthText)
{
    if (operands.size() != 2)
        return fail(UsageError,
                    QStringLiteral("--make-logo takes an image and the PBM file to write; see --help"));
    bool ok = false;
    const int width = widthText.toInt(&ok);
    if (!ok || width < 8 || width > 4096)
        return fail(BadOptionValue,
                    QStringLiteral("--width: unusable value \"%1\" (8 to 4096 dots)").arg(widthText));
    QImageReader reader(operands.at(0));
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull())
        return fail(InputUnreadable, QStringLiteral("%1: %2").arg(operands.at(0), reader.errorString()));
    QString error;
    if (!logomaker::writePbm(logomaker::dither(image, width), operands.at(1), &error))
        return fail(OutputUnwritable, QStringLiteral("%1: %2").arg(operands.at(1), error));
    return Success;
}

// Kept: a refused --codes has always been reported without the values that would have served,
// unlike the other settings; callers that read the message see it as before.
QString describe(const PrinterSettingOptions::Refusal &refusal)
{
    if (refusal.setting->set == &EscPosSettings::setCodes)
        return QStringLiteral("%1: unusable value \"%2\"").arg(refusal.option, refusal.value);
    return PrinterSettingOptions::describe(refusal);
}

// --paper: the paper's width in dots.  80-512 is the older 80 mm printers' 512 dots (42
// columns of Font A).
std::optional<int> paperWidthByName(const QString &name)
{
    if (const EscPosPaperFamily *family = EscPosPaperFamily::byName(name))
        return family->dots;
    return std::nullopt;
}

// --input: what the input is; auto goes by the file's first bytes.
bool isInputKind(const QString &kind)
{
    return kind == QLatin1String("xml") || kind == QLatin1String("escpos") || kind == QLatin1String("auto");
}

bool readAsJob(const QString &kind, QIODevice *file)
{
    if (kind == QLatin1String("auto"))
        return isBristelJob(file->peek(bristelJobSniffLength));
    return kind == QLatin1String("xml");
}

// One line for each kind of command the virtual printer did not carry out.
void reportUnsupported(const QString &inputName, const VirtualPrinter &printer)
{
    for (const VirtualPrinter::Unsupported &kind : printer.unsupported()) {
        report(QStringLiteral("%1: not drawn: %2, %3, first at byte %4")
                   .arg(inputName, kind.name,
                        kind.count == 1 ? QStringLiteral("once") : QStringLiteral("%1 times").arg(kind.count))
                   .arg(kind.firstOffset));
    }
}

// PNG pictures are drawn from the bitmap font's dots and need no font engine; SVG and PDF
// draw outline fonts, which need the GUI application.
bool drawsOutlineFonts(int argc, char **argv)
{
    bool outlines = false;
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]).toLower();
        outlines =
            outlines || argument.endsWith(QLatin1String(".svg")) || argument.endsWith(QLatin1String(".pdf"));
    }
    return outlines;
}

std::unique_ptr<QCoreApplication> makeApplication(bool withGui, int &argc, char **argv)
{
    if (withGui)
        return std::make_unique<QGuiApplication>(argc, argv);
    return std::make_unique<QCoreApplication>(argc, argv);
}

// The program's options, made once the application's translation can apply to their texts.
struct PreviewOptions
{
    QCommandLineOption config{{QStringLiteral("c"), QStringLiteral("config")},
                              QCoreApplication::translate(
                                  "main", "The configuration file (default: ~/.bristel/conf/bristel.conf)."),
                              QStringLiteral("file")};
    PrinterSettingOptions settings{PrinterSettingOptions::Program::Preview};
    QCommandLineOption paper{
        QStringLiteral("paper"),
        QCoreApplication::translate("main", "The paper: 58 (384 dots), 80 (576 dots) or 80-512 (512 dots, "
                                            "older 80 mm printers); default for a job: by the columns, "
                                            "58 up to 32 columns; for ESC/POS bytes: 80."),
        QStringLiteral("paper")};
    QCommandLineOption input{
        QStringLiteral("input"),
        QCoreApplication::translate("main", "What the input is: xml (a job), escpos (printer bytes) or "
                                            "auto (a job when it is XML naming a method near its top)."),
        QStringLiteral("kind"), QStringLiteral("auto")};
    QCommandLineOption strict{QStringLiteral("strict"),
                              QCoreApplication::translate("main",
                                                          "Fail (status 9) when the input holds commands "
                                                          "the preview does not draw.")};
    QCommandLineOption split{QStringLiteral("split"),
                             QCoreApplication::translate("main",
                                                         "Cut a job longer than 2 m of paper into "
                                                         "several files, OUTPUT-001, OUTPUT-002, ...")};
    QCommandLineOption makeLogo{
        QStringLiteral("make-logo"),
        QCoreApplication::translate("main", "Turn the picture INPUT into the 1-bit PBM logo OUTPUT.")};
    QCommandLineOption width{
        QStringLiteral("width"),
        QCoreApplication::translate("main", "The logo's width in dots (default 384, the printable width "
                                            "of 58 mm paper; 576 for 80 mm)."),
        QStringLiteral("dots"), QStringLiteral("384")};
};

void describeCommandLine(QCommandLineParser *parser, const PreviewOptions &options)
{
    parser->setApplicationDescription(QCoreApplication::translate(
        "main",
        "Draws what a receipt printer prints for a job (XML) or an ESC/POS file, as PNG, SVG or "
        "PDF by the output's suffix.  With --make-logo, turns a picture into the printer's PBM logo."));
    parser->addHelpOption();
    parser->addVersionOption();
    parser->addPositionalArgument(QStringLiteral("input"),
                                  QCoreApplication::translate("main", "The job (XML) or ESC/POS file."));
    parser->addPositionalArgument(QStringLiteral("output"),
                                  QCoreApplication::translate("main", "The picture: .png, .svg or .pdf."));
    parser->addOption(options.config);
    options.settings.addTo(*parser);
    parser->addOptions(
        {options.paper, options.input, options.strict, options.split, options.makeLogo, options.width});
}

// What the command line asks for, every value checked.
struct PreviewRequest
{
    QString inputName;
    QString outputName;
    PreviewFormat format = PreviewFormat::Png;
    EscPosSettings settings;
    std::optional<int> namedPaper; // --paper, in dots
    QString inputKind;             // xml, escpos or auto
    bool strict = false;
    bool split = false;
};

// Fills request from the operands; Success, or the status it failed with.
int readOperands(const QCommandLineParser &parser, const PreviewOptions &options, PreviewRequest *request)
{
    const QStringList operands = parser.positionalArguments();
    if (operands.size() != 2)
        return fail(UsageError, QStringLiteral("expected an input and an output; see --help"));
    request->inputName = operands.at(0);
    request->outputName = operands.at(1);
    const std::optional<PreviewFormat> format = previewFormatFor(request->outputName);
    if (!format) {
        return fail(
            UsageError,
            QStringLiteral("%1: the output's suffix must be .png, .svg or .pdf").arg(request->outputName));
    }
    request->format = *format;
    request->strict = parser.isSet(options.strict);
    request->split = parser.isSet(options.split);
    return Success;
}

// The printer's settings, the configuration as bristel-render reads it and the options over
// it, and the paper; Success, or the status it failed with.
int readSettings(const QCommandLineParser &parser, const PreviewOptions &options, JobConfiguration *job,
                 PreviewRequest *request)
{
    if (!job->loadForCommandLine(parser, options.config, report))
        return BadOptionValue;
    EscPosSettings &settings = request->settings;
    settings = job->settings();
    PrinterSettingOptions::Refusal refusal;
    if (!options.settings.applyTo(parser, settings, &refusal))
        return fail(BadOptionValue, describe(refusal));
    request->namedPaper = paperWidthByName(parser.value(options.paper));
    if (parser.isSet(options.paper) && !request->namedPaper) {
        return fail(BadOptionValue, QStringLiteral("--paper: unusable value \"%1\" (58, 80 or 80-512)")
                                        .arg(parser.value(options.paper)));
    }
    request->inputKind = parser.value(options.input);
    if (!isInputKind(request->inputKind)) {
        return fail(
            BadOptionValue,
            QStringLiteral("--input: unusable value \"%1\" (escpos, xml or auto)").arg(request->inputKind));
    }
    return Success;
}

// The bytes the virtual printer is to print.
struct PrinterBytes
{
    QByteArray stream;
    bool fromJob = false; // rendered from an XML job, not read as they stand
    int status = Success; // the job's fault; what was rendered before it is still drawn
};

// Renders an XML job into *stream; the status its fault gives, with the fault reported.
int renderJobBytes(QIODevice *input, const PreviewRequest &request, const JobConfiguration &job,
                   QByteArray *stream)
{
    const RenderResult result =
        previewjob::renderEscPos(input, job.configuration(), request.settings, stream);
    for (const QString &warning : result.warnings.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        report(warning);
    switch (result.status) {
    case RenderResult::Status::MalformedDocument:
    case RenderResult::Status::InvalidCode:
    case RenderResult::Status::UnknownMethod:
        // What was rendered before the fault is still drawn, as bristel-render still writes it.
        report(QStringLiteral("%1:%2:%3: %4")
                   .arg(request.inputName)
                   .arg(result.line)
                   .arg(result.column)
                   .arg(result.message));
        // A code that cannot be printed makes the document unusable, as a syntax error does.
        return result.status == RenderResult::Status::UnknownMethod ? UnknownMethod : MalformedDocument;
    case RenderResult::Status::Ok:
    case RenderResult::Status::WriteFailed:
        break;
    }
    return Success;
}

// Reads the input into *bytes, rendering a job; Success, or the status it failed with.
int readPrinterBytes(const PreviewRequest &request, const JobConfiguration &job, PrinterBytes *bytes)
{
    const QString &inputName = request.inputName;
    QFile input(inputName);
    const bool isFolder = QFileInfo(inputName).isDir();
    if (isFolder || !input.open(QIODevice::ReadOnly)) {
        return fail(InputUnreadable,
                    QStringLiteral("%1: %2").arg(inputName, isFolder ? QStringLiteral("is a folder")
                                                                     : input.errorString()));
    }
    bytes->fromJob = readAsJob(request.inputKind, &input);
    if (bytes->fromJob) {
        bytes->status = renderJobBytes(&input, request, job, &bytes->stream);
        return Success;
    }
    bytes->stream = input.readAll();
    if (input.error() != QFileDevice::NoError)
        return fail(InputUnreadable, QStringLiteral("%1: %2").arg(inputName, input.errorString()));
    return Success;
}

// A job's paper follows its printer's columns; bytes from another program come on the common
// restaurant roll.
int paperWidthFor(const PreviewRequest &request, bool fromJob)
{
    if (request.namedPaper)
        return *request.namedPaper;
    return fromJob ? previewjob::paperWidthForColumns(request.settings.columns) : Paper::width80mm;
}

// Prints and writes one sheet at a time: the memory needed grows with a picture, not with the
// job.  Success, or the status it failed with.
int writeSheets(const PreviewRequest &request, VirtualPrinter *printer)
{
    int piece = 0;
    bool more = true;
    while (more) {
        more = printer->printSheet(maximumLength);
        if (more && !request.split) {
            return fail(TooLong,
                        QStringLiteral("%1: the job is longer than %2 dots (2 m of paper), the most one "
                                       "picture holds; --split cuts it into several files")
                            .arg(request.inputName)
                            .arg(maximumLength));
        }
        const Paper sheet = printer->takeSheet();
        const QString name = request.split ? pieceName(request.outputName, ++piece) : request.outputName;
        QString error;
        if (!writePreview(sheet, request.format, name, &error))
            return fail(OutputUnwritable, QStringLiteral("%1: %2").arg(name, error));
    }
    return Success;
}

int draw(const PreviewRequest &request, const PrinterBytes &bytes)
{
    const PaperPainter fonts(request.format == PreviewFormat::Png ? PaperPainter::Style::Dots
                                                                  : PaperPainter::Style::Outline);
    if (!fonts.isValid())
        return fail(CannotDraw, fonts.errorString());
    VirtualPrinter printer(bytes.stream, paperWidthFor(request, bytes.fromJob));
    if (const int status = writeSheets(request, &printer); status != Success)
        return status;
    reportUnsupported(request.inputName, printer);
    if (bytes.status == Success && request.strict && !printer.unsupported().empty())
        return NotAllDrawn;
    return bytes.status;
}

} // namespace

int main(int argc, char **argv)
{
    OutputFile::reportClosedPipesAsWriteErrors(); // a FIFO's reader gone early is a failed write
    // The GUI application runs on the offscreen platform unless the caller chose one: the
    // program never opens a window.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const bool withGui = drawsOutlineFonts(argc, argv);
    // The GUI application wants a runtime folder.  Static, so that it is removed when --help,
    // --version or a bad option end the process with exit(), and after the application object.
    static const PrivateRuntimeDirectory runtimeDirectory;
    const std::unique_ptr<QCoreApplication> application = makeApplication(withGui, argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("bristel-preview"));
    QCoreApplication::setApplicationVersion(QStringLiteral(BRISTEL_VERSION));

    const PreviewOptions options;
    QCommandLineParser parser;
    describeCommandLine(&parser, options);
    parser.process(*application);
    if (parser.isSet(options.makeLogo))
        return makeLogo(parser.positionalArguments(), parser.value(options.width));

    PreviewRequest request;
    if (const int status = readOperands(parser, options, &request); status != Success)
        return status;
    JobConfiguration job;
    if (const int status = readSettings(parser, options, &job, &request); status != Success)
        return status;
    PrinterBytes bytes;
    if (const int status = readPrinterBytes(request, job, &bytes); status != Success)
        return status;
    return draw(request, bytes);
}
