#ifndef BRISTEL_PRINTERAPP_STATUSQUERY_H
#define BRISTEL_PRINTERAPP_STATUSQUERY_H

#include "printerapp/PrinterStatus.h"

class PrinterLink;

// Asks a printer the four real-time status questions (DLE EOT 1..4) and reads its answers.
// A printer that does not take the questions is unreachable; one that takes them and says
// nothing before the link's read times out is silent ("Status unknown"), which many cheap
// printers are, and a job must still print on them.
class StatusQuery
{
public:
    // Reads at most this many times: the four answers come as one to four chunks, and a
    // printer that keeps sending other bytes must not keep the question open for ever.
    static constexpr int MaxReads = 8;

    static PrinterStatus ask(PrinterLink &link);
};

#endif
