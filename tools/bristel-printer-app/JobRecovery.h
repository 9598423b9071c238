#ifndef BRISTEL_PRINTERAPP_JOBRECOVERY_H
#define BRISTEL_PRINTERAPP_JOBRECOVERY_H

#include <pappl/pappl.h>

struct Application;

// Puts the jobs the server left in its spool folder (stopped, killed, the power cut) back into
// their printers' queues, each printer's in the order they first came and before any new job:
// the printers' next job numbers are raised past every job left, so that a new job's document
// never takes the name of one still waiting. A job that had started printing comes back as a
// reprint; a job of a printer no longer there is set aside in the spool folder and logged.
//
// findLeftoverJobs reads the folder before the server starts, raises the numbers and sets the
// orphans aside; putBackLeftoverJobs, a one-off timer of the running server, puts the jobs
// back: a job created before the server runs is given up at once, and its document deleted.
void findLeftoverJobs(pappl_system_t *system, Application &application);
extern "C" bool putBackLeftoverJobs(pappl_system_t *system, void *data);

#endif
