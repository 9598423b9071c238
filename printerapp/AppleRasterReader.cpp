#include "printerapp/AppleRasterReader.h"

#include "printerapp/RasterInput.h"
#include "printerapp/RasterLimits.h"
#include "printerapp/RasterLines.h"

#include <QtEndian>

namespace {

const QByteArray Magic = QByteArrayLiteral("UNIRAST\0");

// Colour space codes of the page header: the standard (s) spaces and their device twins.
constexpr quint8 SGray = 0;
constexpr quint8 SRgb = 1;
constexpr quint8 DeviceGray = 4;
constexpr quint8 DeviceRgb = 5;

constexpr int WidthOffset = 12;
constexpr int HeightOffset = 16;
constexpr int ResolutionOffset = 20;

quint32 field(const QByteArray &header, int offset)
{
    return qFromBigEndian<quint32>(header.constData() + offset);
}

// Bytes per pixel of a page whose colour space and depth we print, otherwise 0.
int bytesPerPixel(quint8 bitsPerPixel, quint8 colorSpace)
{
    if (bitsPerPixel == 8 && (colorSpace == SGray || colorSpace == DeviceGray))
        return 1;
    if (bitsPerPixel == 24 && (colorSpace == SRgb || colorSpace == DeviceRgb))
        return 3;
    return 0;
}

} // namespace

std::optional<QList<QImage>> AppleRasterReader::read(const QByteArray &document, QString *error) const
{
    const RasterLimits limits(m_limits);
    if (!limits.documentSizeFits(document.size(), error))
        return std::nullopt;
    RasterInput input(document);
    const std::optional<QByteArray> magic = input.bytes(Magic.size());
    const std::optional<quint32> declaredPages = input.bigEndian32();
    if (magic != Magic || !declaredPages) {
        *error = QStringLiteral("not an Apple raster document (no \"UNIRAST\" header)");
        return std::nullopt;
    }
    if (!limits.pageCountFits(*declaredPages, error))
        return std::nullopt;
    QList<QImage> pages;
    // Some senders write 0 pages and let the data end the document.
    while (*declaredPages == 0 ? !input.atEnd() : pages.size() < qsizetype(*declaredPages)) {
        const int number = static_cast<int>(pages.size()) + 1;
        if (!limits.pageCountFits(number, error))
            return std::nullopt;
        const std::optional<QByteArray> header = input.bytes(PageHeaderSize);
        if (!header) {
            *error = QStringLiteral("page %1: the page header is cut short").arg(number);
            return std::nullopt;
        }
        const int pixelBytes = bytesPerPixel(quint8(header->at(0)), quint8(header->at(1)));
        const quint32 width = field(*header, WidthOffset);
        const quint32 height = field(*header, HeightOffset);
        if (pixelBytes == 0) {
            *error = QStringLiteral("page %1: only 8-bit grey and 24-bit RGB pages are printed").arg(number);
            return std::nullopt;
        }
        if (!limits.pageSizeFits(number, width, height, error))
            return std::nullopt;
        const QImage page = RasterLines::decodeNumberedPage(
            input, number, int(width), int(height), pixelBytes, field(*header, ResolutionOffset), error);
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
