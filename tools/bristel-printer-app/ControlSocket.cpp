#include "ControlSocket.h"

#include <QtGlobal>

#include <unistd.h>

namespace ControlSocket {

void placeInRuntimeFolder()
{
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    if (runtime.isEmpty())
        return;
    if (getuid() != 0)
        qputenv("TMPDIR", runtime);
    else if (!qEnvironmentVariableIsSet("SNAP_COMMON"))
        qputenv("SNAP_COMMON", runtime);
}

QByteArray path(const QString &programName)
{
    const QByteArray name = programName.toLocal8Bit();
    if (getuid() != 0) {
        const QByteArray temporary =
            qEnvironmentVariableIsEmpty("TMPDIR") ? QByteArray("/tmp") : qgetenv("TMPDIR");
        return temporary + '/' + name + QByteArray::number(getuid()) + ".sock";
    }
    const QByteArray folder = qgetenv("SNAP_COMMON");
    return folder.isEmpty() ? "/run/" + name + ".sock" : folder + '/' + name + ".sock";
}

} // namespace ControlSocket
