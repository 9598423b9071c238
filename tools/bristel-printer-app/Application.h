#ifndef BRISTEL_PRINTERAPP_APPLICATION_H
#define BRISTEL_PRINTERAPP_APPLICATION_H

#include "ArrivalOrder.h"
#include "printerapp/PrintedJobs.h"
#include "printerapp/SpoolLedger.h"
#include "printerapp/StatusBoard.h"

#include <memory>

class JobConverter;

// What the callbacks share: the converter of the documents, what each printer last said, and
// the order in which the printers' jobs may print.
struct Application
{
    explicit Application(JobConverter &jobConverter) : converter(jobConverter) {}

    JobConverter &converter;
    StatusBoard board;
    ArrivalOrder arrivalOrder;
    // What each printer's last jobs sent it, for their pictures on the printer's page.
    PrintedJobs printed;
    // Whether this process is the server (the other sub-commands build a system too, and must
    // leave the server's folders alone), and the ledger of its spool folder once it has one.
    bool runsServer = false;
    std::unique_ptr<SpoolLedger> ledger;
    // The jobs found in the spool folder at the start, until they are back in their queues.
    QList<SpoolLedger::Job> jobsToPutBack;
};

// libpappl's driver callbacks carry no data of their own: they reach the application through
// this, set once before the server starts and cleared after it stopped.
Application &theApplication();
void setTheApplication(Application *application);

#endif
