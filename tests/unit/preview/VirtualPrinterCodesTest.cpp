// The QR codes, PDF417 symbols and barcodes the virtual printer draws: the settings it
// honours, the dots it draws and what it refuses.

#include "PreviewTestSupport.h"

#include "virtualprinter/CodeDrawer.h"
#include "virtualprinter/VirtualPrinter.h"

#include <gtest/gtest.h>

namespace {

template <size_t N> QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, N - 1);
}

const QByteArray init = bytes("\x1b@");

// GS ( k pL pH cn fn and the function's parameters.
QByteArray symbolFunction(char cn, char fn, const QByteArray &parameters)
{
    const qsizetype length = parameters.size() + 2;
    return bytes("\x1d(k") + char(length & 0xff) + char(length >> 8) + cn + fn + parameters;
}

QByteArray qr(char fn, const QByteArray &parameters)
{
    return symbolFunction('1', fn, parameters);
}

QByteArray qrData(const QByteArray &data)
{
    return qr(80, "0" + data);
}

const QByteArray qrPrint = bytes("\x1d(k\x03\x00\x31\x51\x30");

// GS k m n d1 ... dn.
QByteArray barcode(int m, const QByteArray &data)
{
    return bytes("\x1dk") + char(m) + char(data.size()) + data;
}

// GS k m d1 ... dk NUL.
QByteArray barcodeEndedByNul(int m, const QByteArray &data)
{
    return bytes("\x1dk") + char(m) + data + '\0';
}

QByteArray setting(char command, int value)
{
    return QByteArray("\x1d") + command + char(value);
}

bool isBlack(const PaperImage &image, int x, int y)
{
    return image.dots.pixelIndex(x, y) == 1;
}

std::vector<VirtualPrinter::Unsupported> unsupportedOf(const QByteArray &stream)
{
    VirtualPrinter printer(stream, Paper::width80mm);
    printer.printAll();
    return printer.unsupported();
}

TEST(VirtualPrinterCodes, AQrModuleIsASquareOfTheModuleSize)
{
    // "hello" is a version 1 symbol: 21 x 21 modules, its finder pattern 7 modules wide.
    for (int size = 1; size <= 16; ++size) {
        const Paper paper =
            printed(init + qr(67, QByteArray(1, char(size))) + qrData("hello") + qrPrint, Paper::width80mm);
        ASSERT_EQ(paper.images().size(), 1u) << size;
        const PaperImage &image = paper.images()[0];
        EXPECT_EQ(image.dots.width(), 21 * size);
        EXPECT_EQ(image.dots.height(), 21 * size);
        EXPECT_TRUE(isBlack(image, 0, 0));
        EXPECT_TRUE(isBlack(image, 7 * size - 1, 7 * size - 1));
        EXPECT_FALSE(isBlack(image, 7 * size, 0));
        EXPECT_FALSE(isBlack(image, size, size));
        EXPECT_EQ(paper.length(), 21 * size);
    }
}

TEST(VirtualPrinterCodes, TheDefaultModuleIsThreeDotsAndEscInitializeRestoresIt)
{
    const QByteArray stored = qr(67, "\x08") + qrData("hello");
    Paper paper = printed(init + stored + qrPrint);
    ASSERT_EQ(paper.images().size(), 1u);
    EXPECT_EQ(paper.images()[0].dots.width(), 21 * 8);
    // ESC @ forgets the size and the data: the print that follows has nothing to print.
    paper = printed(init + stored + init + qrData("hello") + qrPrint);
    ASSERT_EQ(paper.images().size(), 1u);
    EXPECT_EQ(paper.images()[0].dots.width(), 21 * CodeDrawer::defaultQrModule);
    const auto kinds = unsupportedOf(init + stored + init + qrPrint);
    ASSERT_EQ(kinds.size(), 1u);
    EXPECT_EQ(kinds[0].name, QStringLiteral("GS ( k: no QR code data stored"));
}

TEST(VirtualPrinterCodes, ErrorCorrectionChoosesTheSymbolAndOutOfRangeSettingsAreIgnored)
{
    // 26 bytes: version 2 (25 modules) at level L, version 4 (33 modules) at level H.
    const QByteArray data = qrData("https://example.com/pay/42");
    const auto width = [&](const QByteArray &settings) {
        const Paper paper = printed(init + qr(67, "\x01") + settings + data + qrPrint);
        return paper.images().empty() ? -1 : paper.images()[0].dots.width();
    };
    EXPECT_EQ(width(qr(69, "0")), 25);
    EXPECT_EQ(width(qr(69, "3")), 33);
    EXPECT_EQ(width({}), 25); // L when nothing is chosen
    // Level 52 and module size 17 do not exist: the printer keeps what it had.
    EXPECT_EQ(width(qr(69, "3") + qr(69, "4")), 33);
    EXPECT_EQ(width(qr(67, "\x11")), 25);
    EXPECT_EQ(width(qr(67, "\x02") + qr(67, "\x00")), 50);
}

TEST(VirtualPrinterCodes, SymbolsPrintAtTheJustificationAndFeedTheirHeight)
{
    const QByteArray symbol = qr(67, "\x04") + qrData("hello") + qrPrint;
    const Paper left = printed(init + bytes("a\n") + symbol + bytes("b\n"));
    ASSERT_EQ(left.images().size(), 1u);
    EXPECT_EQ(left.images()[0].x, 0);
    EXPECT_EQ(left.images()[0].top, 30);
    ASSERT_EQ(left.runs().size(), 2u);
    EXPECT_EQ(left.runs()[1].top, 30 + 84);
    const Paper centre = printed(init + bytes("\x1b\x61\x01") + symbol);
    EXPECT_EQ(centre.images()[0].x, (Paper::width58mm - 84) / 2);
    const Paper right = printed(init + bytes("\x1b\x61\x02") + symbol);
    EXPECT_EQ(right.images()[0].x, Paper::width58mm - 84);
}

TEST(VirtualPrinterCodes, BarsAreModuleWidthDotsWideAndAsTallAsGsH)
{
    // EAN-13 has 95 modules.
    Paper paper = printed(init + barcode(67, "400638133393"), Paper::width80mm);
    ASSERT_EQ(paper.images().size(), 1u);
    EXPECT_EQ(paper.images()[0].dots.width(), 95 * CodeDrawer::defaultBarcodeModule);
    EXPECT_EQ(paper.images()[0].dots.height(), CodeDrawer::defaultBarcodeHeight);
    paper = printed(init + setting('h', 50) + setting('w', 2) + barcode(67, "400638133393"));
    ASSERT_EQ(paper.images().size(), 1u);
    const PaperImage &image = paper.images()[0];
    EXPECT_EQ(image.dots.width(), 190);
    EXPECT_EQ(image.dots.height(), 50);
    // The start guard: bar, space, bar, one module (2 dots) each, the whole height.
    for (int y : {0, 49}) {
        EXPECT_TRUE(isBlack(image, 0, y));
        EXPECT_TRUE(isBlack(image, 1, y));
        EXPECT_FALSE(isBlack(image, 2, y));
        EXPECT_FALSE(isBlack(image, 3, y));
        EXPECT_TRUE(isBlack(image, 4, y));
    }
    // Module widths 1, 7 and 0 do not exist: the printer keeps 2.
    paper = printed(init + setting('w', 2) + setting('w', 1) + setting('w', 7) + setting('h', 0) +
                    barcode(67, "400638133393"));
    EXPECT_EQ(paper.images()[0].dots.width(), 190);
    EXPECT_EQ(paper.images()[0].dots.height(), CodeDrawer::defaultBarcodeHeight);
}

TEST(VirtualPrinterCodes, TheHumanReadableCharactersGoWhereGsHSays)
{
    const QByteArray code = setting('h', 40) + barcode(67, "400638133393");
    Paper paper = printed(init + code);
    EXPECT_TRUE(paper.runs().empty());
    EXPECT_EQ(paper.length(), 40);

    paper = printed(init + setting('H', 2) + code);
    ASSERT_EQ(paper.runs().size(), 1u);
    EXPECT_EQ(paper.runs()[0].text, QStringLiteral("4006381333931")); // with its check digit
    EXPECT_EQ(paper.runs()[0].top, 40);
    // Centred under the bars.
    EXPECT_EQ(paper.runs()[0].x, (285 - 13 * Paper::cellWidth) / 2);
    EXPECT_EQ(paper.length(), 40 + Paper::cellHeight);

    paper = printed(init + setting('H', '1') + code);
    ASSERT_EQ(paper.runs().size(), 1u);
    EXPECT_EQ(paper.runs()[0].top, 0);
    EXPECT_EQ(paper.images()[0].top, Paper::cellHeight);

    paper = printed(init + setting('H', 3) + code);
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[1].top, Paper::cellHeight + 40);
    EXPECT_EQ(paper.length(), 2 * Paper::cellHeight + 40);
}

TEST(VirtualPrinterCodes, GsFPrintsTheHumanReadableCharactersInFontB)
{
    const QByteArray code = setting('h', 40) + setting('H', 2) + barcode(67, "400638133393");
    const Paper paper = printed(init + setting('f', 1) + code);
    ASSERT_EQ(paper.runs().size(), 1u);
    EXPECT_EQ(paper.runs()[0].font, PaperRun::Font::B);
    EXPECT_EQ(paper.runs()[0].x, (285 - 13 * Paper::fontBCellWidth) / 2);
    EXPECT_EQ(paper.length(), 40 + Paper::fontBCellHeight);
    // ESC @ brings back Font A.
    EXPECT_EQ(printed(init + setting('f', 1) + init + code).runs()[0].font, PaperRun::Font::A);
}

TEST(VirtualPrinterCodes, BothFormsOfGsKDrawTheSameBars)
{
    const struct
    {
        int m;
        const char *data;
        const char *hri;
    } systems[] = {
        {0, "03600029145", "036000291452"}, {1, "0123456", "01234565"}, {2, "400638133393", "4006381333931"},
        {3, "9638507", "96385074"},         {4, "T7-42", "*T7-42*"},    {5, "00012345", "00012345"},
        {6, "A40156B", "A40156B"}};
    for (const auto &system : systems) {
        const QByteArray hri = setting('H', 2);
        const Paper nul = printed(init + hri + barcodeEndedByNul(system.m, system.data), Paper::width80mm);
        const Paper counted = printed(init + hri + barcode(system.m + 65, system.data), Paper::width80mm);
        ASSERT_EQ(nul.images().size(), 1u) << system.m;
        ASSERT_EQ(counted.images().size(), 1u) << system.m;
        EXPECT_EQ(nul.images()[0].dots, counted.images()[0].dots) << system.m;
        EXPECT_EQ(nul.rowTexts(), QStringList{QString::fromLatin1(system.hri)}) << system.m;
    }
}

TEST(VirtualPrinterCodes, Code128TakesItsCodeSetsAndEscapes)
{
    const auto hri = [](const QByteArray &data) {
        const Paper paper = printed(init + setting('H', 2) + barcode(73, data), Paper::width80mm);
        return paper.images().size() == 1 ? paper.rowTexts().join(QLatin1Char('|')) : QStringLiteral("none");
    };
    EXPECT_EQ(hri("{BT7-000123"), QStringLiteral("T7-000123"));
    EXPECT_EQ(hri("{B{{42}"), QStringLiteral("{42}"));
    // Set C: a byte is two digits; then set B.
    EXPECT_EQ(hri(bytes("{C\x0c\x22\x38{Bx")), QStringLiteral("123456x"));
    EXPECT_EQ(hri("{AAB{Sc"), QStringLiteral("ABc"));
    // No code set, a small letter in set A, 100 in set C, an unknown control: refused.
    EXPECT_EQ(hri("T7"), QStringLiteral("none"));
    EXPECT_EQ(hri("{Aab"), QStringLiteral("none"));
    EXPECT_EQ(hri(bytes("{C\x64")), QStringLiteral("none"));
    EXPECT_EQ(hri("{Bx{Z"), QStringLiteral("none"));
}

TEST(VirtualPrinterCodes, DataThePrinterRefusesPrintsNothingAndIsCounted)
{
    const QByteArray stream = init + barcode(67, "40063813339X") + bytes("a\n") +
                              barcode(67, "4006381333932") + barcodeEndedByNul(5, "123") + barcode(69, "t7");
    VirtualPrinter printer(stream, Paper::width80mm);
    printer.printAll();
    const Paper paper = printer.takeSheet();
    EXPECT_TRUE(paper.images().empty());
    EXPECT_EQ(paper.rowTexts(), QStringList{QStringLiteral("a")});
    const auto &kinds = printer.unsupported();
    ASSERT_EQ(kinds.size(), 3u);
    EXPECT_EQ(kinds[0].name, QStringLiteral("GS k: invalid EAN-13 data"));
    EXPECT_EQ(kinds[0].count, 2); // a letter, then a wrong check digit
    EXPECT_EQ(kinds[0].firstOffset, init.size());
    EXPECT_EQ(kinds[1].name, QStringLiteral("GS k: invalid ITF data"));
    EXPECT_EQ(kinds[2].name, QStringLiteral("GS k: invalid CODE39 data"));
    ASSERT_FALSE(paper.marks().empty());
    EXPECT_EQ(paper.marks()[0].label, QStringLiteral("not drawn: GS k: invalid EAN-13 data"));
}

TEST(VirtualPrinterCodes, ASymbolWiderThanThePaperPrintsNothing)
{
    // 25 modules of 16 dots: 400 dots, wider than 58 mm paper (384), narrower than 80 mm.
    const QByteArray symbol = init + qr(67, "\x10") + qrData("https://example.com/pay/42") + qrPrint;
    EXPECT_TRUE(printed(symbol).images().empty());
    EXPECT_EQ(printed(symbol, Paper::width80mm).images().size(), 1u);
    const auto kinds = unsupportedOf(init + setting('w', 6) + barcode(73, "{B" + QByteArray(20, 'x')));
    ASSERT_EQ(kinds.size(), 1u);
    EXPECT_EQ(kinds[0].name, QStringLiteral("GS k: CODE128 wider than the paper"));
}

TEST(VirtualPrinterCodes, MicroQrIsDrawnAndModelOneIsReported)
{
    Paper paper = printed(init + qr(65, "3\x00") + qr(67, "\x01") + qrData("12345") + qrPrint);
    ASSERT_EQ(paper.images().size(), 1u);
    EXPECT_EQ(paper.images()[0].dots.width(), 11); // M1
    const auto kinds = unsupportedOf(init + qr(65, "1\x00") + qrData("12345") + qrPrint);
    ASSERT_EQ(kinds.size(), 1u);
    EXPECT_EQ(kinds[0].name, QStringLiteral("GS ( k: QR code model 1"));
}

TEST(VirtualPrinterCodes, Pdf417RowsAreModuleWidthTimesRowHeightTall)
{
    const auto pdf = [](char fn, const QByteArray &parameters) {
        return symbolFunction('0', fn, parameters);
    };
    const QByteArray stream = init + pdf(67, "\x02") + pdf(68, "\x04") + pdf(65, "\x02") +
                              pdf(80, "0PDF417 receipt 42") + pdf(81, "0");
    const Paper paper = printed(stream, Paper::width80mm);
    ASSERT_EQ(paper.images().size(), 1u);
    const QImage &dots = paper.images()[0].dots;
    // Start (17 modules), left indicator, two data columns, right indicator (17 each), stop (18).
    EXPECT_EQ(dots.width(), (17 * 5 + 18) * 2);
    EXPECT_EQ(dots.height() % 8, 0);
    EXPECT_GE(dots.height() / 8, 3);
}

} // namespace
