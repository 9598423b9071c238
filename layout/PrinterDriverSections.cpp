// Section headers: printer, geometry, free headers, company, document numbers, order information, customer.

#include "layout/PrinterDriver.h"

#include "layout/DocumentText.h"

#include "config/BRConfiguration.h"

#include <QObject>

using documenttext::attribute;

namespace {

// Every attribute value on a line of its own, in document order; the names are not printed.
void printAttributeValues(PrinterDriver &driver, const QXmlAttributes &attributes)
{
    for (int i = 0; i < attributes.length(); ++i)
        driver.println(attributes.value(i));
}

// One line made of a blank, the label, a blank and the value.
void printLabelled(PrinterDriver &driver, const QString &label, const QString &value)
{
    driver.print(1, label);
    driver.println(1, value);
}

// One line per comma-separated piece, trimmed; the first empty piece ends the address.
void printAddress(PrinterDriver &driver, const QString &address)
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
void printNumberLine(PrinterDriver &driver, const QString &label, const QXmlAttributes &attributes)
{
    printLabelled(driver, label, attribute(attributes, "serialnumber"));
    driver.printSeparatorLine();
}

} // namespace

bool PrinterDriver::printSections(const QString &name, const QXmlAttributes &attributes)
{
    if (name == QLatin1String("printers")) {
        printerName = attribute(attributes, "name");
        printerCharSize = attribute(attributes, "charsize");
        printerIpAddress = attribute(attributes, "ipaddress");
        printerPort = attribute(attributes, "port");
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
    if (!printGeometrySwitch)
        return;
    // The top margin is looked up when the element arrives; it is not part of the cached profile.
    // Held to the same bound as the profile's widths, so a wild value cannot print for hours.
    const int topMargin = profileInt(QStringLiteral("topMargin"));
    for (int line = 0; line < topMargin; ++line)
        println(QString());
}

void PrinterDriver::printPrinterInfo()
{
    setCenterJustify();
    println(printerName);
    printSeparatorLine();
}

void PrinterDriver::printHeaders(const QXmlAttributes &attributes)
{
    if (!printHeader)
        return;
    printAttributeValues(*this, attributes);
    printSeparatorLine();
}

void PrinterDriver::printCompanyHeader(const QXmlAttributes &attributes)
{
    if (!printCompany)
        return;
    setCharSize();
    setCenterJustify();
    printAttributeValues(*this, attributes);
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
    printNumberLine(*this, QObject::tr("Invoice Number:"), attributes);
}

void PrinterDriver::printDeliveryHeader(const QXmlAttributes &attributes)
{
    printNumberLine(*this, QObject::tr("Delivery Number:"), attributes);
}

void PrinterDriver::printOrderInfo(const QXmlAttributes &attributes)
{
    setCharSize();
    if (printDate)
        printLabelled(*this, QObject::tr("Date:"), attribute(attributes, "date"));
    if (printTime)
        printLabelled(*this, QObject::tr("Time:"), attribute(attributes, "time"));
    if (printTable)
        printLabelled(*this, QObject::tr("Table:"), attribute(attributes, "table"));
    if (printWaiter)
        printLabelled(*this, QObject::tr("Waiter:"), attribute(attributes, "waiter"));
    if (printNote)
        printLabelled(*this, QObject::tr("Note:"), attribute(attributes, "note"));
    if (printCredit) {
        credit = attribute(attributes, "credit");
        printLabelled(*this, QObject::tr("Credit:"), credit);
    }
    printSeparatorLine();
}

void PrinterDriver::printCustomerHeader(const QXmlAttributes &attributes)
{
    if (!printCustomer)
        return;
    println(QObject::tr("CUSTOMER"));
    println(1, attribute(attributes, "name"));
    // The billing address comes first, although the profile lists the delivery address first.
    if (printBillingAddress)
        printAddress(*this, attribute(attributes, "billingaddress"));
    if (printDeliveryAddress)
        printAddress(*this, attribute(attributes, "deliveryaddress"));
    if (printTelephone)
        printLabelled(*this, QObject::tr("Telephone:"), attribute(attributes, "telephone"));
    if (printLicenseNumber)
        printLabelled(*this, QObject::tr("License Number:"), attribute(attributes, "licensenumber"));
    if (printFiscalCode)
        printLabelled(*this, QObject::tr("Fiscal Code:"), attribute(attributes, "fiscalcode"));
    printSeparatorLine();
}
