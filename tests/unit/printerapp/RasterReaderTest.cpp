#include "printerapp/AppleRasterReader.h"
#include "printerapp/PwgRasterReader.h"

#include <QtEndian>

#include <gtest/gtest.h>

namespace {

void put32(QByteArray &bytes, int offset, quint32 value)
{
    qToBigEndian(value, bytes.data() + offset);
}

QByteArray pwgHeader(quint32 width, quint32 height, quint32 colorSpace, quint32 bitsPerPixel)
{
    QByteArray header(PwgRasterReader::HeaderSize, '\0');
    header.replace(0, 9, "PwgRaster");
    put32(header, 276, 203); // resolution
    put32(header, 280, 203);
    put32(header, 372, width);
    put32(header, 376, height);
    put32(header, 384, 8);
    put32(header, 388, bitsPerPixel);
    put32(header, 392, width * bitsPerPixel / 8);
    put32(header, 400, colorSpace);
    return header;
}

QByteArray urfPageHeader(quint8 bitsPerPixel, quint8 colorSpace, quint32 width, quint32 height)
{
    QByteArray header(AppleRasterReader::PageHeaderSize, '\0');
    header[0] = char(bitsPerPixel);
    header[1] = char(colorSpace);
    put32(header, 12, width);
    put32(header, 16, height);
    put32(header, 20, 180);
    return header;
}

QByteArray urfDocument(quint32 pages, const QByteArray &rest)
{
    QByteArray document("UNIRAST", 8);
    document.resize(12);
    put32(document, 8, pages);
    return document + rest;
}

// A 4 x 3 grey page: line 1 is "10 20 30 40" (4 literal pixels), lines 2 and 3 repeat a
// line of one run of 4 pixels of 0x80.
const QByteArray GreyLines("\x00\xfd\x10\x20\x30\x40"
                           "\x01\x03\x80",
                           9);

TEST(PwgRasterReader, ReadsAGreyPageLineByLine)
{
    QString error;
    const auto pages =
        PwgRasterReader().read(QByteArray("RaS2") + pwgHeader(4, 3, 18, 8) + GreyLines, &error);
    ASSERT_TRUE(pages) << qPrintable(error);
    ASSERT_EQ(pages->size(), 1);
    const QImage &page = pages->first();
    EXPECT_EQ(page.size(), QSize(4, 3));
    EXPECT_EQ(page.format(), QImage::Format_Grayscale8);
    EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(page.constScanLine(0)), 4),
              QByteArray("\x10\x20\x30\x40"));
    EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(page.constScanLine(1)), 4), QByteArray(4, '\x80'));
    EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(page.constScanLine(2)), 4), QByteArray(4, '\x80'));
    EXPECT_EQ(qRound(page.dotsPerMeterX() * 0.0254), 203);
}

TEST(PwgRasterReader, ReadsRgbPagesAndTheWhiteFill)
{
    // 3 x 1 sRGB: one red pixel, then the rest of the line white. Two pages.
    const QByteArray page = pwgHeader(3, 1, 19, 24) + QByteArray("\x00\x00\xff\x00\x00\x80", 6);
    QString error;
    const auto pages = PwgRasterReader().read(QByteArray("RaS2") + page + page, &error);
    ASSERT_TRUE(pages) << qPrintable(error);
    ASSERT_EQ(pages->size(), 2);
    EXPECT_EQ(pages->at(1).pixelColor(0, 0), QColor(255, 0, 0));
    EXPECT_EQ(pages->at(1).pixelColor(2, 0), QColor(255, 255, 255));
}

TEST(PwgRasterReader, RefusesWhatItCannotReadWhole)
{
    const QByteArray good = QByteArray("RaS2") + pwgHeader(4, 3, 18, 8) + GreyLines;
    PwgRasterReader reader;
    QString error;
    EXPECT_FALSE(reader.read(QByteArray("RaS3") + good.mid(4), &error));
    // Cut anywhere inside the header or the lines.
    for (qsizetype cut = 4; cut < good.size(); ++cut)
        EXPECT_FALSE(reader.read(good.left(cut), &error)) << "cut at " << cut;
    // A run longer than its line, a repeat beyond the page.
    EXPECT_FALSE(
        reader.read(QByteArray("RaS2") + pwgHeader(4, 1, 18, 8) + QByteArray("\x00\x04\x80", 3), &error));
    EXPECT_FALSE(
        reader.read(QByteArray("RaS2") + pwgHeader(4, 1, 18, 8) + QByteArray("\x01\x03\x80", 3), &error));
    // Colour spaces and depths it does not print.
    EXPECT_FALSE(reader.read(QByteArray("RaS2") + pwgHeader(4, 3, 6, 32) + GreyLines, &error)); // CMYK
    EXPECT_FALSE(reader.read(QByteArray("RaS2") + pwgHeader(4, 3, 18, 16) + GreyLines, &error));
    EXPECT_TRUE(error.contains(QStringLiteral("sGray"))) << qPrintable(error);
    EXPECT_FALSE(reader.read(QByteArray("RaS2"), &error));
}

TEST(PwgRasterReader, KeepsWithinItsLimits)
{
    DecodeLimits limits;
    limits.maximumPixels = 1000;
    QString error;
    // 100000 x 100000 pixels announced: refused before any memory is spent on it.
    EXPECT_FALSE(PwgRasterReader(limits).read(QByteArray("RaS2") + pwgHeader(100000, 100000, 18, 8), &error));
    EXPECT_TRUE(error.contains(QStringLiteral("100000 x 100000"))) << qPrintable(error);
    limits = DecodeLimits();
    limits.maximumPages = 1;
    const QByteArray page = pwgHeader(4, 3, 18, 8) + GreyLines;
    EXPECT_TRUE(PwgRasterReader(limits).read(QByteArray("RaS2") + page, &error));
    EXPECT_FALSE(PwgRasterReader(limits).read(QByteArray("RaS2") + page + page, &error));
    limits = DecodeLimits();
    limits.maximumBytes = 100;
    EXPECT_FALSE(PwgRasterReader(limits).read(QByteArray("RaS2") + page, &error));
}

TEST(AppleRasterReader, ReadsGreyAndRgbPages)
{
    const QByteArray grey = urfPageHeader(8, 0, 4, 3) + GreyLines;
    // 2 x 1 RGB: one run of two red pixels.
    const QByteArray rgb = urfPageHeader(24, 1, 2, 1) + QByteArray("\x00\x01\xff\x00\x00", 5);
    QString error;
    const auto pages = AppleRasterReader().read(urfDocument(2, grey + rgb), &error);
    ASSERT_TRUE(pages) << qPrintable(error);
    ASSERT_EQ(pages->size(), 2);
    EXPECT_EQ(pages->at(0).pixelColor(3, 0), QColor(0x40, 0x40, 0x40));
    EXPECT_EQ(pages->at(0).pixelColor(0, 2), QColor(0x80, 0x80, 0x80));
    EXPECT_EQ(pages->at(1).pixelColor(1, 0), QColor(0xff, 0x00, 0x00));
    EXPECT_EQ(qRound(pages->at(1).dotsPerMeterX() * 0.0254), 180);
}

TEST(AppleRasterReader, RefusesWhatItCannotReadWhole)
{
    const QByteArray good = urfDocument(1, urfPageHeader(8, 0, 4, 3) + GreyLines);
    AppleRasterReader reader;
    QString error;
    for (qsizetype cut = 0; cut < good.size(); ++cut)
        EXPECT_FALSE(reader.read(good.left(cut), &error)) << "cut at " << cut;
    EXPECT_FALSE(reader.read(urfDocument(1, urfPageHeader(1, 0, 4, 3) + GreyLines), &error));  // 1 bit
    EXPECT_FALSE(reader.read(urfDocument(1, urfPageHeader(32, 6, 4, 3) + GreyLines), &error)); // CMYK
    DecodeLimits limits;
    limits.maximumPages = 5;
    EXPECT_FALSE(AppleRasterReader(limits).read(urfDocument(6, {}), &error));
    limits.maximumWidth = 3;
    EXPECT_FALSE(AppleRasterReader(limits).read(good, &error));
}

TEST(AppleRasterReader, WithNoPageCountReadsToTheEnd)
{
    const QByteArray page = urfPageHeader(8, 0, 4, 3) + GreyLines;
    QString error;
    const auto pages = AppleRasterReader().read(urfDocument(0, page + page + page), &error);
    ASSERT_TRUE(pages) << qPrintable(error);
    EXPECT_EQ(pages->size(), 3);
}

} // namespace
