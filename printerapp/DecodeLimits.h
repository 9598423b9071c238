#ifndef BRISTEL_PRINTERAPP_DECODELIMITS_H
#define BRISTEL_PRINTERAPP_DECODELIMITS_H

#include <QtGlobal>

// How much a submitted picture or raster document may ask of the application. A receipt is
// narrow and rarely longer than a metre; anything far beyond that is a mistake or an attack,
// refused before memory is spent on it.
struct DecodeLimits
{
    qint64 maximumBytes = 32 * 1024 * 1024; // the encoded file
    qint64 maximumPixels = 4096LL * 16384;  // one page or picture
    int maximumWidth = 4096;
    int maximumHeight = 65536;
    int maximumPages = 100;
};

#endif
