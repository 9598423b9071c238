// Reading a PCF font file section by section, and the reason given for each section that is
// missing or damaged: a small font of two glyphs is written here, then spoilt a part at a time.

#include "preview/BitmapFont.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace {

// An 8x4 font in the least significant byte first order: '?' (the default character, a frame)
// and 'A' (a bar across its second row); '@' is in the encoding range without a glyph.
struct PcfFile
{
    qint32 tableCount = 4;
    bool withEncodings = true;
    qint32 glyphCount = 2;       // in the metrics
    qint32 bitmapGlyphCount = 2; // in the bitmaps
    quint32 bitmapSize = 8;
    qint16 firstColumn = '?';
    qint16 lastColumn = 'A';
    int ascent = 3;

    static void u32(QByteArray *out, quint32 value)
    {
        for (int i = 0; i < 4; ++i)
            out->append(char(value >> (8 * i)));
    }
    static void i16(QByteArray *out, qint16 value)
    {
        out->append(char(value & 0xff));
        out->append(char((value >> 8) & 0xff));
    }

    QByteArray accelerators() const
    {
        QByteArray table;
        u32(&table, 0);
        table.append(8, '\0'); // flags
        u32(&table, quint32(ascent));
        u32(&table, 1); // descent
        return table;
    }
    QByteArray metrics() const
    {
        QByteArray table;
        u32(&table, 0);
        u32(&table, quint32(glyphCount));
        for (int glyph = 0; glyph < glyphCount; ++glyph) {
            for (const qint16 value : {0, 8, 8, 3, 1, 0}) // bearings, width, ascent, descent, attributes
                i16(&table, value);
        }
        return table;
    }
    QByteArray bitmaps() const
    {
        QByteArray table;
        u32(&table, 1 << 3); // bits most significant first, rows padded to a byte
        u32(&table, quint32(bitmapGlyphCount));
        u32(&table, 0);
        u32(&table, 4);
        for (const quint32 size : {bitmapSize, 8u, 8u, 8u})
            u32(&table, size);
        table.append("\xff\x81\x81\xff", 4); // '?'
        table.append("\x00\xff\x00\x00", 4); // 'A'
        return table;
    }
    QByteArray encodings() const
    {
        QByteArray table;
        u32(&table, 0);
        for (const qint16 value : {firstColumn, lastColumn, qint16(0), qint16(0), qint16('?')})
            i16(&table, value);
        for (const qint16 glyph : {qint16(0), qint16(-1), qint16(1)}) // '?', '@', 'A'
            i16(&table, glyph);
        return table;
    }

    QByteArray bytes() const
    {
        const QByteArray tables[] = {accelerators(), metrics(), bitmaps(), encodings()};
        const quint32 types[] = {1 << 1, 1 << 2, 1 << 3, 1 << 5};
        const int present = withEncodings ? 4 : 3;
        QByteArray file("\1fcp");
        u32(&file, quint32(tableCount));
        quint32 offset = 8 + 16 * quint32(present);
        for (int i = 0; i < present; ++i) {
            u32(&file, types[i]);
            u32(&file, 0);
            u32(&file, quint32(tables[i].size()));
            u32(&file, offset);
            offset += quint32(tables[i].size());
        }
        for (int i = 0; i < present; ++i)
            file += tables[i];
        return file;
    }
};

QString reasonOf(const QByteArray &data)
{
    BitmapFont font;
    QString error;
    EXPECT_FALSE(font.loadFromData(data, &error));
    EXPECT_TRUE(font.isNull());
    return error;
}

TEST(BitmapFontFile, ReadsTheCellsAndDotsOfEachGlyph)
{
    BitmapFont font;
    QString error;
    ASSERT_TRUE(font.loadFromData(PcfFile().bytes(), &error)) << qPrintable(error);
    EXPECT_EQ(font.cellWidth(), 8);
    EXPECT_EQ(font.cellHeight(), 4);
    EXPECT_TRUE(font.hasGlyph(U'A'));
    EXPECT_FALSE(font.hasGlyph(U'@'));
    const unsigned char *a = font.cell(U'A');
    for (int x = 0; x < 8; ++x) {
        EXPECT_EQ(a[x], 0) << x;
        EXPECT_EQ(a[8 + x], 1) << x;
    }
    // A character without a glyph takes the default one: the frame of '?'.
    const unsigned char *missing = font.cell(U'@');
    EXPECT_EQ(missing[0], 1);
    EXPECT_EQ(missing[8 + 1], 0);
    EXPECT_EQ(missing[8 + 7], 1);
}

TEST(BitmapFontFile, ABadHeaderIsNotAPcfFont)
{
    EXPECT_EQ(reasonOf("\1fcq"), QStringLiteral("not a PCF font"));
    PcfFile noTables;
    noTables.tableCount = 0;
    EXPECT_EQ(reasonOf(noTables.bytes()), QStringLiteral("not a PCF font"));
    PcfFile tooMany;
    tooMany.tableCount = 65;
    EXPECT_EQ(reasonOf(tooMany.bytes()), QStringLiteral("not a PCF font"));
    EXPECT_EQ(reasonOf(QByteArray("\x1f\x8b\x08\x00garbage", 12)), QStringLiteral("damaged gzip data"));
}

TEST(BitmapFontFile, EachDamagedSectionIsNamed)
{
    PcfFile missing;
    missing.tableCount = 3;
    missing.withEncodings = false;
    EXPECT_EQ(reasonOf(missing.bytes()), QStringLiteral("a table of the font is missing"));

    PcfFile noGlyphs;
    noGlyphs.glyphCount = 0;
    EXPECT_EQ(reasonOf(noGlyphs.bytes()), QStringLiteral("damaged metrics"));
    PcfFile noHeight;
    noHeight.ascent = -1;
    EXPECT_EQ(reasonOf(noHeight.bytes()), QStringLiteral("damaged metrics"));

    PcfFile otherCount;
    otherCount.bitmapGlyphCount = 3;
    EXPECT_EQ(reasonOf(otherCount.bytes()), QStringLiteral("damaged bitmaps"));
    PcfFile pastTheEnd;
    pastTheEnd.bitmapSize = 4000;
    EXPECT_EQ(reasonOf(pastTheEnd.bytes()), QStringLiteral("damaged bitmaps"));

    PcfFile backwards;
    backwards.firstColumn = 'B';
    EXPECT_EQ(reasonOf(backwards.bytes()), QStringLiteral("damaged encodings"));
    const QByteArray whole = PcfFile().bytes();
    EXPECT_EQ(reasonOf(whole.left(whole.size() - 3)), QStringLiteral("damaged encodings"));
}

TEST(BitmapFontFile, AFontThatFailsToLoadHasNoGlyphs)
{
    // Cut in the middle of the encodings: the characters read before the cut are not kept.
    const QByteArray whole = PcfFile().bytes();
    BitmapFont font;
    QString error;
    ASSERT_TRUE(font.loadFromData(whole, &error));
    EXPECT_FALSE(font.loadFromData(whole.left(whole.size() - 3), &error));
    EXPECT_FALSE(font.hasGlyph(U'?'));
    EXPECT_TRUE(font.isNull());
}

} // namespace
