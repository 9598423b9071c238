// Reading logos in the portable bitmap format.

#include "devices/escpos/PbmImage.h"

#include <gtest/gtest.h>

namespace {

TEST(PbmImage, ReadsTheRawFormatRowByRow)
{
    PbmImage image;
    QString error;
    ASSERT_TRUE(image.loadFromData(QByteArray("P4\n# a comment\n10 2\n\xff\xc0\x80\x40", 24), &error))
        << error.toStdString();
    EXPECT_EQ(image.width(), 10);
    EXPECT_EQ(image.height(), 2);
    EXPECT_EQ(image.bytesPerRow(), 2);
    EXPECT_EQ(image.rows(), QByteArray("\xff\xc0\x80\x40", 4));
}

TEST(PbmImage, ReadsThePlainFormat)
{
    PbmImage image;
    QString error;
    ASSERT_TRUE(image.loadFromData("P1\n3 2\n1 0 1\n0 1 0\n", &error)) << error.toStdString();
    EXPECT_EQ(image.rows(), QByteArray("\xa0\x40", 2));
    // Plain PBM may run the digits together.
    ASSERT_TRUE(image.loadFromData("P1 3 2 101010", &error));
    EXPECT_EQ(image.rows(), QByteArray("\xa0\x40", 2));
}

TEST(PbmImage, PaddingDotsBeyondTheWidthNeverPrint)
{
    PbmImage image;
    QString error;
    ASSERT_TRUE(image.loadFromData(QByteArray("P4 3 1\n\xff", 8), &error));
    EXPECT_EQ(image.rows(), QByteArray("\xe0", 1));
}

TEST(PbmImage, CroppingKeepsTheLeftPart)
{
    PbmImage image;
    QString error;
    ASSERT_TRUE(image.loadFromData(QByteArray("P4 16 1\n\xff\xff", 10), &error));
    const PbmImage cropped = image.croppedToWidth(12);
    EXPECT_EQ(cropped.width(), 12);
    EXPECT_EQ(cropped.rows(), QByteArray("\xff\xf0", 2));
    EXPECT_EQ(image.croppedToWidth(20).width(), 16);
    EXPECT_TRUE(image.croppedToWidth(0).isNull());
}

TEST(PbmImage, MalformedFilesAreRefusedWithAReason)
{
    const QByteArray bad[] = {
        "",                    // empty
        "P2\n1 1\n1\n",        // a grey map
        "P4\n0 5\n",           // no width
        "P4\n8 2\n\xff",       // cut short
        "P1\n2 2\n1 0 1\n",    // cut short
        "P1\n2 1\n1 x\n",      // not a digit
        "P4\n99999999999 1\n", // absurd width
        "P4\n8 5000\n",        // taller than a logo
    };
    for (const QByteArray &data : bad) {
        PbmImage image;
        QString error;
        EXPECT_FALSE(image.loadFromData(data, &error)) << data.constData();
        EXPECT_FALSE(error.isEmpty());
        EXPECT_TRUE(image.isNull());
    }
}

TEST(PbmImage, EachFaultHasItsOwnReason)
{
    const struct
    {
        QByteArray data;
        const char *reason;
    } cases[] = {
        {"P3\n1 1\n1\n", "not a PBM image (P1 or P4)"},
        {"P", "not a PBM image (P1 or P4)"},
        {"P1\n4\n", "width and height must be 1 to 4096 dots"},
        {"P4\n4097 1\n", "width and height must be 1 to 4096 dots"},
        {"P4\n16 2\n\xff\xff\xff", "the image data is cut short"},
        {"P1\n2 2\n1 0 1", "the image data is cut short"},
        {"P1\n2 2\n1 0 # the rest is a comment 1 1\n", "the image data is cut short"},
        {"P1\n2 1\n1 2\n", "unexpected character in the image data"},
    };
    for (const auto &fault : cases) {
        PbmImage image;
        QString error;
        EXPECT_FALSE(image.loadFromData(fault.data, &error)) << fault.data.constData();
        EXPECT_EQ(error, QLatin1String(fault.reason)) << fault.data.constData();
    }
}

TEST(PbmImage, ThePlainFormatSkipsCommentsAndAnyWhitespaceBetweenDots)
{
    PbmImage image;
    QString error;
    ASSERT_TRUE(image.loadFromData("P1 # size\n4 2 # rows\n1\t1 0\r\n0 # end of row\n0\v1\f1 0", &error))
        << error.toStdString();
    EXPECT_EQ(image.rows(), QByteArray("\xc0\x60", 2));
}

TEST(PbmImage, RawRowsOfWholeBytesAreTakenAsTheyStand)
{
    PbmImage image;
    QString error;
    ASSERT_TRUE(image.loadFromData(QByteArray("P4 16 2\r\x81\x42\x24\x18trailing", 16), &error));
    EXPECT_EQ(image.rows(), QByteArray("\x81\x42\x24\x18", 4));
}

TEST(PbmImage, AMissingFileIsNamedInTheReason)
{
    PbmImage image;
    QString error;
    EXPECT_FALSE(image.load(QStringLiteral("/nonexistent/logo.pbm"), &error));
    EXPECT_TRUE(error.contains(QLatin1String("/nonexistent/logo.pbm")));
}

} // namespace
