#ifndef BRISTEL_BACKEND_ESCPOSENCODER_H
#define BRISTEL_BACKEND_ESCPOSENCODER_H

#include <QByteArray>
#include <QStringView>

class EscPosCodePage;
class PbmImage;
class QIODevice;

/*
 * Writes ESC/POS commands and text to a device.  It is the only place where the bytes of a
 * command are put together: text goes through the code page, which turns every control
 * character into '?', so nothing a document says can become a command.  Bytes are collected
 * and handed to the device in large pieces; the first write that fails is remembered.
 */
class EscPosEncoder
{
public:
    enum class Justification
    {
        Left = 0,
        Centre = 1,
        Right = 2
    };
    enum class Cut
    {
        Full,
        Partial
    };

    EscPosEncoder(QIODevice *device, const EscPosCodePage *codePage);
    ~EscPosEncoder();
    EscPosEncoder(const EscPosEncoder &) = delete;
    EscPosEncoder &operator=(const EscPosEncoder &) = delete;

    // ESC @, then ESC t: the printer forgets its code table with every initialisation.
    void initialize(int codePageNumber);
    void emphasis(bool on);
    // Multipliers 1 to 8 each.
    void characterSize(int width, int height);
    void justification(Justification justification);
    void text(QStringView text);
    void spaces(unsigned int count);
    void lineFeed();
    void feedLines(int lines);
    void cut(Cut cut, int feed);
    // Pin 2 or 5; times in milliseconds, sent in the printer's steps of 2 ms.
    void drawerPulse(int pin, int onMs, int offMs);
    // GS v 0: one raster image, eight dots a byte, rows padded to whole bytes.
    void rasterImage(const PbmImage &image);

    // Hands everything collected to the device; false once any write has failed.
    bool flush();
    bool failed() const { return m_failed; }

private:
    void command(std::initializer_list<unsigned char> bytes);
    void flushWhenFull();

    QIODevice *m_device; // not owned
    const EscPosCodePage *m_codePage;
    QByteArray m_buffer;
    bool m_failed = false;
};

#endif
