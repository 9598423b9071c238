// QR codes and barcodes on the receipt printer: the printer's own commands, the raster
// pictures for printers without them, and the data that cannot be printed.

#include "DocumentMethods.h"
#include "EscPosRendering.h"

#include <gtest/gtest.h>

namespace {

const QByteArray Profile = "bristel : { receiptdoc : { paperWidth = 32; }; };"; // 384 dots
const QByteArray Centre("\x1b\x61\x01", 3);
const QByteArray Left("\x1b\x61\x00", 3);

QByteArray bytes(std::initializer_list<int> values)
{
    QByteArray result;
    for (const int value : values)
        result.append(char(value));
    return result;
}

Rendered renderCodes(const QByteArray &elements, EscPosSettings::Codes codes = EscPosSettings::Codes::Native,
                     const QByteArray &profile = Profile)
{
    EscPosSettings settings;
    settings.codes = codes;
    return renderInMemory(documentOf("printFullOrderReceipt", elements), profile, settings);
}

QByteArray qrCommands(const QByteArray &data, int size, int level)
{
    const int length = int(data.size()) + 3;
    return bytes({0x1d, '(', 'k', 4, 0, 0x31, 0x41, 0x32, 0}) +
           bytes({0x1d, '(', 'k', 3, 0, 0x31, 0x43, size}) +
           bytes({0x1d, '(', 'k', 3, 0, 0x31, 0x45, level}) +
           bytes({0x1d, '(', 'k', length & 0xff, length >> 8, 0x31, 0x50, 0x30}) + data +
           bytes({0x1d, '(', 'k', 3, 0, 0x31, 0x51, 0x30});
}

QByteArray barcodeCommands(int height, int moduleWidth, int hri, int system, const QByteArray &data)
{
    return bytes({0x1d, 'h', height, 0x1d, 'w', moduleWidth, 0x1d, 'H', hri, 0x1d, 'k', system,
                  int(data.size())}) +
           data;
}

TEST(EscPosCodes, AQrCodeIsPrintedCentredByThePrintersOwnCommands)
{
    const Rendered r = renderCodes("<qrcode data=\"https://example.com/pay/42\" size=\"4\" ecc=\"M\"/>");
    ASSERT_EQ(r.result.status, RenderResult::Status::Ok) << r.result.message.toStdString();
    EXPECT_TRUE(r.bytes.contains(Centre + qrCommands("https://example.com/pay/42", 4, 49) + Left))
        << r.bytes.toHex(' ').constData();
}

TEST(EscPosCodes, EachErrorCorrectionLevelHasItsNumber)
{
    const struct
    {
        const char *ecc;
        int level;
    } levels[] = {{"L", 48}, {"M", 49}, {"Q", 50}, {"H", 51}};
    for (const auto &entry : levels) {
        const Rendered r = renderCodes(QByteArray("<qrcode data=\"T7\" ecc=\"") + entry.ecc + "\"/>");
        EXPECT_TRUE(r.bytes.contains(bytes({0x1d, '(', 'k', 3, 0, 0x31, 0x45, entry.level}))) << entry.ecc;
    }
}

TEST(EscPosCodes, AQrCodeWithoutSizeOrLevelIsSixDotsAModuleAtLevelM)
{
    const Rendered r = renderCodes("<qrcode data=\"T7\"/>");
    EXPECT_TRUE(r.bytes.contains(qrCommands("T7", 6, 49))) << r.bytes.toHex(' ').constData();
}

TEST(EscPosCodes, EveryModuleSizeFromOneToSixteenIsSent)
{
    for (const int size : {1, 16}) {
        const Rendered r =
            renderCodes(QByteArray("<qrcode data=\"7\" size=\"") + QByteArray::number(size) + "\"/>");
        ASSERT_EQ(r.result.status, RenderResult::Status::Ok) << size;
        EXPECT_TRUE(r.bytes.contains(bytes({0x1d, '(', 'k', 3, 0, 0x31, 0x43, size}))) << size;
    }
}

TEST(EscPosCodes, QrDataIsSentAsUtf8WithItsLengthInTwoBytes)
{
    // 300 bytes: pL pH = 303 = 0x2f 0x01.
    const QByteArray data = QByteArray("caf\xc3\xa9 ") + QByteArray(294, 'x');
    const Rendered r = renderCodes("<qrcode size=\"1\" data=\"" + data + "\"/>");
    ASSERT_EQ(r.result.status, RenderResult::Status::Ok) << r.result.message.toStdString();
    EXPECT_TRUE(r.bytes.contains(bytes({0x1d, '(', 'k', 0x2f, 0x01, 0x31, 0x50, 0x30}) + data));
}

TEST(EscPosCodes, EachBarcodeTypeHasItsSystemAndItsData)
{
    const struct
    {
        const char *element;
        int system;
        QByteArray sent;
    } cases[] = {
        // EAN and UPC go with their check digit, whether the job gave it or not.
        {"type=\"ean13\" data=\"400638133393\"", 67, "4006381333931"},
        {"type=\"ean13\" data=\"4006381333931\"", 67, "4006381333931"},
        {"type=\"ean8\" data=\"9638507\"", 68, "96385074"},
        {"type=\"ean8\" data=\"96385074\"", 68, "96385074"},
        {"type=\"upca\" data=\"03600029145\"", 65, "036000291452"},
        {"type=\"upca\" data=\"036000291452\"", 65, "036000291452"},
        {"type=\"code39\" data=\"T7-42 $\"", 69, "T7-42 $"},
        // Code 128 in code set B; a brace of the data is doubled.
        {"type=\"code128\" data=\"Order {7}\"", 73, "{BOrder {{7}"},
        {"type=\"itf\" data=\"00012345\"", 70, "00012345"},
    };
    for (const auto &entry : cases) {
        const Rendered r = renderCodes(QByteArray("<barcode ") + entry.element + " height=\"60\"/>");
        ASSERT_EQ(r.result.status, RenderResult::Status::Ok)
            << entry.element << r.result.message.toStdString();
        const QByteArray expected = bytes({0x1d, 'k', entry.system, int(entry.sent.size())}) + entry.sent;
        EXPECT_TRUE(r.bytes.contains(Centre + bytes({0x1d, 'h', 60}))) << entry.element;
        EXPECT_TRUE(r.bytes.contains(expected + Left))
            << entry.element << " " << r.bytes.toHex(' ').constData();
    }
}

TEST(EscPosCodes, HeightAndHumanReadableTextFollowTheAttributes)
{
    const Rendered below =
        renderCodes("<barcode type=\"ean13\" data=\"400638133393\" height=\"120\" hri=\"below\"/>");
    EXPECT_TRUE(below.bytes.contains(barcodeCommands(120, 3, 2, 67, "4006381333931")))
        << below.bytes.toHex(' ').constData();
    const Rendered none =
        renderCodes("<barcode type=\"ean13\" data=\"400638133393\" height=\"1\" hri=\"none\"/>");
    EXPECT_TRUE(none.bytes.contains(barcodeCommands(1, 3, 0, 67, "4006381333931")));
    // Without the attributes: 80 dots, digits below.
    const Rendered plain = renderCodes("<barcode type=\"ean13\" data=\"400638133393\"/>");
    EXPECT_TRUE(plain.bytes.contains(barcodeCommands(80, 3, 2, 67, "4006381333931")));
}

TEST(EscPosCodes, TheModulesNarrowToFitThePaper)
{
    // 20 characters of Code 128 in code set B: 11 x 22 + 13 = 255 modules, which at 3 dots
    // (765) would not fit 384 dots but at 2 (510) fits 576.
    const QByteArray element = "<barcode type=\"code128\" data=\"ABCDEFGHIJKLMNOPQRST\"/>";
    const Rendered wide = renderCodes(element, EscPosSettings::Codes::Native,
                                      "bristel : { receiptdoc : { paperWidth = 48; }; };");
    EXPECT_TRUE(wide.bytes.contains(bytes({0x1d, 'w', 2}))) << wide.bytes.toHex(' ').constData();
    const Rendered narrow = renderCodes(element);
    EXPECT_EQ(narrow.result.status, RenderResult::Status::InvalidCode);
    EXPECT_TRUE(narrow.result.message.contains(QLatin1String("wider than the paper")))
        << narrow.result.message.toStdString();
    // A short code keeps modules of 3 dots.
    const Rendered shortCode = renderCodes("<barcode type=\"code39\" data=\"T7\"/>");
    EXPECT_TRUE(shortCode.bytes.contains(bytes({0x1d, 'w', 3})));
}

TEST(EscPosCodes, AfterACodeTheJustificationIsWhatItWas)
{
    // The printer's name is a centred title, and what follows the rule under it stays centred.
    const Rendered centred = renderCodes("<printers name=\"Cassa\"/><headers/><qrcode data=\"7\"/>"
                                         "<barcode type=\"code39\" data=\"7\"/>");
    EXPECT_TRUE(centred.bytes.contains(qrCommands("7", 6, 49) + Centre + Centre + bytes({0x1d, 'h'})))
        << centred.bytes.toHex(' ').constData();
    EXPECT_TRUE(centred.bytes.contains(barcodeCommands(80, 3, 2, 69, "7") + Centre));
    const Rendered left = renderCodes("<qrcode data=\"7\"/>");
    EXPECT_TRUE(left.bytes.contains(Centre + qrCommands("7", 6, 49) + Left));
}

TEST(EscPosCodes, CodesPrintInEveryDocument)
{
    for (const char *method : testsupport::documentMethods) {
        const Rendered r = renderInMemory(
            documentOf(method, "<qrcode data=\"7\"/><barcode type=\"itf\" data=\"42\"/>"), "bristel : { };");
        EXPECT_EQ(r.result.status, RenderResult::Status::Ok) << method;
        EXPECT_TRUE(r.bytes.contains(qrCommands("7", 6, 49))) << method;
        EXPECT_TRUE(r.bytes.contains(bytes({0x1d, 'k', 70, 2}) + "42")) << method;
    }
}

TEST(EscPosCodes, CodesBeforeTheMethodAreIgnoredAsEveryOtherElement)
{
    const Rendered r = renderInMemory("<document><qrcode data=\"7\"/><barcode type=\"x\"/>"
                                      "<method name=\"printFullOrderReceipt\"/></document>",
                                      Profile);
    EXPECT_EQ(r.result.status, RenderResult::Status::Ok);
    EXPECT_FALSE(r.bytes.contains("\x1d("));
}

// The raster picture of GS v 0 in the stream: width in bytes, height in dots; empty if none.
struct Raster
{
    int widthBytes = 0;
    int height = 0;
};

Raster firstRaster(const QByteArray &stream)
{
    const qsizetype at = stream.indexOf(QByteArray("\x1dv0\x00", 4));
    if (at < 0 || at + 8 > stream.size())
        return {};
    const auto byteAt = [&](qsizetype i) { return int(static_cast<unsigned char>(stream.at(i))); };
    return {byteAt(at + 4) | byteAt(at + 5) << 8, byteAt(at + 6) | byteAt(at + 7) << 8};
}

TEST(EscPosCodes, InRasterModeAQrCodeIsACentredPictureOfItsModules)
{
    const Rendered r = renderCodes("<qrcode data=\"T7\" size=\"4\"/>", EscPosSettings::Codes::Raster);
    ASSERT_EQ(r.result.status, RenderResult::Status::Ok) << r.result.message.toStdString();
    EXPECT_FALSE(r.bytes.contains("\x1d(k"));
    // Version 1: 21 modules of 4 dots.
    const Raster raster = firstRaster(r.bytes);
    EXPECT_EQ(raster.widthBytes, (21 * 4 + 7) / 8);
    EXPECT_EQ(raster.height, 21 * 4);
    EXPECT_TRUE(r.bytes.contains(Centre + QByteArray("\x1dv0\x00", 4)));
}

TEST(EscPosCodes, InRasterModeEveryBarcodeIsAPictureThatFitsThePaper)
{
    const char *elements[] = {
        "type=\"ean13\" data=\"400638133393\"", "type=\"ean8\" data=\"9638507\"",
        "type=\"upca\" data=\"03600029145\"",   "type=\"code39\" data=\"T7-42\"",
        "type=\"code128\" data=\"Order 42\"",   "type=\"itf\" data=\"00012345\"",
    };
    for (const char *element : elements) {
        for (const int columns : {32, 48}) {
            const QByteArray profile =
                "bristel : { receiptdoc : { paperWidth = " + QByteArray::number(columns) + "; }; };";
            const Rendered r =
                renderCodes(QByteArray("<barcode ") + element + " height=\"50\" hri=\"none\"/>",
                            EscPosSettings::Codes::Raster, profile);
            ASSERT_EQ(r.result.status, RenderResult::Status::Ok) << element << r.result.message.toStdString();
            EXPECT_FALSE(r.bytes.contains("\x1dk")) << element;
            const Raster raster = firstRaster(r.bytes);
            EXPECT_GT(raster.widthBytes, 0) << element;
            EXPECT_LE(raster.widthBytes * 8, columns * 12) << element;
            // EAN and UPC let their guard bars reach 5 modules further down.
            EXPECT_GE(raster.height, 50) << element;
            EXPECT_LE(raster.height, 50 + 5 * 3) << element;
        }
    }
}

TEST(EscPosCodes, InRasterModeTheDigitsAddToTheHeight)
{
    const Rendered r = renderCodes("<barcode type=\"code39\" data=\"T7\" height=\"50\" hri=\"below\"/>",
                                   EscPosSettings::Codes::Raster);
    EXPECT_GT(firstRaster(r.bytes).height, 50);
}

struct Invalid
{
    const char *element;
    const char *message; // a part of the message
};

TEST(EscPosCodes, DataThatCannotBePrintedIsAnErrorAtTheElement)
{
    const Invalid cases[] = {
        {"<barcode type=\"ean13\" data=\"40063813A393\"/>", "Invalid character in data"},
        {"<barcode type=\"ean13\" data=\"4006381333932\"/>", "Invalid check digit '2', expecting '1'"},
        {"<barcode type=\"ean8\" data=\"96385075\"/>", "Invalid check digit"},
        {"<barcode type=\"upca\" data=\"036000291453\"/>", "Invalid check digit '3', expecting '2'"},
        {"<barcode type=\"ean13\" data=\"123\"/>",
         "EAN-13 takes 12 digits, or 13 with the check digit, not 3"},
        {"<barcode type=\"ean8\" data=\"1234567+2\"/>", "EAN-8 takes 7 digits"},
        {"<barcode type=\"itf\" data=\"123\"/>", "ITF takes an even number of digits, not 3"},
        {"<barcode type=\"itf\" data=\"12A4\"/>", "Invalid character in data"},
        {"<barcode type=\"code39\" data=\"t7\"/>", "Code 39 has no small letters"},
        {"<barcode type=\"code39\" data=\"T*7\"/>", "Invalid character in data"},
        {"<barcode type=\"code128\" data=\"caf\xc3\xa9\"/>",
         "Code 128 takes printable ASCII characters only"},
        {"<barcode type=\"qr\" data=\"7\"/>", "barcode: unknown type \"qr\""},
        {"<barcode data=\"7\"/>", "barcode: unknown type \"\""},
        {"<barcode type=\"ean13\"/>", "barcode: no data"},
        {"<barcode type=\"itf\" data=\"42\" height=\"0\"/>", "barcode: height \"0\""},
        {"<barcode type=\"itf\" data=\"42\" height=\"256\"/>", "barcode: height \"256\""},
        {"<barcode type=\"itf\" data=\"42\" hri=\"above\"/>", "barcode: hri \"above\""},
        {"<qrcode data=\"7\" size=\"0\"/>", "qrcode: size \"0\" is not a whole number from 1 to 16"},
        {"<qrcode data=\"7\" size=\"17\"/>", "qrcode: size \"17\""},
        {"<qrcode data=\"7\" size=\"big\"/>", "qrcode: size \"big\""},
        {"<qrcode data=\"7\" ecc=\"X\"/>", "qrcode: error correction \"X\""},
        {"<qrcode/>", "qrcode: no data"},
    };
    for (const Invalid &entry : cases) {
        for (const EscPosSettings::Codes codes :
             {EscPosSettings::Codes::Native, EscPosSettings::Codes::Raster}) {
            // The element stands on the third line, after two blanks.
            const QByteArray document =
                QByteArray("<document>\n<method name=\"printFullOrderReceipt\"/>\n  ") + entry.element +
                "\n<receipe number=\"1\" name=\"After\"/></document>";
            EscPosSettings settings;
            settings.codes = codes;
            const Rendered r = renderInMemory(document, Profile, settings);
            EXPECT_EQ(r.result.status, RenderResult::Status::InvalidCode) << entry.element;
            EXPECT_TRUE(r.result.message.contains(QString::fromUtf8(entry.message)))
                << entry.element << ": " << r.result.message.toStdString();
            EXPECT_EQ(r.result.line, 3) << entry.element;
            EXPECT_EQ(r.result.column, 3) << entry.element;
            // Nothing of the code, nothing after it; the paper is still cut.
            EXPECT_FALSE(r.bytes.contains("\x1dk")) << entry.element;
            EXPECT_FALSE(r.bytes.contains("\x1d(k")) << entry.element;
            EXPECT_FALSE(r.bytes.contains("\x1dv0")) << entry.element;
            EXPECT_FALSE(r.bytes.contains("After")) << entry.element;
            EXPECT_TRUE(r.bytes.endsWith(QByteArray("\x1dV\x42\x00", 4))) << entry.element;
        }
    }
}

TEST(EscPosCodes, QrDataBeyondTheCapacityOfItsLevelIsAnError)
{
    // Level H holds at most 1273 bytes in the largest symbol.
    const Rendered r = renderCodes("<qrcode size=\"1\" ecc=\"H\" data=\"" + QByteArray(1300, 'x') + "\"/>");
    EXPECT_EQ(r.result.status, RenderResult::Status::InvalidCode);
    EXPECT_TRUE(r.result.message.startsWith(QLatin1String("qrcode: ")));
    EXPECT_TRUE(r.result.message.contains(QLatin1String("Input too long"))) << r.result.message.toStdString();
    // The same data at level L fits a symbol, at one dot a module.
    const Rendered fits =
        renderCodes("<qrcode size=\"1\" ecc=\"L\" data=\"" + QByteArray(1300, 'x') + "\"/>");
    EXPECT_EQ(fits.result.status, RenderResult::Status::Ok) << fits.result.message.toStdString();
}

TEST(EscPosCodes, AQrCodeWiderThanThePaperIsAnError)
{
    // 300 bytes at level M need version 10 or more: 57 modules and more, 912 dots at size 16.
    const Rendered r = renderCodes("<qrcode size=\"16\" data=\"" + QByteArray(300, 'x') + "\"/>");
    EXPECT_EQ(r.result.status, RenderResult::Status::InvalidCode);
    EXPECT_TRUE(r.result.message.contains(QLatin1String("wider than the paper's 384 dots")))
        << r.result.message.toStdString();
}

TEST(EscPosCodes, TheCommandFileFormatIgnoresEvenInvalidCodes)
{
    const QByteArray with =
        documentOf("printFullOrderReceipt", "<receipe number=\"1\" name=\"Acqua\"/><qrcode data=\"7\"/>"
                                            "<barcode type=\"ean13\" data=\"0\"/><qrcode size=\"99\"/>");
    const QByteArray without = documentOf("printFullOrderReceipt", "<receipe number=\"1\" name=\"Acqua\"/>");
    const Rendered a = renderInMemory(with, Profile, EscPosSettings(), RenderFormat::Text);
    const Rendered b = renderInMemory(without, Profile, EscPosSettings(), RenderFormat::Text);
    EXPECT_EQ(a.result.status, RenderResult::Status::Ok);
    EXPECT_EQ(a.bytes, b.bytes);
    EXPECT_FALSE(a.bytes.isEmpty());
}

} // namespace
