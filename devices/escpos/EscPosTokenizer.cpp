#include "devices/escpos/EscPosTokenizer.h"

#include "devices/escpos/EscPosCommandTable.h"

namespace {

using Kind = EscPosCommand::Kind;

constexpr char ESC = 0x1b;
constexpr char GS = 0x1d;

bool isText(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return value >= 0x20 && value != 0x7f;
}

unsigned byteAt(QByteArrayView bytes, qsizetype index)
{
    return static_cast<unsigned char>(bytes[index]);
}

// GS V: 0 and 48 cut fully, 1 and 49 partly; 65, 66 (and the reserving 97, 98, 103, 104)
// feed n dots first.  Any other m is not a cut.
void decodeCut(EscPosCommand *command, QByteArrayView parameters)
{
    if (parameters.isEmpty()) { // ESC i, ESC m: the older partial cuts
        command->value = 1;
        return;
    }
    const unsigned m = byteAt(parameters, 0);
    if (m == 0 || m == 1 || m == '0' || m == '1') {
        command->value = (m == 1 || m == '1') ? 1 : 0;
    } else if (parameters.size() == 2) {
        command->value = (m == 66 || m == 98 || m == 104) ? 1 : 0;
        command->feed = int(byteAt(parameters, 1));
    } else {
        command->kind = Kind::Other;
    }
}

void decodeRaster(EscPosCommand *command, QByteArrayView parameters)
{
    command->value = int(byteAt(parameters, 0));
    command->widthBytes = int(byteAt(parameters, 1) | byteAt(parameters, 2) << 8);
    command->height = int(byteAt(parameters, 3) | byteAt(parameters, 4) << 8);
    command->bytes = parameters.sliced(5);
}

// The values of the commands a reader acts on, from their parameter bytes.
void decode(EscPosCommand *command, QByteArrayView parameters)
{
    const auto first = [&] { return int(byteAt(parameters, 0)); };
    switch (command->kind) {
    case Kind::CodeTable:
    case Kind::PrintMode:
    case Kind::CharacterSize:
    case Kind::FeedLines:
    case Kind::FeedDots:
    case Kind::LineSpacing:
        command->value = first();
        break;
    case Kind::Emphasis:
    case Kind::DoubleStrike:
        command->value = first() & 0x01;
        break;
    case Kind::Underline:
        // Both the numbers 0-2 and the digits '0'-'2' select the underline.
        command->value = first() >= '0' ? first() - '0' : first();
        break;
    case Kind::Justification:
        command->value = (first() >= '0' ? first() - '0' : first()) % 3;
        break;
    case Kind::DrawerPulse:
        command->value = first() & 0x01;
        command->onTime = int(byteAt(parameters, 1));
        command->offTime = int(byteAt(parameters, 2));
        break;
    case Kind::Cut:
        decodeCut(command, parameters);
        break;
    case Kind::RasterImage:
        decodeRaster(command, parameters);
        break;
    default:
        break;
    }
}

} // namespace

bool EscPosTokenizer::take(EscPosCommand *command, EscPosCommand::Kind kind, qsizetype length)
{
    command->kind = kind;
    command->offset = m_position;
    command->bytes = m_stream.sliced(m_position, length);
    m_position += length;
    return true;
}

bool EscPosTokenizer::takeText(EscPosCommand *command)
{
    qsizetype end = m_position + 1;
    while (end < m_stream.size() && isText(m_stream[end]))
        ++end;
    return take(command, Kind::Text, end - m_position);
}

// An escape always takes the byte after it, known or not; other control bytes, and a DLE or
// FS that starts no command of the set, are one byte of some other printer language.  Only
// an escape can be cut off: a lone DLE or FS at the end is such a byte.
bool EscPosTokenizer::takeUnmatched(EscPosCommand *command, bool cutOff)
{
    const char first = m_stream[m_position];
    const qsizetype left = m_stream.size() - m_position;
    if (first == ESC || first == GS) {
        if (cutOff || left < 2)
            return take(command, Kind::Truncated, left);
        return take(command, Kind::Unknown, 2);
    }
    return take(command, Kind::Unknown, 1);
}

bool EscPosTokenizer::next(EscPosCommand *command)
{
    if (m_position >= m_stream.size())
        return false;
    *command = EscPosCommand();
    if (isText(m_stream[m_position]))
        return takeText(command);

    const QByteArrayView rest = m_stream.sliced(m_position);
    const escposcommands::Match match = escposcommands::commandAt(rest);
    if (!match.entry)
        return takeUnmatched(command, match.cutOff);
    const EscPosCommandEntry &entry = *match.entry;
    const qsizetype prefix = qsizetype(entry.prefix.size());
    const qsizetype parameters = escposcommands::parameterLength(entry, rest.sliced(prefix));
    command->entry = &entry;
    if (parameters < 0)
        return take(command, Kind::Truncated, rest.size());
    take(command, entry.kind, prefix + parameters);
    decode(command, rest.sliced(prefix, parameters));
    return true;
}
