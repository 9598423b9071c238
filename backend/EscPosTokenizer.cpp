#include "backend/EscPosTokenizer.h"

namespace {

constexpr char ESC = 0x1b;
constexpr char GS = 0x1d;
constexpr char LF = 0x0a;
constexpr char CR = 0x0d;

unsigned char byteAt(QByteArrayView stream, qsizetype index)
{
    return static_cast<unsigned char>(stream[index]);
}

} // namespace

bool EscPosTokenizer::next(EscPosCommand *command)
{
    const qsizetype size = m_stream.size();
    if (m_position >= size)
        return false;

    *command = EscPosCommand();
    const qsizetype start = m_position;
    const auto available = [&](qsizetype count) { return size - start >= count; };
    const auto take = [&](EscPosCommand::Kind kind, qsizetype length) {
        command->kind = kind;
        command->bytes = m_stream.sliced(start, length);
        m_position = start + length;
        return true;
    };
    const auto truncated = [&] { return take(EscPosCommand::Kind::Truncated, size - start); };

    const char first = m_stream[start];
    if (first == LF)
        return take(EscPosCommand::Kind::LineFeed, 1);
    if (first == CR)
        return take(EscPosCommand::Kind::CarriageReturn, 1);

    if (first == ESC) {
        if (!available(2))
            return truncated();
        const char code = m_stream[start + 1];
        const auto withArgument = [&](EscPosCommand::Kind kind, int mask) {
            if (!available(3))
                return truncated();
            command->value = byteAt(m_stream, start + 2) & mask;
            return take(kind, 3);
        };
        switch (code) {
        case '@':
            return take(EscPosCommand::Kind::Initialize, 2);
        case '2':
            return take(EscPosCommand::Kind::DefaultLineSpacing, 2);
        case 't':
            return withArgument(EscPosCommand::Kind::CodeTable, 0xff);
        case 'E':
            return withArgument(EscPosCommand::Kind::Emphasis, 0x01);
        case 'G':
            return withArgument(EscPosCommand::Kind::DoubleStrike, 0x01);
        case '!':
            return withArgument(EscPosCommand::Kind::PrintMode, 0xff);
        case '3':
            return withArgument(EscPosCommand::Kind::LineSpacing, 0xff);
        case 'd':
            return withArgument(EscPosCommand::Kind::FeedLines, 0xff);
        case 'J':
            return withArgument(EscPosCommand::Kind::FeedDots, 0xff);
        case '-': {
            if (!available(3))
                return truncated();
            const unsigned char n = byteAt(m_stream, start + 2);
            // Both the numbers 0-2 and the digits '0'-'2' select the underline.
            command->value = n >= '0' ? n - '0' : n;
            return take(EscPosCommand::Kind::Underline, 3);
        }
        case 'a': {
            if (!available(3))
                return truncated();
            const unsigned char n = byteAt(m_stream, start + 2);
            command->value = (n >= '0' ? n - '0' : n) % 3;
            return take(EscPosCommand::Kind::Justification, 3);
        }
        case 'p':
            if (!available(5))
                return truncated();
            command->value = byteAt(m_stream, start + 2) & 0x01;
            command->onTime = byteAt(m_stream, start + 3);
            command->offTime = byteAt(m_stream, start + 4);
            return take(EscPosCommand::Kind::DrawerPulse, 5);
        default:
            return take(EscPosCommand::Kind::Unknown, 2);
        }
    }

    if (first == GS) {
        if (!available(2))
            return truncated();
        const char code = m_stream[start + 1];
        if (code == '!') {
            if (!available(3))
                return truncated();
            command->value = byteAt(m_stream, start + 2);
            return take(EscPosCommand::Kind::CharacterSize, 3);
        }
        if (code == 'V') {
            if (!available(3))
                return truncated();
            const unsigned char m = byteAt(m_stream, start + 2);
            if (m == 0 || m == 1 || m == '0' || m == '1') {
                command->value = (m == 1 || m == '1') ? 1 : 0;
                return take(EscPosCommand::Kind::Cut, 3);
            }
            if (m == 65 || m == 66) {
                if (!available(4))
                    return truncated();
                command->value = m == 66 ? 1 : 0;
                command->feed = byteAt(m_stream, start + 3);
                return take(EscPosCommand::Kind::Cut, 4);
            }
            return take(EscPosCommand::Kind::Unknown, 3);
        }
        if (code == 'v') {
            if (!available(8))
                return truncated();
            if (m_stream[start + 2] != '0')
                return take(EscPosCommand::Kind::Unknown, 3);
            const int widthBytes = byteAt(m_stream, start + 4) | (byteAt(m_stream, start + 5) << 8);
            const int height = byteAt(m_stream, start + 6) | (byteAt(m_stream, start + 7) << 8);
            const qsizetype dataSize = qsizetype(widthBytes) * height;
            if (!available(8 + dataSize))
                return truncated();
            command->kind = EscPosCommand::Kind::RasterImage;
            command->value = byteAt(m_stream, start + 3);
            command->widthBytes = widthBytes;
            command->height = height;
            command->bytes = m_stream.sliced(start + 8, dataSize);
            m_position = start + 8 + dataSize;
            return true;
        }
        return take(EscPosCommand::Kind::Unknown, 2);
    }

    const auto isText = [](char c) {
        const auto value = static_cast<unsigned char>(c);
        return value >= 0x20 && value != 0x7f;
    };
    if (!isText(first)) {
        // Any other control byte: a command of some other printer language.
        return take(EscPosCommand::Kind::Unknown, 1);
    }
    qsizetype end = start + 1;
    while (end < size && isText(m_stream[end]))
        ++end;
    return take(EscPosCommand::Kind::Text, end - start);
}
