#ifndef BRISTEL_DEVICES_ESCPOS_ESCPOSTOKENIZER_H
#define BRISTEL_DEVICES_ESCPOS_ESCPOSTOKENIZER_H

#include <QByteArray>
#include <QByteArrayView>

struct EscPosCommandEntry;

/*
 * Splits an ESC/POS byte stream into printable text and commands, the way a receipt printer
 * reads it.  It reads every command of the ESC/POS command set by the table of
 * EscPosCommandTable.h, parameters and all, so that no parameter byte is ever taken for text.
 * The commands a reader acts on come back with their values decoded; the others come back as
 * Other, with the table's entry.  Bytes that start no command of the set come back as Unknown
 * with what they consumed (an escape and the byte after it, or a control byte), so a reader
 * can show them and carry on.  A command cut off by the end of the stream comes back as
 * Truncated.  Nothing here allocates per byte of text, and no input can make it read out of
 * bounds or loop.
 */
struct EscPosCommand
{
    enum class Kind
    {
        Text,               // printable bytes (0x20 and above, code-page encoded); bytes: the text
        LineFeed,           // LF
        CarriageReturn,     // CR (printers ignore it in the default mode)
        Initialize,         // ESC @
        CodeTable,          // ESC t n; value: n
        Emphasis,           // ESC E n; value: n & 1
        DoubleStrike,       // ESC G n; value: n & 1
        Underline,          // ESC - n; value: n (0, 1, 2)
        PrintMode,          // ESC ! n; value: n
        CharacterSize,      // GS ! n; value: n (width-1 in the high, height-1 in the low four bits)
        Justification,      // ESC a n; value: 0 left, 1 centre, 2 right
        FeedLines,          // ESC d n; value: n
        FeedDots,           // ESC J n; value: n
        LineSpacing,        // ESC 3 n; value: n dots
        DefaultLineSpacing, // ESC 2
        Cut,                // GS V m [n], ESC i, ESC m; value: 0 full, 1 partial; feed: n (0 without)
        DrawerPulse,        // ESC p m t1 t2; value: m (0 pin 2, 1 pin 5); onTime t1, offTime t2
        RasterImage,        // GS v 0 m xL xH yL yH d...; widthBytes, height, bytes: the dots
        Other,              // a command of the set that readers step over; bytes: all of it
        Unknown,            // bytes: what was skipped
        Truncated           // a command cut off by the end of the stream; bytes: its start
    };

    Kind kind = Kind::Text;
    int value = 0;
    int feed = 0;
    int onTime = 0;  // in units of 2 ms
    int offTime = 0; // in units of 2 ms
    int widthBytes = 0;
    int height = 0;
    QByteArrayView bytes;                      // a view into the tokenizer's input
    qsizetype offset = 0;                      // where the command starts in the stream
    const EscPosCommandEntry *entry = nullptr; // the table's entry; null for text and Unknown
};

class EscPosTokenizer
{
public:
    explicit EscPosTokenizer(QByteArrayView stream) : m_stream(stream) {}

    // False at the end of the stream.
    bool next(EscPosCommand *command);
    qsizetype position() const { return m_position; }

private:
    bool take(EscPosCommand *command, EscPosCommand::Kind kind, qsizetype length);
    bool takeText(EscPosCommand *command);
    bool takeUnmatched(EscPosCommand *command, bool cutOff);

    QByteArrayView m_stream;
    qsizetype m_position = 0;
};

#endif
