#ifndef BRISTEL_PRINTERAPP_JOBDURABILITY_H
#define BRISTEL_PRINTERAPP_JOBDURABILITY_H

#include <QByteArray>

#include <pappl/pappl.h>

// What a job leaves in the spool folder while it prints (see SpoolLedger): its started mark,
// on the disk before the first byte goes to the printer; its end once the printer confirmed
// it; and, when the server stops first, its document kept for the next start. Jobs without a
// document in the folder (raster pages streamed from the client) leave nothing.
void markJobStarted(pappl_job_t *job);
void markJobDone(pappl_job_t *job);
// The job did not print to its end: when the server is stopping, its document stays for the
// next start, which prints it again (as a reprint if it had started).
void keepJobIfServerStops(pappl_job_t *job);

// The line a job cut off by a stop of the server prints above itself when it prints again, in
// the printer's own font after a reset; empty for any other job. The same for every kind of
// document, so that the staff learn to look for it.
QByteArray reprintLine(pappl_job_t *job);

#endif
