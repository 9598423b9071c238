#include "EscPosCommandSamples.h"
#include "PreviewTestSupport.h"

#include "virtualprinter/VirtualPrinter.h"

#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

namespace {

// The bytes of a literal, NULs included.
template <size_t N> QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, N - 1);
}

const QByteArray init = bytes("\x1b@\x1bt\x13"); // ESC @, ESC t 19 (PC858), as the back-end begins

TEST(VirtualPrinter, PrintsRowsAtTheDefaultPitch)
{
    const Paper paper = printed(init + bytes("Uno\nDue\n"));
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[0].text, QStringLiteral("Uno"));
    EXPECT_EQ(paper.runs()[0].top, 0);
    EXPECT_EQ(paper.runs()[0].x, 0);
    EXPECT_EQ(paper.runs()[1].top, 30);
    EXPECT_EQ(paper.length(), 60);
}

TEST(VirtualPrinter, AnEmptyLineFeedsOnePitch)
{
    EXPECT_EQ(printed(init + bytes("\n\n\n")).length(), 90);
    EXPECT_TRUE(printed(init + bytes("\n\n\n")).runs().empty());
}

TEST(VirtualPrinter, CharacterSizeHoldsWidthAndHeightInItsNibbles)
{
    // GS ! 0x01: double height; 0x10: double width; 0x21: triple width, double height.
    const Paper paper = printed(init + bytes("\x1d!\x01Hi\n\x1d!\x10Hi\n\x1d!\x21Hi\n\x1d!\x00Hi\n"));
    ASSERT_EQ(paper.runs().size(), 4u);
    EXPECT_EQ(paper.runs()[0].heightMultiplier, 2);
    EXPECT_EQ(paper.runs()[0].widthMultiplier, 1);
    EXPECT_EQ(paper.runs()[1].heightMultiplier, 1);
    EXPECT_EQ(paper.runs()[1].widthMultiplier, 2);
    EXPECT_EQ(paper.runs()[2].widthMultiplier, 3);
    EXPECT_EQ(paper.runs()[2].heightMultiplier, 2);
    EXPECT_EQ(paper.runs()[3].widthMultiplier, 1);
}

TEST(VirtualPrinter, ADoubleHeightRowFeedsItsHeight)
{
    const Paper paper = printed(init + bytes("\x1d!\x01TOTALE\n\x1d!\x00next\n"));
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[0].top, 0);
    EXPECT_EQ(paper.runs()[1].top, 48);
    EXPECT_EQ(paper.length(), 78);
}

TEST(VirtualPrinter, CharactersOfOneRowShareTheirBaseline)
{
    const Paper paper = printed(init + bytes("a\x1d!\x01"
                                             "B\n"));
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[0].top, 24); // the small one sits low, on the tall one's baseline
    EXPECT_EQ(paper.runs()[1].top, 0);
    EXPECT_EQ(paper.runs()[1].x, 12);
}

TEST(VirtualPrinter, JustificationPlacesTheRow)
{
    const Paper paper = printed(init + bytes("\x1b"
                                             "a\x01"
                                             "abcd\n\x1b"
                                             "a\x02"
                                             "abcd\n\x1b"
                                             "a\x00"
                                             "abcd\n"));
    ASSERT_EQ(paper.runs().size(), 3u);
    EXPECT_EQ(paper.runs()[0].x, (384 - 48) / 2);
    EXPECT_EQ(paper.runs()[1].x, 384 - 48);
    EXPECT_EQ(paper.runs()[2].x, 0);
}

TEST(VirtualPrinter, EmphasisAndUnderlineMakeRunsOfTheirOwn)
{
    const Paper paper = printed(init + bytes("a\x1b"
                                             "E\x01"
                                             "b\x1b"
                                             "E\x00\x1b-\x02"
                                             "c\n"));
    ASSERT_EQ(paper.runs().size(), 3u);
    EXPECT_FALSE(paper.runs()[0].emphasis);
    EXPECT_TRUE(paper.runs()[1].emphasis);
    EXPECT_EQ(paper.runs()[2].underline, 2);
    EXPECT_EQ(paper.rowTexts(), QStringList{QStringLiteral("abc")});
}

TEST(VirtualPrinter, ThirtyTwoColumnsFillFiftyEightMillimetrePaper)
{
    const QByteArray row(32, 'x');
    Paper paper = printed(init + row + "\n");
    EXPECT_EQ(paper.rowTexts().size(), 1);
    EXPECT_EQ(paper.widestRow(), 384);
    // One more character goes on on the next row, as the printer's buffer does.
    paper = printed(init + row + "y\n");
    EXPECT_EQ(paper.rowTexts(), (QStringList{QString(32, QLatin1Char('x')), QStringLiteral("y")}));
    // Eighty millimetres hold 48.
    paper = printed(init + QByteArray(48, 'x') + "\n", Paper::width80mm);
    EXPECT_EQ(paper.rowTexts().size(), 1);
    EXPECT_EQ(paper.widestRow(), 576);
}

TEST(VirtualPrinter, DecodesTheSelectedCodeTable)
{
    // 0xD5 is the euro sign in PC858 and a box-drawing character in PC437.
    EXPECT_EQ(printed(init + bytes("\xd5 5\n")).rowTexts(), QStringList{QStringLiteral("\u20ac 5")});
    EXPECT_EQ(printed(QByteArray("\x1b@\xd5\n")).rowTexts(), QStringList{QStringLiteral("\u2552")});
    // ESC @ returns to the first table.
    EXPECT_EQ(printed(init + bytes("\x1b@\xd5\n")).rowTexts(), QStringList{QStringLiteral("\u2552")});
}

TEST(VirtualPrinter, AnUnknownCodeTableIsMarked)
{
    const Paper paper = printed(init + bytes("\x1bt\xc8"
                                             "a\n"));
    ASSERT_EQ(paper.marks().size(), 1u);
    EXPECT_EQ(paper.marks()[0].kind, PaperMark::Kind::Unknown);
    EXPECT_TRUE(paper.marks()[0].label.contains(QLatin1String("200")));
    EXPECT_EQ(paper.rowTexts(), QStringList{QStringLiteral("a")});
}

TEST(VirtualPrinter, FeedsLinesAndDots)
{
    EXPECT_EQ(printed(init + bytes("\x1b"
                                   "d\x04"))
                  .length(),
              120);
    EXPECT_EQ(printed(init + bytes("\x1bJ\x07")).length(), 7);
    EXPECT_EQ(printed(init + bytes("\x1b"
                                   "3\x40\n\n\x1b"
                                   "2\n"))
                  .length(),
              64 + 64 + 30);
}

TEST(VirtualPrinter, CutsAndTheDrawerAreMarked)
{
    const Paper paper = printed(init + bytes("a\n\x1bp\x00\x19\xfa\x1dVB\x10"
                                             "b\n\x1dVA\x00"),
                                Paper::width58mm);
    ASSERT_EQ(paper.marks().size(), 3u);
    EXPECT_EQ(paper.marks()[0].kind, PaperMark::Kind::DrawerPulse);
    EXPECT_EQ(paper.marks()[0].label, QStringLiteral("drawer pin 2, 50 ms"));
    EXPECT_EQ(paper.marks()[0].y, 30);
    EXPECT_EQ(paper.marks()[1].kind, PaperMark::Kind::PartialCut);
    EXPECT_EQ(paper.marks()[1].y, 30 + 16); // after the feed of GS V 66 16
    EXPECT_EQ(paper.marks()[2].kind, PaperMark::Kind::FullCut);
    EXPECT_EQ(paper.cutPositions(), (std::vector<int>{46, 76}));
}

TEST(VirtualPrinter, UnknownCommandsAreMarkedNotDropped)
{
    const Paper paper = printed(init + bytes("a\x1bxb\n\x1c\x1c\x1c\x1c\x1c\x1c\x1c\x1c\x1c\x1c"));
    ASSERT_GE(paper.marks().size(), 2u);
    EXPECT_EQ(paper.marks()[0].kind, PaperMark::Kind::Unknown);
    EXPECT_EQ(paper.marks()[0].label, QStringLiteral("unknown: 1B 78"));
    // A stretch of bytes of another language is one mark, not one a byte.
    EXPECT_EQ(paper.marks()[1].kind, PaperMark::Kind::Unknown);
    EXPECT_EQ(paper.marks()[1].label, QStringLiteral("unknown: 1C ..."));
    EXPECT_EQ(paper.marks().size(), 2u);
    EXPECT_EQ(paper.rowTexts(), QStringList{QStringLiteral("ab")});
}

TEST(VirtualPrinter, ACommandCutOffByTheEndIsMarked)
{
    const Paper paper = printed(init + bytes("a\n\x1dv0\x00\x10\x00"));
    ASSERT_EQ(paper.marks().size(), 1u);
    EXPECT_EQ(paper.marks()[0].kind, PaperMark::Kind::Unknown);
    EXPECT_TRUE(paper.marks()[0].label.startsWith(QLatin1String("cut off: 1D 76 30")));
}

TEST(VirtualPrinter, TextWithoutALineFeedIsShownAndNoted)
{
    const Paper paper = printed(init + bytes("tail"));
    EXPECT_EQ(paper.rowTexts(), QStringList{QStringLiteral("tail")});
    ASSERT_EQ(paper.marks().size(), 1u);
    EXPECT_EQ(paper.marks()[0].kind, PaperMark::Kind::Note);
}

TEST(VirtualPrinter, PrintsRasterImagesDotForDot)
{
    // 16 x 2 dots: the first row all black, the second only its leftmost dot.
    const QByteArray image("\x1dv0\x00\x02\x00\x02\x00\xff\xff\x80\x00", 12);
    Paper paper = printed(init +
                          bytes("\x1b"
                                "a\x01") +
                          image + "x\n");
    ASSERT_EQ(paper.images().size(), 1u);
    const PaperImage &dots = paper.images()[0];
    EXPECT_EQ(dots.dots.width(), 16);
    EXPECT_EQ(dots.dots.height(), 2);
    EXPECT_EQ(dots.x, (384 - 16) / 2);
    EXPECT_EQ(dots.dots.pixelIndex(15, 0), 1);
    EXPECT_EQ(dots.dots.pixelIndex(0, 1), 1);
    EXPECT_EQ(dots.dots.pixelIndex(1, 1), 0);
    EXPECT_EQ(paper.runs()[0].top, 2); // the text follows the image
    // Mode 3 doubles both ways.
    paper = printed(init + QByteArray("\x1dv0\x03\x01\x00\x01\x00\xff", 9));
    ASSERT_EQ(paper.images().size(), 1u);
    EXPECT_EQ(paper.images()[0].widthMultiplier, 2);
    EXPECT_EQ(paper.images()[0].heightMultiplier, 2);
    EXPECT_EQ(paper.length(), 2);
}

TEST(VirtualPrinter, AnImageWiderThanThePaperIsCut)
{
    QByteArray image("\x1dv0\x00\x64\x00\x01\x00", 8); // 800 dots wide
    image += QByteArray(100, '\xff');
    const Paper paper = printed(init + image);
    ASSERT_EQ(paper.images().size(), 1u);
    EXPECT_EQ(paper.images()[0].dots.width(), 384);
}

TEST(VirtualPrinter, InitializeResetsTheStyle)
{
    const Paper paper = printed(init + bytes("\x1b"
                                             "E\x01\x1d!\x11\x1b"
                                             "a\x01\x1b@"
                                             "a\n"));
    ASSERT_EQ(paper.runs().size(), 1u);
    EXPECT_FALSE(paper.runs()[0].emphasis);
    EXPECT_EQ(paper.runs()[0].widthMultiplier, 1);
    EXPECT_EQ(paper.runs()[0].x, 0);
}

TEST(VirtualPrinter, LongBlankPaperIsShortenedAndNoted)
{
    QByteArray stream = init + bytes("a\n\x1b"
                                     "3\xff");
    for (int i = 0; i < 10; ++i)
        stream += bytes("\x1b"
                        "d\xff"); // 255 lines of 255 dots, ten times: 80 m of paper
    stream += bytes("b\n");
    const Paper paper = printed(stream);
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[1].top, 24 + VirtualPrinter::maximumBlank);
    ASSERT_EQ(paper.marks().size(), 1u);
    EXPECT_EQ(paper.marks()[0].kind, PaperMark::Kind::Note);
    EXPECT_TRUE(paper.marks()[0].label.contains(QLatin1String("mm more blank paper")));
    EXPECT_LT(paper.length(), 24 + VirtualPrinter::maximumBlank + 300);
}

TEST(VirtualPrinter, ComesOutInSheetsOfBoundedLength)
{
    QByteArray stream = init;
    for (int i = 0; i < 100; ++i)
        stream += "row " + QByteArray::number(i) + "\n";
    VirtualPrinter printer(stream, Paper::width58mm);
    int sheets = 0;
    int rows = 0;
    bool more = true;
    while (more) {
        more = printer.printSheet(600);
        const Paper sheet = printer.takeSheet();
        EXPECT_LE(sheet.length(), 600);
        rows += int(sheet.rowTexts().size());
        if (sheets == 1) {
            ASSERT_FALSE(sheet.runs().empty());
            EXPECT_EQ(sheet.runs().front().text, QStringLiteral("row 20"));
            EXPECT_EQ(sheet.runs().front().top, 0);
        }
        ++sheets;
    }
    EXPECT_EQ(sheets, 5);
    EXPECT_EQ(rows, 100);
    EXPECT_TRUE(printer.atEnd());
}

TEST(VirtualPrinter, OneLongTextIsCutIntoSheetsToo)
{
    // 100 rows of text in one command, with no line feed: it wraps row by row.
    VirtualPrinter printer(init + QByteArray(32 * 100, 'x') + "\n", Paper::width58mm);
    int sheets = 0;
    int rows = 0;
    bool more = true;
    while (more) {
        more = printer.printSheet(600);
        const Paper sheet = printer.takeSheet();
        EXPECT_LE(sheet.length(), 600);
        rows += int(sheet.rowTexts().size());
        ++sheets;
    }
    EXPECT_EQ(sheets, 5);
    EXPECT_EQ(rows, 100);
}

TEST(VirtualPrinter, PrintsEveryExampleWithoutUnknownCommands)
{
    // The back-end's own bytes hold nothing the virtual printer does not know.
    const QStringList names = {QStringLiteral("printFullOrderReceipt"),
                               QStringLiteral("printFullOrderFiscal"), QStringLiteral("printReport")};
    for (const QString &name : names) {
        QFile file(QStringLiteral(BRISTEL_EXAMPLES "/documents/%1.escpos").arg(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(name);
        const Paper paper = printed(file.readAll());
        EXPECT_FALSE(paper.runs().empty()) << qPrintable(name);
        for (const PaperMark &mark : paper.marks())
            EXPECT_NE(mark.kind, PaperMark::Kind::Unknown) << qPrintable(name) << qPrintable(mark.label);
        EXPECT_FALSE(paper.cutPositions().empty()) << qPrintable(name);
    }
}

TEST(VirtualPrinter, EveryCommandOfTheSetLeavesOnlyTheTextOnThePaper)
{
    for (const EscPosCommandEntry &entry : escposcommands::all()) {
        for (const QByteArray &command : escPosCommandSamples(entry)) {
            const Paper paper = printed(init + command + "Hello\n");
            EXPECT_EQ(paper.rowTexts(), QStringList{QStringLiteral("Hello")})
                << entry.name << " " << command.toHex(' ').constData();
        }
    }
}

TEST(VirtualPrinter, ACommandItDoesNotDrawIsNotedByName)
{
    const Paper paper = printed(init + bytes("\x1d(k\x03\x00\x32\x51\x30"
                                             "a\n"));
    ASSERT_EQ(paper.marks().size(), 1u);
    EXPECT_EQ(paper.marks()[0].kind, PaperMark::Kind::Unknown);
    EXPECT_EQ(paper.marks()[0].label, QStringLiteral("not drawn: GS ( k"));
    EXPECT_EQ(paper.rowTexts(), QStringList{QStringLiteral("a")});
}

TEST(VirtualPrinter, RepeatedMarksAtOnePlaceAreCountedNotAdded)
{
    // 200,000 drawer pulses and 333,000 unknown code tables, none of them feeding paper.
    const QByteArray pulse = bytes("\x1bp\x00\x19\xfa");
    Paper paper = printed(init + pulse.repeated(200000) + "a\n");
    ASSERT_EQ(paper.marks().size(), 1u);
    EXPECT_EQ(paper.marks()[0].kind, PaperMark::Kind::DrawerPulse);
    EXPECT_EQ(paper.marks()[0].repeat, 200000);

    paper = printed(init + bytes("\x1bt\x63").repeated(333000));
    ASSERT_EQ(paper.marks().size(), 1u);
    EXPECT_EQ(paper.marks()[0].repeat, 333000);
}

TEST(VirtualPrinter, DifferentMarksAtOnePlaceAreBounded)
{
    // Every unknown code table from 100 to 255, then pulses of every length, at one place.
    QByteArray stream = init;
    for (int table = 100; table < 256; ++table)
        stream += bytes("\x1bt") + char(table);
    for (int time = 0; time < 256; ++time)
        stream += bytes("\x1bp\x00") + char(time) + '\x01';
    stream += bytes("\x1d"
                    "VA\x00");
    const Paper paper = printed(stream);
    // The marks allowed, one that counts the rest, and the cut, which is always shown.
    EXPECT_EQ(int(paper.marks().size()), VirtualPrinter::maximumMarksInPlace + 1);
    qint64 counted = 0;
    for (const PaperMark &mark : paper.marks())
        counted += mark.repeat;
    EXPECT_EQ(counted, 156 + 256 + 1);
    EXPECT_EQ(paper.cutPositions().size(), 1u);
}

TEST(VirtualPrinter, CountsWhatItDoesNotCarryOutByKind)
{
    const QByteArray stream = init + bytes("\x1d(k\x03\x00\x32\x51\x30"
                                           "a\x1bx\x1d(k\x03\x00\x32\x51\x30\x1bt\x63\n\x1b\x78\x07");
    VirtualPrinter printer(stream, Paper::width58mm);
    printer.printAll();
    const std::vector<VirtualPrinter::Unsupported> &kinds = printer.unsupported();
    ASSERT_EQ(kinds.size(), 4u);
    EXPECT_EQ(kinds[0].name, QStringLiteral("GS ( k"));
    EXPECT_EQ(kinds[0].count, 2);
    EXPECT_EQ(kinds[0].firstOffset, init.size());
    EXPECT_EQ(kinds[1].name, QStringLiteral("unknown bytes 1B 78"));
    EXPECT_EQ(kinds[1].count, 2);
    EXPECT_EQ(kinds[1].firstOffset, init.size() + 9);
    EXPECT_EQ(kinds[2].name, QStringLiteral("ESC t 99 (no such code table)"));
    EXPECT_EQ(kinds[3].name, QStringLiteral("unknown byte 07"));
    EXPECT_EQ(kinds[3].count, 1);
}

} // namespace
