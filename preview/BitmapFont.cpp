#include "preview/BitmapFont.h"

#include <QFile>

#include <zlib.h>

#include <cstring>

namespace {

// Table types and format bits of the PCF format (X11's pcf.h).
constexpr quint32 pcfAccelerators = 1 << 1;
constexpr quint32 pcfMetrics = 1 << 2;
constexpr quint32 pcfBitmaps = 1 << 3;
constexpr quint32 pcfEncodings = 1 << 5;
constexpr quint32 pcfBdfAccelerators = 1 << 8;
constexpr quint32 pcfByteMsb = 1 << 2;
constexpr quint32 pcfBitMsb = 1 << 3;
constexpr quint32 pcfCompressedMetrics = 0x100;

// Every read is checked against the end of the data, so a damaged file fails to load instead of
// reading out of bounds.
class Reader
{
public:
    explicit Reader(const QByteArray &data) : m_data(data) {}

    bool seek(qint64 offset)
    {
        m_position = offset;
        return offset >= 0 && offset <= m_data.size();
    }
    bool ok() const { return m_ok; }
    void setMsbFirst(bool msb) { m_msb = msb; }

    quint32 u32()
    {
        if (!need(4))
            return 0;
        const auto *p = reinterpret_cast<const unsigned char *>(m_data.constData() + m_position);
        m_position += 4;
        return m_msb ? (quint32(p[0]) << 24 | quint32(p[1]) << 16 | quint32(p[2]) << 8 | p[3])
                     : (quint32(p[3]) << 24 | quint32(p[2]) << 16 | quint32(p[1]) << 8 | p[0]);
    }
    qint32 i32() { return qint32(u32()); }
    qint16 i16()
    {
        if (!need(2))
            return 0;
        const auto *p = reinterpret_cast<const unsigned char *>(m_data.constData() + m_position);
        m_position += 2;
        return qint16(m_msb ? (p[0] << 8 | p[1]) : (p[1] << 8 | p[0]));
    }
    quint8 u8()
    {
        if (!need(1))
            return 0;
        return quint8(m_data[m_position++]);
    }
    qint64 position() const { return m_position; }

private:
    bool need(qint64 count)
    {
        if (m_position < 0 || m_position + count > m_data.size()) {
            m_ok = false;
            return false;
        }
        return true;
    }

    const QByteArray &m_data;
    qint64 m_position = 0;
    bool m_msb = false;
    bool m_ok = true;
};

struct Table
{
    quint32 format = 0;
    quint32 offset = 0;
    bool present = false;
};

struct Metrics
{
    int leftBearing;
    int rightBearing;
    int ascent;
    int descent;
};

QByteArray gunzip(const QByteArray &data, QString *error)
{
    z_stream stream;
    std::memset(&stream, 0, sizeof stream);
    if (inflateInit2(&stream, 16 + MAX_WBITS) != Z_OK) {
        *error = QStringLiteral("cannot start the decompressor");
        return {};
    }
    QByteArray out;
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.constData()));
    stream.avail_in = uInt(data.size());
    int status = Z_OK;
    char buffer[65536];
    // A font is a few hundred KiB; anything past 16 MiB is not one.
    while (status == Z_OK && out.size() < 16 * 1024 * 1024) {
        stream.next_out = reinterpret_cast<Bytef *>(buffer);
        stream.avail_out = sizeof buffer;
        status = inflate(&stream, Z_NO_FLUSH);
        out.append(buffer, qsizetype(sizeof buffer - stream.avail_out));
    }
    inflateEnd(&stream);
    if (status != Z_STREAM_END) {
        *error = QStringLiteral("damaged gzip data");
        return {};
    }
    return out;
}

} // namespace

bool BitmapFont::load(const QString &fileName, QString *error)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: %2").arg(fileName, file.errorString());
        return false;
    }
    QString reason;
    if (!loadFromData(file.readAll(), &reason)) {
        *error = QStringLiteral("%1: %2").arg(fileName, reason);
        return false;
    }
    return true;
}

bool BitmapFont::loadFromData(const QByteArray &raw, QString *error)
{
    *this = BitmapFont();
    QByteArray data = raw;
    if (raw.startsWith("\x1f\x8b")) {
        data = gunzip(raw, error);
        if (data.isEmpty())
            return false;
    }
    if (!data.startsWith("\1fcp")) {
        *error = QStringLiteral("not a PCF font");
        return false;
    }

    Reader reader(data);
    reader.seek(4);
    const qint32 tableCount = reader.i32();
    if (tableCount <= 0 || tableCount > 64) {
        *error = QStringLiteral("not a PCF font");
        return false;
    }
    Table accelerators, metricsTable, bitmapsTable, encodingsTable;
    for (qint32 i = 0; i < tableCount; ++i) {
        const quint32 type = reader.u32();
        Table table;
        table.format = reader.u32();
        reader.u32(); // size
        table.offset = reader.u32();
        table.present = true;
        if (type == pcfBdfAccelerators || (type == pcfAccelerators && !accelerators.present))
            accelerators = table;
        else if (type == pcfMetrics)
            metricsTable = table;
        else if (type == pcfBitmaps)
            bitmapsTable = table;
        else if (type == pcfEncodings)
            encodingsTable = table;
    }
    if (!reader.ok() || !accelerators.present || !metricsTable.present || !bitmapsTable.present ||
        !encodingsTable.present) {
        *error = QStringLiteral("a table of the font is missing");
        return false;
    }
    const auto openTable = [&](const Table &table) {
        reader.setMsbFirst(false);
        reader.seek(table.offset);
        const quint32 format = reader.u32();
        reader.setMsbFirst(format & pcfByteMsb);
        return format;
    };

    // The font's ascent and descent give the cell every glyph is placed in.
    openTable(accelerators);
    reader.seek(reader.position() + 8); // the eight flag bytes
    const int fontAscent = reader.i32();
    const int fontDescent = reader.i32();

    // Metrics: where each glyph's bitmap sits in the cell.
    std::vector<Metrics> metrics;
    const quint32 metricsFormat = openTable(metricsTable);
    const int glyphCount = (metricsFormat & pcfCompressedMetrics) ? reader.i16() : reader.i32();
    if (glyphCount <= 0 || glyphCount > 65536) {
        *error = QStringLiteral("damaged metrics");
        return false;
    }
    metrics.reserve(size_t(glyphCount));
    int cellWidth = 0;
    for (int i = 0; i < glyphCount; ++i) {
        Metrics m;
        int width;
        if (metricsFormat & pcfCompressedMetrics) {
            m.leftBearing = reader.u8() - 0x80;
            m.rightBearing = reader.u8() - 0x80;
            width = reader.u8() - 0x80;
            m.ascent = reader.u8() - 0x80;
            m.descent = reader.u8() - 0x80;
        } else {
            m.leftBearing = reader.i16();
            m.rightBearing = reader.i16();
            width = reader.i16();
            m.ascent = reader.i16();
            m.descent = reader.i16();
            reader.i16(); // attributes
        }
        cellWidth = std::max(cellWidth, width);
        metrics.push_back(m);
    }
    const int cellHeight = fontAscent + fontDescent;
    if (!reader.ok() || cellWidth <= 0 || cellWidth > 64 || cellHeight <= 0 || cellHeight > 128) {
        *error = QStringLiteral("damaged metrics");
        return false;
    }

    // Bitmaps: each glyph's rows, padded, in the file's byte and bit order.
    const quint32 bitmapFormat = openTable(bitmapsTable);
    if (reader.i32() != glyphCount) {
        *error = QStringLiteral("damaged bitmaps");
        return false;
    }
    std::vector<quint32> offsets(static_cast<size_t>(glyphCount));
    for (quint32 &offset : offsets)
        offset = reader.u32();
    quint32 sizes[4];
    for (quint32 &size : sizes)
        size = reader.u32();
    const qint64 bitmapStart = reader.position();
    const quint32 bitmapSize = sizes[bitmapFormat & 3];
    if (!reader.ok() || bitmapStart + qint64(bitmapSize) > data.size()) {
        *error = QStringLiteral("damaged bitmaps");
        return false;
    }
    m_glyphs.reserve(size_t(glyphCount));
    for (int g = 0; g < glyphCount; ++g) {
        const Metrics &m = metrics[size_t(g)];
        m_glyphs.push_back({m.leftBearing, m.rightBearing, m.ascent, m.descent, offsets[size_t(g)]});
    }
    m_bitmapStart = bitmapStart;
    m_bitmapSize = bitmapSize;
    m_bitmapFormat = bitmapFormat;
    m_fontAscent = fontAscent;
    m_cells.assign(size_t(glyphCount) * size_t(cellWidth) * size_t(cellHeight), 0);
    m_decoded.assign(size_t(glyphCount), false);

    // Encodings: from a character code to a glyph.
    openTable(encodingsTable);
    const int firstColumn = reader.i16();
    const int lastColumn = reader.i16();
    const int firstRow = reader.i16();
    const int lastRow = reader.i16();
    const int defaultCharacter = reader.i16();
    if (!reader.ok() || firstColumn < 0 || lastColumn > 255 || firstColumn > lastColumn || firstRow < 0 ||
        lastRow > 255 || firstRow > lastRow) {
        *error = QStringLiteral("damaged encodings");
        return false;
    }
    for (int row = firstRow; row <= lastRow; ++row) {
        for (int column = firstColumn; column <= lastColumn; ++column) {
            const quint16 glyph = quint16(reader.i16());
            if (glyph != 0xffff && glyph < glyphCount)
                m_glyphIndex.insert(char32_t(row << 8 | column), glyph);
        }
    }
    if (!reader.ok()) {
        *error = QStringLiteral("damaged encodings");
        return false;
    }
    m_defaultGlyph = m_glyphIndex.value(char32_t(defaultCharacter), m_glyphIndex.value(U'?', 0));
    m_cellWidth = m_fontWidth = cellWidth;
    m_cellHeight = m_fontHeight = cellHeight;
    m_data = data;
    return true;
}

bool BitmapFont::padCell(int width, int height)
{
    if (isNull() || width < m_fontWidth || height < m_fontHeight || width > 64 || height > 128)
        return false;
    m_cellWidth = width;
    m_cellHeight = height;
    m_cells.assign(m_glyphs.size() * size_t(width) * size_t(height), 0);
    m_decoded.assign(m_glyphs.size(), false);
    return true;
}

void BitmapFont::stretchIntoPadding(int glyph) const
{
    unsigned char *cell = m_cells.data() + size_t(glyph) * size_t(m_cellWidth) * size_t(m_cellHeight);
    const auto dot = [&](int x, int y) -> unsigned char & {
        return cell[size_t(y) * size_t(m_cellWidth) + size_t(x)];
    };
    for (int y = 0; y < m_fontHeight; ++y) {
        for (int x = m_fontWidth; x < m_cellWidth; ++x)
            dot(x, y) = dot(m_fontWidth - 1, y);
    }
    for (int y = m_fontHeight; y < m_cellHeight; ++y) {
        for (int x = 0; x < m_cellWidth; ++x)
            dot(x, y) = dot(x, m_fontHeight - 1);
    }
}

void BitmapFont::decode(int glyph) const
{
    m_decoded[size_t(glyph)] = true;
    const Glyph &m = m_glyphs[size_t(glyph)];
    const int pad = 1 << (m_bitmapFormat & 3);
    const int unit = 1 << ((m_bitmapFormat >> 4) & 3);
    const auto *bits = reinterpret_cast<const unsigned char *>(m_data.constData() + m_bitmapStart);
    const int width = m.rightBearing - m.leftBearing;
    const int height = m.ascent + m.descent;
    const int rowBytes = (width + pad * 8 - 1) / (pad * 8) * pad;
    unsigned char *cell = m_cells.data() + size_t(glyph) * size_t(m_cellWidth) * size_t(m_cellHeight);
    for (int row = 0; row < height; ++row) {
        const int y = m_fontAscent - m.ascent + row;
        for (int column = 0; column < width; ++column) {
            qint64 byteIndex = qint64(m.offset) + qint64(row) * rowBytes + column / 8;
            // Bytes inside a scan unit stand in the file's byte order.
            if (!(m_bitmapFormat & pcfByteMsb) && unit > 1)
                byteIndex = byteIndex - byteIndex % unit + (unit - 1 - byteIndex % unit);
            if (byteIndex < 0 || byteIndex >= m_bitmapSize)
                continue;
            const int bit = (m_bitmapFormat & pcfBitMsb) ? 7 - column % 8 : column % 8;
            const int x = m.leftBearing + column;
            if (x >= 0 && x < m_cellWidth && y >= 0 && y < m_cellHeight && (bits[byteIndex] >> bit) & 1)
                cell[size_t(y) * size_t(m_cellWidth) + size_t(x)] = 1;
        }
    }
}

const unsigned char *BitmapFont::cell(char32_t character) const
{
    const int glyph = m_glyphIndex.value(character, m_defaultGlyph);
    if (!m_decoded[size_t(glyph)]) {
        decode(glyph);
        // Box drawing (U+2500 to U+257F) and block elements (U+2580 to U+259F).
        const bool joins = character >= 0x2500 && character <= 0x259f;
        if (joins && (m_cellWidth > m_fontWidth || m_cellHeight > m_fontHeight))
            stretchIntoPadding(glyph);
    }
    return m_cells.data() + size_t(glyph) * size_t(m_cellWidth) * size_t(m_cellHeight);
}
