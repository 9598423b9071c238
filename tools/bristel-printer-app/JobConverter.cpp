#include "JobConverter.h"

#include "app/JobConfiguration.h"
#include "app/RenderJob.h"
#include "config/BRConfiguration.h"
#include "printerapp/ImageDecoder.h"
#include "printerapp/ReceiptBitmap.h"

#include <QBuffer>
#include <QMutexLocker>

JobConverter::JobConverter() = default;
JobConverter::~JobConverter() = default;

bool JobConverter::loadConfiguration(QString *error)
{
    auto configuration = std::make_unique<JobConfiguration>();
    if (!configuration->load(BRConfiguration::userFilePath(), JobConfiguration::Missing::MeansDefaults,
                             error))
        return false;
    m_configuration = std::move(configuration);
    return true;
}

QByteArray JobConverter::convert(const QByteArray &format, const QByteArray &document, int widthDots,
                                 QString *error)
{
    if (format == EscPosFormat)
        return document;
    if (format == BristelFormat)
        return renderBristel(document, error);
    if (format == PngFormat)
        return printPicture(document, "png", widthDots, error);
    if (format == JpegFormat)
        return printPicture(document, "jpeg", widthDots, error);
    *error = QStringLiteral("documents in %1 format are not printed").arg(QString::fromLatin1(format));
    return {};
}

QByteArray JobConverter::renderBristel(const QByteArray &document, QString *error)
{
    if (!m_configuration) {
        *error = QStringLiteral("the configuration has not been read");
        return {};
    }
    QBuffer input;
    input.setData(document);
    input.open(QIODevice::ReadOnly);
    QByteArray bytes;
    QBuffer output(&bytes);
    output.open(QIODevice::WriteOnly);
    QMutexLocker lock(&m_renderLock);
    const RenderResult result = renderJob(&input, &output, RenderFormat::EscPos,
                                          m_configuration->configuration(), m_configuration->settings());
    if (result.status != RenderResult::Status::Ok) {
        *error = QStringLiteral("%1:%2: %3").arg(result.line).arg(result.column).arg(result.message);
        return {};
    }
    return bytes.isNull() ? QByteArray("") : bytes;
}

QByteArray JobConverter::printPicture(const QByteArray &document, const QByteArray &type, int widthDots,
                                      QString *error)
{
    const QImage image = ImageDecoder().decode(document, type, error);
    if (image.isNull())
        return {};
    const ReceiptBitmap bitmap = ReceiptBitmap::fromImage(image, widthDots);
    if (bitmap.isEmpty()) {
        *error = QStringLiteral("the picture cannot be drawn %1 dots wide").arg(widthDots);
        return {};
    }
    return bitmap.rasterCommands() + feedAndCut();
}
