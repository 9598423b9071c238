#include "printerapp/ReceiptBitmap.h"

#include <QImage>

#include <gtest/gtest.h>

namespace {

QImage filled(int width, int height, QColor colour, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(width, height, format);
    image.fill(colour);
    return image;
}

TEST(ReceiptBitmap, ScalesToThePaperWidthKeepingTheShape)
{
    for (const int width : {384, 512, 576}) {
        const ReceiptBitmap bitmap = ReceiptBitmap::fromImage(filled(100, 50, Qt::white), width);
        EXPECT_EQ(bitmap.widthDots(), width);
        EXPECT_EQ(bitmap.bytesPerRow(), width / 8);
        EXPECT_EQ(bitmap.rows(), width / 2);
    }
}

TEST(ReceiptBitmap, WhiteStaysBlankAndBlackIsAllDots)
{
    EXPECT_EQ(ReceiptBitmap::fromImage(filled(48, 10, Qt::white), 384).blackDots(), 0);
    const ReceiptBitmap black = ReceiptBitmap::fromImage(filled(48, 10, Qt::black), 384);
    EXPECT_EQ(black.blackDots(), 384 * 80);
}

TEST(ReceiptBitmap, TransparencyIsWhitePaper)
{
    EXPECT_EQ(
        ReceiptBitmap::fromImage(filled(40, 40, Qt::transparent, QImage::Format_ARGB32), 384).blackDots(), 0);
}

TEST(ReceiptBitmap, GreyBecomesAMatchingShareOfDotsSpreadOut)
{
    const ReceiptBitmap grey = ReceiptBitmap::fromImage(filled(64, 64, QColor(128, 128, 128)), 384);
    const double share = double(grey.blackDots()) / (384.0 * 384.0);
    EXPECT_NEAR(share, 0.5, 0.02);
    // Spread out, not in blocks: a 50% grey alternates along each row.
    int changes = 0;
    for (int x = 1; x < 384; ++x)
        changes += grey.dot(x, 100) != grey.dot(x - 1, 100);
    EXPECT_GT(changes, 300);

    const ReceiptBitmap light = ReceiptBitmap::fromImage(filled(64, 64, QColor(192, 192, 192)), 384);
    EXPECT_NEAR(double(light.blackDots()) / (384.0 * 384.0), 0.25, 0.02);
}

TEST(ReceiptBitmap, KeepsWhereTheInkIs)
{
    QImage image = filled(16, 16, Qt::white);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 8; ++x)
            image.setPixelColor(x, y, Qt::black);
    const ReceiptBitmap bitmap = ReceiptBitmap::fromImage(image, 384);
    EXPECT_TRUE(bitmap.dot(0, 0));
    EXPECT_TRUE(bitmap.dot(100, 300));
    EXPECT_FALSE(bitmap.dot(300, 100));
    EXPECT_FALSE(bitmap.dot(383, 383));
}

TEST(ReceiptBitmap, RefusesWidthsTheHeadCannotHave)
{
    EXPECT_TRUE(ReceiptBitmap::fromImage(filled(10, 10, Qt::black), 0).isEmpty());
    EXPECT_TRUE(ReceiptBitmap::fromImage(filled(10, 10, Qt::black), 100).isEmpty());
    EXPECT_TRUE(ReceiptBitmap::fromImage(QImage(), 384).isEmpty());
    EXPECT_TRUE(ReceiptBitmap().rasterCommands().isEmpty());
}

TEST(ReceiptBitmap, WritesGsV0WithItsSizeLittleEndian)
{
    const ReceiptBitmap bitmap = ReceiptBitmap::fromImage(filled(384, 3, Qt::black), 384);
    const QByteArray commands = bitmap.rasterCommands();
    // 48 bytes per row (0x30 0x00), 3 rows, then 144 bytes of dots.
    EXPECT_EQ(commands.left(8), QByteArray("\x1d\x76\x30\x00\x30\x00\x03\x00", 8));
    EXPECT_EQ(commands.size(), 8 + 48 * 3);
    EXPECT_EQ(commands.mid(8), QByteArray(48 * 3, '\xff'));
}

TEST(ReceiptBitmap, SendsTallPicturesInBands)
{
    // 576 dots wide, 5000 rows: 2047 + 2047 + 906.
    const ReceiptBitmap bitmap = ReceiptBitmap::fromImage(filled(576, 5000, Qt::black), 576);
    ASSERT_EQ(bitmap.rows(), 5000);
    const QByteArray commands = bitmap.rasterCommands();
    const int rowBytes = 72;
    ASSERT_EQ(commands.size(), 3 * 8 + 5000 * rowBytes);
    EXPECT_EQ(commands.left(8), QByteArray("\x1d\x76\x30\x00\x48\x00\xff\x07", 8));
    const qsizetype second = 8 + 2047 * rowBytes;
    EXPECT_EQ(commands.mid(second, 8), QByteArray("\x1d\x76\x30\x00\x48\x00\xff\x07", 8));
    const qsizetype third = second + 8 + 2047 * rowBytes;
    EXPECT_EQ(commands.mid(third, 8), QByteArray("\x1d\x76\x30\x00\x48\x00\x8a\x03", 8));

    // A smaller band for printers with little memory.
    const QByteArray small = ReceiptBitmap::fromImage(filled(576, 100, Qt::black), 576).rasterCommands(24);
    EXPECT_EQ(small.size(), 5 * 8 + 100 * rowBytes);
    EXPECT_EQ(small.mid(4 * (8 + 24 * rowBytes), 8), QByteArray("\x1d\x76\x30\x00\x48\x00\x04\x00", 8));
}

TEST(ReceiptBitmap, TakesDotsDitheredElsewhereAndDropsTheBlankFoot)
{
    // 2 bytes a row: an inked row, a blank one, an inked one, then three blank rows.
    const QByteArray bits("\x80\x00"
                          "\x00\x00"
                          "\x00\x01"
                          "\x00\x00\x00\x00\x00\x00",
                          12);
    const ReceiptBitmap bitmap = ReceiptBitmap::fromDots(2, 6, bits);
    ASSERT_EQ(bitmap.rows(), 6);
    EXPECT_TRUE(bitmap.dot(0, 0));
    EXPECT_TRUE(bitmap.dot(15, 2));
    const ReceiptBitmap trimmed = bitmap.withoutBlankFoot();
    EXPECT_EQ(trimmed.rows(), 3);
    EXPECT_EQ(trimmed.rasterCommands(), QByteArray("\x1d\x76\x30\x00\x02\x00\x03\x00", 8) + bits.left(6));
    EXPECT_TRUE(ReceiptBitmap::fromDots(2, 2, QByteArray(4, '\0')).withoutBlankFoot().isEmpty());
    EXPECT_TRUE(ReceiptBitmap::fromDots(2, 7, bits).isEmpty()) << "more rows than bytes";
}

} // namespace
