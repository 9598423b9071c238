#include "printerapp/RasterLines.h"

#include "printerapp/RasterInput.h"

#include <cstring>

namespace {

constexpr quint8 FillWithWhite = 128;

// One line into out (width * bytesPerPixel bytes); false when the data is bad.
bool decodeLine(RasterInput &input, uchar *out, int width, int bytesPerPixel)
{
    int x = 0;
    while (x < width) {
        const std::optional<quint8> command = input.byte();
        if (!command)
            return false;
        if (*command == FillWithWhite) {
            std::memset(out + qsizetype(x) * bytesPerPixel, 0xff, size_t(width - x) * bytesPerPixel);
            return true;
        }
        const bool literal = *command > FillWithWhite;
        const int count = literal ? 257 - *command : *command + 1;
        if (count > width - x)
            return false;
        const std::optional<QByteArray> pixels = input.bytes(qsizetype(literal ? count : 1) * bytesPerPixel);
        if (!pixels)
            return false;
        uchar *target = out + qsizetype(x) * bytesPerPixel;
        if (literal) {
            std::memcpy(target, pixels->constData(), size_t(pixels->size()));
        } else {
            for (int i = 0; i < count; ++i)
                std::memcpy(target + qsizetype(i) * bytesPerPixel, pixels->constData(),
                            size_t(bytesPerPixel));
        }
        x += count;
    }
    return true;
}

void setResolution(QImage &page, quint32 dotsPerInch)
{
    if (dotsPerInch == 0 || dotsPerInch > 10000)
        return;
    const int dotsPerMetre = qRound(dotsPerInch / 0.0254);
    page.setDotsPerMeterX(dotsPerMetre);
    page.setDotsPerMeterY(dotsPerMetre);
}

} // namespace

QImage RasterLines::decodePage(RasterInput &input, int width, int height, int bytesPerPixel, QString *error)
{
    const QImage::Format format = bytesPerPixel == 1 ? QImage::Format_Grayscale8 : QImage::Format_RGB888;
    QImage page(width, height, format);
    if (page.isNull()) {
        *error = QStringLiteral("no memory for a page of %1 x %2 pixels").arg(width).arg(height);
        return {};
    }
    const size_t lineBytes = size_t(width) * bytesPerPixel;
    int y = 0;
    while (y < height) {
        const std::optional<quint8> repeat = input.byte();
        if (!repeat || *repeat + 1 > height - y ||
            !decodeLine(input, page.scanLine(y), width, bytesPerPixel)) {
            *error = QStringLiteral("the raster data of the page is damaged at line %1").arg(y + 1);
            return {};
        }
        for (int copy = 1; copy <= *repeat; ++copy)
            std::memcpy(page.scanLine(y + copy), page.constScanLine(y), lineBytes);
        y += *repeat + 1;
    }
    return page;
}

QImage RasterLines::decodeNumberedPage(RasterInput &input, int number, int width, int height,
                                       int bytesPerPixel, quint32 dotsPerInch, QString *error)
{
    QString pageError;
    QImage page = decodePage(input, width, height, bytesPerPixel, &pageError);
    if (page.isNull()) {
        *error = QStringLiteral("page %1: %2").arg(number).arg(pageError);
        return {};
    }
    setResolution(page, dotsPerInch);
    return page;
}
