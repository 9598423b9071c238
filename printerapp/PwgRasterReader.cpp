#include "printerapp/PwgRasterReader.h"

#include "printerapp/RasterInput.h"
#include "printerapp/RasterLimits.h"
#include "printerapp/RasterLines.h"

#include <QtEndian>

namespace {

// Offsets of the header fields we read, from the start of a page header.
constexpr int ResolutionOffset = 276;
constexpr int WidthOffset = 372;
constexpr int HeightOffset = 376;
constexpr int BitsPerColorOffset = 384;
constexpr int BitsPerPixelOffset = 388;
constexpr int BytesPerLineOffset = 392;
constexpr int ColorOrderOffset = 396;
constexpr int ColorSpaceOffset = 400;

constexpr quint32 ChunkyOrder = 0;
constexpr quint32 SGrayColorSpace = 18;
constexpr quint32 SRgbColorSpace = 19;

quint32 field(const QByteArray &header, int offset)
{
    return qFromBigEndian<quint32>(header.constData() + offset);
}

} // namespace

std::optional<QList<QImage>> PwgRasterReader::read(const QByteArray &document, QString *error) const
{
    const RasterLimits limits(m_limits);
    if (!limits.documentSizeFits(document.size(), error))
        return std::nullopt;
    RasterInput input(document);
    if (input.bytes(4) != QByteArrayLiteral("RaS2")) {
        *error = QStringLiteral("not a PWG raster document (no \"RaS2\" at its start)");
        return std::nullopt;
    }
    QList<QImage> pages;
    while (!input.atEnd()) {
        const int number = static_cast<int>(pages.size()) + 1;
        if (!limits.pageCountFits(number, error))
            return std::nullopt;
        const std::optional<QByteArray> header = input.bytes(HeaderSize);
        if (!header) {
            *error = QStringLiteral("page %1: the page header is cut short").arg(number);
            return std::nullopt;
        }
        const quint32 width = field(*header, WidthOffset);
        const quint32 height = field(*header, HeightOffset);
        const quint32 bitsPerPixel = field(*header, BitsPerPixelOffset);
        const quint32 colorSpace = field(*header, ColorSpaceOffset);
        const bool grey = colorSpace == SGrayColorSpace && bitsPerPixel == 8;
        const bool rgb = colorSpace == SRgbColorSpace && bitsPerPixel == 24;
        if ((!grey && !rgb) || field(*header, BitsPerColorOffset) != 8 ||
            field(*header, ColorOrderOffset) != ChunkyOrder) {
            *error =
                QStringLiteral("page %1: only 8-bit sGray and 24-bit sRGB pages are printed (colour space "
                               "%2, %3 bits per pixel)")
                    .arg(number)
                    .arg(colorSpace)
                    .arg(bitsPerPixel);
            return std::nullopt;
        }
        if (!limits.pageSizeFits(number, width, height, error))
            return std::nullopt;
        const int bytesPerPixel = grey ? 1 : 3;
        if (field(*header, BytesPerLineOffset) != width * bytesPerPixel) {
            *error = QStringLiteral("page %1: the bytes per line do not match its width").arg(number);
            return std::nullopt;
        }
        const QImage page = RasterLines::decodeNumberedPage(
            input, number, int(width), int(height), bytesPerPixel, field(*header, ResolutionOffset), error);
        if (page.isNull())
            return std::nullopt;
        pages.append(page);
    }
    if (pages.isEmpty()) {
        *error = QStringLiteral("the raster document has no page");
        return std::nullopt;
    }
    return pages;
}
