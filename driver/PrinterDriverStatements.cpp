// The list of sold items and the customer's statement of account.

#include "driver/PrinterDriver.h"

void PrinterDriver::printSold(const QString &, const QXmlAttributes &) {}

void PrinterDriver::printStatementOfAccount(const QString &, const QXmlAttributes &) {}
