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

struct Table
{
    quint32 format = 0;
    quint32 offset = 0;
    bool present = false;
};

struct GlyphPlace
{
    int leftBearing = 0;
    int rightBearing = 0;
    int ascent = 0;
    int descent = 0;
    quint32 offset = 0; // of its rows in the bitmap data
};

// What the font takes from a PCF file.
struct PcfFont
{
    int ascent = 0;
    int cellWidth = 0;
    int cellHeight = 0;
    std::vector<GlyphPlace> glyphs;
    qint64 bitmapStart = 0;
    quint32 bitmapSize = 0;
    quint32 bitmapFormat = 0;
    QHash<char32_t, int> glyphIndex;
    int defaultCharacter = 0;
};

// Walks a PCF file's sections in the order each needs the one before: the table of contents,
// the accelerators (the font's ascent and descent), the metrics, the bitmaps, the encodings.
// Each section is checked as it is read; the first damaged one is the reason a load fails.
class PcfReader
{
public:
    explicit PcfReader(const QByteArray &data) : m_data(data), m_reader(data) {}

    bool read(PcfFont *font, QString *error)
    {
        if (!readTableOfContents(error))
            return false;
        readAccelerators(font);
        return readMetrics(font, error) && readBitmaps(font, error) && readEncodings(font, error);
    }

private:
    static bool fail(QString *error, const QString &reason)
    {
        *error = reason;
        return false;
    }

    // Each table begins with its format, in the least significant byte first; the format
    // says the byte order of the rest.
    quint32 openTable(const Table &table)
    {
        m_reader.setMsbFirst(false);
        m_reader.seek(table.offset);
        const quint32 format = m_reader.u32();
        m_reader.setMsbFirst(format & pcfByteMsb);
        return format;
    }

    bool readTableOfContents(QString *error);
    void readAccelerators(PcfFont *font);
    bool readMetrics(PcfFont *font, QString *error);
    GlyphPlace readGlyphMetrics(bool compressed, int *width);
    bool readBitmaps(PcfFont *font, QString *error);
    bool readEncodings(PcfFont *font, QString *error);

    const QByteArray &m_data;
    Reader m_reader;
    Table m_accelerators;
    Table m_metrics;
    Table m_bitmaps;
    Table m_encodings;
    int m_descent = 0;
};

bool PcfReader::readTableOfContents(QString *error)
{
    m_reader.seek(4);
    const qint32 tableCount = m_reader.i32();
    if (tableCount <= 0 || tableCount > 64)
        return fail(error, QStringLiteral("not a PCF font"));
    for (qint32 i = 0; i < tableCount; ++i) {
        const quint32 type = m_reader.u32();
        Table table;
        table.format = m_reader.u32();
        m_reader.u32(); // size
        table.offset = m_reader.u32();
        table.present = true;
        if (type == pcfBdfAccelerators || (type == pcfAccelerators && !m_accelerators.present))
            m_accelerators = table;
        else if (type == pcfMetrics)
            m_metrics = table;
        else if (type == pcfBitmaps)
            m_bitmaps = table;
        else if (type == pcfEncodings)
            m_encodings = table;
    }
    if (!m_reader.ok() || !m_accelerators.present || !m_metrics.present || !m_bitmaps.present ||
        !m_encodings.present)
        return fail(error, QStringLiteral("a table of the font is missing"));
    return true;
}

// The font's ascent and descent give the cell every glyph is placed in.
void PcfReader::readAccelerators(PcfFont *font)
{
    openTable(m_accelerators);
    m_reader.seek(m_reader.position() + 8); // the eight flag bytes
    font->ascent = m_reader.i32();
    m_descent = m_reader.i32();
}

GlyphPlace PcfReader::readGlyphMetrics(bool compressed, int *width)
{
    GlyphPlace glyph;
    if (compressed) {
        glyph.leftBearing = m_reader.u8() - 0x80;
        glyph.rightBearing = m_reader.u8() - 0x80;
        *width = m_reader.u8() - 0x80;
        glyph.ascent = m_reader.u8() - 0x80;
        glyph.descent = m_reader.u8() - 0x80;
    } else {
        glyph.leftBearing = m_reader.i16();
        glyph.rightBearing = m_reader.i16();
        *width = m_reader.i16();
        glyph.ascent = m_reader.i16();
        glyph.descent = m_reader.i16();
        m_reader.i16(); // attributes
    }
    return glyph;
}

// Metrics: where each glyph's bitmap sits in the cell.
bool PcfReader::readMetrics(PcfFont *font, QString *error)
{
    const bool compressed = openTable(m_metrics) & pcfCompressedMetrics;
    const int glyphCount = compressed ? m_reader.i16() : m_reader.i32();
    if (glyphCount <= 0 || glyphCount > 65536)
        return fail(error, QStringLiteral("damaged metrics"));
    font->glyphs.reserve(size_t(glyphCount));
    for (int i = 0; i < glyphCount; ++i) {
        int width = 0;
        font->glyphs.push_back(readGlyphMetrics(compressed, &width));
        font->cellWidth = std::max(font->cellWidth, width);
    }
    font->cellHeight = font->ascent + m_descent;
    if (!m_reader.ok() || font->cellWidth <= 0 || font->cellWidth > 64 || font->cellHeight <= 0 ||
        font->cellHeight > 128)
        return fail(error, QStringLiteral("damaged metrics"));
    return true;
}

// Bitmaps: each glyph's rows, padded, in the file's byte and bit order.
bool PcfReader::readBitmaps(PcfFont *font, QString *error)
{
    font->bitmapFormat = openTable(m_bitmaps);
    if (m_reader.i32() != qint32(font->glyphs.size()))
        return fail(error, QStringLiteral("damaged bitmaps"));
    for (GlyphPlace &glyph : font->glyphs)
        glyph.offset = m_reader.u32();
    quint32 sizes[4];
    for (quint32 &size : sizes)
        size = m_reader.u32();
    font->bitmapStart = m_reader.position();
    font->bitmapSize = sizes[font->bitmapFormat & 3];
    if (!m_reader.ok() || font->bitmapStart + qint64(font->bitmapSize) > m_data.size())
        return fail(error, QStringLiteral("damaged bitmaps"));
    return true;
}

// Encodings: from a character code to a glyph.
bool PcfReader::readEncodings(PcfFont *font, QString *error)
{
    openTable(m_encodings);
    const int firstColumn = m_reader.i16();
    const int lastColumn = m_reader.i16();
    const int firstRow = m_reader.i16();
    const int lastRow = m_reader.i16();
    font->defaultCharacter = m_reader.i16();
    if (!m_reader.ok() || firstColumn < 0 || lastColumn > 255 || firstColumn > lastColumn || firstRow < 0 ||
        lastRow > 255 || firstRow > lastRow)
        return fail(error, QStringLiteral("damaged encodings"));
    const int glyphCount = int(font->glyphs.size());
    for (int row = firstRow; row <= lastRow; ++row) {
        for (int column = firstColumn; column <= lastColumn; ++column) {
            const quint16 glyph = quint16(m_reader.i16());
            if (glyph != 0xffff && glyph < glyphCount)
                font->glyphIndex.insert(char32_t(row << 8 | column), glyph);
        }
    }
    if (!m_reader.ok())
        return fail(error, QStringLiteral("damaged encodings"));
    return true;
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
    PcfFont font;
    if (!PcfReader(data).read(&font, error))
        return false;

    m_glyphs.reserve(font.glyphs.size());
    for (const GlyphPlace &glyph : font.glyphs)
        m_glyphs.push_back(
            {glyph.leftBearing, glyph.rightBearing, glyph.ascent, glyph.descent, glyph.offset});
    m_bitmapStart = font.bitmapStart;
    m_bitmapSize = font.bitmapSize;
    m_bitmapFormat = font.bitmapFormat;
    m_fontAscent = font.ascent;
    m_cells.assign(m_glyphs.size() * size_t(font.cellWidth) * size_t(font.cellHeight), 0);
    m_decoded.assign(m_glyphs.size(), false);
    m_glyphIndex = font.glyphIndex;
    m_defaultGlyph = m_glyphIndex.value(char32_t(font.defaultCharacter), m_glyphIndex.value(U'?', 0));
    m_cellWidth = m_fontWidth = font.cellWidth;
    m_cellHeight = m_fontHeight = font.cellHeight;
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
