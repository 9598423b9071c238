#include "printerapp/RasterLimits.h"

bool RasterLimits::documentSizeFits(qint64 bytes, QString *error) const
{
    if (bytes <= m_limits.maximumBytes)
        return true;
    *error = QStringLiteral("the raster document has %1 bytes, more than the %2 accepted")
                 .arg(bytes)
                 .arg(m_limits.maximumBytes);
    return false;
}

bool RasterLimits::pageCountFits(qint64 pages, QString *error) const
{
    if (pages <= m_limits.maximumPages)
        return true;
    *error = QStringLiteral("the raster document has more than %1 pages").arg(m_limits.maximumPages);
    return false;
}

bool RasterLimits::pageSizeFits(int number, quint32 width, quint32 height, QString *error) const
{
    if (width != 0 && height != 0 && width <= quint32(m_limits.maximumWidth) &&
        height <= quint32(m_limits.maximumHeight) && qint64(width) * height <= m_limits.maximumPixels)
        return true;
    *error = QStringLiteral("page %1: %2 x %3 pixels is outside the accepted size")
                 .arg(number)
                 .arg(width)
                 .arg(height);
    return false;
}
