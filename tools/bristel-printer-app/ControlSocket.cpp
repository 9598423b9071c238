#include "ControlSocket.h"

#include <QtGlobal>

#include <unistd.h>

namespace ControlSocket {

void placeInRuntimeFolder()
{
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && !qEnvironmentVariableIsSet("SNAP_COMMON"))
        qputenv("SNAP_COMMON", runtime);
}

QByteArray path(const QString &programName)
{
    const QByteArray name = programName.toLocal8Bit();
    const QByteArray folder = qgetenv("SNAP_COMMON");
    if (!folder.isEmpty())
        return folder + '/' + name + ".sock";
    if (getuid() == 0)
        return "/run/" + name + ".sock";
    const QByteArray temporary =
        qEnvironmentVariableIsEmpty("TMPDIR") ? QByteArray("/tmp") : qgetenv("TMPDIR");
    return temporary + '/' + name + QByteArray::number(getuid()) + ".sock";
}

} // namespace ControlSocket
