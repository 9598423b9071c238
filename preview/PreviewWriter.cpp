#include "preview/PreviewWriter.h"

#include "config/OutputFile.h"
#include "preview/PaperPainter.h"

#include <QBuffer>
#include <QFileInfo>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

// An empty job still shows a strip of paper.
int pictureLength(const Paper &sheet)
{
    return std::max(sheet.length(), Paper::cellHeight);
}

// The picture holds a handful of colours (paper, ink, margin, marks): as a palette image it is
// a quarter of the bytes to filter and compress, which is most of the time a PNG takes.  A
// picture of more colours than a palette holds stays as it is.
QImage withPalette(const QImage &image)
{
    QImage indexed(image.size(), QImage::Format_Indexed8);
    indexed.setDotsPerMeterX(image.dotsPerMeterX());
    indexed.setDotsPerMeterY(image.dotsPerMeterY());
    QList<QRgb> colours;
    QRgb lastColour = 0;
    uchar lastIndex = 0;
    bool haveLast = false;
    const int width = image.width();
    const int height = image.height();
    for (int y = 0; y < height; ++y) {
        const auto *source = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        uchar *target = indexed.scanLine(y);
        for (int x = 0; x < width; ++x) {
            const QRgb colour = source[x];
            if (!haveLast || colour != lastColour) {
                qsizetype index = colours.indexOf(colour);
                if (index < 0) {
                    if (colours.size() == 256)
                        return image;
                    colours.append(colour);
                    index = colours.size() - 1;
                }
                lastColour = colour;
                lastIndex = uchar(index);
                haveLast = true;
            }
            target[x] = lastIndex;
        }
    }
    indexed.setColorTable(colours);
    return indexed;
}

bool writePng(const Paper &sheet, QIODevice *file, QString *error)
{
    // The picture is made in memory and then written: the toolkit's PNG writer leaks its row
    // buffer when the device refuses a write (a full disk, a FIFO whose reader went away).
    const QByteArray png = paperPng(sheet, error);
    if (png.isNull())
        return false;
    if (file->write(png) != png.size()) {
        *error = file->errorString();
        return false;
    }
    return true;
}

bool writeSvg(const Paper &sheet, QIODevice *file, QString *error)
{
    PaperPainter paperPainter(PaperPainter::Style::Outline);
    if (!paperPainter.isValid()) {
        *error = paperPainter.errorString();
        return false;
    }
    const QSize size(PaperPainter::pictureWidth(sheet), pictureLength(sheet));
    QSvgGenerator generator;
    generator.setOutputDevice(file);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(0, 0), size));
    generator.setResolution(sheet.dotsPerInch());
    generator.setTitle(QStringLiteral("Receipt preview"));
    QPainter painter;
    if (!painter.begin(&generator)) {
        *error = QStringLiteral("cannot start the SVG drawing");
        return false;
    }
    paperPainter.paint(&painter, sheet, 0, size.height());
    painter.end();
    return true;
}

// One page for each piece of paper a cut separates; paper fed past the last cut is a piece of
// its own only when something is printed on it.
std::vector<std::pair<int, int>> pieces(const Paper &sheet)
{
    std::vector<std::pair<int, int>> result;
    int from = 0;
    for (const int cut : sheet.cutPositions()) {
        if (cut > from)
            result.emplace_back(from, cut);
        from = std::max(from, cut);
    }
    bool printedAfter = false;
    for (const PaperRun &run : sheet.runs())
        printedAfter = printedAfter || run.top >= from;
    for (const PaperImage &image : sheet.images())
        printedAfter = printedAfter || image.top >= from;
    if (result.empty() || (printedAfter && sheet.length() > from))
        result.emplace_back(from, std::max(sheet.length(), from + Paper::cellHeight));
    return result;
}

bool writePdf(const Paper &sheet, QIODevice *file, QString *error)
{
    PaperPainter paperPainter(PaperPainter::Style::Outline);
    if (!paperPainter.isValid()) {
        *error = paperPainter.errorString();
        return false;
    }
    QPdfWriter writer(file);
    writer.setResolution(sheet.dotsPerInch());
    writer.setCreator(QStringLiteral("bristel-preview"));
    writer.setTitle(QStringLiteral("Receipt preview"));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    const double dotsPerMm = sheet.dotsPerMetre() / 1000.0;
    const double widthMm = double(PaperPainter::pictureWidth(sheet)) / dotsPerMm;
    const auto pageSize = [&](const std::pair<int, int> &piece) {
        return QPageSize(QSizeF(widthMm, double(piece.second - piece.first) / dotsPerMm),
                         QPageSize::Millimeter, QString(), QPageSize::ExactMatch);
    };
    const std::vector<std::pair<int, int>> all = pieces(sheet);
    writer.setPageSize(pageSize(all.front()));
    QPainter painter;
    if (!painter.begin(&writer)) {
        *error = QStringLiteral("cannot start the PDF drawing");
        return false;
    }
    for (size_t i = 0; i < all.size(); ++i) {
        if (i > 0) {
            writer.setPageSize(pageSize(all[i]));
            writer.newPage();
        }
        paperPainter.paint(&painter, sheet, all[i].first, all[i].second);
    }
    painter.end();
    return true;
}

} // namespace

std::optional<PreviewFormat> previewFormatFor(const QString &fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("png"))
        return PreviewFormat::Png;
    if (suffix == QLatin1String("svg"))
        return PreviewFormat::Svg;
    if (suffix == QLatin1String("pdf"))
        return PreviewFormat::Pdf;
    return std::nullopt;
}

QImage paperImage(const Paper &sheet, QString *error)
{
    PaperPainter paperPainter(PaperPainter::Style::Dots);
    if (!paperPainter.isValid()) {
        *error = paperPainter.errorString();
        return {};
    }
    QImage image(PaperPainter::pictureWidth(sheet), pictureLength(sheet), QImage::Format_RGB32);
    if (image.isNull()) {
        *error = QStringLiteral("not enough memory for a picture of %1 x %2 dots")
                     .arg(PaperPainter::pictureWidth(sheet))
                     .arg(pictureLength(sheet));
        return {};
    }
    // The printer's resolution, not the screen's: the picture prints at paper size, and its
    // bytes do not depend on the display of the machine that drew it.
    image.setDotsPerMeterX(sheet.dotsPerMetre());
    image.setDotsPerMeterY(sheet.dotsPerMetre());
    QPainter painter(&image);
    paperPainter.paint(&painter, sheet, 0, image.height());
    painter.end();
    return image;
}

QByteArray paperPng(const Paper &sheet, QString *error)
{
    const QImage image = paperImage(sheet, error);
    if (image.isNull())
        return {};
    // Quality 80 is zlib's fastest levels: a paper picture is mostly runs of one colour, which
    // they compress nearly as well as the default, in a fraction of the time.
    QByteArray png("");
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!withPalette(image).save(&buffer, "PNG", 80)) {
        *error = QStringLiteral("cannot encode the picture as PNG");
        return {};
    }
    return png;
}

bool writePreview(const Paper &sheet, PreviewFormat format, const QString &fileName, QString *error)
{
    OutputFile file(fileName);
    if (!file.open()) {
        *error = file.errorString();
        return false;
    }
    bool drawn = false;
    switch (format) {
    case PreviewFormat::Png:
        drawn = writePng(sheet, file.device(), error);
        break;
    case PreviewFormat::Svg:
        drawn = writeSvg(sheet, file.device(), error);
        break;
    case PreviewFormat::Pdf:
        drawn = writePdf(sheet, file.device(), error);
        break;
    }
    if (!drawn) {
        file.cancel();
        return false;
    }
    if (!file.commit()) {
        *error = file.errorString();
        return false;
    }
    return true;
}
