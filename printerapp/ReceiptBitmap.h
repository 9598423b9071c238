#ifndef BRISTEL_PRINTERAPP_RECEIPTBITMAP_H
#define BRISTEL_PRINTERAPP_RECEIPTBITMAP_H

#include <QByteArray>

class QImage;

// A picture as a receipt printer's head prints it: one bit per dot, 1 for a black dot, rows of
// widthDots() dots packed most significant bit first. fromImage() scales any picture to the
// width of the paper (384 dots on 58 mm paper, 512 or 576 on 80 mm), lays transparent parts
// on white paper and spreads the grey levels into dots by Floyd-Steinberg error diffusion.
class ReceiptBitmap
{
public:
    // The printers accept at most this many rows in one raster command; taller pictures are
    // sent in several bands.
    static constexpr int MaximumBandRows = 2047;

    // A null image or a width that is not a positive multiple of 8 gives an empty bitmap.
    static ReceiptBitmap fromImage(const QImage &image, int widthDots);
    // Dots dithered elsewhere: rows of bytesPerRow bytes, 1 for black. Empty when the sizes and
    // the bytes disagree.
    static ReceiptBitmap fromDots(int bytesPerRow, int rows, const QByteArray &bits);
    // The same without the blank rows at its foot: a receipt is as long as its contents.
    ReceiptBitmap withoutBlankFoot() const;

    bool isEmpty() const { return m_rows == 0; }
    int widthDots() const { return m_bytesPerRow * 8; }
    int rows() const { return m_rows; }
    int bytesPerRow() const { return m_bytesPerRow; }
    bool dot(int x, int y) const;
    int blackDots() const;
    const QByteArray &bits() const { return m_bits; }

    // GS v 0 commands (1D 76 30 00 xL xH yL yH, then the rows), one per band of at most
    // bandRows rows; nothing for an empty bitmap.
    QByteArray rasterCommands(int bandRows = MaximumBandRows) const;

private:
    int m_bytesPerRow = 0;
    int m_rows = 0;
    QByteArray m_bits;
};

#endif
