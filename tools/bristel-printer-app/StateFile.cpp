#include "StateFile.h"

#include "printerapp/DurableFile.h"
#include "printerapp/SavedState.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QTemporaryFile>

namespace {

constexpr const char *FolderName = "bristel-printer-app";

// The server saves from its main loop, and as soon as a printer changes from the thread that
// changed it: one save at a time, or two would write the same temporary file.
QMutex saveLock;

} // namespace

QByteArray defaultStateFolder()
{
    const QByteArray stateHome = qgetenv("XDG_STATE_HOME");
    const QString base = stateHome.startsWith('/') ? QFile::decodeName(stateHome)
                                                   : QDir::homePath() + QStringLiteral("/.local/state");
    return QFile::encodeName(base + QLatin1Char('/') + QLatin1String(FolderName));
}

void loadStateWithoutUnfinishedJobs(pappl_system_t *system, const QByteArray &fileName)
{
    QFile file(QFile::decodeName(fileName));
    if (!file.open(QIODevice::ReadOnly))
        return; // the first start: nothing saved yet
    const QByteArray saved = file.readAll();
    const QByteArray state = SavedState::withoutUnfinishedJobs(saved);
    if (state == saved) {
        papplSystemLoadState(system, fileName.constData());
        return;
    }
    QTemporaryFile filtered(QFileInfo(file).absolutePath() + QStringLiteral("/.loading-XXXXXX"));
    if (!filtered.open() || filtered.write(state) != state.size() || !filtered.flush()) {
        papplLog(system, PAPPL_LOGLEVEL_ERROR, "Cannot read the saved state back: %s",
                 filtered.errorString().toLocal8Bit().constData());
        return;
    }
    papplSystemLoadState(system, QFile::encodeName(filtered.fileName()).constData());
}

bool saveStateDurably(pappl_system_t *system, const QByteArray &fileName)
{
    const QMutexLocker lock(&saveLock);
    const QFileInfo target(QFile::decodeName(fileName));
    const QString folder = target.absolutePath();
    const QString temporaryName = DurableFile::temporaryPrefix() + target.fileName();
    const QByteArray temporaryPath = QFile::encodeName(folder + QLatin1Char('/') + temporaryName);
    if (!papplSystemSaveState(system, temporaryPath.constData()))
        return false;
    QString error;
    if (!DurableFile::replace(folder, temporaryName, target.fileName(), &error)) {
        papplLog(system, PAPPL_LOGLEVEL_ERROR, "Cannot save the state: %s", error.toLocal8Bit().constData());
        return false;
    }
    return true;
}
