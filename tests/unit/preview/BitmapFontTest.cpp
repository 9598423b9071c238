#include "preview/BitmapFont.h"
#include "preview/PaperPainter.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

int inkOf(const BitmapFont &font, char32_t character)
{
    const unsigned char *cell = font.cell(character);
    int ink = 0;
    for (int i = 0; i < font.cellWidth() * font.cellHeight(); ++i)
        ink += cell[i];
    return ink;
}

TEST(BitmapFont, ReadsTheTerminusCellsFromTheirFile)
{
    BitmapFont font;
    QString error;
    ASSERT_TRUE(font.load(PaperPainter::bitmapFontFile(false), &error)) << qPrintable(error);
    EXPECT_EQ(font.cellWidth(), 12);
    EXPECT_EQ(font.cellHeight(), 24);
    EXPECT_EQ(inkOf(font, U' '), 0);
    EXPECT_GT(inkOf(font, U'A'), 20);
    EXPECT_TRUE(font.hasGlyph(U'\u20ac')); // the euro sign
    EXPECT_TRUE(font.hasGlyph(U'\u2552')); // PC437's box drawing
}

TEST(BitmapFont, DrawsTheLetterLAsItsShape)
{
    BitmapFont font;
    QString error;
    ASSERT_TRUE(font.load(PaperPainter::bitmapFontFile(false), &error)) << qPrintable(error);
    // 'L': ink down its left side and along its foot, none in its upper right.
    const unsigned char *cell = font.cell(U'L');
    const auto dot = [&](int x, int y) { return cell[y * font.cellWidth() + x] != 0; };
    int left = 0;
    int upperRight = 0;
    for (int y = 0; y < 24; ++y) {
        left += dot(1, y) || dot(2, y);
        upperRight += dot(9, y) && y < 12;
    }
    EXPECT_GT(left, 10);
    EXPECT_EQ(upperRight, 0);
}

TEST(BitmapFont, BoldHasMoreInk)
{
    BitmapFont regular;
    BitmapFont bold;
    QString error;
    ASSERT_TRUE(regular.load(PaperPainter::bitmapFontFile(false), &error)) << qPrintable(error);
    ASSERT_TRUE(bold.load(PaperPainter::bitmapFontFile(true), &error)) << qPrintable(error);
    EXPECT_GT(inkOf(bold, U'H'), inkOf(regular, U'H'));
}

TEST(BitmapFont, RefusesDamagedFiles)
{
    BitmapFont font;
    QString error;
    EXPECT_FALSE(font.loadFromData("not a font", &error));
    EXPECT_FALSE(error.isEmpty());
    QFile file(PaperPainter::bitmapFontFile(false));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray data = file.readAll();
    EXPECT_FALSE(font.loadFromData(data.left(data.size() / 2), &error));
    EXPECT_TRUE(font.isNull());
    EXPECT_FALSE(font.load(QStringLiteral("/nonexistent/font.pcf.gz"), &error));
}

TEST(BitmapFont, FontBSitsInANineBySeventeenCell)
{
    BitmapFont font;
    QString error;
    ASSERT_TRUE(font.load(PaperPainter::fontBFile(false), &error)) << qPrintable(error);
    EXPECT_EQ(font.cellWidth(), 8);
    EXPECT_EQ(font.cellHeight(), 16);
    ASSERT_TRUE(font.padCell(9, 17));
    EXPECT_EQ(font.cellWidth(), 9);
    EXPECT_EQ(font.cellHeight(), 17);
    EXPECT_TRUE(font.hasGlyph(U'\u20ac'));
    EXPECT_TRUE(font.hasGlyph(U'\u00e9'));
    EXPECT_TRUE(font.hasGlyph(U'\u2552'));
    EXPECT_FALSE(font.padCell(7, 17));
}

TEST(BitmapFont, PaddingIsBlankButBoxLinesReachAcrossIt)
{
    BitmapFont font;
    QString error;
    ASSERT_TRUE(font.load(PaperPainter::fontBFile(false), &error)) << qPrintable(error);
    ASSERT_TRUE(font.padCell(9, 17));
    const auto dot = [&](char32_t character, int x, int y) { return font.cell(character)[y * 9 + x] != 0; };
    int paddingInk = 0;
    for (int y = 0; y < 17; ++y)
        paddingInk += dot(U'W', 8, y) + dot(U'M', 8, y);
    for (int x = 0; x < 9; ++x)
        paddingInk += dot(U'W', x, 16) + dot(U'g', x, 16);
    EXPECT_EQ(paddingInk, 0);
    // The horizontal line of box drawing runs to the last column, the vertical one to the last row.
    int across = 0;
    for (int y = 0; y < 17; ++y)
        across += dot(U'\u2500', 8, y);
    EXPECT_GT(across, 0);
    int down = 0;
    for (int x = 0; x < 9; ++x)
        down += dot(U'\u2502', x, 16);
    EXPECT_GT(down, 0);
    EXPECT_GT(inkOf(font, U'A'), 10);
}

// The fonts are built into the program: a machine without the font packages draws the same.
TEST(BitmapFont, TheFontsAreResourcesOfTheLibrary)
{
    for (const QString &file :
         {PaperPainter::bitmapFontFile(false), PaperPainter::bitmapFontFile(true),
          PaperPainter::fontBFile(false), PaperPainter::fontBFile(true), PaperPainter::labelFontFile(),
          PaperPainter::outlineFontFile(false), PaperPainter::outlineFontFile(true)}) {
        EXPECT_TRUE(file.startsWith(QLatin1String(":/"))) << qPrintable(file);
        QFile font(file);
        ASSERT_TRUE(font.open(QIODevice::ReadOnly)) << qPrintable(file);
        EXPECT_GT(font.size(), 1000) << qPrintable(file);
    }
}

} // namespace
