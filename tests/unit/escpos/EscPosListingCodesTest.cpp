// The listing names the commands of QR codes, PDF417 symbols and barcodes in words.

#include "TestSupport.h"

#include "devices/escpos/EscPosListing.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace {

template <size_t N> QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, N - 1);
}

QString listed(const QByteArray &stream)
{
    return escPosListing(stream).trimmed();
}

TEST(EscPosListingCodes, QrCodeFunctionsAreNamed)
{
    const QByteArray url = "https://example.com/pay?t=42";
    const QByteArray store = bytes("\x1d(k") + char(url.size() + 3) + '\0' + "1P0" + url;
    EXPECT_EQ(listed(bytes("\x1d(k\x04\x00\x31\x41\x32\x00"
                           "\x1d(k\x03\x00\x31\x43\x06"
                           "\x1d(k\x03\x00\x31\x45\x31") +
                     store + bytes("\x1d(k\x03\x00\x31\x51\x30")),
              QStringLiteral("[QR code model 2] [QR module 6] [QR error correction M] "
                             "[QR data, 28 bytes: \"https://example.com/pay?t=42\"] [QR print]"));
    EXPECT_EQ(listed(bytes("\x1d(k\x04\x00\x31\x41\x33\x00\x1d(k\x03\x00\x31\x45\x33")),
              QStringLiteral("[QR code Micro QR] [QR error correction H]"));
}

TEST(EscPosListingCodes, DataIsQuotedWithItsOtherBytesInHexadecimal)
{
    EXPECT_EQ(listed(bytes("\x1d(k\x08\x00\x31\x50\x30"
                           "a\"\\\x01\xc3")),
              QStringLiteral("[QR data, 5 bytes: \"a\\\"\\\\\\x01\\xc3\"]"));
    // A long data is shown by its start.
    const QByteArray data(300, 'x');
    const QString listing = listed(bytes("\x1d(k") + char((data.size() + 3) & 0xff) +
                                   char((data.size() + 3) >> 8) + "1P0" + data);
    EXPECT_TRUE(listing.startsWith(QStringLiteral("[QR data, 300 bytes: \"xxxx"))) << qPrintable(listing);
    EXPECT_TRUE(listing.endsWith(QStringLiteral("x\"...]"))) << qPrintable(listing);
    EXPECT_LT(listing.size(), 120);
}

TEST(EscPosListingCodes, BarcodeSettingsAndDataAreNamed)
{
    EXPECT_EQ(
        listed(bytes("\x1dh\x50\x1dw\x03\x1dH\x02\x1d"
                     "f\x01\x1dkI\x0b{BT7-000123")),
        QStringLiteral("[barcode height 80] [barcode module 3] [barcode HRI below] [barcode HRI font B] "
                       "[barcode CODE128: \"{BT7-000123\"]"));
    EXPECT_EQ(listed(bytes("\x1dH\x00\x1dH\x31\x1dH\x03")),
              QStringLiteral("[barcode HRI none] [barcode HRI above] [barcode HRI both]"));
    // The form ended by NUL, each system by its name.
    EXPECT_EQ(listed(bytes("\x1dk\x02"
                           "400638133393\x00"
                           "\x1dk\x04*T7*\x00\x1dkB\x06"
                           "012345\x1dkH\x04"
                           "1234")),
              QStringLiteral("[barcode EAN13: \"400638133393\"] [barcode CODE39: \"*T7*\"] "
                             "[barcode UPC-E: \"012345\"] [barcode CODE93: \"1234\"]"));
    EXPECT_EQ(listed(bytes("\x1dkN\x02"
                           "12")),
              QStringLiteral("[barcode system 78: \"12\"]"));
}

TEST(EscPosListingCodes, Pdf417FunctionsAreNamed)
{
    EXPECT_EQ(listed(bytes("\x1d(k\x03\x00\x30\x41\x02"
                           "\x1d(k\x03\x00\x30\x43\x03"
                           "\x1d(k\x04\x00\x30\x45\x30\x32"
                           "\x1d(k\x06\x00\x30\x50\x30"
                           "abc\x1d(k\x03\x00\x30\x51\x30")),
              QStringLiteral("[PDF417 columns 2] [PDF417 module 3] [PDF417 error correction level 2] "
                             "[PDF417 data, 3 bytes: \"abc\"] [PDF417 print]"));
}

TEST(EscPosListingCodes, OtherSymbolsKeepTheirRawForm)
{
    // MaxiCode (cn 50) is not spelled out.
    EXPECT_EQ(listed(bytes("\x1d(k\x03\x00\x32\x51\x30")), QStringLiteral("[GS ( k 03 00 32 51 30]"));
}

} // namespace
