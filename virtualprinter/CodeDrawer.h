#ifndef BRISTEL_VIRTUALPRINTER_CODEDRAWER_H
#define BRISTEL_VIRTUALPRINTER_CODEDRAWER_H

#include <QByteArray>
#include <QImage>
#include <QString>

struct EscPosCodeCommand;

// What a print command of the codes puts on paper: the symbol's dots and its human-readable
// characters, or why the printer prints nothing.
struct CodeDrawing
{
    QImage dots;     // QImage::Format_Mono, index 1 printed; null when nothing is printed
    QString refusal; // "GS k: invalid EAN-13 data"; empty when the symbol is drawn
    QString hriText; // the human-readable characters of a barcode
    bool hriAbove = false;
    bool hriBelow = false;
    int hriFont = 0; // 0 font A, 1 font B
};

/*
 * The QR codes, PDF417 symbols and barcodes of a receipt printer.  It keeps what GS ( k,
 * GS h, GS w, GS H and GS f set and the data stored for a symbol, and draws the symbol when
 * the printer is told to print it: libzint encodes the data, and every module becomes exact
 * dots here (a QR module a square of the module size, a bar as many dots wide as GS w says
 * for each of its modules), so that a scanner reads the preview as it reads the paper.
 * A setting out of range is ignored and the one before kept, as the printer does; data the
 * printer would refuse, or a symbol wider than the paper, prints nothing and says why.
 */
class CodeDrawer
{
public:
    static constexpr int defaultBarcodeHeight = 162;
    static constexpr int defaultBarcodeModule = 3;
    static constexpr int defaultQrModule = 3;
    static constexpr int defaultPdf417Module = 3;
    static constexpr int defaultPdf417RowHeight = 3;

    CodeDrawer() = default;
    Q_DISABLE_COPY_MOVE(CodeDrawer)

    // Carries out one command of the codes.  True for a print command, whose result is in
    // `drawing`; false for a setting or stored data, which print nothing.
    bool execute(const EscPosCodeCommand &command, int paperWidth, CodeDrawing *drawing);
    // ESC @: every setting back to the printer's default, the stored data gone.
    void initialize();

private:
    struct QrSettings
    {
        int model = 50; // 49 model 1, 50 model 2, 51 Micro QR
        int moduleSize = defaultQrModule;
        int errorCorrection = 48; // 48..51: L M Q H
        QByteArray data;
    };

    struct Pdf417Settings
    {
        int columns = 0; // 0: as many as the data needs
        int rows = 0;
        int moduleWidth = defaultPdf417Module;
        int rowHeight = defaultPdf417RowHeight; // in module widths
        int level = -1;                         // -1: chosen by the data's length
        bool truncated = false;
        QByteArray data;
    };

    struct BarcodeSettings
    {
        int height = defaultBarcodeHeight;
        int moduleWidth = defaultBarcodeModule;
        int hriPosition = 0; // 0 none, 1 above, 2 below, 3 both
        int hriFont = 0;
    };

    bool setQrCode(const EscPosCodeCommand &command);
    bool setPdf417(const EscPosCodeCommand &command);
    bool setBarcode(const EscPosCodeCommand &command);
    CodeDrawing drawQrCode(int paperWidth) const;
    CodeDrawing drawPdf417(int paperWidth) const;
    CodeDrawing drawBarcode(const EscPosCodeCommand &command, int paperWidth) const;

    QrSettings m_qr;
    Pdf417Settings m_pdf417;
    BarcodeSettings m_barcode;
};

#endif
