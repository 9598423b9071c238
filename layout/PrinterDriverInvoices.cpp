// Invoices and delivery notes.

#include "layout/PrinterDriver.h"

#include "layout/DocumentText.h"
#include "layout/PrinterDriver_p.h"

#include <QObject>

using documenttext::attribute;

namespace {

using documenttext::FullStop;

// One line of the totals block: the label in the description column, the value in the amount column.
void printTotalsRow(PrinterDriverPrivate &driver, const QString &label, const QString &value)
{
    driver.println(
        driver.descriptionRow(QString(), label, QString(), value, FullStop, QStringLiteral("qdpt")));
}

// The block closing an invoice, in bold: taxable amount, tax rate, tax and total.
void printInvoiceTotals(PrinterDriverPrivate &driver, const QXmlAttributes &attributes)
{
    driver.setBold();
    driver.println(QString());
    printTotalsRow(driver, QObject::tr("Taxable"), attribute(attributes, "taxable"));
    printTotalsRow(driver, QObject::tr("TaxRate"), attribute(attributes, "taxrate"));
    printTotalsRow(driver, QObject::tr("Tax"), attribute(attributes, "tax"));
    printTotalsRow(driver, QObject::tr("TOTAL"), attribute(attributes, "total"));
    driver.setCharSize();
}

// One ordered item with its unit price and line amount.
void printInvoiceItem(PrinterDriverPrivate &driver, const QXmlAttributes &attributes)
{
    driver.printItemColumnsHeader();
    driver.println(driver.descriptionRow(attribute(attributes, "number"), attribute(attributes, "name"),
                                         attribute(attributes, "price"), attribute(attributes, "totalPrice"),
                                         FullStop, QStringLiteral("qdpt")));
}

// One item type with its price, which stands in the amount column.
void printInvoiceItemType(PrinterDriverPrivate &driver, const QXmlAttributes &attributes)
{
    driver.printCategoryColumnsHeader();
    driver.println(driver.descriptionRow(attribute(attributes, "number"), attribute(attributes, "name"),
                                         QString(), attribute(attributes, "price"), FullStop,
                                         QStringLiteral("qxdpt")));
}

} // namespace

void PrinterDriver::printFullOrderInvoice(const QString &name, const QXmlAttributes &attributes)
{
    if (printSections(name, attributes))
        return;
    if (name == QLatin1String("customer"))
        printCustomerHeader(attributes);
    else if (name == QLatin1String("receipe"))
        printInvoiceItem(*d, attributes);
    else if (name == QLatin1String("totals"))
        printInvoiceTotals(*d, attributes);
}

void PrinterDriver::printAbstractOrderInvoice(const QString &name, const QXmlAttributes &attributes)
{
    if (printSections(name, attributes))
        return;
    if (name == QLatin1String("customer"))
        printCustomerHeader(attributes);
    else if (name == QLatin1String("receipe_type"))
        printInvoiceItemType(*d, attributes);
    else if (name == QLatin1String("totals"))
        printInvoiceTotals(*d, attributes);
}

void PrinterDriver::printFullOrderDelivery(const QString &name, const QXmlAttributes &attributes)
{
    // A delivery note is the preparation ticket with a customer block.
    if (name == QLatin1String("customer"))
        printCustomerHeader(attributes);
    else
        printPartialOrder(name, attributes);
}
