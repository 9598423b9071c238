// Fiscal receipts: sale records for the fiscal printer, and the summary order.

#include "layout/PrinterDriver.h"

#include "config/BRConfiguration.h"
#include "layout/DocumentText.h"
#include "layout/PrinterDriver_p.h"

using documenttext::attribute;

namespace {

// The dish name as the fiscal printer takes it: its first `width` characters.  A negative width
// stands for a huge count and leaves the name whole.
QString fiscalDescription(const QString &name, int width)
{
    if (width < 0)
        return name;
    return name.left(width);
}

} // namespace

void PrinterDriver::printFullOrderFiscal(const QString &name, const QXmlAttributes &attributes)
{
    // The description width is not part of the cached profile: it is looked up for every element.
    int width = d->configuration->getStrValue(d->documentPrefix + QLatin1String("descriptionWidth"))
                    .toInt(nullptr, 10);
    if (width == 0)
        width = getPaperWidth();

    if (name == QLatin1String("receipe")) {
        printRowFiscal(attribute(attributes, "department"), attribute(attributes, "number"),
                       fiscalDescription(attribute(attributes, "name"), width),
                       attribute(attributes, "price"));
    } else if (name == QLatin1String("total")) {
        // Passed on as "total": the command-file back-end writes payments for "totals" only.
        printRowFiscal(name, attributes);
    }
}

void PrinterDriver::printAbstractOrderFiscal(const QString &name, const QXmlAttributes &attributes)
{
    if (name == QLatin1String("receipe_type")) {
        // One category is sold as a single item, with its name uncut.
        printRowFiscal(attribute(attributes, "department"), QStringLiteral("1"),
                       attribute(attributes, "name"), attribute(attributes, "price"));
    } else if (name == QLatin1String("total")) {
        printRowFiscal(name, attributes);
    }
}

void PrinterDriver::printAbstractOrder(const QString &, const QXmlAttributes &) {}
