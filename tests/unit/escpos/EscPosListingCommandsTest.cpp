// The listing names every command that is not a code in words, each in brackets before the
// text it affects.

#include "devices/escpos/EscPosListing.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace {

template <size_t N> QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, N - 1);
}

QString listed(const QByteArray &stream)
{
    return escPosListing(stream).trimmed();
}

TEST(EscPosListingCommands, TheCharacterStyleCommandsAreNamed)
{
    EXPECT_EQ(listed(bytes("\x1b\x45\x01\x1b\x45\x00\x1b\x47\x01\x1b\x47\x00\x1b\x2d\x02\x1b\x21\x08")),
              QStringLiteral("[bold on] [bold off] [double strike on] [double strike off] [underline 2] "
                             "[print mode 8]"));
    EXPECT_EQ(listed(bytes("\x1d\x21\x00\x1d\x21\x11\x1d\x21\x30")),
              QStringLiteral("[size normal] [size width 2, height 2] [size width 4, height 1]"));
    EXPECT_EQ(listed(bytes("\x1b\x61\x00\x1b\x61\x01\x1b\x61\x02")),
              QStringLiteral("[align left] [align centre] [align right]"));
}

TEST(EscPosListingCommands, FeedsAndLineSpacingAreNamed)
{
    EXPECT_EQ(listed(bytes("\x1b\x64\x03\x1b\x4a\x18\x1b\x33\x1e\x1b\x32")),
              QStringLiteral("[feed 3 lines] [feed 24 dots] [line spacing 30 dots] [line spacing default]"));
}

TEST(EscPosListingCommands, TheCodeTableIsNamedWhenItIsKnown)
{
    EXPECT_EQ(listed(bytes("\x1b\x74\x13")), QStringLiteral("[code table 19 PC858]"));
    EXPECT_EQ(listed(bytes("\x1b\x74\xc8")), QStringLiteral("[code table 200]"));
}

TEST(EscPosListingCommands, CutsDrawerPulsesAndImagesAreNamed)
{
    EXPECT_EQ(listed(bytes("\x1d\x56\x41\x05\x1d\x56\x42\x00")),
              QStringLiteral("[cut full, feed 5] [cut partial, feed 0]"));
    EXPECT_EQ(listed(bytes("\x1b\x70\x00\x32\x64\x1b\x70\x01\x0a\x14")),
              QStringLiteral("[drawer pin 2, 100 ms on, 200 ms off] [drawer pin 5, 20 ms on, 40 ms off]"));
    EXPECT_EQ(listed(bytes("\x1d\x76\x30\x00\x02\x00\x01\x00\xff\x00")), QStringLiteral("[image 16x1 dots]"));
}

TEST(EscPosListingCommands, TextStandsOnItsLineAfterTheCommands)
{
    EXPECT_EQ(escPosListing(bytes("\x1b\x40Tavolo\x1b\x45\x01 7\r\n\nfine")),
              QStringLiteral("[initialize] Tavolo [bold on]  7 [CR] \n\nfine\n"));
}

TEST(EscPosListingCommands, UnknownAndCutShortBytesAreShownInHexadecimal)
{
    EXPECT_EQ(listed(bytes("\x1b\x78")), QStringLiteral("[unknown 1b 78]"));
    EXPECT_EQ(listed(bytes("\x1d\x76\x30\x00\x02")), QStringLiteral("[cut short 1d 76 30 00 02]"));
}

} // namespace
