#ifndef BRISTEL_BACKEND_ESCPOSTOKENIZER_H
#define BRISTEL_BACKEND_ESCPOSTOKENIZER_H

#include <QByteArray>
#include <QByteArrayView>

/*
 * Splits an ESC/POS byte stream into printable text and commands, the way a receipt printer
 * reads it.  It knows the commands the ESC/POS back-end writes and the common ones other
 * programs send; an unknown command comes back as Unknown with the bytes it consumed (the
 * escape and the byte after it), so a reader can show it and carry on.  A command cut off by
 * the end of the stream comes back as Truncated.  Nothing here allocates per byte of text, and
 * no input can make it read out of bounds or loop.
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
        Cut,                // GS V m [n]; value: 0 full, 1 partial; feed: n (0 without one)
        DrawerPulse,        // ESC p m t1 t2; value: m (0 pin 2, 1 pin 5); onTime t1, offTime t2
        RasterImage,        // GS v 0 m xL xH yL yH d...; widthBytes, height, bytes: the dots
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
    QByteArrayView bytes; // a view into the tokenizer's input
};

class EscPosTokenizer
{
public:
    explicit EscPosTokenizer(QByteArrayView stream) : m_stream(stream) {}

    // False at the end of the stream.
    bool next(EscPosCommand *command);
    qsizetype position() const { return m_position; }

private:
    QByteArrayView m_stream;
    qsizetype m_position = 0;
};

#endif
