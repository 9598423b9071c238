#include "PreviewTestSupport.h"

#include "preview/PaperPainter.h"
#include "preview/PreviewWriter.h"
#include "virtualprinter/VirtualPrinter.h"

#include <QImage>

#include <gtest/gtest.h>

namespace {

template <size_t N> QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, N - 1);
}

const QByteArray init = bytes("\x1b@\x1bt\x13");

// A pattern no mix-up of rows, columns or bit order leaves alone: dot (x, y) is printed when
// x * 7 + y * 3 is odd and x + y is not a multiple of 5.
bool patternDot(int x, int y)
{
    return (x * 7 + y * 3) % 2 == 1 && (x + y) % 5 != 0;
}

// The pattern in column format: `columns` columns of `rowBytes` bytes, top dot in the high bit.
QByteArray columnData(int columns, int rowBytes)
{
    QByteArray data;
    for (int x = 0; x < columns; ++x) {
        for (int b = 0; b < rowBytes; ++b) {
            unsigned byte = 0;
            for (int bit = 0; bit < 8; ++bit)
                byte |= patternDot(x, b * 8 + bit) ? 0x80u >> bit : 0;
            data += char(byte);
        }
    }
    return data;
}

// The pattern in raster format: rows of (width + 7) / 8 bytes, left dot in the high bit.
QByteArray rasterData(int width, int height)
{
    QByteArray data;
    for (int y = 0; y < height; ++y) {
        for (int b = 0; b < (width + 7) / 8; ++b) {
            unsigned byte = 0;
            for (int bit = 0; bit < 8 && b * 8 + bit < width; ++bit)
                byte |= patternDot(b * 8 + bit, y) ? 0x80u >> bit : 0;
            data += char(byte);
        }
    }
    return data;
}

QImage picture(const Paper &paper)
{
    QString error;
    const QImage image = paperImage(paper, &error);
    EXPECT_FALSE(image.isNull()) << qPrintable(error);
    return image;
}

// Every dot of the pattern, `width` x `height`, at (x, y) of the paper, each printed
// `scaleX` x `scaleY` dots, and (unless text shares them) nothing else in the rows it fills.
void expectPattern(const QImage &image, int x, int y, int width, int height, int scaleX, int scaleY,
                   bool wholeRows = true)
{
    const int left = PaperPainter::leftMargin;
    int wrong = 0;
    for (int row = 0; row < height * scaleY; ++row) {
        for (int column = wholeRows ? 0 : x; column < (wholeRows ? 384 : x + width * scaleX); ++column) {
            const bool inside = column >= x && column < x + width * scaleX;
            const bool ink = inside && patternDot((column - x) / scaleX, row / scaleY);
            wrong += (image.pixel(left + column, y + row) == qRgb(0, 0, 0)) != ink;
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST(VirtualPrinterImages, EscStarPrintsItsDotsInEveryDensity)
{
    struct Mode
    {
        char m;
        int rowBytes;
        int scaleX;
        int scaleY;
    };
    for (const Mode mode : {Mode{0, 1, 2, 3}, Mode{1, 1, 1, 3}, Mode{32, 3, 2, 1}, Mode{33, 3, 1, 1}}) {
        SCOPED_TRACE(int(mode.m));
        const int columns = 40;
        QByteArray stream = init + bytes("\x1b"
                                         "3\x00");
        stream += QByteArray("\x1b*") + mode.m + char(columns) + char(0) + columnData(columns, mode.rowBytes);
        stream += '\n';
        const Paper paper = printed(stream);
        ASSERT_EQ(paper.images().size(), 1u);
        EXPECT_EQ(paper.length(), 24); // every form is one row of 24 dots
        expectPattern(picture(paper), 0, 0, columns, mode.rowBytes * 8, mode.scaleX, mode.scaleY);
    }
}

TEST(VirtualPrinterImages, EscStarStandsInTheRowAfterTheText)
{
    QByteArray stream = init + bytes("ab\x1b*\x21\x0a\x00");
    stream += columnData(10, 3) + "c\n";
    const Paper paper = printed(stream);
    ASSERT_EQ(paper.images().size(), 1u);
    EXPECT_EQ(paper.images()[0].x, 24);
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[1].x, 34);
    expectPattern(picture(paper), 24, 0, 10, 24, 1, 1, false);
}

TEST(VirtualPrinterImages, AnUnknownEscStarModeIsNoted)
{
    VirtualPrinter printer(init + bytes("\x1b*\x05\x00\x00x\n"), 384);
    printer.printAll();
    ASSERT_EQ(printer.unsupported().size(), 1u);
    EXPECT_EQ(printer.unsupported()[0].name, QStringLiteral("ESC * 5"));
}

QByteArray storeGraphic(int width, int height, char scaleX, char scaleY, bool fourByteLength)
{
    const QByteArray body = QByteArray("\x30\x70\x30", 3) + scaleX + scaleY + '\x31' + char(width & 0xff) +
                            char(width >> 8) + char(height & 0xff) + char(height >> 8) +
                            rasterData(width, height);
    const qsizetype n = body.size();
    if (fourByteLength)
        return QByteArray("\x1d"
                          "8L",
                          3) +
               char(n & 0xff) + char((n >> 8) & 0xff) + char(n >> 16) + '\0' + body;
    return QByteArray("\x1d(L", 3) + char(n & 0xff) + char(n >> 8) + body;
}

const QByteArray printGraphic = bytes("\x1d(L\x02\x00\x30\x32");

TEST(VirtualPrinterImages, GraphicsStoredInTheBufferPrintDotForDot)
{
    for (const bool fourBytes : {false, true}) {
        SCOPED_TRACE(fourBytes);
        const Paper paper = printed(init + storeGraphic(45, 30, 1, 1, fourBytes) + printGraphic + "x\n");
        ASSERT_EQ(paper.images().size(), 1u);
        EXPECT_EQ(paper.runs()[0].top, 30);
        expectPattern(picture(paper), 0, 0, 45, 30, 1, 1);
    }
}

TEST(VirtualPrinterImages, GraphicsScaleAndJustify)
{
    const Paper paper = printed(init +
                                bytes("\x1b"
                                      "a\x01") +
                                storeGraphic(20, 6, 2, 2, false) + printGraphic);
    ASSERT_EQ(paper.images().size(), 1u);
    EXPECT_EQ(paper.images()[0].x, (384 - 40) / 2);
    EXPECT_EQ(paper.length(), 12);
    expectPattern(picture(paper), (384 - 40) / 2, 0, 20, 6, 2, 2);
    // The buffer is empty once printed.
    const Paper again = printed(init + storeGraphic(8, 1, 1, 1, false) + printGraphic + printGraphic);
    EXPECT_EQ(again.images().size(), 1u);
}

TEST(VirtualPrinterImages, AGraphicWiderThanThePaperIsCutAndNoted)
{
    const Paper paper = printed(init + storeGraphic(1000, 3, 1, 1, false) + printGraphic);
    ASSERT_EQ(paper.images().size(), 1u);
    EXPECT_EQ(paper.images()[0].dots.width(), 384);
    ASSERT_EQ(paper.marks().size(), 1u);
    EXPECT_EQ(paper.marks()[0].label, QStringLiteral("image cut to the paper"));
    expectPattern(picture(paper), 0, 0, 384, 3, 1, 1);
}

TEST(VirtualPrinterImages, OtherGraphicsFunctionsAreNotedByNumber)
{
    VirtualPrinter printer(init + bytes("\x1d(L\x02\x00\x30\x45x\n"), 384);
    printer.printAll();
    ASSERT_EQ(printer.unsupported().size(), 1u);
    EXPECT_EQ(printer.unsupported()[0].name, QStringLiteral("GS ( L fn 69"));
}

TEST(VirtualPrinterImages, ADownloadedImagePrintsWhereGsSlashAsks)
{
    // GS * 2 3: 16 columns of 24 dots.
    const QByteArray define = bytes("\x1d*\x02\x03") + columnData(16, 3);
    const Paper paper = printed(init + define + bytes("\x1d/\x00\x1d/\x03"));
    ASSERT_EQ(paper.images().size(), 2u);
    EXPECT_EQ(paper.images()[1].top, 24);
    EXPECT_EQ(paper.images()[1].widthMultiplier, 2);
    EXPECT_EQ(paper.images()[1].heightMultiplier, 2);
    const QImage image = picture(paper);
    expectPattern(image, 0, 0, 16, 24, 1, 1);
    expectPattern(image, 0, 24, 16, 24, 2, 2);
}

TEST(VirtualPrinterImages, NvImagesPrintByNumberAndAnUndefinedOneIsMarked)
{
    // FS q 2: image 1 is 8 x 8 dots, image 2 is 24 x 16.
    const QByteArray define =
        bytes("\x1cq\x02\x01\x00\x01\x00") + columnData(8, 1) + bytes("\x03\x00\x02\x00") + columnData(24, 2);
    VirtualPrinter printer(init + define + bytes("\x1cp\x02\x00\x1cp\x03\x00"), 384);
    printer.printAll();
    const Paper paper = printer.takeSheet();
    ASSERT_EQ(paper.images().size(), 1u);
    EXPECT_EQ(paper.images()[0].dots.width(), 24);
    expectPattern(picture(paper), 0, 0, 24, 16, 1, 1);
    ASSERT_EQ(printer.unsupported().size(), 1u);
    EXPECT_EQ(printer.unsupported()[0].name, QStringLiteral("FS p 3 (image not defined)"));
    ASSERT_EQ(paper.marks().size(), 1u);
    EXPECT_EQ(paper.marks()[0].label, QStringLiteral("not drawn: FS p 3 (image not defined)"));
}

TEST(VirtualPrinterImages, GsSlashWithoutADefinitionIsMarked)
{
    VirtualPrinter printer(init + bytes("\x1d/\x00"), 384);
    printer.printAll();
    ASSERT_EQ(printer.unsupported().size(), 1u);
    EXPECT_EQ(printer.unsupported()[0].name, QStringLiteral("GS / (no image defined)"));
}

TEST(VirtualPrinterImages, AnUpsideDownRowTurnsItsBitImage)
{
    QByteArray stream = init + bytes("\x1b{\x01\x1b*\x21\x08\x00");
    stream += columnData(8, 3) + "\n";
    const Paper paper = printed(stream);
    ASSERT_EQ(paper.images().size(), 1u);
    EXPECT_EQ(paper.images()[0].x, 384 - 8);
    const QImage &dots = paper.images()[0].dots;
    for (int y = 0; y < 24; ++y) {
        for (int x = 0; x < 8; ++x)
            EXPECT_EQ(dots.pixelIndex(7 - x, 23 - y) == 1, patternDot(x, y));
    }
}

} // namespace
