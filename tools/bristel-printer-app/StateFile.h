#ifndef BRISTEL_PRINTERAPP_STATEFILE_H
#define BRISTEL_PRINTERAPP_STATEFILE_H

#include <QByteArray>

#include <pappl/pappl.h>

// Where the server keeps its printers and its waiting jobs when no option names a place: a
// folder of the user's that lasts ($XDG_STATE_HOME/bristel-printer-app, or
// ~/.local/state/bristel-printer-app), never libpappl's temporary folder of the process,
// which goes with it.
QByteArray defaultStateFolder();

// Reads the saved printers and their settings; the jobs that were not finished are left out,
// since they come back from the spool folder (see SavedState).
void loadStateWithoutUnfinishedJobs(pappl_system_t *system, const QByteArray &fileName);
// Saves the state beside the file, flushed, and renames it over the file: a crash or a power
// cut while it is written leaves the former state whole. Safe from any thread.
bool saveStateDurably(pappl_system_t *system, const QByteArray &fileName);

#endif
