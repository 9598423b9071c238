#include "printerapp/StatusBoard.h"

#include <gtest/gtest.h>

namespace {

constexpr quint8 Fixed = 0x12;

PrinterStatus ready()
{
    return PrinterStatus::fromAnswers(Fixed, Fixed, Fixed, Fixed);
}

PrinterStatus coverOpen()
{
    return PrinterStatus::fromAnswers(Fixed | 0x08, Fixed | 0x04, Fixed, Fixed);
}

PrinterStatus silent()
{
    return PrinterStatus::fromAnswers(std::nullopt, std::nullopt, std::nullopt, std::nullopt);
}

TEST(StatusBoard, ReportsEachPrinterInWords)
{
    StatusBoard board;
    board.record(QStringLiteral("kitchen"), coverOpen());
    board.record(QStringLiteral("bar"), PrinterStatus::unreachable());
    EXPECT_EQ(board.textReport(), QStringLiteral("bar: Offline\n"
                                                 "kitchen: Cover open\n"));
    board.record(QStringLiteral("kitchen"), ready());
    EXPECT_TRUE(board.textReport().contains(QStringLiteral("kitchen: Ready\n")));
}

TEST(StatusBoard, SaysWhenTheWordsChange)
{
    StatusBoard board;
    EXPECT_TRUE(board.record(QStringLiteral("kitchen"), ready()).changed);
    EXPECT_FALSE(board.record(QStringLiteral("kitchen"), ready()).changed);
    EXPECT_TRUE(board.record(QStringLiteral("kitchen"), coverOpen()).changed);
}

TEST(StatusBoard, TellsOfASilentPrinterOnlyOnce)
{
    StatusBoard board;
    EXPECT_TRUE(board.record(QStringLiteral("clone"), silent()).firstSilence);
    EXPECT_TRUE(board.isSilent(QStringLiteral("clone")));
    EXPECT_FALSE(board.record(QStringLiteral("clone"), silent()).firstSilence);
    board.record(QStringLiteral("clone"), PrinterStatus::unreachable());
    EXPECT_FALSE(board.isSilent(QStringLiteral("clone")));
    EXPECT_FALSE(board.record(QStringLiteral("clone"), silent()).firstSilence);
}

TEST(StatusBoard, EscapesNamesOnThePage)
{
    StatusBoard board;
    board.record(QStringLiteral("<b>"), ready());
    const QString page = board.htmlReport();
    EXPECT_TRUE(page.contains(QStringLiteral("<td>&lt;b&gt;</td><td>Ready</td>")));
    board.forget(QStringLiteral("<b>"));
    EXPECT_FALSE(board.htmlReport().contains(QStringLiteral("&lt;b&gt;")));
}

} // namespace
