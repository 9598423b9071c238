// Splitting a byte stream into the commands a receipt printer reads.

#include "devices/escpos/EscPosTokenizer.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Kind = EscPosCommand::Kind;

std::vector<EscPosCommand> tokens(const QByteArray &stream)
{
    std::vector<EscPosCommand> commands;
    EscPosTokenizer tokenizer(stream);
    EscPosCommand command;
    while (tokenizer.next(&command))
        commands.push_back(command);
    return commands;
}

TEST(EscPosTokenizer, SplitsTextLinesAndCommands)
{
    const QByteArray stream("\x1b@\x1bt\x13\x1b\x45\x01Totale\n\x1d!\x11\x1b\x61\x01x\x1dV\x42\x04");
    const std::vector<EscPosCommand> c = tokens(stream);
    ASSERT_EQ(c.size(), 9u);
    EXPECT_EQ(c[0].kind, Kind::Initialize);
    EXPECT_EQ(c[1].kind, Kind::CodeTable);
    EXPECT_EQ(c[1].value, 19);
    EXPECT_EQ(c[2].kind, Kind::Emphasis);
    EXPECT_EQ(c[2].value, 1);
    EXPECT_EQ(c[3].kind, Kind::Text);
    EXPECT_EQ(c[3].bytes, QByteArrayView("Totale"));
    EXPECT_EQ(c[4].kind, Kind::LineFeed);
    EXPECT_EQ(c[5].kind, Kind::CharacterSize);
    EXPECT_EQ(c[5].value, 0x11);
    EXPECT_EQ(c[6].kind, Kind::Justification);
    EXPECT_EQ(c[6].value, 1);
    EXPECT_EQ(c[7].kind, Kind::Text);
    EXPECT_EQ(c[8].kind, Kind::Cut);
    EXPECT_EQ(c[8].value, 1);
    EXPECT_EQ(c[8].feed, 4);
}

TEST(EscPosTokenizer, ReadsTheDrawerPulseAndTheRasterImage)
{
    QByteArray stream("\x1bp\x01\x19\xfa", 5);
    stream += QByteArray("\x1dv0\x00\x02\x00\x03\x00", 8) + QByteArray(6, '\xff');
    const std::vector<EscPosCommand> c = tokens(stream);
    ASSERT_EQ(c.size(), 2u);
    EXPECT_EQ(c[0].kind, Kind::DrawerPulse);
    EXPECT_EQ(c[0].value, 1);
    EXPECT_EQ(c[0].onTime, 25);
    EXPECT_EQ(c[0].offTime, 250);
    EXPECT_EQ(c[1].kind, Kind::RasterImage);
    EXPECT_EQ(c[1].widthBytes, 2);
    EXPECT_EQ(c[1].height, 3);
    EXPECT_EQ(c[1].bytes.size(), 6);
}

TEST(EscPosTokenizer, UnknownCommandsAreSkippedAndReported)
{
    // The views the tokenizer hands out point into the stream: it must outlive them.
    const QByteArray stream("\x1bZa\x07\x7f"
                            "b");
    const std::vector<EscPosCommand> c = tokens(stream);
    ASSERT_EQ(c.size(), 5u);
    EXPECT_EQ(c[0].kind, Kind::Unknown);
    EXPECT_EQ(c[0].bytes, QByteArrayView("\x1bZ"));
    EXPECT_EQ(c[1].kind, Kind::Text);
    EXPECT_EQ(c[2].kind, Kind::Unknown); // BEL
    EXPECT_EQ(c[3].kind, Kind::Unknown); // DEL
    EXPECT_EQ(c[4].kind, Kind::Text);
}

TEST(EscPosTokenizer, ACommandCutOffByTheEndIsTruncatedNotReadPastTheEnd)
{
    for (const QByteArray &stream : {QByteArray("\x1b"), QByteArray("\x1bt"), QByteArray("\x1bp\x00\x19", 4),
                                     QByteArray("\x1dV\x41"), QByteArray("\x1dv0\x00\xff\xff\xff\xff", 8)}) {
        const std::vector<EscPosCommand> c = tokens(stream);
        ASSERT_EQ(c.size(), 1u) << stream.toHex().constData();
        EXPECT_EQ(c[0].kind, Kind::Truncated);
        EXPECT_EQ(c[0].bytes.size(), stream.size());
    }
}

TEST(EscPosTokenizer, UpperBytesAreText)
{
    const QByteArray stream("\xd5\x80\xff");
    const std::vector<EscPosCommand> c = tokens(stream);
    ASSERT_EQ(c.size(), 1u);
    EXPECT_EQ(c[0].kind, Kind::Text);
    EXPECT_EQ(c[0].bytes.size(), 3);
}

} // namespace
