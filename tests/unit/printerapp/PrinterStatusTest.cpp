#include "printerapp/PrinterStatus.h"
#include "printerapp/StatusAnswerParser.h"

#include <gtest/gtest.h>

namespace {

constexpr quint8 Fixed = 0x12; // bits 1 and 4, set in every answer

PrinterStatus answering(quint8 printer, quint8 offline, quint8 error, quint8 paper)
{
    return PrinterStatus::fromAnswers(printer, offline, error, paper);
}

TEST(PrinterStatus, QueriesAreDleEotWithTheirNumber)
{
    EXPECT_EQ(PrinterStatus::queryBytes(PrinterStatus::Query::Printer), QByteArray("\x10\x04\x01", 3));
    EXPECT_EQ(PrinterStatus::queryBytes(PrinterStatus::Query::PaperSensor), QByteArray("\x10\x04\x04", 3));
    EXPECT_EQ(PrinterStatus::allQueryBytes(),
              QByteArray("\x10\x04\x01\x10\x04\x02\x10\x04\x03\x10\x04\x04", 12));
}

TEST(PrinterStatus, TellsStatusBytesByTheirFixedBits)
{
    EXPECT_TRUE(PrinterStatus::isStatusByte(0x12));
    EXPECT_TRUE(PrinterStatus::isStatusByte(0x7e));  // every free bit set
    EXPECT_FALSE(PrinterStatus::isStatusByte(0x13)); // bit 0 set
    EXPECT_FALSE(PrinterStatus::isStatusByte(0x92)); // bit 7 set
    EXPECT_FALSE(PrinterStatus::isStatusByte(0x10)); // bit 1 clear
    EXPECT_FALSE(PrinterStatus::isStatusByte(0x02)); // bit 4 clear
    EXPECT_FALSE(PrinterStatus::isStatusByte(0x00));
}

TEST(PrinterStatus, AllClearIsReady)
{
    const PrinterStatus status = answering(Fixed, Fixed, Fixed, Fixed);
    EXPECT_TRUE(status.canPrint());
    EXPECT_TRUE(status.reasons().isEmpty());
    EXPECT_EQ(status.operatorMessage(), QStringLiteral("Ready"));
}

TEST(PrinterStatus, PaperNearEndStillPrints)
{
    for (const quint8 sensor : {quint8(Fixed | 0x04), quint8(Fixed | 0x08), quint8(Fixed | 0x0c)}) {
        const PrinterStatus status = answering(Fixed, Fixed, Fixed, sensor);
        EXPECT_TRUE(status.canPrint());
        EXPECT_EQ(status.reasons(), QStringList{QStringLiteral("media-low")});
        EXPECT_EQ(status.operatorMessage(), QStringLiteral("Paper near end"));
    }
}

TEST(PrinterStatus, PaperEndHoldsJobs)
{
    // The sensor's own bits, or the printer stopped for paper end in the offline cause.
    for (const PrinterStatus &status : {answering(Fixed, Fixed, Fixed, Fixed | 0x60),
                                        answering(Fixed | 0x08, Fixed | 0x20, Fixed, Fixed)}) {
        EXPECT_FALSE(status.canPrint());
        EXPECT_EQ(status.reasons(), QStringList{QStringLiteral("media-empty")});
        EXPECT_EQ(status.operatorMessage(), QStringLiteral("Out of paper"));
    }
    // Out of paper is not also near end, even with the near-end bits set.
    EXPECT_EQ(answering(Fixed, Fixed, Fixed, Fixed | 0x6c).operatorMessages(),
              QStringList{QStringLiteral("Out of paper")});
}

TEST(PrinterStatus, CoverOpenHoldsJobs)
{
    const PrinterStatus status = answering(Fixed | 0x08, Fixed | 0x04, Fixed, Fixed);
    EXPECT_FALSE(status.canPrint());
    EXPECT_EQ(status.reasons(), QStringList{QStringLiteral("cover-open")});
    EXPECT_EQ(status.operatorMessage(), QStringLiteral("Cover open"));
}

TEST(PrinterStatus, ErrorsAreOtherWithTheirOwnWords)
{
    const PrinterStatus cutter = answering(Fixed | 0x08, Fixed | 0x40, Fixed | 0x08, Fixed);
    EXPECT_FALSE(cutter.canPrint());
    EXPECT_EQ(cutter.reasons(), QStringList{QStringLiteral("other")});
    EXPECT_EQ(cutter.operatorMessage(), QStringLiteral("Cutter jam"));

    const PrinterStatus broken = answering(Fixed, Fixed, Fixed | 0x20, Fixed);
    EXPECT_FALSE(broken.canPrint());
    EXPECT_EQ(broken.operatorMessage(), QStringLiteral("Unrecoverable error"));

    const PrinterStatus hot = answering(Fixed, Fixed, Fixed | 0x40, Fixed);
    EXPECT_FALSE(hot.canPrint());
    EXPECT_EQ(hot.reasons(), QStringList{QStringLiteral("other")});
}

TEST(PrinterStatus, SeveralConditionsComeMostSevereFirst)
{
    const PrinterStatus status = answering(Fixed | 0x08, Fixed | 0x24, Fixed | 0x08, Fixed | 0x6c);
    EXPECT_EQ(status.operatorMessages(),
              (QStringList{QStringLiteral("Cutter jam"), QStringLiteral("Cover open"),
                           QStringLiteral("Out of paper")}));
    EXPECT_EQ(status.reasons(), (QStringList{QStringLiteral("other"), QStringLiteral("cover-open"),
                                             QStringLiteral("media-empty")}));
}

TEST(PrinterStatus, OfflineWithoutACauseIsOffline)
{
    const PrinterStatus status = answering(Fixed | 0x08, Fixed, Fixed, Fixed);
    EXPECT_FALSE(status.canPrint());
    EXPECT_EQ(status.operatorMessage(), QStringLiteral("Offline"));
    EXPECT_EQ(status.reasons(), QStringList{QStringLiteral("offline-report")});
}

TEST(PrinterStatus, AnUnreachablePrinterIsOffline)
{
    const PrinterStatus status = PrinterStatus::unreachable();
    EXPECT_FALSE(status.canPrint());
    EXPECT_EQ(status.operatorMessage(), QStringLiteral("Offline"));
    EXPECT_EQ(status.reasons(), QStringList{QStringLiteral("offline-report")});
}

TEST(PrinterStatus, ASilentPrinterMayPrintWithItsStatusUnknown)
{
    const PrinterStatus status =
        PrinterStatus::fromAnswers(std::nullopt, std::nullopt, std::nullopt, std::nullopt);
    EXPECT_TRUE(status.isSilent());
    EXPECT_TRUE(status.canPrint());
    EXPECT_TRUE(status.reasons().isEmpty());
    EXPECT_EQ(status.operatorMessage(), QStringLiteral("Status unknown"));
}

TEST(StatusAnswerParser, SkipsBytesThatAreNoStatusAnswer)
{
    StatusAnswerParser parser;
    // Garbage around the four answers: 0x00, 0xff, 0x13 (bit 0), 0x92 (bit 7), 0x10 (bit 1 clear).
    EXPECT_FALSE(parser.feed(QByteArray("\x00\xff\x12\x13", 4)));
    EXPECT_EQ(parser.answersReceived(), 1);
    EXPECT_FALSE(parser.feed(QByteArray("\x92\x16\x10", 3)));
    EXPECT_TRUE(parser.feed(QByteArray("\x12\x00\x7e\x1e", 4)));
    EXPECT_TRUE(parser.isComplete());
    // 0x16: offline cause with the cover open; 0x7e (paper sensor): out of paper.
    EXPECT_EQ(parser.status().operatorMessages(),
              (QStringList{QStringLiteral("Cover open"), QStringLiteral("Out of paper")}));
}

TEST(StatusAnswerParser, TakesAnswersSplitAcrossReads)
{
    StatusAnswerParser parser;
    const QByteArray answers("\x12\x12\x12\x1e", 4);
    for (const char byte : answers)
        parser.feed(QByteArray(1, byte));
    ASSERT_TRUE(parser.isComplete());
    EXPECT_EQ(parser.status().operatorMessage(), QStringLiteral("Paper near end"));
}

TEST(StatusAnswerParser, IgnoresWhatFollowsTheFourthAnswer)
{
    StatusAnswerParser parser;
    EXPECT_TRUE(parser.feed(QByteArray("\x12\x12\x12\x12\x7e\x7e", 6)));
    EXPECT_EQ(parser.status().operatorMessage(), QStringLiteral("Ready"));
}

TEST(StatusAnswerParser, WithNothingReceivedTheStatusIsUnknown)
{
    StatusAnswerParser parser;
    parser.feed(QByteArray("\x00\x01\xff", 3));
    EXPECT_EQ(parser.answersReceived(), 0);
    EXPECT_EQ(parser.status().operatorMessage(), QStringLiteral("Status unknown"));
}

} // namespace
