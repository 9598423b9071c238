// Every code printed as a picture reads back as its data: the GS v 0 image in the printer's
// bytes is turned into a PNG here, dot for dot, and zbarimg (zbar-tools) decodes it.

#include "config/BRConfiguration.h"
#include "job/RenderJob.h"

#include "TestSupport.h"

#include <QBuffer>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// The first raster image of an ESC/POS stream, black on white, with a white border as wide as
// a scanner wants for its quiet zone; a null image when there is none.
QImage firstRasterImage(const QByteArray &stream)
{
    const qsizetype at = stream.indexOf(QByteArray("\x1dv0\x00", 4));
    if (at < 0 || at + 8 > stream.size())
        return QImage();
    const auto byteAt = [&](qsizetype i) { return int(static_cast<unsigned char>(stream.at(i))); };
    const int widthBytes = byteAt(at + 4) | byteAt(at + 5) << 8;
    const int height = byteAt(at + 6) | byteAt(at + 7) << 8;
    if (at + 8 + qsizetype(widthBytes) * height > stream.size())
        return QImage();
    constexpr int border = 40;
    QImage image(widthBytes * 8 + 2 * border, height + 2 * border, QImage::Format_Grayscale8);
    image.fill(255);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < widthBytes * 8; ++x) {
            const int byte = byteAt(at + 8 + qsizetype(y) * widthBytes + x / 8);
            if (byte & (0x80 >> (x % 8)))
                image.setPixel(x + border, y + border, qRgb(0, 0, 0));
        }
    }
    return image;
}

QByteArray renderRaster(const QByteArray &element, const QTemporaryDir &dir)
{
    const QString configPath = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(configPath, "bristel : { receiptdoc : { paperWidth = 48; }; };");
    const BRConfiguration configuration(configPath, QStringLiteral("cfg"));
    EscPosSettings settings;
    settings.codes = EscPosSettings::Codes::Raster;
    QBuffer input;
    input.setData("<document><method name=\"printFullOrderReceipt\"/>" + element + "</document>");
    input.open(QIODevice::ReadOnly);
    QBuffer output;
    output.open(QIODevice::WriteOnly);
    const RenderResult result = renderJob(&input, &output, RenderFormat::EscPos, configuration, settings);
    EXPECT_EQ(result.status, RenderResult::Status::Ok) << result.message.toStdString();
    return output.data();
}

// What zbarimg reads in the picture, run with the given options.
QString zbarimg(const QString &picture, const QStringList &options)
{
    QProcess zbar;
    zbar.start(QStandardPaths::findExecutable(QStringLiteral("zbarimg")),
               QStringList{QStringLiteral("--quiet"), QStringLiteral("-Supca.enable")} + options +
                   QStringList{picture});
    EXPECT_TRUE(zbar.waitForFinished(60000));
    return QString::fromUtf8(zbar.readAllStandardOutput()).trimmed();
}

// "type:data" of the symbol in the picture.  The type comes from zbarimg's usual output, the
// data from its binary mode: otherwise it guesses a character set for a QR code's bytes and
// takes short UTF-8 text for Shift JIS.
QString scanned(const QImage &image, const QTemporaryDir &dir)
{
    const QString path = dir.filePath(QStringLiteral("code.png"));
    EXPECT_TRUE(image.save(path));
    const QString type = zbarimg(path, {}).section(QLatin1Char(':'), 0, 0);
    return type + QLatin1Char(':') + zbarimg(path, {QStringLiteral("-Sbinary")});
}

struct Code
{
    const char *name;
    const char *element;
    const char *read; // what the scanner reports
};

class RasterCode : public ::testing::TestWithParam<Code>
{
};

TEST_P(RasterCode, ReadsBackAsItsData)
{
    if (QStandardPaths::findExecutable(QStringLiteral("zbarimg")).isEmpty())
        GTEST_SKIP() << "zbarimg (zbar-tools) is not installed";
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QImage image = firstRasterImage(renderRaster(GetParam().element, dir));
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(scanned(image, dir), QString::fromUtf8(GetParam().read));
}

const Code codes[] = {
    {"QrCode", "<qrcode data=\"https://example.com/pay/42?t=7\" size=\"3\" ecc=\"Q\"/>",
     "QR-Code:https://example.com/pay/42?t=7"},
    {"QrCodeUtf8", "<qrcode data=\"caf\xc3\xa9 7\" size=\"2\" ecc=\"H\"/>", "QR-Code:caf\xc3\xa9 7"},
    {"Ean13", "<barcode type=\"ean13\" data=\"400638133393\" hri=\"none\"/>", "EAN-13:4006381333931"},
    {"Ean8", "<barcode type=\"ean8\" data=\"96385074\" hri=\"below\"/>", "EAN-8:96385074"},
    {"UpcA", "<barcode type=\"upca\" data=\"03600029145\"/>", "UPC-A:036000291452"},
    {"Code39", "<barcode type=\"code39\" data=\"T7-42 $\"/>", "CODE-39:T7-42 $"},
    {"Code128", "<barcode type=\"code128\" data=\"Order {42}\" hri=\"none\"/>", "CODE-128:Order {42}"},
    {"Itf", "<barcode type=\"itf\" data=\"00012345\"/>", "I2/5:00012345"},
};

std::string codeName(const ::testing::TestParamInfo<Code> &info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(EverySymbology, RasterCode, ::testing::ValuesIn(codes), codeName);

} // namespace
