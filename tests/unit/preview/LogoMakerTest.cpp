#include "TestSupport.h"

#include "devices/escpos/PbmImage.h"
#include "preview/LogoMaker.h"

#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

int blackDots(const QImage &dots)
{
    int black = 0;
    for (int y = 0; y < dots.height(); ++y) {
        for (int x = 0; x < dots.width(); ++x)
            black += dots.pixelIndex(x, y) == 1;
    }
    return black;
}

TEST(LogoMaker, ScalesToThePrintableWidth)
{
    QImage image(200, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    const QImage dots = logomaker::dither(image, 384);
    EXPECT_EQ(dots.width(), 384);
    EXPECT_EQ(dots.height(), 192);
    EXPECT_EQ(blackDots(dots), 0);
}

TEST(LogoMaker, DithersGreyIntoItsShareOfBlackDots)
{
    // A quarter grey (three quarters light) prints about a quarter of its dots.
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(qRgb(191, 191, 191));
    const QImage dots = logomaker::dither(image, 64);
    const double share = double(blackDots(dots)) / (64 * 64);
    EXPECT_NEAR(share, 0.25, 0.02);
    // Colour goes by its lightness: pure black is all black.
    image.fill(Qt::black);
    EXPECT_EQ(blackDots(logomaker::dither(image, 64)), 64 * 64);
}

TEST(LogoMaker, TransparentPartsArePaper)
{
    QImage image(32, 32, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    EXPECT_EQ(blackDots(logomaker::dither(image, 32)), 0);
}

TEST(LogoMaker, WritesAPbmTheBackEndReads)
{
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 0; y < 10; ++y)
        image.setPixel(0, y, qRgb(0, 0, 0)); // a black left edge
    const QImage dots = logomaker::dither(image, 20);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("logo.pbm"));
    QString error;
    ASSERT_TRUE(logomaker::writePbm(dots, path, &error)) << qPrintable(error);
    EXPECT_TRUE(readFile(path).startsWith("P4\n20 10\n"));
    PbmImage pbm;
    ASSERT_TRUE(pbm.load(path, &error)) << qPrintable(error);
    EXPECT_EQ(pbm.width(), 20);
    EXPECT_EQ(pbm.height(), 10);
    ASSERT_EQ(pbm.rows().size(), 3 * 10);
    for (int y = 0; y < 10; ++y) {
        EXPECT_EQ(uchar(pbm.rows()[y * 3]) & 0x80, 0x80) << y;
        EXPECT_EQ(uchar(pbm.rows()[y * 3 + 2]) & 0x0f, 0) << "padding stays white";
    }
}

} // namespace
