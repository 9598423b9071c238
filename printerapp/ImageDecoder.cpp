#include "printerapp/ImageDecoder.h"

#include <QBuffer>
#include <QImageReader>

QImage ImageDecoder::decode(const QByteArray &bytes, const QByteArray &format, QString *error) const
{
    if (format != "png" && format != "jpeg") {
        *error = QStringLiteral("pictures in %1 format are not accepted").arg(QString::fromLatin1(format));
        return {};
    }
    if (bytes.size() > m_limits.maximumBytes) {
        *error = QStringLiteral("the picture has %1 bytes, more than the %2 accepted")
                     .arg(bytes.size())
                     .arg(m_limits.maximumBytes);
        return {};
    }
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    reader.setDecideFormatFromContent(false);
    const QSize size = reader.size();
    if (!size.isValid()) {
        *error = QStringLiteral("the picture cannot be read: %1").arg(reader.errorString());
        return {};
    }
    if (size.width() > m_limits.maximumWidth || size.height() > m_limits.maximumHeight ||
        qint64(size.width()) * size.height() > m_limits.maximumPixels) {
        *error = QStringLiteral("the picture is %1 x %2 pixels, larger than the %3 pixels accepted")
                     .arg(size.width())
                     .arg(size.height())
                     .arg(m_limits.maximumPixels);
        return {};
    }
    QImage image;
    if (!reader.read(&image) || image.size() != size) {
        *error = QStringLiteral("the picture cannot be read: %1").arg(reader.errorString());
        return {};
    }
    return image;
}
