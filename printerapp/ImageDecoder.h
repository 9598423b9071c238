#ifndef BRISTEL_PRINTERAPP_IMAGEDECODER_H
#define BRISTEL_PRINTERAPP_IMAGEDECODER_H

#include "printerapp/DecodeLimits.h"

#include <QByteArray>
#include <QImage>
#include <QString>

// Decodes a PNG or JPEG job through Qt's image reader, within limits: the file's size is
// checked before reading, the picture's size from its header before any pixel is decoded,
// and a damaged file ends in an error, never in a loop or a half picture.
class ImageDecoder
{
public:
    explicit ImageDecoder(DecodeLimits limits = {}) : m_limits(limits) {}

    // format: "png" or "jpeg" (a MIME type's subtype). A null image with *error set on refusal.
    QImage decode(const QByteArray &bytes, const QByteArray &format, QString *error) const;

private:
    DecodeLimits m_limits;
};

#endif
