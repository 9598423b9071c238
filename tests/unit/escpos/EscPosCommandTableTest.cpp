// Every command of the ESC/POS command set takes exactly its parameters: none of their bytes
// is ever read as text, by the tokenizer or the listing.

#include "EscPosCommandSamples.h"

#include "devices/escpos/EscPosCommandTable.h"
#include "devices/escpos/EscPosListing.h"
#include "devices/escpos/EscPosTokenizer.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using Kind = EscPosCommand::Kind;

template <size_t N> QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, N - 1);
}

std::vector<EscPosCommand> tokens(const QByteArray &stream)
{
    std::vector<EscPosCommand> commands;
    EscPosTokenizer tokenizer(stream);
    EscPosCommand command;
    while (tokenizer.next(&command))
        commands.push_back(command);
    return commands;
}

// The mnemonic of a prefix byte as the manuals write it.
std::string nameOf(unsigned char byte)
{
    switch (byte) {
    case 0x09:
        return "HT";
    case 0x0a:
        return "LF";
    case 0x0c:
        return "FF";
    case 0x0d:
        return "CR";
    case 0x18:
        return "CAN";
    case 0x04:
        return "EOT";
    case 0x05:
        return "ENQ";
    case 0x10:
        return "DLE";
    case 0x14:
        return "DC4";
    case 0x1b:
        return "ESC";
    case 0x1c:
        return "FS";
    case 0x1d:
        return "GS";
    case 0x20:
        return "SP";
    default:
        return std::string(1, char(byte));
    }
}

TEST(EscPosCommandTable, EveryCommandFollowedByTextPrintsOnlyTheText)
{
    int walked = 0;
    for (const EscPosCommandEntry &entry : escposcommands::all()) {
        for (const QByteArray &command : escPosCommandSamples(entry)) {
            const QByteArray stream = command + "Hello\n";
            const QString expected = QLatin1String(entry.kind == Kind::LineFeed ? "\nHello\n" : "Hello\n");
            EXPECT_EQ(escPosPrintedText(stream), expected)
                << entry.name << " " << command.toHex(' ').constData();
            // The command is read whole, as one command of its own kind.
            const std::vector<EscPosCommand> c = tokens(stream);
            ASSERT_FALSE(c.empty());
            EXPECT_EQ(c[0].entry, &entry) << entry.name << " " << command.toHex(' ').constData();
            EXPECT_NE(c[0].kind, Kind::Unknown) << entry.name;
            EXPECT_NE(c[0].kind, Kind::Truncated) << entry.name;
            EXPECT_EQ(c[0].offset, 0);
            if (c[0].kind != Kind::RasterImage) {
                EXPECT_EQ(c[0].bytes.size(), command.size()) << entry.name;
            }
            // The listing shows the command in brackets, and the text only once: a parameter
            // may be spelled out inside the brackets (a barcode's data), never after them.
            const QString listing = escPosListing(stream);
            EXPECT_EQ(listing.count(QLatin1String("Hello")), 1) << entry.name;
            EXPECT_FALSE(listing.section(QLatin1Char(']'), -1).contains(QLatin1String("-0@")))
                << entry.name << " " << qPrintable(listing);
            ++walked;
        }
    }
    EXPECT_GT(walked, 120);
}

TEST(EscPosCommandTable, NamesSpellTheirPrefixes)
{
    std::set<std::string> names;
    std::set<std::string> prefixes;
    for (const EscPosCommandEntry &entry : escposcommands::all()) {
        std::string spelled;
        for (const char byte : entry.prefix)
            spelled += (spelled.empty() ? "" : " ") + nameOf(static_cast<unsigned char>(byte));
        EXPECT_EQ(spelled, entry.name);
        EXPECT_TRUE(names.insert(entry.name).second) << "twice: " << entry.name;
        EXPECT_TRUE(prefixes.insert(std::string(entry.prefix)).second) << "twice: " << entry.name;
    }
}

TEST(EscPosCommandTable, ACommandCutOffInItsParametersIsTruncated)
{
    for (const EscPosCommandEntry &entry : escposcommands::all()) {
        for (const QByteArray &command : escPosCommandSamples(entry)) {
            for (qsizetype length = qsizetype(entry.prefix.size()); length < command.size(); ++length) {
                const QByteArray start = command.first(length);
                const std::vector<EscPosCommand> c = tokens(start);
                ASSERT_EQ(c.size(), 1u) << entry.name << " " << start.toHex(' ').constData();
                EXPECT_EQ(c[0].kind, Kind::Truncated) << entry.name << " " << start.toHex(' ').constData();
                EXPECT_EQ(c[0].bytes.size(), length);
            }
        }
    }
}

TEST(EscPosCommandTable, BarcodesTakeTheirDataInEitherForm)
{
    // GS k 4 (CODE39), data ended by NUL; GS k 69 (CODE39 again), then n = 4 and 4 bytes.
    EXPECT_EQ(escPosPrintedText(bytes("\x1dk\x04*12*\x00"
                                      "a\n\x1dkE\x04"
                                      "1234b\n")),
              QStringLiteral("a\nb\n"));
    // A byte no barcode holds ends the NUL-ended data and is read as it stands.
    EXPECT_EQ(escPosPrintedText(bytes("\x1dk\x04"
                                      "12\n")),
              QStringLiteral("\n"));
}

TEST(EscPosCommandTable, CountedFunctionsTakeWhatTheyCount)
{
    // GS ( k: a QR code's data (pL pH = 7: cn fn m and "-00@"), then printed.
    const QByteArray qr = bytes("\x1d(k\x07\x00\x31\x50\x30-00@\x1d(k\x03\x00\x31\x51\x30");
    EXPECT_EQ(escPosPrintedText(qr + "Totale\n"), QStringLiteral("Totale\n"));
    // GS 8 L counts in four bytes.
    EXPECT_EQ(escPosPrintedText(bytes("\x1d"
                                      "8L\x06\x00\x00\x00\x30\x70-00@x\n")),
              QStringLiteral("x\n"));
    // A function letter the table does not name is counted all the same.
    EXPECT_EQ(escPosPrintedText(bytes("\x1d(Z\x02\x00@@y\n")), QStringLiteral("y\n"));
}

TEST(EscPosCommandTable, TabPositionsEndAtNulOrAtAValueNotAbove)
{
    EXPECT_EQ(escPosPrintedText(bytes("\x1b"
                                      "D\x08\x10\x18\x00"
                                      "a\n")),
              QStringLiteral("a\n"));
    // The printer reads the value that does not rise as ordinary data.
    EXPECT_EQ(escPosPrintedText(bytes("\x1b"
                                      "D0@0a\n")),
              QStringLiteral("0a\n"));
}

TEST(EscPosCommandTable, TheListingNamesCommandsItDoesNotSpellOut)
{
    const QString listing = escPosListing(bytes("\x1bM\x01\x1d(E\x0c\x00\x03\x01\x02"
                                                "123456789x\n"));
    EXPECT_EQ(listing, QStringLiteral("[ESC M 01] [GS ( E, 14 bytes] x\n"));
}

} // namespace
