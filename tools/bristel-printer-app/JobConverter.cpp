#include "JobConverter.h"

#include "PlainTextReceipt.h"
#include "config/BRConfiguration.h"
#include "cups/QueueOptions.h"
#include "cups/SiteConfiguration.h"
#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/EscPosEncoder.h"
#include "devices/escpos/EscPosSettings.h"
#include "job/JobConfiguration.h"
#include "job/JobDetection.h"
#include "job/RenderJob.h"
#include "printerapp/ImageDecoder.h"
#include "printerapp/ReceiptBitmap.h"

#include <QBuffer>
#include <QMutexLocker>
#include <QStringList>

namespace {

constexpr QByteArrayView PngSignature("\x89PNG\r\n\x1a\n", 8);
constexpr QByteArrayView JpegSignature("\xff\xd8\xff", 3);

} // namespace

JobConverter::JobConverter() = default;
JobConverter::~JobConverter() = default;

QByteArray JobConverter::cutCommand(const EscPosSettings &settings)
{
    if (settings.cut == EscPosSettings::Cut::None)
        return QByteArray("");
    QByteArray bytes;
    QBuffer output(&bytes);
    output.open(QIODevice::WriteOnly);
    EscPosEncoder encoder(&output, EscPosCodePage::byName(settings.codePage));
    encoder.cut(settings.cut == EscPosSettings::Cut::Full ? EscPosEncoder::Cut::Full
                                                          : EscPosEncoder::Cut::Partial,
                settings.cutFeed);
    encoder.flush();
    return bytes;
}

const char *JobConverter::formatOf(QByteArrayView start)
{
    if (isBristelJob(start.first(qMin(start.size(), bristelJobSniffLength))))
        return BristelFormat;
    if (start.startsWith(PngSignature))
        return PngFormat;
    if (start.startsWith(JpegSignature))
        return JpegFormat;
    return EscPosFormat;
}

bool JobConverter::loadConfiguration(QString *error)
{
    auto configuration = std::make_unique<JobConfiguration>();
    if (!loadSiteConfiguration(configuration.get(), BRConfiguration::userFilePath(), error))
        return false;
    m_configuration = std::move(configuration);
    return true;
}

QByteArray JobConverter::convert(const QByteArray &format, const QByteArray &document, int widthDots,
                                 const QueueOptions &printerSettings, QString *error, QStringList *warnings)
{
    if (format == EscPosFormat)
        return document;
    const EscPosSettings settings = settingsWith(printerSettings, warnings);
    if (format == BristelFormat)
        return renderBristel(document, settings, error);
    if (format == PngFormat)
        return printPicture(document, "png", widthDots, settings, error);
    if (format == JpegFormat)
        return printPicture(document, "jpeg", widthDots, settings, error);
    if (format == TextFormat || format.startsWith(QByteArray(TextFormat) + ';'))
        return PlainTextReceipt::render(document, settings);
    *error = QStringLiteral("documents in %1 format are not printed").arg(QString::fromLatin1(format));
    return {};
}

EscPosSettings JobConverter::settingsWith(const QueueOptions &printerSettings, QStringList *warnings) const
{
    EscPosSettings settings = m_configuration ? m_configuration->settings() : EscPosSettings();
    const QStringList problems = printerSettings.applyTo(settings);
    if (warnings)
        *warnings += problems;
    return settings;
}

QByteArray JobConverter::renderBristel(const QByteArray &document, const EscPosSettings &settings,
                                       QString *error)
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
    const RenderResult result =
        renderJob(&input, &output, RenderFormat::EscPos, m_configuration->configuration(), settings);
    if (result.status != RenderResult::Status::Ok) {
        *error = QStringLiteral("not printed: line %1, column %2: %3")
                     .arg(result.line)
                     .arg(result.column)
                     .arg(result.message);
        return {};
    }
    return bytes.isNull() ? QByteArray("") : bytes;
}

QByteArray JobConverter::printPicture(const QByteArray &document, const QByteArray &type, int widthDots,
                                      const EscPosSettings &settings, QString *error)
{
    const QImage image = ImageDecoder().decode(document, type, error);
    if (image.isNull())
        return {};
    const ReceiptBitmap bitmap = ReceiptBitmap::fromImage(image, widthDots);
    if (bitmap.isEmpty()) {
        *error = QStringLiteral("the picture cannot be drawn %1 dots wide").arg(widthDots);
        return {};
    }
    return bitmap.rasterCommands() + cutCommand(settings);
}
