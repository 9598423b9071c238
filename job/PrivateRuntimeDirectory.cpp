#include "job/PrivateRuntimeDirectory.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

PrivateRuntimeDirectory::PrivateRuntimeDirectory()
{
    if (!qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
        return;
    // Named here: the default name would ask the application object, which does not exist yet.
    auto directory =
        std::make_unique<QTemporaryDir>(QDir::tempPath() + QLatin1String("/bristel-runtime-XXXXXX"));
    if (!directory->isValid())
        return;
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(directory->path()));
    m_directory = std::move(directory);
}

PrivateRuntimeDirectory::~PrivateRuntimeDirectory()
{
    // The folder goes with this object; no one may be sent to it afterwards.
    if (m_directory)
        qunsetenv("XDG_RUNTIME_DIR");
}

QString PrivateRuntimeDirectory::path() const
{
    return m_directory ? m_directory->path() : QString();
}
