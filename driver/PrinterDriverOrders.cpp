// Order tickets for the kitchen and the bar: the preparation ticket and the priced ticket.

#include "driver/PrinterDriver.h"

void PrinterDriver::printPartialOrder(const QString &, const QXmlAttributes &) {}

void PrinterDriver::printFullOrder(const QString &, const QXmlAttributes &) {}
