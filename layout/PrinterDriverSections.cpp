// Section headers: printer, geometry, free headers, company, document numbers, order information, customer.

#include "layout/PrinterDriver.h"

#include "config/BRConfiguration.h"
#include "layout/DocumentText.h"
#include "layout/PrinterDriver_p.h"

#include <QObject>

using documenttext::attribute;

namespace {

// Every attribute value on a line of its own, in document order; the names are not printed.
void printAttributeValues(PrinterDriverPrivate &driver, const QXmlAttributes &attributes)
{
    for (int i = 0; i < attributes.length(); ++i)
        driver.println(attributes.value(i));
}

// One line made of a blank, the label, a blank and the value.
void printLabelled(PrinterDriverPrivate &driver, const QString &label, const QString &value)
{
    driver.print(1, label);
    driver.println(1, value);
}

// One line per comma-separated piece, trimmed; the first empty piece ends the address.
void printAddress(PrinterDriverPrivate &driver, const QString &address)
{
    // One pass over the address: taking the pieces one by one with section() would rescan it
    // from the start for each, which an address of many thousand pieces makes take minutes.
    for (const QStringView piece : QStringView(address).split(QLatin1Char(','))) {
        if (piece.isEmpty())
            return;
        driver.println(1, piece.trimmed().toString());
    }
}

// The number line of a receipt, invoice or delivery note, whatever the profile's switches.
void printNumberLine(PrinterDriverPrivate &driver, const QString &label, const QXmlAttributes &attributes)
{
    printLabelled(driver, label, attribute(attributes, "serialnumber"));
    driver.printSeparatorLine();
}

} // namespace

bool PrinterDriver::printSections(const QString &name, const QXmlAttributes &attributes)
{
    if (name == QLatin1String("printers")) {
        d->printerName = attribute(attributes, "name");
        d->printerCharSize = attribute(attributes, "charsize");
        d->printerIpAddress = attribute(attributes, "ipaddress");
        d->printerPort = attribute(attributes, "port");
        initPrinter();
    } else if (name == QLatin1String("geometry")) {
        printGeometry(attributes);
    } else if (name == QLatin1String("headers")) {
        printHeaders(attributes);
        printPrinterInfo(); // the printer's name heads every document, switch or not
    } else if (name == QLatin1String("logo")) {
        printLogo(); // the logo switch of the profile is not consulted
    } else if (name == QLatin1String("company")) {
        printCompanyHeader(attributes);
    } else if (name == QLatin1String("receipt")) {
        printReceiptHeader(attributes);
    } else if (name == QLatin1String("invoice")) {
        printInvoiceHeader(attributes);
    } else if (name == QLatin1String("delivery")) {
        printDeliveryHeader(attributes);
    } else if (name == QLatin1String("orderinfo")) {
        printOrderInfo(attributes);
    } else {
        return false;
    }
    return true;
}

void PrinterDriver::printGeometry(const QXmlAttributes &)
{
    if (!d->profile.printGeometry)
        return;
    // The top margin is looked up when the element arrives; it is not part of the cached profile.
    // Held to the same bound as the profile's widths, so a wild value cannot print for hours.
    const int topMargin = d->profileInt(QStringLiteral("topMargin"));
    for (int line = 0; line < topMargin; ++line)
        println(QString());
}

void PrinterDriver::printPrinterInfo()
{
    setCenterJustify();
    println(d->printerName);
    printSeparatorLine();
}

void PrinterDriver::printHeaders(const QXmlAttributes &attributes)
{
    if (!d->profile.printHeader)
        return;
    printAttributeValues(*d, attributes);
    printSeparatorLine();
}

void PrinterDriver::printCompanyHeader(const QXmlAttributes &attributes)
{
    if (!d->profile.printCompany)
        return;
    setCharSize();
    setCenterJustify();
    printAttributeValues(*d, attributes);
    setCharSize();
    printSeparatorLine();
}

void PrinterDriver::printReceiptHeader(const QXmlAttributes &attributes)
{
    // Label and number on one line, parted only by the label's own trailing blank.
    println(1, QObject::tr("Serial Number: ") + attribute(attributes, "serialnumber"));
    printSeparatorLine();
}

void PrinterDriver::printInvoiceHeader(const QXmlAttributes &attributes)
{
    printNumberLine(*d, QObject::tr("Invoice Number:"), attributes);
}

void PrinterDriver::printDeliveryHeader(const QXmlAttributes &attributes)
{
    printNumberLine(*d, QObject::tr("Delivery Number:"), attributes);
}

void PrinterDriver::printOrderInfo(const QXmlAttributes &attributes)
{
    setCharSize();
    if (d->profile.printDate)
        printLabelled(*d, QObject::tr("Date:"), attribute(attributes, "date"));
    if (d->profile.printTime)
        printLabelled(*d, QObject::tr("Time:"), attribute(attributes, "time"));
    if (d->profile.printTable)
        printLabelled(*d, QObject::tr("Table:"), attribute(attributes, "table"));
    if (d->profile.printWaiter)
        printLabelled(*d, QObject::tr("Waiter:"), attribute(attributes, "waiter"));
    if (d->profile.printNote)
        printLabelled(*d, QObject::tr("Note:"), attribute(attributes, "note"));
    if (d->profile.printCredit) {
        d->credit = attribute(attributes, "credit");
        printLabelled(*d, QObject::tr("Credit:"), d->credit);
    }
    printSeparatorLine();
}

void PrinterDriver::printCustomerHeader(const QXmlAttributes &attributes)
{
    if (!d->profile.printCustomer)
        return;
    println(QObject::tr("CUSTOMER"));
    println(1, attribute(attributes, "name"));
    // The billing address comes first, although the profile lists the delivery address first.
    if (d->profile.printBillingAddress)
        printAddress(*d, attribute(attributes, "billingaddress"));
    if (d->profile.printDeliveryAddress)
        printAddress(*d, attribute(attributes, "deliveryaddress"));
    if (d->profile.printTelephone)
        printLabelled(*d, QObject::tr("Telephone:"), attribute(attributes, "telephone"));
    if (d->profile.printLicenseNumber)
        printLabelled(*d, QObject::tr("License Number:"), attribute(attributes, "licensenumber"));
    if (d->profile.printFiscalCode)
        printLabelled(*d, QObject::tr("Fiscal Code:"), attribute(attributes, "fiscalcode"));
    printSeparatorLine();
}
