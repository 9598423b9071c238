// Section headers: printer, geometry, free headers, company, document numbers, order information, customer.

#include "driver/PrinterDriver.h"

bool PrinterDriver::printSections(const QString &, const QXmlAttributes &)
{
    return false;
}

void PrinterDriver::printGeometry(const QXmlAttributes &) {}

void PrinterDriver::printPrinterInfo() {}

void PrinterDriver::printHeaders(const QXmlAttributes &) {}

void PrinterDriver::printCompanyHeader(const QXmlAttributes &) {}

void PrinterDriver::printReceiptHeader(const QXmlAttributes &) {}

void PrinterDriver::printInvoiceHeader(const QXmlAttributes &) {}

void PrinterDriver::printDeliveryHeader(const QXmlAttributes &) {}

void PrinterDriver::printOrderInfo(const QXmlAttributes &) {}

void PrinterDriver::printCustomerHeader(const QXmlAttributes &) {}
