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

} // namespace
