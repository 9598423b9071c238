#ifndef BRISTEL_DEVICES_ESCPOS_PBMIMAGE_H
#define BRISTEL_DEVICES_ESCPOS_PBMIMAGE_H

#include <QByteArray>
#include <QString>

/*
 * A black-and-white image in the portable bitmap format (PBM, plain "P1" or raw "P4"), which
 * GIMP, ImageMagick and netpbm write and which needs no image library to read.  Rows are kept
 * as the raw format stores them: eight dots a byte, the most significant bit leftmost, 1 black,
 * each row padded to whole bytes, which is also how a receipt printer takes a raster image.
 */
class PbmImage
{
public:
    // False, with the reason in *error, when the file cannot be read or is not a valid PBM.
    bool load(const QString &fileName, QString *error);
    bool loadFromData(const QByteArray &data, QString *error);
    // An image from rows already in that layout (height rows of bytesPerRow() bytes each);
    // a null image when the sizes do not agree.
    static PbmImage fromRows(int width, int height, const QByteArray &rows);

    int width() const { return m_width; }
    int height() const { return m_height; }
    int bytesPerRow() const { return (m_width + 7) / 8; }
    const QByteArray &rows() const { return m_rows; }
    bool isNull() const { return m_width == 0 || m_height == 0; }

    // The image cut to at most `dots` dots wide, keeping its left part.
    PbmImage croppedToWidth(int dots) const;

    // Images taller than this are refused: a logo, not a poster (a printer takes at most 65535).
    static constexpr int maximumHeight = 4096;
    static constexpr int maximumWidth = 4096;

private:
    int m_width = 0;
    int m_height = 0;
    QByteArray m_rows;
};

#endif
