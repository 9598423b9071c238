// The daily report of takings.

#include "driver/PrinterDriver.h"

void PrinterDriver::printReport(const QString &, const QXmlAttributes &) {}
