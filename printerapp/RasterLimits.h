#ifndef BRISTEL_PRINTERAPP_RASTERLIMITS_H
#define BRISTEL_PRINTERAPP_RASTERLIMITS_H

#include "printerapp/DecodeLimits.h"

#include <QString>

// The limits a raster document (PWG or Apple) is held to before any of its pages is decoded,
// so that a huge or lying header costs no memory. Each check returns false, with *error set,
// when the document goes beyond them.
class RasterLimits
{
public:
    explicit RasterLimits(const DecodeLimits &limits) : m_limits(limits) {}

    bool documentSizeFits(qint64 bytes, QString *error) const;
    // pages is the number of pages declared, or of the page about to be read.
    bool pageCountFits(qint64 pages, QString *error) const;
    bool pageSizeFits(int number, quint32 width, quint32 height, QString *error) const;

private:
    DecodeLimits m_limits;
};

#endif
