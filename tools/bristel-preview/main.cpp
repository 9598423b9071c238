// bristel-preview: draws what a receipt printer would print for a job (XML, rendered through
// the ESC/POS back-end) or for an ESC/POS file, as PNG, SVG or PDF; and turns a picture into
// the printer's logo.

#include "app/JobConfiguration.h"
#include "app/JobDetection.h"
#include "app/JobExitStatus.h"
#include "app/PrivateRuntimeDirectory.h"
#include "backend/EscPosCodePage.h"
#include "backend/EscPosPaperFamily.h"
#include "config/OutputFile.h"
#include "preview/LogoMaker.h"
#include "preview/PaperPainter.h"
#include "preview/PreviewJob.h"
#include "preview/PreviewWriter.h"
#include "preview/VirtualPrinter.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>

#include <cstdio>
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
    std::fprintf(stderr, "bristel-preview: %s\n", qUtf8Printable(message));
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
    if (operands.size() != 2) {
        report(QStringLiteral("--make-logo takes an image and the PBM file to write; see --help"));
        return UsageError;
    }
    bool ok = false;
    const int width = widthText.toInt(&ok);
    if (!ok || width < 8 || width > 4096) {
        report(QStringLiteral("--width: unusable value \"%1\" (8 to 4096 dots)").arg(widthText));
        return BadOptionValue;
    }
    QImageReader reader(operands.at(0));
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull()) {
        report(QStringLiteral("%1: %2").arg(operands.at(0), reader.errorString()));
        return InputUnreadable;
    }
    QString error;
    if (!logomaker::writePbm(logomaker::dither(image, width), operands.at(1), &error)) {
        report(QStringLiteral("%1: %2").arg(operands.at(1), error));
        return OutputUnwritable;
    }
    return Success;
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

} // namespace

int main(int argc, char **argv)
{
    OutputFile::reportClosedPipesAsWriteErrors(); // a FIFO's reader gone early is a failed write
    // PNG pictures are drawn from the bitmap font's dots and need no font engine; SVG and PDF
    // draw outline fonts, which need the GUI application.  It runs on the offscreen platform
    // unless the caller chose one: the program never opens a window.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    bool needsGui = false;
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]).toLower();
        needsGui =
            needsGui || argument.endsWith(QLatin1String(".svg")) || argument.endsWith(QLatin1String(".pdf"));
    }
    // The GUI application wants a runtime folder.  Static, so that it is removed when --help,
    // --version or a bad option end the process with exit(), and after the application object.
    static const PrivateRuntimeDirectory runtimeDirectory;
    std::unique_ptr<QCoreApplication> application = needsGui ? std::make_unique<QGuiApplication>(argc, argv)
                                                             : std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("bristel-preview"));
    QCoreApplication::setApplicationVersion(QStringLiteral(BRISTEL_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate(
        "main",
        "Draws what a receipt printer prints for a job (XML) or an ESC/POS file, as PNG, SVG or "
        "PDF by the output's suffix.  With --make-logo, turns a picture into the printer's PBM logo."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("input"),
                                 QCoreApplication::translate("main", "The job (XML) or ESC/POS file."));
    parser.addPositionalArgument(QStringLiteral("output"),
                                 QCoreApplication::translate("main", "The picture: .png, .svg or .pdf."));
    const QCommandLineOption configOption(
        {QStringLiteral("c"), QStringLiteral("config")},
        QCoreApplication::translate("main",
                                    "The configuration file (default: ~/.bristel/conf/bristel.conf)."),
        QStringLiteral("file"));
    const QCommandLineOption codePageOption(
        QStringLiteral("codepage"),
        QCoreApplication::translate("main", "The printer's character table for XML jobs: %1.")
            .arg(EscPosCodePage::names().join(QLatin1String(", "))),
        QStringLiteral("name"));
    const QCommandLineOption columnsOption(
        QStringLiteral("columns"),
        QCoreApplication::translate("main", "Characters per line where a profile sets no paper width."),
        QStringLiteral("n"));
    const QCommandLineOption codesOption(
        QStringLiteral("codes"),
        QCoreApplication::translate("main", "QR codes and barcodes drawn by the printer (native) or printed "
                                            "as pictures (raster)."),
        QStringLiteral("how"));
    const QCommandLineOption paperOption(
        QStringLiteral("paper"),
        QCoreApplication::translate("main", "The paper: 58 (384 dots), 80 (576 dots) or 80-512 (512 dots, "
                                            "older 80 mm printers); default for a job: by the columns, "
                                            "58 up to 32 columns; for ESC/POS bytes: 80."),
        QStringLiteral("paper"));
    const QCommandLineOption inputOption(
        QStringLiteral("input"),
        QCoreApplication::translate("main", "What the input is: xml (a job), escpos (printer bytes) or "
                                            "auto (a job when it is XML naming a method near its top)."),
        QStringLiteral("kind"), QStringLiteral("auto"));
    const QCommandLineOption strictOption(
        QStringLiteral("strict"),
        QCoreApplication::translate("main", "Fail (status 9) when the input holds commands the preview "
                                            "does not draw."));
    const QCommandLineOption splitOption(
        QStringLiteral("split"),
        QCoreApplication::translate("main", "Cut a job longer than 2 m of paper into several files, "
                                            "OUTPUT-001, OUTPUT-002, ..."));
    const QCommandLineOption makeLogoOption(
        QStringLiteral("make-logo"),
        QCoreApplication::translate("main", "Turn the picture INPUT into the 1-bit PBM logo OUTPUT."));
    const QCommandLineOption widthOption(
        QStringLiteral("width"),
        QCoreApplication::translate("main", "The logo's width in dots (default 384, the printable width "
                                            "of 58 mm paper; 576 for 80 mm)."),
        QStringLiteral("dots"), QStringLiteral("384"));
    parser.addOptions({configOption, codePageOption, columnsOption, codesOption, paperOption, inputOption,
                       strictOption, splitOption, makeLogoOption, widthOption});
    parser.process(*application);

    const QStringList operands = parser.positionalArguments();
    if (parser.isSet(makeLogoOption))
        return makeLogo(operands, parser.value(widthOption));
    if (operands.size() != 2) {
        report(QStringLiteral("expected an input and an output; see --help"));
        return UsageError;
    }
    const QString inputName = operands.at(0);
    const QString outputName = operands.at(1);
    const std::optional<PreviewFormat> format = previewFormatFor(outputName);
    if (!format) {
        report(QStringLiteral("%1: the output's suffix must be .png, .svg or .pdf").arg(outputName));
        return UsageError;
    }

    // The configuration, as bristel-render reads it.
    JobConfiguration job;
    if (!job.loadForCommandLine(parser, configOption, report))
        return BadOptionValue;
    EscPosSettings settings = job.settings();
    if (parser.isSet(codePageOption) && !settings.setCodePage(parser.value(codePageOption))) {
        report(EscPosSettings::unusableValue(QStringLiteral("--codepage"), parser.value(codePageOption),
                                             &EscPosSettings::setCodePage));
        return BadOptionValue;
    }
    if (parser.isSet(columnsOption) && !settings.setColumns(parser.value(columnsOption))) {
        report(EscPosSettings::unusableValue(QStringLiteral("--columns"), parser.value(columnsOption),
                                             &EscPosSettings::setColumns));
        return BadOptionValue;
    }
    if (parser.isSet(codesOption) && !settings.setCodes(parser.value(codesOption))) {
        report(QStringLiteral("--codes: unusable value \"%1\"").arg(parser.value(codesOption)));
        return BadOptionValue;
    }
    const std::optional<int> namedPaper = paperWidthByName(parser.value(paperOption));
    if (parser.isSet(paperOption) && !namedPaper) {
        report(QStringLiteral("--paper: unusable value \"%1\" (58, 80 or 80-512)")
                   .arg(parser.value(paperOption)));
        return BadOptionValue;
    }
    if (!isInputKind(parser.value(inputOption))) {
        report(QStringLiteral("--input: unusable value \"%1\" (escpos, xml or auto)")
                   .arg(parser.value(inputOption)));
        return BadOptionValue;
    }

    QFile input(inputName);
    if (QFileInfo(inputName).isDir() || !input.open(QIODevice::ReadOnly)) {
        report(QStringLiteral("%1: %2").arg(
            inputName, QFileInfo(inputName).isDir() ? QStringLiteral("is a folder") : input.errorString()));
        return InputUnreadable;
    }
    const bool isJob = readAsJob(parser.value(inputOption), &input);
    // A job's paper follows its printer's columns; bytes from another program come on the
    // common restaurant roll.
    const int paperWidth = namedPaper ? *namedPaper
                           : isJob    ? previewjob::paperWidthForColumns(settings.columns)
                                      : Paper::width80mm;
    int status = Success;
    QByteArray stream;
    if (isJob) {
        const RenderResult result = previewjob::renderEscPos(&input, job.configuration(), settings, &stream);
        for (const QString &warning : result.warnings.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            report(warning);
        if (result.status == RenderResult::Status::MalformedDocument ||
            result.status == RenderResult::Status::InvalidCode ||
            result.status == RenderResult::Status::UnknownMethod) {
            // What was rendered before the fault is still drawn, as bristel-render still writes it.
            report(QStringLiteral("%1:%2:%3: %4")
                       .arg(inputName)
                       .arg(result.line)
                       .arg(result.column)
                       .arg(result.message));
            // A code that cannot be printed makes the document unusable, as a syntax error does.
            status = result.status == RenderResult::Status::UnknownMethod ? UnknownMethod : MalformedDocument;
        }
    } else {
        stream = input.readAll();
        if (input.error() != QFileDevice::NoError) {
            report(QStringLiteral("%1: %2").arg(inputName, input.errorString()));
            return InputUnreadable;
        }
    }
    input.close();

    const PaperPainter fonts(*format == PreviewFormat::Png ? PaperPainter::Style::Dots
                                                           : PaperPainter::Style::Outline);
    if (!fonts.isValid()) {
        report(fonts.errorString());
        return CannotDraw;
    }

    // One sheet at a time: the memory needed grows with a picture, not with the job.
    VirtualPrinter printer(stream, paperWidth);
    int piece = 0;
    bool more = true;
    while (more) {
        more = printer.printSheet(maximumLength);
        if (more && !parser.isSet(splitOption)) {
            report(QStringLiteral("%1: the job is longer than %2 dots (2 m of paper), the most one picture "
                                  "holds; --split cuts it into several files")
                       .arg(inputName)
                       .arg(maximumLength));
            return TooLong;
        }
        const Paper sheet = printer.takeSheet();
        const QString name = parser.isSet(splitOption) ? pieceName(outputName, ++piece) : outputName;
        QString error;
        if (!writePreview(sheet, *format, name, &error)) {
            report(QStringLiteral("%1: %2").arg(name, error));
            return OutputUnwritable;
        }
    }
    reportUnsupported(inputName, printer);
    if (status == Success && parser.isSet(strictOption) && !printer.unsupported().empty())
        status = NotAllDrawn;
    return status;
}
