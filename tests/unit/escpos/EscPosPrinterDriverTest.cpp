// The bytes the ESC/POS back-end writes for the document methods' primitives.

#include "EscPosRendering.h"

#include "devices/escpos/EscPosListing.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>

namespace {

const QByteArray Start("\x1b@\x1bt\x13");                        // initialise, PC858
const QByteArray Normal("\x1b\x45\x00\x1d!\x00\x1b\x61\x00", 9); // emphasis off, size 1x1, left
const QByteArray CutPartial("\x1dV\x42\x00", 4);

const QByteArray ReceiptProfile = "bristel : { receiptdoc : { quantityFieldWidth = 3; priceFieldWidth = 7; "
                                  "totalPriceFieldWidth = 8; paperWidth = 32; printDate = true; }; };";

TEST(EscPosPrinterDriver, AnEmptyDocumentInitialisesSelectsTheTableAndCuts)
{
    const Rendered r = renderInMemory(documentOf("printFullOrderReceipt", ""), ReceiptProfile);
    EXPECT_EQ(r.result.status, RenderResult::Status::Ok);
    EXPECT_EQ(r.bytes, Start + CutPartial);
}

TEST(EscPosPrinterDriver, IndentedLinesCarryTheirIndentTwiceAndEndWithALineFeed)
{
    const Rendered r = renderInMemory(documentOf("printFullOrderReceipt", "<orderinfo date=\"12/03/2026\"/>"),
                                      ReceiptProfile);
    // The date line is printed with an indent of one, written again before the line feed.
    EXPECT_TRUE(r.bytes.contains(" Date: 12/03/2026 \n")) << r.bytes.toHex(' ').constData();
    EXPECT_FALSE(r.bytes.contains('\r'));
}

TEST(EscPosPrinterDriver, ColumnHeadingsAreBoldThenNormal)
{
    const Rendered r = renderInMemory(
        documentOf("printFullOrderReceipt",
                   "<receipe number=\"2\" name=\"Acqua\" price=\"1.50\" totalPrice=\"3.00\"/>"),
        ReceiptProfile);
    const QByteArray heading = QByteArray("\x1b\x45\x01") + "Num Description    Price  Amount\n" + Normal +
                               "  2 x Acqua.........1.50    3.00\n";
    EXPECT_TRUE(r.bytes.contains(heading)) << r.bytes.toHex(' ').constData();
}

TEST(EscPosPrinterDriver, OtherDishesOfAKitchenTicketAreDoubleHeightOnly)
{
    const QByteArray profile = "bristel : { doc : { quantityFieldWidth = 3; paperWidth = 32; }; };";
    const Rendered r = renderInMemory(
        documentOf("printPartialOrder", "<otherreceipe number=\"1\" name=\"Tiramisu\"/>"), profile);
    EXPECT_TRUE(r.bytes.contains(QByteArray("\x1d!\x01", 3) + "  1 Tiramisu"))
        << r.bytes.toHex(' ').constData();
}

TEST(EscPosPrinterDriver, ARuleStartsAtTheLeftEdgeAfterACentredTitle)
{
    // The printer's name is a centred title; the rule under it runs across the paper.
    const QByteArray profile = "bristel : { receiptdoc : { paperWidth = 4; }; };";
    const Rendered r =
        renderInMemory(documentOf("printFullOrderReceipt", "<printers name=\"Cassa\"/><headers/>"), profile);
    EXPECT_TRUE(r.bytes.contains(QByteArray("\x1b\x61\x01"
                                            "Cassa\n\x1b\x61\x00====\n\x1b\x61\x01")))
        << r.bytes.toHex(' ').constData();
}

TEST(EscPosPrinterDriver, TheCashDrawerOpensOnlyWhenTheProfileSaysSo)
{
    const QByteArray drawer = "bristel : { receiptdoc : { openCashDrawer = true; }; };";
    EscPosSettings settings;
    settings.drawerPin = 5;
    settings.drawerOnMs = 100;
    settings.drawerOffMs = 200;
    const Rendered opened = renderInMemory(documentOf("printFullOrderReceipt", ""), drawer, settings);
    EXPECT_EQ(opened.bytes, Start + QByteArray("\x1bp\x01\x32\x64", 5) + CutPartial);
    const Rendered closed = renderInMemory(documentOf("printFullOrderReceipt", ""), ReceiptProfile, settings);
    EXPECT_FALSE(closed.bytes.contains("\x1bp"));
}

TEST(EscPosPrinterDriver, TheCutFollowsTheSettings)
{
    EscPosSettings settings;
    settings.cut = EscPosSettings::Cut::Full;
    settings.cutFeed = 4;
    EXPECT_EQ(renderInMemory(documentOf("printSold", ""), "", settings).bytes,
              Start + QByteArray("\x1dV\x41\x04", 4));
    settings.cut = EscPosSettings::Cut::None;
    EXPECT_EQ(renderInMemory(documentOf("printSold", ""), "", settings).bytes, Start);
}

TEST(EscPosPrinterDriver, TheConfiguredTableIsSelectedAndTextEncodedInIt)
{
    EscPosSettings settings;
    ASSERT_TRUE(settings.setCodePage(QStringLiteral("WPC1252")));
    const QByteArray document =
        documentOf("printFullOrderReceipt", "<headers a=\"Caff\xc3\xa8 \xe2\x82\xac 1\"/>");
    const Rendered r =
        renderInMemory(document, "bristel : { receiptdoc : { printHeader = true; }; };", settings);
    EXPECT_TRUE(r.bytes.startsWith("\x1b@\x1bt\x10"));
    EXPECT_TRUE(r.bytes.contains("Caff\xe8 \x80 1")) << r.bytes.toHex(' ').constData();
}

TEST(EscPosPrinterDriver, ColumnsApplyWhereTheProfileHasNoPaperWidth)
{
    EscPosSettings settings;
    settings.columns = 48;
    const QByteArray profile = "bristel : { receiptdoc : { printHeader = true; }; };";
    const Rendered r =
        renderInMemory(documentOf("printFullOrderReceipt", "<headers a=\"x\"/>"), profile, settings);
    EXPECT_TRUE(r.bytes.contains(QByteArray(48, '=') + "\n"));
    EXPECT_FALSE(r.bytes.contains(QByteArray(49, '=')));
}

TEST(EscPosPrinterDriver, AFiscalReceiptIsMarkedAsNotFiscalAndShowsSalesAndPayment)
{
    const QByteArray document = documentOf(
        "printFullOrderFiscal", "<receipe department=\"1\" number=\"2\" name=\"Acqua\" price=\"3.00\"/>"
                                "<total cash=\"0,00\" creditCard=\"3,00\" discountRate=\"10\"/>");
    const Rendered r = renderInMemory(document, "");
    const QString text = escPosPrintedText(r.bytes);
    EXPECT_EQ(text, QStringLiteral("NOT A FISCAL DOCUMENT\n"
                                   "2 x Acqua.................. 3.00\n"
                                   "Discount..................... 10\n"
                                   "Carta di Credito........... 3,00\n"
                                   "NOT A FISCAL DOCUMENT\n"));
    EXPECT_FALSE(r.bytes.contains("1020;1"));
}

TEST(EscPosPrinterDriver, AnUnreadableLogoPrintsNothingAndIsReported)
{
    EscPosSettings settings;
    settings.logo = QStringLiteral("/nonexistent/logo.pbm");
    const Rendered r = renderInMemory(documentOf("printFullOrderReceipt", "<logo/>"), "", settings);
    EXPECT_EQ(r.result.status, RenderResult::Status::Ok);
    EXPECT_EQ(r.bytes, Start + CutPartial);
    EXPECT_TRUE(r.result.warnings.contains(QLatin1String("/nonexistent/logo.pbm")));
}

TEST(EscPosPrinterDriver, TheLogoIsACentredRasterImageCutToThePrintableWidth)
{
    QTemporaryFile logo;
    ASSERT_TRUE(logo.open());
    // 400 dots wide, 2 rows: wider than the 384 dots of 32 columns.
    logo.write("P4\n400 2\n");
    logo.write(QByteArray(50 * 2, '\xff'));
    logo.close();
    EscPosSettings settings;
    settings.logo = logo.fileName();
    const Rendered r = renderInMemory(documentOf("printFullOrderReceipt", "<logo/>"), "", settings);
    const QByteArray expected = QByteArray("\x1b\x61\x01\x1dv0\x00\x30\x00\x02\x00", 11) +
                                QByteArray(96, '\xff') + QByteArray("\x1b\x61\x00", 3);
    EXPECT_EQ(r.bytes, Start + expected + CutPartial);
}

TEST(EscPosPrinterDriver, AMalformedDocumentKeepsWhatWasPrintedAndCutsWithoutOpeningTheDrawer)
{
    const QByteArray drawer = "bristel : { receiptdoc : { openCashDrawer = true; printHeader = true; }; };";
    const Rendered r =
        renderInMemory("<document><method name=\"printFullOrderReceipt\"/><headers a=\"Ciao\"/><x", drawer);
    EXPECT_EQ(r.result.status, RenderResult::Status::MalformedDocument);
    EXPECT_EQ(r.result.line, 1);
    EXPECT_TRUE(r.bytes.contains("Ciao"));
    EXPECT_TRUE(r.bytes.endsWith(Normal + CutPartial));
    EXPECT_FALSE(r.bytes.contains("\x1bp"));
}

TEST(EscPosPrinterDriver, AnUnknownMethodIsReportedWithItsPosition)
{
    const Rendered r = renderInMemory("<document>\n  <method name=\"printNothing\"/>\n</document>", "");
    EXPECT_EQ(r.result.status, RenderResult::Status::UnknownMethod);
    EXPECT_EQ(r.result.line, 2);
}

TEST(EscPosListing, ShowsCommandsInBracketsBeforeTheirText)
{
    const QByteArray stream =
        Start + QByteArray("\x1b\x45\x01Totale\n\x1bp\x00\x19\xfa\x1dV\x42\x04\x1b\x07", 21);
    EXPECT_EQ(escPosListing(stream),
              QStringLiteral("[initialize] [code table 19 PC858] [bold on] Totale\n"
                             "[drawer pin 2, 50 ms on, 500 ms off] [cut partial, feed 4] "
                             "[unknown 1b 07] \n"));
}

TEST(EscPosListing, DecodesTextByTheTableInForce)
{
    EXPECT_EQ(escPosPrintedText(QByteArray("\x1bt\x13\xd5\n\x1b@\xd5\n")),
              QStringLiteral("\u20ac\n\u2552\n"));
}

} // namespace
