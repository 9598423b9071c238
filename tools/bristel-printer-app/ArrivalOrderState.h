#ifndef BRISTEL_PRINTERAPP_ARRIVALORDERSTATE_H
#define BRISTEL_PRINTERAPP_ARRIVALORDERSTATE_H

#include "ArrivalOrder.h"

#include <pappl/pappl.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>

// What the letting thread, the job threads and the device borrowers share; job threads may
// outlive the application object, so they hold it too.
struct ArrivalOrder::State
{
    std::mutex lock;
    std::condition_variable woken;
    bool wakeRequested = false;
    bool stopping = false;
    // Once libpappl shuts the system down it may delete it at any moment: not touched again.
    bool systemGone = false;
    bool seenRunning = false;
    std::map<int, int> jobThreads;                                 // by printer id
    std::map<int, std::unique_ptr<std::mutex>> printerTurns;       // by printer id
    std::map<int, std::chrono::steady_clock::time_point> lastBusy; // by printer id
    // The printers whose jobs left from the last run are not all back in their queues yet:
    // none of their jobs goes meanwhile, so that a job sent at once cannot go first.
    std::set<int> printersAwaitingJobs;
    // By printer id, the jobs put back from the spool folder and not let go yet: they go
    // before the jobs sent since the start, whatever numbers they got.
    std::map<int, std::set<int>> putBackJobs;
    // The earliest moment at which a printer that has had nothing to do since its last job
    // stops holding new jobs: the letting thread looks again then, found anew each round.
    std::optional<std::chrono::steady_clock::time_point> holdEnds;

    void wake();
    int jobThreadsOf(int printerId);
    // Held while a job of the printer is let go, and while its device is borrowed.
    std::mutex &printerTurn(int printerId);

    // libpappl takes a PWG or Apple raster job only from a printer that neither prints nor
    // holds new jobs (it prints such a job as it arrives), so a printer that has had nothing
    // to do for a while stops holding them, and the first job that comes makes it hold them
    // again. The while keeps a printer holding through a busy spell, whose orders come
    // moments apart; with nothing to do, it has no held job for libpappl to let go.
    void holdNewJobsWhileBusy(pappl_printer_t *printer, int printerId, bool busy);
    // Lets a printer's oldest waiting job go when nothing of the printer runs; true while one
    // of its documents is still coming in.
    bool letOldestGo(pappl_printer_t *printer);
    bool jobsComingBackTo(int printerId);
    // The printer's jobs put back and not let go yet, taken out of putBackJobs for a look, and
    // those still waiting after it put back.
    std::set<int> takeJobsPutBack(int printerId);
    void keepJobsPutBack(int printerId, std::set<int> jobs);
    // Whether a job of the printer has been let go and not yet finished by libpappl, or its
    // thread still winds up.
    bool printerBusy(pappl_printer_t *printer, int printerId);

    // Makes the printer hold its new jobs, or stop holding them.
    static void setHoldingNewJobs(pappl_printer_t *printer, bool hold);
    // Whether the calling thread is in setHoldingNewJobs.
    static bool changesHoldOnThisThread();
};

#endif
