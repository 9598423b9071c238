#ifndef BRISTEL_PRINTERAPP_APPLERASTERREADER_H
#define BRISTEL_PRINTERAPP_APPLERASTERREADER_H

#include "printerapp/DecodeLimits.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>

#include <optional>

// Reads an image/urf (Apple raster) document: "UNIRAST" and a zero byte, the page count, then
// each page as a 32-byte header (bits per pixel, colour space, ..., width, height and
// resolution, big-endian) followed by its lines in RasterLines compression. Pages of 8-bit
// grey or 24-bit RGB are read, within the limits.
class AppleRasterReader
{
public:
    static constexpr int PageHeaderSize = 32;

    explicit AppleRasterReader(DecodeLimits limits = {}) : m_limits(limits) {}

    std::optional<QList<QImage>> read(const QByteArray &document, QString *error) const;

private:
    DecodeLimits m_limits;
};

#endif
