#ifndef BRISTEL_PRINTERAPP_PENDINGLIMIT_H
#define BRISTEL_PRINTERAPP_PENDINGLIMIT_H

#include <pappl/pappl.h>

struct Application;

// How many jobs a printer keeps waiting at most, unless the server is told otherwise: a
// printer out of paper for a whole evening must not fill the disk, and the other printers
// take jobs all the same.
constexpr int DefaultMaxPendingJobs = 1000;

// Holds every printer to at most limit jobs not yet ended; libpappl refuses the next ones.
void setPendingLimit(int limit, Application &application);
// From now on jobs are counted: those read back from the saved state have ended.
void startCountingJobs();
// libpappl's printer creation callback, for new printers and those read back from the saved
// state: applies the limit.
extern "C" void limitPendingJobs(pappl_printer_t *printer, void *data);
// libpappl's event callback: counts each printer's jobs, and says in the log, once a printer
// is full, which printer and why.
extern "C" void countPendingJobs(pappl_system_t *system, pappl_printer_t *printer, pappl_job_t *job,
                                 pappl_event_t event, void *data);

#endif
