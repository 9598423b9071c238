// The bit images of the virtual printer: the column images of ESC * placed in the row like
// characters, the graphics of the print buffer (GS ( L, GS 8 L), and the images defined to be
// printed later (GS * with GS /, FS q with FS p).
#include "virtualprinter/VirtualPrinter.h"

#include "devices/escpos/EscPosCommandTable.h"

#include <algorithm>

namespace {

QByteArrayView parameters(const EscPosCommand &command)
{
    return command.bytes.sliced(qsizetype(command.entry->prefix.size()));
}

unsigned byteAt(QByteArrayView bytes, qsizetype index)
{
    return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0;
}

unsigned wordAt(QByteArrayView bytes, qsizetype index)
{
    return byteAt(bytes, index) | byteAt(bytes, index + 1) << 8;
}

QImage blankDots(int width, int height)
{
    QImage dots(width, height, QImage::Format_Mono);
    dots.setColorTable({qRgba(0, 0, 0, 0), qRgb(0, 0, 0)});
    dots.fill(0);
    return dots;
}

// Column format: each column top to bottom, `rowBytes` bytes a column, the top dot in the
// high bit of each byte.
QImage columnDots(QByteArrayView data, int columns, int rowBytes)
{
    QImage dots = blankDots(columns, rowBytes * 8);
    for (int column = 0; column < columns; ++column) {
        for (int row = 0; row < rowBytes * 8; ++row) {
            const unsigned byte = byteAt(data, qsizetype(column) * rowBytes + row / 8);
            if (byte & (0x80u >> (row % 8)))
                dots.setPixel(column, row, 1);
        }
    }
    return dots;
}

// Raster format: row after row, (width + 7) / 8 bytes a row, the left dot in the high bit.
// Only the first `kept` columns are taken.
QImage rasterDots(QByteArrayView data, int width, int height, int kept)
{
    QImage dots = blankDots(std::min(width, kept), height);
    const int rowBytes = (width + 7) / 8;
    const qsizetype copied = std::min<qsizetype>(rowBytes, (dots.width() + 7) / 8);
    for (int row = 0; row < height; ++row) {
        uchar *line = dots.scanLine(row);
        const QByteArrayView from = data.sliced(std::min(data.size(), qsizetype(row) * rowBytes));
        std::copy_n(from.data(), std::min(copied, from.size()), reinterpret_cast<char *>(line));
    }
    return dots;
}

// The print mode of GS / and FS p: 0 normal, 1 double width, 2 double height, 3 both.
int scaleMode(unsigned mode)
{
    return int(mode >= '0' ? mode - '0' : mode) & 3;
}

} // namespace

// ESC * m: 8-dot images are tall dots (three rows of the head each); single density prints
// every dot two dots wide.
void VirtualPrinter::printBitImage(const EscPosCommand &command)
{
    const QByteArrayView p = parameters(command);
    const unsigned mode = byteAt(p, 0);
    if (mode != 0 && mode != 1 && mode != 32 && mode != 33) {
        notDrawn(command, QStringLiteral("ESC * %1").arg(mode));
        return;
    }
    const int rowBytes = mode >= 32 ? 3 : 1;
    PaperImage image;
    image.widthMultiplier = (mode & 1) ? 1 : 2;
    image.heightMultiplier = mode >= 32 ? 1 : 3;
    const int columns = int(wordAt(p, 1));
    const int room = (m_paper.width() - m_rowWidth) / image.widthMultiplier;
    const int shown = std::min(columns, room);
    if (shown < columns)
        mark(PaperMark::Kind::Note, QStringLiteral("image cut to the paper"));
    if (shown <= 0)
        return;
    if (m_row.empty() && m_rowImages.empty()) {
        m_rowJustification = m_justification;
        m_rowUpsideDown = m_upsideDown;
    }
    image.dots = columnDots(p.sliced(3), shown, rowBytes);
    image.x = m_rowWidth;
    m_rowWidth += shown * image.widthMultiplier;
    m_rowImages.push_back(std::move(image));
}

// GS ( L and GS 8 L differ only in how the length is given.
void VirtualPrinter::graphics(const EscPosCommand &command)
{
    const qsizetype lengthBytes = command.entry->parameters == EscPosParameters::CountedFourBytes ? 4 : 2;
    const QByteArrayView p = parameters(command).sliced(std::min(lengthBytes, parameters(command).size()));
    const unsigned function = byteAt(p, 1);
    if (function == 112 && byteAt(p, 2) == 48) {
        storeGraphic(command, p);
    } else if (function == 50 || function == 2) {
        printStoredGraphic();
    } else {
        notDrawn(command, QStringLiteral("%1 fn %2").arg(QLatin1String(command.entry->name)).arg(function));
    }
}

// fn 112, tone 48 (monochrome): m fn a bx by c xL xH yL yH d...
void VirtualPrinter::storeGraphic(const EscPosCommand &command, QByteArrayView p)
{
    const unsigned colour = byteAt(p, 5);
    if (colour != 49) {
        notDrawn(command, QStringLiteral("%1 colour %2").arg(QLatin1String(command.entry->name)).arg(colour));
        return;
    }
    const int width = int(wordAt(p, 6));
    const int height = std::min(int(wordAt(p, 8)), maximumImageRows);
    // A graphic of 65535 dots a row is cut when printed; one column past the paper is kept so
    // that the cut is noted then, and no more is held.
    const QByteArrayView data = p.sliced(std::min<qsizetype>(10, p.size()));
    m_storedGraphic =
        width > 0 && height > 0 ? rasterDots(data, width, height, m_paper.width() + 1) : QImage();
    m_storedGraphicWidthScale = byteAt(p, 3) == 2 ? 2 : 1;
    m_storedGraphicHeightScale = byteAt(p, 4) == 2 ? 2 : 1;
}

void VirtualPrinter::printStoredGraphic()
{
    if (m_storedGraphic.isNull()) {
        mark(PaperMark::Kind::Note, QStringLiteral("no graphic to print"));
        return;
    }
    PaperImage image;
    image.dots = std::exchange(m_storedGraphic, QImage());
    image.widthMultiplier = m_storedGraphicWidthScale;
    image.heightMultiplier = m_storedGraphicHeightScale;
    printImageBlock(std::move(image));
}

// GS * x y: x * 8 columns of y * 8 dots, in column format.
void VirtualPrinter::defineDownloadedImage(const EscPosCommand &command)
{
    const QByteArrayView p = parameters(command);
    const int columns = int(byteAt(p, 0)) * 8;
    const int rowBytes = int(byteAt(p, 1));
    m_downloadedImage = columns > 0 && rowBytes > 0 ? columnDots(p.sliced(2), columns, rowBytes) : QImage();
}

void VirtualPrinter::printDownloadedImage(const EscPosCommand &command)
{
    if (m_downloadedImage.isNull()) {
        notDrawn(command, QStringLiteral("GS / (no image defined)"));
        return;
    }
    printDefinedImage(m_downloadedImage, scaleMode(byteAt(parameters(command), 0)));
}

// FS q n: n images, each xL xH yL yH and (x * 8) columns of y bytes; they replace all before.
void VirtualPrinter::defineNvImages(const EscPosCommand &command)
{
    const QByteArrayView p = parameters(command);
    const unsigned count = byteAt(p, 0);
    m_nvImages.clear();
    qsizetype at = 1;
    for (unsigned i = 0; i < count && at + 4 <= p.size(); ++i) {
        const int columns = int(wordAt(p, at)) * 8;
        const int rowBytes = int(wordAt(p, at + 2));
        const qsizetype size = qsizetype(columns) * rowBytes;
        const bool drawable =
            columns > 0 && rowBytes > 0 && columns <= 8 * 1024 && rowBytes * 8 <= maximumImageRows;
        m_nvImages.push_back(drawable ? columnDots(p.sliced(at + 4), columns, rowBytes) : QImage());
        at += 4 + size;
    }
}

// What FS p prints is whatever the printer holds; the preview knows only what this stream
// defined.
void VirtualPrinter::printNvImage(const EscPosCommand &command)
{
    const QByteArrayView p = parameters(command);
    const unsigned number = byteAt(p, 0);
    if (number == 0 || number > m_nvImages.size() || m_nvImages[number - 1].isNull()) {
        notDrawn(command, QStringLiteral("FS p %1 (image not defined)").arg(number));
        return;
    }
    printDefinedImage(m_nvImages[number - 1], scaleMode(byteAt(p, 1)));
}

void VirtualPrinter::printDefinedImage(const QImage &dots, int mode)
{
    PaperImage image;
    image.dots = dots;
    image.widthMultiplier = (mode & 1) ? 2 : 1;
    image.heightMultiplier = (mode & 2) ? 2 : 1;
    printImageBlock(std::move(image));
}

// An image printed by itself: the row before it printed, then the image justified, and the
// paper fed by its height.
void VirtualPrinter::printImageBlock(PaperImage image)
{
    printRow(0);
    noteSkippedBlank();
    const int fullWidth = image.dots.width();
    const int width = std::min(fullWidth, m_paper.width() / image.widthMultiplier);
    if (width <= 0)
        return;
    if (width < fullWidth) {
        image.dots = image.dots.copy(0, 0, width, image.dots.height());
        mark(PaperMark::Kind::Note, QStringLiteral("image cut to the paper"));
    }
    placeImageBlock(std::move(image));
}

// The image, no wider than the paper, justified at the current line; the paper feeds by its
// height.
void VirtualPrinter::placeImageBlock(PaperImage image)
{
    const int printed = image.dots.width() * image.widthMultiplier;
    if (m_justification == 1)
        image.x = (m_paper.width() - printed) / 2;
    else if (m_justification == 2)
        image.x = m_paper.width() - printed;
    image.top = m_y;
    m_y += image.dots.height() * image.heightMultiplier;
    m_contentEnd = m_y;
    m_paper.addImage(std::move(image));
}
