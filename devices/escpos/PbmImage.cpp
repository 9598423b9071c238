#include "devices/escpos/PbmImage.h"

#include <QFile>

#include <algorithm>

namespace {

// Reads the header's whitespace-separated fields, skipping comments, as netpbm does.
class HeaderReader
{
public:
    explicit HeaderReader(const QByteArray &data) : m_data(data) {}

    void skipSpaceAndComments()
    {
        while (m_position < m_data.size()) {
            const char c = m_data[m_position];
            if (c == '#') {
                while (m_position < m_data.size() && m_data[m_position] != '\n' && m_data[m_position] != '\r')
                    ++m_position;
            } else if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f') {
                ++m_position;
            } else {
                return;
            }
        }
    }

    // A positive decimal number, or -1.
    int number(int limit)
    {
        skipSpaceAndComments();
        qint64 value = -1;
        while (m_position < m_data.size() && m_data[m_position] >= '0' && m_data[m_position] <= '9') {
            value = (value < 0 ? 0 : value) * 10 + (m_data[m_position] - '0');
            ++m_position;
            if (value > limit)
                return -1;
        }
        return int(value);
    }

    qsizetype position() const { return m_position; }
    void advance() { ++m_position; }

private:
    const QByteArray &m_data;
    qsizetype m_position = 0;
};

// Dots beyond the width are padding and must not print.
void clearPadding(char *row, int width)
{
    const int rowBytes = (width + 7) / 8;
    if (width % 8)
        row[rowBytes - 1] = char(row[rowBytes - 1] & (0xff << (8 - width % 8)));
}

// The raw format's rows, which stand as the image keeps them; exactly one whitespace byte
// separates the header from them.
bool readRawDots(const QByteArray &data, qsizetype headerEnd, int width, int height, QByteArray *rows,
                 QString *error)
{
    const qsizetype start = headerEnd + 1;
    if (data.size() - start < rows->size()) {
        *error = QStringLiteral("the image data is cut short");
        return false;
    }
    const int rowBytes = (width + 7) / 8;
    for (int row = 0; row < height; ++row) {
        char *out = rows->data() + qsizetype(row) * rowBytes;
        std::copy_n(data.constData() + start + qsizetype(row) * rowBytes, rowBytes, out);
        clearPadding(out, width);
    }
    return true;
}

// Moves *position to the plain format's next digit, past whitespace and comments.
bool skipToDigit(const QByteArray &data, qsizetype *position, QString *error)
{
    qsizetype &at = *position;
    while (at < data.size() && data[at] != '0' && data[at] != '1') {
        if (data[at] == '#') {
            while (at < data.size() && data[at] != '\n')
                ++at;
        } else if (!QChar::isSpace(uchar(data[at]))) {
            *error = QStringLiteral("unexpected character in the image data");
            return false;
        } else {
            ++at;
        }
    }
    if (at >= data.size()) {
        *error = QStringLiteral("the image data is cut short");
        return false;
    }
    return true;
}

// The plain format's dots, one digit each, 1 black.
bool readPlainDots(const QByteArray &data, qsizetype headerEnd, int width, int height, QByteArray *rows,
                   QString *error)
{
    const int rowBytes = (width + 7) / 8;
    qsizetype position = headerEnd;
    for (qint64 dot = 0; dot < qint64(width) * height; ++dot) {
        if (!skipToDigit(data, &position, error))
            return false;
        if (data[position] == '1') {
            const int x = int(dot % width);
            const int y = int(dot / width);
            (*rows)[qsizetype(y) * rowBytes + x / 8] |= char(0x80 >> (x % 8));
        }
        ++position;
    }
    return true;
}

} // namespace

bool PbmImage::load(const QString &fileName, QString *error)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot read %1: %2").arg(fileName, file.errorString());
        return false;
    }
    // Larger than the largest image allowed holds no logo worth reading.
    const qint64 limit = 64 + qint64(maximumWidth + 1) * 2 * maximumHeight;
    const QByteArray data = file.read(limit + 1);
    if (data.size() > limit) {
        *error = QStringLiteral("%1: too large for a logo").arg(fileName);
        return false;
    }
    if (!loadFromData(data, error)) {
        *error = fileName + QLatin1String(": ") + *error;
        return false;
    }
    return true;
}

bool PbmImage::loadFromData(const QByteArray &data, QString *error)
{
    *this = PbmImage();
    if (data.size() < 2 || data[0] != 'P' || (data[1] != '1' && data[1] != '4')) {
        *error = QStringLiteral("not a PBM image (P1 or P4)");
        return false;
    }
    const bool raw = data[1] == '4';
    HeaderReader header(data);
    header.advance();
    header.advance();
    const int width = header.number(maximumWidth);
    const int height = header.number(maximumHeight);
    if (width <= 0 || height <= 0) {
        *error = QStringLiteral("width and height must be 1 to %1 dots").arg(maximumWidth);
        return false;
    }
    QByteArray rows(qsizetype((width + 7) / 8) * height, '\0');
    const bool read = raw ? readRawDots(data, header.position(), width, height, &rows, error)
                          : readPlainDots(data, header.position(), width, height, &rows, error);
    if (!read)
        return false;
    m_width = width;
    m_height = height;
    m_rows = rows;
    return true;
}

PbmImage PbmImage::fromRows(int width, int height, const QByteArray &rows)
{
    PbmImage image;
    if (width <= 0 || height <= 0 || rows.size() != qsizetype((width + 7) / 8) * height)
        return image;
    image.m_width = width;
    image.m_height = height;
    image.m_rows = rows;
    return image;
}

PbmImage PbmImage::croppedToWidth(int dots) const
{
    if (dots >= m_width || dots <= 0)
        return dots <= 0 ? PbmImage() : *this;
    PbmImage cropped;
    cropped.m_width = dots;
    cropped.m_height = m_height;
    const int newRowBytes = cropped.bytesPerRow();
    cropped.m_rows = QByteArray(qsizetype(newRowBytes) * m_height, '\0');
    for (int row = 0; row < m_height; ++row) {
        char *out = cropped.m_rows.data() + qsizetype(row) * newRowBytes;
        std::copy_n(m_rows.constData() + qsizetype(row) * bytesPerRow(), newRowBytes, out);
        clearPadding(out, dots);
    }
    return cropped;
}
