#ifndef BRISTEL_PRINTERAPP_PAPPLEDGE_H
#define BRISTEL_PRINTERAPP_PAPPLEDGE_H

class JobConverter;

// Runs the printer application's command line (server, add, submit, ...) on libpappl, with
// the drivers of ReceiptDriver and the jobs converted by converter; returns the exit status.
int runPrinterApplication(int argc, char *argv[], JobConverter &converter);

#endif
