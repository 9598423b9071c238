// Invoices and delivery notes.

#include "driver/PrinterDriver.h"

void PrinterDriver::printFullOrderInvoice(const QString &, const QXmlAttributes &) {}

void PrinterDriver::printAbstractOrderInvoice(const QString &, const QXmlAttributes &) {}

void PrinterDriver::printFullOrderDelivery(const QString &, const QXmlAttributes &) {}
