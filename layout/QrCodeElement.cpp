#include "layout/QrCodeElement.h"

#include <QXmlAttributes>

#include <optional>

namespace {

std::optional<QrCodeElement::ErrorCorrection> errorCorrectionByName(const QString &name)
{
    using Level = QrCodeElement::ErrorCorrection;
    if (name == QLatin1String("L"))
        return Level::Low;
    if (name == QLatin1String("M"))
        return Level::Medium;
    if (name == QLatin1String("Q"))
        return Level::Quartile;
    if (name == QLatin1String("H"))
        return Level::High;
    return std::nullopt;
}

} // namespace

QrCodeElement QrCodeElement::fromAttributes(const QXmlAttributes &attributes)
{
    QrCodeElement request;
    request.data = attributes.value(QLatin1String("data")).toUtf8();
    if (request.data.isEmpty())
        request.problem = QStringLiteral("qrcode: no data to encode");

    const int sizeIndex = attributes.index(QLatin1String("size"));
    if (sizeIndex >= 0 && request.problem.isEmpty()) {
        const QString text = attributes.value(sizeIndex);
        bool ok = false;
        request.size = text.trimmed().toInt(&ok, 10);
        if (!ok || request.size < smallestSize || request.size > largestSize)
            request.problem = QStringLiteral("qrcode: size \"%1\" is not a whole number from %2 to %3")
                                  .arg(text)
                                  .arg(smallestSize)
                                  .arg(largestSize);
    }

    const int eccIndex = attributes.index(QLatin1String("ecc"));
    if (eccIndex >= 0 && request.problem.isEmpty()) {
        const QString text = attributes.value(eccIndex);
        if (const std::optional<ErrorCorrection> level = errorCorrectionByName(text))
            request.errorCorrection = *level;
        else
            request.problem =
                QStringLiteral("qrcode: error correction \"%1\" is none of L, M, Q and H").arg(text);
    }
    return request;
}

QString QrCodeElement::errorCorrectionName(ErrorCorrection level)
{
    switch (level) {
    case ErrorCorrection::Low:
        return QStringLiteral("L");
    case ErrorCorrection::Medium:
        return QStringLiteral("M");
    case ErrorCorrection::Quartile:
        return QStringLiteral("Q");
    case ErrorCorrection::High:
        break;
    }
    return QStringLiteral("H");
}
