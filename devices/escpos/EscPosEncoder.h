#ifndef BRISTEL_DEVICES_ESCPOS_ESCPOSENCODER_H
#define BRISTEL_DEVICES_ESCPOS_ESCPOSENCODER_H

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
    // n of GS ( k function 169: the share of a QR symbol that may be lost, L M Q H.
    enum class QrErrorCorrection : unsigned char
    {
        Low = 48,
        Medium = 49,
        Quartile = 50,
        High = 51
    };
    // m of GS k in its length form (m from 65 on).
    enum class BarcodeSystem : unsigned char
    {
        UpcA = 65,
        Ean13 = 67,
        Ean8 = 68,
        Code39 = 69,
        Itf = 70,
        Code128 = 73
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
    // A QR code (model 2) drawn by the printer: GS ( k functions 165, 167, 169, 180 and 181.
    // moduleSize 1 to 16 dots; at most 7089 bytes of data, which no QR symbol exceeds.
    void qrCode(const QByteArray &data, int moduleSize, QrErrorCorrection errorCorrection);
    // A barcode drawn by the printer: GS h, GS w, GS H, then GS k m n d1..dn.  The data goes as
    // it stands (at most 255 bytes): a Code 128 caller gives its code set selector itself.
    void barcode(BarcodeSystem system, const QByteArray &data, int height, int moduleWidth, bool textBelow);

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
