// QR codes and barcodes in a job: their attributes as the back-ends receive them, and the
// dispatch that hands them to the back-end in every document.

#include "RecordedDocument.h"

#include "devices/commandfile/CompanyPrinterDriver.h"

#include "layout/BarcodeElement.h"
#include "layout/QrCodeElement.h"

#include "DocumentMethods.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

namespace {

QrCodeElement qrCode(std::initializer_list<std::pair<const char *, const char *>> list)
{
    return QrCodeElement::fromAttributes(makeAttributes(list));
}

BarcodeElement barcode(std::initializer_list<std::pair<const char *, const char *>> list)
{
    return BarcodeElement::fromAttributes(makeAttributes(list));
}

TEST(QrCodeElement, TakesItsDataAsUtf8AndDefaultsToSizeSixLevelM)
{
    const QrCodeElement request = qrCode({{"data", "caf\xc3\xa9"}});
    EXPECT_EQ(request.data, QByteArray("caf\xc3\xa9"));
    EXPECT_EQ(request.size, 6);
    EXPECT_EQ(request.errorCorrection, QrCodeElement::ErrorCorrection::Medium);
    EXPECT_TRUE(request.problem.isEmpty());
}

TEST(QrCodeElement, ReadsSizeAndLevel)
{
    const QrCodeElement request = qrCode({{"data", "7"}, {"size", "16"}, {"ecc", "H"}});
    EXPECT_EQ(request.size, 16);
    EXPECT_EQ(request.errorCorrection, QrCodeElement::ErrorCorrection::High);
    EXPECT_EQ(qrCode({{"data", "7"}, {"size", "1"}, {"ecc", "L"}}).errorCorrection,
              QrCodeElement::ErrorCorrection::Low);
    EXPECT_EQ(qrCode({{"data", "7"}, {"ecc", "Q"}}).errorCorrection,
              QrCodeElement::ErrorCorrection::Quartile);
    EXPECT_TRUE(qrCode({{"data", "7"}, {"size", "1"}}).problem.isEmpty());
}

TEST(QrCodeElement, DescribesWhatCannotBeUsed)
{
    EXPECT_EQ(qrCode({}).problem, QStringLiteral("qrcode: no data to encode"));
    EXPECT_EQ(qrCode({{"data", "7"}, {"size", "17"}}).problem,
              QStringLiteral("qrcode: size \"17\" is not a whole number from 1 to 16"));
    EXPECT_FALSE(qrCode({{"data", "7"}, {"size", "0"}}).problem.isEmpty());
    EXPECT_FALSE(qrCode({{"data", "7"}, {"size", "2.5"}}).problem.isEmpty());
    EXPECT_FALSE(qrCode({{"data", "7"}, {"size", ""}}).problem.isEmpty());
    EXPECT_EQ(qrCode({{"data", "7"}, {"ecc", "m"}}).problem,
              QStringLiteral("qrcode: error correction \"m\" is none of L, M, Q and H"));
}

TEST(BarcodeElement, ReadsEveryTypeAndDefaultsToEightyDotsWithDigitsBelow)
{
    const struct
    {
        const char *name;
        BarcodeElement::Type type;
    } types[] = {{"ean13", BarcodeElement::Type::Ean13},     {"ean8", BarcodeElement::Type::Ean8},
                 {"upca", BarcodeElement::Type::UpcA},       {"code39", BarcodeElement::Type::Code39},
                 {"code128", BarcodeElement::Type::Code128}, {"itf", BarcodeElement::Type::Itf}};
    for (const auto &entry : types) {
        const BarcodeElement request = barcode({{"type", entry.name}, {"data", "42"}});
        EXPECT_EQ(request.type, entry.type) << entry.name;
        EXPECT_EQ(request.data, QStringLiteral("42"));
        EXPECT_EQ(request.height, 80);
        EXPECT_TRUE(request.textBelow);
        EXPECT_TRUE(request.problem.isEmpty()) << entry.name;
    }
    const BarcodeElement request =
        barcode({{"type", "itf"}, {"data", "42"}, {"height", "255"}, {"hri", "none"}});
    EXPECT_EQ(request.height, 255);
    EXPECT_FALSE(request.textBelow);
}

TEST(BarcodeElement, DescribesWhatCannotBeUsed)
{
    EXPECT_EQ(barcode({{"type", "EAN13"}, {"data", "42"}}).problem,
              QStringLiteral("barcode: unknown type \"EAN13\" (ean13, ean8, upca, code39, code128 or itf)"));
    EXPECT_EQ(barcode({{"type", "itf"}}).problem, QStringLiteral("barcode: no data to encode"));
    EXPECT_EQ(barcode({{"type", "itf"}, {"data", "42"}, {"height", "0"}}).problem,
              QStringLiteral("barcode: height \"0\" is not a whole number of dots from 1 to 255"));
    EXPECT_FALSE(barcode({{"type", "itf"}, {"data", "42"}, {"height", "256"}}).problem.isEmpty());
    EXPECT_EQ(barcode({{"type", "itf"}, {"data", "42"}, {"hri", "above"}}).problem,
              QStringLiteral("barcode: hri \"above\" is neither none nor below"));
}

class CodeDispatch : public ::testing::Test
{
protected:
    bool element(const char *name, AttributeList list = {}) { return m_document.element(name, list); }

    RecordedDocument m_document{"bristel : { };"};
    RecordingBackEnd &m_driver = m_document.driver();
};

TEST_F(CodeDispatch, EveryDocumentHandsItsCodesToTheBackEnd)
{
    for (const char *method : testsupport::documentMethods) {
        const QString name = QString::fromLatin1(method);
        EXPECT_TRUE(element("method", {{"name", method}}));
        m_driver.calls.clear();
        EXPECT_TRUE(element("qrcode", {{"data", "7"}}));
        EXPECT_TRUE(element("barcode", {{"type", "itf"}, {"data", "42"}}));
        // No print method sees them: nothing but the codes reaches the back-end.
        EXPECT_EQ(m_driver.calls, QStringList({"qrcode 7", "barcode 42"})) << method;
        EXPECT_TRUE(m_driver.elementError().isEmpty());
    }
}

TEST_F(CodeDispatch, CodesBeforeTheMethodAreIgnored)
{
    EXPECT_TRUE(element("qrcode", {{"data", "7"}}));
    EXPECT_TRUE(element("barcode", {{"type", "itf"}, {"data", "42"}}));
    EXPECT_TRUE(m_driver.calls.isEmpty());
}

TEST_F(CodeDispatch, ACodeTheBackEndRefusesStopsTheParseWithItsReason)
{
    EXPECT_TRUE(element("method", {{"name", "printFullOrderReceipt"}}));
    EXPECT_FALSE(element("barcode", {{"type", "itf"}, {"data", "refuse"}}));
    EXPECT_EQ(m_driver.elementError(), QStringLiteral("refused"));
    EXPECT_FALSE(m_driver.stoppedOnUnknownMethod());
}

TEST(CommandFileCodes, AreAcceptedWithoutAByteWhateverTheirAttributes)
{
    QTemporaryDir dir;
    const QString output = dir.filePath(QStringLiteral("out.txt"));
    const BRConfiguration configuration(dir.filePath(QStringLiteral("none")), QStringLiteral("xml"));
    {
        CompanyPrinterDriver driver(output, &configuration);
        QString error;
        EXPECT_TRUE(driver.printQrCode(qrCode({{"size", "99"}}), &error));
        EXPECT_TRUE(driver.printBarcode(barcode({{"type", "ean13"}, {"data", "0"}}), &error));
        EXPECT_TRUE(error.isEmpty());
        for (const char *method : {"printFullOrderReceipt", "printFullOrderFiscal"}) {
            EXPECT_TRUE(driver.startElement(QString(), QStringLiteral("method"), QStringLiteral("method"),
                                            makeAttributes({{"name", method}})));
            EXPECT_TRUE(driver.startElement(QString(), QStringLiteral("qrcode"), QStringLiteral("qrcode"),
                                            makeAttributes({{"ecc", "X"}})));
        }
    }
    // Only the fiscal receipt's opening record.
    EXPECT_EQ(readFile(output), QByteArray("1020;1\r\n"));
}

} // namespace
