#ifndef BRISTEL_PRINTERAPP_PWGRASTERREADER_H
#define BRISTEL_PRINTERAPP_PWGRASTERREADER_H

#include "printerapp/DecodeLimits.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>

#include <optional>

// Reads an image/pwg-raster document: the sync word "RaS2", then each page as a 1796-byte
// header (big-endian fields at fixed places) followed by its lines in RasterLines
// compression. Pages of 8-bit sGray or 24-bit sRGB are read, within the limits; each comes as
// an image whose dots per metre carry the page's resolution.
class PwgRasterReader
{
public:
    static constexpr int HeaderSize = 1796;

    explicit PwgRasterReader(DecodeLimits limits = {}) : m_limits(limits) {}

    // The pages, or std::nullopt with *error set.
    std::optional<QList<QImage>> read(const QByteArray &document, QString *error) const;

private:
    DecodeLimits m_limits;
};

#endif
