#include "printerapp/ImageDecoder.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>

#include <gtest/gtest.h>

namespace {

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    EXPECT_TRUE(writer.write(image)) << qPrintable(writer.errorString());
    return bytes;
}

QImage picture(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int x = 0; x < width; ++x)
        image.setPixelColor(x, 0, Qt::black);
    return image;
}

TEST(ImageDecoder, ReadsPngAndJpeg)
{
    const ImageDecoder decoder;
    QString error;
    const QImage png = decoder.decode(encoded(picture(30, 20), "png"), "png", &error);
    ASSERT_FALSE(png.isNull()) << qPrintable(error);
    EXPECT_EQ(png.size(), QSize(30, 20));
    EXPECT_EQ(png.pixelColor(5, 0), QColor(Qt::black));
    const QImage jpeg = decoder.decode(encoded(picture(30, 20), "jpeg"), "jpeg", &error);
    ASSERT_FALSE(jpeg.isNull()) << qPrintable(error);
    EXPECT_EQ(jpeg.size(), QSize(30, 20));
}

TEST(ImageDecoder, RefusesAPictureWithTooManyPixelsBeforeDecodingIt)
{
    DecodeLimits limits;
    limits.maximumPixels = 10000;
    QString error;
    EXPECT_TRUE(ImageDecoder(limits).decode(encoded(picture(101, 100), "png"), "png", &error).isNull());
    EXPECT_TRUE(error.contains(QStringLiteral("101 x 100"))) << qPrintable(error);
    EXPECT_FALSE(ImageDecoder(limits).decode(encoded(picture(100, 100), "png"), "png", &error).isNull());
}

TEST(ImageDecoder, RefusesAFileWithTooManyBytes)
{
    DecodeLimits limits;
    const QByteArray bytes = encoded(picture(50, 50), "png");
    limits.maximumBytes = bytes.size() - 1;
    QString error;
    EXPECT_TRUE(ImageDecoder(limits).decode(bytes, "png", &error).isNull());
    EXPECT_TRUE(error.contains(QStringLiteral("bytes"))) << qPrintable(error);
}

TEST(ImageDecoder, ADamagedFileIsAnErrorNotAPicture)
{
    const QByteArray whole = encoded(picture(200, 200), "png");
    QString error;
    for (const QByteArray &damaged : {whole.left(whole.size() / 2), whole.left(30), QByteArray("\x89PNG\r\n"),
                                      QByteArray(), QByteArray(1000, '\xff')}) {
        error.clear();
        EXPECT_TRUE(ImageDecoder().decode(damaged, "png", &error).isNull()) << damaged.size();
        EXPECT_FALSE(error.isEmpty());
    }
    QByteArray flipped = whole;
    flipped[flipped.size() / 2] = char(~flipped[flipped.size() / 2]);
    EXPECT_TRUE(ImageDecoder().decode(flipped, "png", &error).isNull());
}

TEST(ImageDecoder, RefusesOtherFormats)
{
    QString error;
    EXPECT_TRUE(ImageDecoder().decode(encoded(picture(5, 5), "png"), "gif", &error).isNull());
    EXPECT_TRUE(error.contains(QStringLiteral("gif")));
}

} // namespace
