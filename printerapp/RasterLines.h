#ifndef BRISTEL_PRINTERAPP_RASTERLINES_H
#define BRISTEL_PRINTERAPP_RASTERLINES_H

#include <QImage>
#include <QString>

class RasterInput;

// The line compression that PWG raster and Apple raster share. Each group of lines starts with
// a repeat byte (the line appears that many times plus one); the line is then a run of
// commands: 0..127 repeats the next pixel that many times plus one, 129..255 copies 257 minus
// that many pixels as they stand, and 128 fills the rest of the line with white.
class RasterLines
{
public:
    // Reads one page of width x height pixels of bytesPerPixel bytes (1 for 8-bit grey, 3 for
    // 24-bit RGB) into an image of that format; a null image with *error set when the data
    // ends early or a run overflows its line.
    static QImage decodePage(RasterInput &input, int width, int height, int bytesPerPixel, QString *error);
    // Page `number` of a document, decoded as decodePage does and given the resolution its
    // header declares (0, not said, and values beyond any printer's leave the image's own);
    // *error then begins with "page N: ".
    static QImage decodeNumberedPage(RasterInput &input, int number, int width, int height, int bytesPerPixel,
                                     quint32 dotsPerInch, QString *error);
};

#endif
