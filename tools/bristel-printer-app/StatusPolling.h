#ifndef BRISTEL_PRINTERAPP_STATUSPOLLING_H
#define BRISTEL_PRINTERAPP_STATUSPOLLING_H

#include "printerapp/PrinterStatus.h"

#include <QString>

#include <pappl/pappl.h>

#include <optional>

struct Application;
class JobConnection;

// How often idle printers are asked how they are: often enough that the operator sees paper
// run out before the next order, rarely enough not to busy the printer.
constexpr int IdlePollSeconds = 5;

QString printerName(pappl_printer_t *printer);

// Asks the printer of a job, on a new connection when the old one is gone; nothing when the
// printer is known not to answer.
std::optional<PrinterStatus> askForJob(pappl_printer_t *printer, JobConnection &connection);

// Holds a job while its printer cannot print (out of paper, cover open, off, an error),
// asking it again every second, and shows why in the job's state; false when the job is
// canceled, its printer deleted or the server stops meanwhile. A printer that does not answer the questions
// never holds a job.
bool waitUntilPrintable(pappl_job_t *job, JobConnection &connection);

// libpappl's status callback of a driver: asks the printer on a connection of its own.
extern "C" bool askPrinterStatus(pappl_printer_t *printer);
// The idle timer: asks every printer that prints nothing, and lets one that has had nothing to
// do for a while stop holding new jobs.
extern "C" bool askIdlePrinters(pappl_system_t *system, void *data);

#endif
