#ifndef BRISTEL_PRINTERAPP_CONTROLSOCKET_H
#define BRISTEL_PRINTERAPP_CONTROLSOCKET_H

#include <QByteArray>
#include <QString>

// The local socket through which the sub-commands reach the server. libpappl 1.3 puts root's
// in /run and a user's in the temporary folder, where a second instance takes over the first
// one's; here it lives in the folder XDG_RUNTIME_DIR names, so that an instance started with a
// runtime folder of its own (a test, the service) never meets another.
namespace ControlSocket {

// Makes libpappl place the socket in XDG_RUNTIME_DIR, when that is set. libpappl takes root's
// folder from SNAP_COMMON (which a snap package sets, and which is then left alone) and a user's
// from TMPDIR, where it names the socket after the user's id too; libpappl's temporary files
// then also go to the runtime folder, which is meant for them.
void placeInRuntimeFolder();
// Where the server named programName listens, as libpappl computes it.
QByteArray path(const QString &programName);

} // namespace ControlSocket

#endif
