#ifndef BRISTEL_PRINTERAPP_ARRIVALORDER_H
#define BRISTEL_PRINTERAPP_ARRIVALORDER_H

#include <QtGlobal>

#include <pappl/pappl.h>

struct Application;

// libpappl starts the newest of the jobs waiting when a printer is free, and a kitchen's
// orders must print in the order they were sent: while a job prints, the others waiting are
// held back, and as it ends the oldest of them is let go, which is then the only one libpappl
// can start.
void holdBackWaitingJobs(Application &application, pappl_printer_t *printer, int printingId);
void releaseOldestHeldJob(Application &application, pappl_printer_t *printer);
// While a printer prints nothing and no job waits for libpappl, the oldest job held back
// goes: a job whose end was not seen (a raster job that failed to start) holds none back.
void releaseHeldJobsOfIdlePrinter(Application &application, pappl_printer_t *printer);

// Keeps a printer's jobs in arrival order for as long as one of them prints.
class ArrivalOrder
{
public:
    explicit ArrivalOrder(pappl_job_t *job);
    ~ArrivalOrder();
    Q_DISABLE_COPY_MOVE(ArrivalOrder)

private:
    pappl_printer_t *m_printer;
    int m_id;
};

#endif
