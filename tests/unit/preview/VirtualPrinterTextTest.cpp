#include "PreviewTestSupport.h"

#include "virtualprinter/VirtualPrinter.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

template <size_t N> QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, N - 1);
}

const QByteArray init = bytes("\x1b@\x1bt\x13");

// How many characters of the current font fit one row of the paper.
int columnsOf(const QByteArray &select, int paperWidth)
{
    const Paper paper = printed(init + select + QByteArray(200, 'x') + '\n', paperWidth);
    return paper.runs().empty() ? 0 : int(paper.runs()[0].text.size());
}

TEST(VirtualPrinterText, FontBIsNineDotsWideAndSeventeenHigh)
{
    EXPECT_EQ(columnsOf(bytes("\x1bM\x01"), Paper::width58mm), 42);
    EXPECT_EQ(columnsOf(bytes("\x1bM\x01"), Paper::width80mm), 64);
    EXPECT_EQ(columnsOf(bytes("\x1bM\x01"), Paper::width80mm512), 56);
    EXPECT_EQ(columnsOf(bytes("\x1bM1"), Paper::width58mm), 42);
    EXPECT_EQ(columnsOf(bytes("\x1b!\x01"), Paper::width58mm), 42); // bit 0 of ESC !
    EXPECT_EQ(columnsOf(bytes("\x1bM\x01\x1bM\x00"), Paper::width58mm), 32);
    const Paper paper = printed(init + bytes("\x1bM\x01"
                                             "ab\n"));
    ASSERT_EQ(paper.runs().size(), 1u);
    EXPECT_EQ(paper.runs()[0].font, PaperRun::Font::B);
    EXPECT_EQ(paper.runs()[0].height(), 17);
    EXPECT_EQ(paper.runs()[0].width(), 18);
}

TEST(VirtualPrinterText, AFontTheModelMayLackIsDrawnAsFontAAndNoted)
{
    VirtualPrinter printer(init + bytes("\x1bM\x02x\n"), Paper::width58mm);
    printer.printAll();
    const Paper paper = printer.takeSheet();
    ASSERT_EQ(paper.runs().size(), 1u);
    EXPECT_EQ(paper.runs()[0].font, PaperRun::Font::A);
    ASSERT_EQ(printer.unsupported().size(), 1u);
    EXPECT_EQ(printer.unsupported()[0].name, QStringLiteral("ESC M 2 (font drawn as Font A)"));
}

TEST(VirtualPrinterText, InverseMakesARunOfItsOwn)
{
    const Paper paper = printed(init + bytes("a\x1d"
                                             "B\x01"
                                             "b\x1d"
                                             "B\x00"
                                             "c\n"));
    ASSERT_EQ(paper.runs().size(), 3u);
    EXPECT_FALSE(paper.runs()[0].inverse);
    EXPECT_TRUE(paper.runs()[1].inverse);
    EXPECT_FALSE(paper.runs()[2].inverse);
}

TEST(VirtualPrinterText, UpsideDownTurnsTheRowAboutItsMiddleFromTheNextRow)
{
    // ESC { comes in the middle of a row: that row stays upright, the next is turned.
    const Paper paper = printed(init + bytes("ab\x1b{\x01"
                                             "c\n"
                                             "xy\n"));
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[0].turn, PaperRun::Turn::None);
    EXPECT_EQ(paper.runs()[0].x, 0);
    EXPECT_EQ(paper.runs()[1].turn, PaperRun::Turn::UpsideDown);
    EXPECT_EQ(paper.runs()[1].x, 384 - 24); // what was at the left is at the right
    EXPECT_EQ(paper.rowTexts(), (QStringList{QStringLiteral("abc"), QStringLiteral("xy")}));
}

TEST(VirtualPrinterText, UpsideDownPutsTheSmallCharactersAtTheTopOfTheRow)
{
    const Paper paper = printed(init + bytes("\x1b{\x01"
                                             "a\x1d!\x01"
                                             "B\n"));
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[0].top, 0); // was on the bottom line, now on the top
    EXPECT_EQ(paper.runs()[1].top, 0);
    EXPECT_EQ(paper.runs()[0].x, 384 - 12);
    EXPECT_EQ(paper.runs()[1].x, 384 - 24);
}

TEST(VirtualPrinterText, ClockwiseCharactersLieAcrossTheRow)
{
    const Paper paper = printed(init + bytes("\x1bV\x01"
                                             "ab\x1bV\x00"
                                             "c\n"));
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[0].turn, PaperRun::Turn::Clockwise);
    EXPECT_EQ(paper.runs()[0].width(), 48); // each character's 24-dot height along the row
    EXPECT_EQ(paper.runs()[0].height(), 12);
    EXPECT_EQ(paper.runs()[1].x, 48);
    EXPECT_EQ(paper.runs()[0].top, 12); // standing on the row's bottom line
}

TEST(VirtualPrinterText, TabsStopEveryEightCharactersUntilSet)
{
    const Paper paper = printed(init + bytes("ab\tc\t\td\n"));
    ASSERT_EQ(paper.runs().size(), 3u);
    EXPECT_EQ(paper.runs()[1].x, 96);
    EXPECT_EQ(paper.runs()[2].x, 288);
    EXPECT_EQ(paper.rowTexts(), QStringList{QStringLiteral("ab      c               d")});
}

TEST(VirtualPrinterText, SetTabStopsCountInCharactersOfTheStyleThen)
{
    // Stops at 3 and 10 characters of double width (24 dots); a tab past the last does nothing.
    const Paper paper = printed(init + bytes("\x1d!\x10\x1b"
                                             "D\x03\x0a\x00\x1d!\x00"
                                             "\ta\tb\tc\n"));
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[0].x, 72);
    EXPECT_EQ(paper.runs()[1].x, 240);
    EXPECT_EQ(paper.runs()[1].text, QStringLiteral("bc"));
    // ESC D NUL clears every stop.
    const Paper none = printed(init + bytes("\x1b"
                                            "D\x00\ta\n"));
    EXPECT_EQ(none.runs()[0].x, 0);
}

TEST(VirtualPrinterText, AbsoluteAndRelativePositionsAreInDots)
{
    // ESC $ 100, ESC \ -40, ESC \ +5; positions beyond the paper are ignored.
    const Paper paper = printed(init + bytes("\x1b$\x64\x00"
                                             "a\x1b\\\xd8\xff"
                                             "b\x1b\\\x05\x00"
                                             "c\x1b$\x00\x10"
                                             "d\n"));
    ASSERT_EQ(paper.runs().size(), 3u);
    EXPECT_EQ(paper.runs()[0].x, 100);
    EXPECT_EQ(paper.runs()[1].x, 72);
    EXPECT_EQ(paper.runs()[2].x, 89);
    EXPECT_EQ(paper.runs()[2].text, QStringLiteral("cd"));
}

// Justification places the row by its end: a position moved back does not move the end, one
// moved on leaves blank paper in the row.
TEST(VirtualPrinterText, JustificationGoesByTheRowsRightmostCharacter)
{
    const Paper paper = printed(init + bytes("\x1b"
                                             "a\x02\x1b$\x2c\x01"
                                             "abc\x1b$\x00\x00\n"
                                             "x\x1b\\\x30\x00\n"));
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[0].x, 384 - 36);
    EXPECT_EQ(paper.runs()[1].x, 384 - 60);
}

TEST(VirtualPrinterText, RightSpacingWidensEachCharacterAndDoublesWithTheWidth)
{
    const Paper paper = printed(init + bytes("\x1b \x03"
                                             "ab\x1d!\x10"
                                             "c\n"));
    ASSERT_EQ(paper.runs().size(), 2u);
    EXPECT_EQ(paper.runs()[0].width(), 30);
    EXPECT_EQ(paper.runs()[1].x, 30);
    EXPECT_EQ(paper.runs()[1].width(), 30);
    // 32 columns of 12 + 3 dots no longer fit 384 dots: 25 do.
    EXPECT_EQ(columnsOf(bytes("\x1b \x03"), Paper::width58mm), 25);
}

TEST(VirtualPrinterText, InitializeEndsTheNewModes)
{
    const Paper paper = printed(init + bytes("\x1bM\x01\x1d"
                                             "B\x01\x1b{\x01\x1bV\x01\x1b \x04\x1b@"
                                             "a\tb\n"));
    ASSERT_EQ(paper.runs().size(), 2u);
    const PaperRun &run = paper.runs()[0];
    EXPECT_EQ(run.font, PaperRun::Font::A);
    EXPECT_FALSE(run.inverse);
    EXPECT_EQ(run.turn, PaperRun::Turn::None);
    EXPECT_EQ(run.rightSpacing, 0);
    EXPECT_EQ(paper.runs()[1].x, 96);
}

} // namespace
