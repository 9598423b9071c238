// Receipts: the detailed receipt and the summary receipt.

#include "layout/PrinterDriver.h"

#include "layout/DocumentText.h"
#include "layout/PrinterDriver_p.h"

#include <QObject>

using documenttext::attribute;

namespace {

using documenttext::FullStop;

// The closing total of both receipts, after an empty line.
void printReceiptTotal(PrinterDriverPrivate &driver, const QXmlAttributes &attributes)
{
    driver.println(QString());
    driver.println(driver.descriptionRow(QString(), QObject::tr("TOTAL"), QString(),
                                         attribute(attributes, "price"), FullStop, QStringLiteral("qdpt")));
}

// The part of the bill left open, after an empty line: the label followed directly by the amount.
void printNotPaid(PrinterDriverPrivate &driver, const QString &label, const QXmlAttributes &attributes)
{
    driver.println(QString());
    driver.println(label + attribute(attributes, "price"));
}

} // namespace

void PrinterDriver::printFullOrderReceipt(const QString &name, const QXmlAttributes &attributes)
{
    if (printSections(name, attributes))
        return;
    if (name == QLatin1String("customer")) {
        printCustomerHeader(attributes);
    } else if (name == QLatin1String("receipe")) {
        d->printItemColumnsHeader();
        println(d->descriptionRow(attribute(attributes, "number"), attribute(attributes, "name"),
                                  attribute(attributes, "price"), attribute(attributes, "totalPrice"),
                                  FullStop, QStringLiteral("qxdpt")));
    } else if (name == QLatin1String("total")) {
        printReceiptTotal(*d, attributes);
    } else if (name == QLatin1String("notPaid")) {
        printNotPaid(*d, QObject::tr("    Amount not paid: "), attributes);
    }
}

void PrinterDriver::printAbstractOrderReceipt(const QString &name, const QXmlAttributes &attributes)
{
    // The summary receipt prints no customer block.
    if (printSections(name, attributes))
        return;
    if (name == QLatin1String("receipe_type")) {
        // One row per dish category: its amount stands in the last column, under "Price".
        d->printCategoryColumnsHeader();
        println(d->descriptionRow(attribute(attributes, "number"), attribute(attributes, "name"), QString(),
                                  attribute(attributes, "price"), FullStop, QStringLiteral("qxdpt")));
    } else if (name == QLatin1String("total")) {
        printReceiptTotal(*d, attributes);
    } else if (name == QLatin1String("notPaid")) {
        // The summary receipt's label is printed in Italian as it stands, never translated.
        printNotPaid(*d, QStringLiteral("   Corrispettivo non pagato: "), attributes);
    }
}
