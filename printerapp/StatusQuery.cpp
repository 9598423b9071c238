#include "printerapp/StatusQuery.h"

#include "printerapp/PrinterLink.h"
#include "printerapp/StatusAnswerParser.h"

PrinterStatus StatusQuery::ask(PrinterLink &link)
{
    if (!link.write(PrinterStatus::allQueryBytes()))
        return PrinterStatus::unreachable();
    StatusAnswerParser parser;
    for (int reads = 0; reads < MaxReads; ++reads) {
        const QByteArray bytes = link.read();
        if (bytes.isEmpty() || parser.feed(bytes))
            break;
    }
    return parser.status();
}
