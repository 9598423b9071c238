#include "printerapp/ReceiptBitmap.h"

#include <QImage>

#include <algorithm>
#include <vector>

namespace {

// The picture at the paper's width as 8-bit grey, transparent parts blended onto white paper.
QImage greyOnWhite(const QImage &image, int widthDots)
{
    const QImage scaled =
        image.scaledToWidth(widthDots, Qt::SmoothTransformation).convertToFormat(QImage::Format_ARGB32);
    QImage grey(scaled.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < scaled.height(); ++y) {
        const auto *source = reinterpret_cast<const QRgb *>(scaled.constScanLine(y));
        uchar *target = grey.scanLine(y);
        for (int x = 0; x < scaled.width(); ++x) {
            const int alpha = qAlpha(source[x]);
            target[x] = uchar((qGray(source[x]) * alpha + 255 * (255 - alpha)) / 255);
        }
    }
    return grey;
}

// Floyd-Steinberg: each dot's rounding error goes 7/16 right, 3/16 below left, 5/16 below and
// 1/16 below right. Two rows of errors suffice.
QByteArray diffuse(const QImage &grey, int bytesPerRow)
{
    const int width = grey.width();
    QByteArray bits(qsizetype(bytesPerRow) * grey.height(), '\0');
    std::vector<int> current(width + 2, 0);
    std::vector<int> next(width + 2, 0);
    for (int y = 0; y < grey.height(); ++y) {
        const uchar *line = grey.constScanLine(y);
        std::fill(next.begin(), next.end(), 0);
        for (int x = 0; x < width; ++x) {
            const int wanted = line[x] + current[x + 1] / 16;
            const bool black = wanted < 128;
            const int error = wanted - (black ? 0 : 255);
            if (black)
                bits[qsizetype(y) * bytesPerRow + x / 8] |= char(0x80 >> (x % 8));
            current[x + 2] += error * 7;
            next[x] += error * 3;
            next[x + 1] += error * 5;
            next[x + 2] += error;
        }
        std::swap(current, next);
    }
    return bits;
}

void appendLittleEndian16(QByteArray &out, int value)
{
    out += char(value & 0xff);
    out += char((value >> 8) & 0xff);
}

} // namespace

ReceiptBitmap ReceiptBitmap::fromImage(const QImage &image, int widthDots)
{
    ReceiptBitmap bitmap;
    if (image.isNull() || widthDots <= 0 || widthDots % 8 != 0)
        return bitmap;
    const QImage grey = greyOnWhite(image, widthDots);
    bitmap.m_bytesPerRow = widthDots / 8;
    bitmap.m_rows = grey.height();
    bitmap.m_bits = diffuse(grey, bitmap.m_bytesPerRow);
    return bitmap;
}

ReceiptBitmap ReceiptBitmap::fromDots(int bytesPerRow, int rows, const QByteArray &bits)
{
    ReceiptBitmap bitmap;
    if (bytesPerRow <= 0 || rows <= 0 || bits.size() != qsizetype(bytesPerRow) * rows)
        return bitmap;
    bitmap.m_bytesPerRow = bytesPerRow;
    bitmap.m_rows = rows;
    bitmap.m_bits = bits;
    return bitmap;
}

ReceiptBitmap ReceiptBitmap::withoutBlankFoot() const
{
    int rows = m_rows;
    while (rows > 0) {
        const char *row = m_bits.constData() + qsizetype(rows - 1) * m_bytesPerRow;
        if (std::any_of(row, row + m_bytesPerRow, [](char byte) { return byte != 0; }))
            break;
        --rows;
    }
    ReceiptBitmap trimmed;
    if (rows == 0)
        return trimmed;
    trimmed.m_bytesPerRow = m_bytesPerRow;
    trimmed.m_rows = rows;
    trimmed.m_bits = m_bits.left(qsizetype(rows) * m_bytesPerRow);
    return trimmed;
}

bool ReceiptBitmap::dot(int x, int y) const
{
    if (x < 0 || y < 0 || x >= widthDots() || y >= m_rows)
        return false;
    return (static_cast<uchar>(m_bits[qsizetype(y) * m_bytesPerRow + x / 8]) & (0x80 >> (x % 8))) != 0;
}

int ReceiptBitmap::blackDots() const
{
    int count = 0;
    for (const char byte : m_bits)
        count += qPopulationCount(static_cast<quint8>(byte));
    return count;
}

QByteArray ReceiptBitmap::rasterCommands(int bandRows) const
{
    const int band = qBound(1, bandRows, MaximumBandRows);
    QByteArray out;
    for (int first = 0; first < m_rows; first += band) {
        const int rows = qMin(band, m_rows - first);
        out += QByteArrayLiteral("\x1d\x76\x30");
        out += '\0'; // normal size: one dot of the picture per dot of the head
        appendLittleEndian16(out, m_bytesPerRow);
        appendLittleEndian16(out, rows);
        out += m_bits.mid(qsizetype(first) * m_bytesPerRow, qsizetype(rows) * m_bytesPerRow);
    }
    return out;
}
