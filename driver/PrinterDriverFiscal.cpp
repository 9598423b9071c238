// Fiscal receipts: sale records for the fiscal printer, and the summary order.

#include "driver/PrinterDriver.h"

void PrinterDriver::printFullOrderFiscal(const QString &, const QXmlAttributes &) {}

void PrinterDriver::printAbstractOrderFiscal(const QString &, const QXmlAttributes &) {}

void PrinterDriver::printAbstractOrder(const QString &, const QXmlAttributes &) {}
