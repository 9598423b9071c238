#ifndef BRISTEL_PRINTERAPP_SAVEDSTATE_H
#define BRISTEL_PRINTERAPP_SAVEDSTATE_H

#include <QByteArray>

// The print server's state file lists, inside each printer's block, a "Job" line for every job
// it knew when it last saved, unfinished ones included. Read back, such a job is no job: its
// document may be gone, a job that was processing stays so for ever, and one that was pending
// is given up at once, its document deleted. The unfinished jobs come back from the spool
// folder instead (SpoolLedger), so they are taken out of the state before it is read; the
// finished ones stay, as the printers' history.
class SavedState
{
public:
    static QByteArray withoutUnfinishedJobs(const QByteArray &state);
    // Whether a line of the state file is a job not finished when the state was saved.
    static bool isUnfinishedJob(const QByteArray &line);
};

#endif
