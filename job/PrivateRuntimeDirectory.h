#ifndef BRISTEL_JOB_PRIVATERUNTIMEDIRECTORY_H
#define BRISTEL_JOB_PRIVATERUNTIMEDIRECTORY_H

#include <QString>
#include <QtGlobal>

#include <memory>

class QTemporaryDir;

/*
 * The toolkit's GUI layer looks for files in the user's runtime folder (XDG_RUNTIME_DIR)
 * while it starts, and writes a warning to standard error when the process has none: root at
 * a console, a cron job or a print filter have no login of their own that sets one, and the warning would
 * land in a terminal or a job's log.  A process without one gets a folder of its own (mode
 * 0700, as the toolkit demands of it) for as long as this object lives; a folder the environment
 * names is left alone.  Construct it before the application object and let it outlive that.
 */
class PrivateRuntimeDirectory
{
public:
    PrivateRuntimeDirectory();
    ~PrivateRuntimeDirectory();
    Q_DISABLE_COPY_MOVE(PrivateRuntimeDirectory)

    // The folder made for this process; empty when the environment's own serves (or none could
    // be made, and the toolkit falls back on its own).
    QString path() const;

private:
    std::unique_ptr<QTemporaryDir> m_directory;
};

#endif
