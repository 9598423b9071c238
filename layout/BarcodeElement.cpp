#include "layout/BarcodeElement.h"

#include <QXmlAttributes>

#include <optional>

namespace {

std::optional<BarcodeElement::Type> typeByName(const QString &name)
{
    using Type = BarcodeElement::Type;
    const struct
    {
        const char *name;
        Type type;
    } types[] = {
        {"ean13", Type::Ean13},   {"ean8", Type::Ean8},       {"upca", Type::UpcA},
        {"code39", Type::Code39}, {"code128", Type::Code128}, {"itf", Type::Itf},
    };
    for (const auto &entry : types) {
        if (name == QLatin1String(entry.name))
            return entry.type;
    }
    return std::nullopt;
}

// The first problem of the attributes, or nothing.
QString problemOf(const QXmlAttributes &attributes, BarcodeElement *request)
{
    const QString type = attributes.value(QLatin1String("type"));
    if (const std::optional<BarcodeElement::Type> known = typeByName(type))
        request->type = *known;
    else
        return QStringLiteral("barcode: unknown type \"%1\" (ean13, ean8, upca, code39, code128 or itf)")
            .arg(type);

    request->data = attributes.value(QLatin1String("data"));
    if (request->data.isEmpty())
        return QStringLiteral("barcode: no data to encode");

    const int heightIndex = attributes.index(QLatin1String("height"));
    if (heightIndex >= 0) {
        const QString text = attributes.value(heightIndex);
        bool ok = false;
        request->height = text.trimmed().toInt(&ok, 10);
        if (!ok || request->height < BarcodeElement::lowestHeight ||
            request->height > BarcodeElement::highestHeight)
            return QStringLiteral("barcode: height \"%1\" is not a whole number of dots from %2 to %3")
                .arg(text)
                .arg(BarcodeElement::lowestHeight)
                .arg(BarcodeElement::highestHeight);
    }

    const int hriIndex = attributes.index(QLatin1String("hri"));
    if (hriIndex >= 0) {
        const QString text = attributes.value(hriIndex);
        if (text == QLatin1String("none"))
            request->textBelow = false;
        else if (text == QLatin1String("below"))
            request->textBelow = true;
        else
            return QStringLiteral("barcode: hri \"%1\" is neither none nor below").arg(text);
    }
    return QString();
}

} // namespace

BarcodeElement BarcodeElement::fromAttributes(const QXmlAttributes &attributes)
{
    BarcodeElement request;
    request.problem = problemOf(attributes, &request);
    return request;
}

QString BarcodeElement::typeName(Type type)
{
    switch (type) {
    case Type::Ean13:
        return QStringLiteral("EAN-13");
    case Type::Ean8:
        return QStringLiteral("EAN-8");
    case Type::UpcA:
        return QStringLiteral("UPC-A");
    case Type::Code39:
        return QStringLiteral("Code 39");
    case Type::Code128:
        return QStringLiteral("Code 128");
    case Type::Itf:
        break;
    }
    return QStringLiteral("ITF");
}
