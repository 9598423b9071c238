// Receipts: the detailed receipt and the summary receipt.

#include "driver/PrinterDriver.h"

void PrinterDriver::printFullOrderReceipt(const QString &, const QXmlAttributes &) {}

void PrinterDriver::printAbstractOrderReceipt(const QString &, const QXmlAttributes &) {}
