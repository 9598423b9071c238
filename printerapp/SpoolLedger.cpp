#include "printerapp/SpoolLedger.h"

#include "printerapp/DurableFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

const QString StartedPrefix = QStringLiteral("started-");
const QString AttributesExtension = QStringLiteral("ipp");

QString systemError(const QString &what, const QString &path)
{
    return QStringLiteral("%1 %2: %3").arg(what, path, QString::fromLocal8Bit(std::strerror(errno)));
}

// The printer and job numbers as the server writes them into its file names.
QString jobKey(int printerId, int jobId)
{
    return QStringLiteral("p%1j%2")
        .arg(printerId, 5, 10, QLatin1Char('0'))
        .arg(jobId, 9, 10, QLatin1Char('0'));
}

std::optional<QPair<int, int>> parseJobKey(const QString &key)
{
    static const QRegularExpression pattern(QStringLiteral("^p(\\d{5})j(\\d{9})$"));
    const QRegularExpressionMatch match = pattern.match(key);
    if (!match.hasMatch())
        return std::nullopt;
    return QPair<int, int>(match.captured(1).toInt(), match.captured(2).toInt());
}

bool removeFile(const QString &path, QString *error)
{
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT) {
        *error = systemError(QStringLiteral("cannot remove"), path);
        return false;
    }
    return true;
}

bool moveFile(const QString &from, const QString &to, QString *error)
{
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0) {
        *error = systemError(QStringLiteral("cannot move"), from);
        return false;
    }
    return true;
}

// Closes the descriptor it holds when it goes out of scope.
class FolderDescriptor
{
public:
    explicit FolderDescriptor(const QString &folder)
        : m_fd(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
    }
    ~FolderDescriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Q_DISABLE_COPY_MOVE(FolderDescriptor)

    int fd() const { return m_fd; }

private:
    int m_fd;
};

} // namespace

SpoolLedger::SpoolLedger(QString folder) : m_folder(std::move(folder)) {}

QString SpoolLedger::pathOf(const QString &name) const
{
    return m_folder + QLatin1Char('/') + name;
}

bool SpoolLedger::makeWritesSynchronous(QString *error)
{
    const FolderDescriptor folder(m_folder);
    if (folder.fd() < 0) {
        *error = systemError(QStringLiteral("cannot open the folder"), m_folder);
        return false;
    }
    // The kernel reads and writes these flags as an int, whatever the ioctl's declared type.
    int flags = 0;
    if (::ioctl(folder.fd(), FS_IOC_GETFLAGS, &flags) != 0) {
        *error = systemError(QStringLiteral("cannot read the attributes of"), m_folder);
        return false;
    }
    const int wanted = flags | FS_SYNC_FL | FS_DIRSYNC_FL;
    if (wanted != flags && ::ioctl(folder.fd(), FS_IOC_SETFLAGS, &wanted) != 0) {
        *error = systemError(QStringLiteral("cannot make the writes synchronous in"), m_folder);
        return false;
    }
    return true;
}

std::optional<SpoolLedger::DocumentName> SpoolLedger::parseDocumentName(const QString &name)
{
    static const QRegularExpression pattern(QStringLiteral("^(p\\d{5}j\\d{9})-[^/]*\\.([A-Za-z0-9]+)$"));
    const QString bare = name.startsWith(keptPrefix()) ? name.mid(keptPrefix().size()) : name;
    const QRegularExpressionMatch match = pattern.match(bare);
    if (!match.hasMatch())
        return std::nullopt;
    const std::optional<QPair<int, int>> ids = parseJobKey(match.captured(1));
    if (!ids || ids->first <= 0 || ids->second <= 0)
        return std::nullopt;
    return DocumentName{ids->first, ids->second, match.captured(2)};
}

QString SpoolLedger::startedMarkName(int printerId, int jobId)
{
    return StartedPrefix + jobKey(printerId, jobId);
}

void SpoolLedger::examine(const QString &name, QList<Job> *jobs, QStringList *marks)
{
    if (name.startsWith(DurableFile::temporaryPrefix())) {
        // A mark a crash left half-written: the job it was for has not started.
        QString error;
        if (!removeFile(pathOf(name), &error))
            m_problems << error;
        return;
    }
    if (name.startsWith(StartedPrefix) && parseJobKey(name.mid(StartedPrefix.size()))) {
        marks->append(name);
        return;
    }
    const std::optional<DocumentName> parsed = parseDocumentName(name);
    if (!parsed) {
        m_problems << QStringLiteral("not a job's file, left alone: %1").arg(name);
        return;
    }
    // The server's own record of a job's attributes goes with the document, if it still has one.
    if (parsed->extension == AttributesExtension)
        return;
    jobs->append(Job{parsed->printerId, parsed->jobId, name, QString(),
                     QFileInfo::exists(pathOf(startedMarkName(parsed->printerId, parsed->jobId)))});
}

void SpoolLedger::removeOrphanMarks(const QList<Job> &jobs, const QStringList &marks)
{
    for (const QString &mark : marks) {
        const bool hasDocument = std::any_of(jobs.begin(), jobs.end(), [&](const Job &job) {
            return startedMarkName(job.printerId, job.jobId) == mark;
        });
        QString error;
        if (!hasDocument && !DurableFile::remove(m_folder, mark, &error))
            m_problems << error;
    }
}

QList<SpoolLedger::Job> SpoolLedger::leftovers()
{
    m_problems.clear();
    const QStringList names = QDir(m_folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    QList<Job> jobs;
    QStringList marks;
    for (const QString &name : names)
        examine(name, &jobs, &marks);
    for (Job &job : jobs) {
        const QString bare =
            job.document.startsWith(keptPrefix()) ? job.document.mid(keptPrefix().size()) : job.document;
        const QString attributes = bare.left(bare.lastIndexOf(QLatin1Char('.')) + 1) + AttributesExtension;
        if (names.contains(attributes))
            job.attributes = attributes;
    }
    removeOrphanMarks(jobs, marks);
    std::stable_sort(jobs.begin(), jobs.end(), [](const Job &a, const Job &b) {
        return a.printerId != b.printerId ? a.printerId < b.printerId : a.jobId < b.jobId;
    });
    return jobs;
}

bool SpoolLedger::markStarted(int printerId, int jobId, QString *error)
{
    return DurableFile::write(m_folder, startedMarkName(printerId, jobId), QByteArray(), error);
}

bool SpoolLedger::hasStarted(int printerId, int jobId) const
{
    return QFileInfo::exists(pathOf(startedMarkName(printerId, jobId)));
}

bool SpoolLedger::markDone(int printerId, int jobId, const QString &documentPath, QString *error)
{
    // The document first: a crash between the two leaves a mark without a document, which the
    // next start clears away, never a document without its mark, which would print unmarked.
    if (!documentPath.isEmpty() && !removeFile(documentPath, error))
        return false;
    return DurableFile::remove(m_folder, startedMarkName(printerId, jobId), error);
}

bool SpoolLedger::forget(const Job &job, QString *error)
{
    if (!job.attributes.isEmpty() && !removeFile(pathOf(job.attributes), error))
        return false;
    return DurableFile::remove(m_folder, startedMarkName(job.printerId, job.jobId), error);
}

bool SpoolLedger::keepForRestart(const QString &documentPath, QString *error)
{
    const QString name = QFileInfo(documentPath).fileName();
    if (name.startsWith(keptPrefix()))
        return true;
    return moveFile(documentPath, pathOf(keptPrefix() + name), error) &&
           DurableFile::syncFolder(m_folder, error);
}

QString SpoolLedger::setAsideFolder() const
{
    return pathOf(QStringLiteral("unclaimed"));
}

bool SpoolLedger::setAside(const Job &job, QString *error)
{
    const QString target = setAsideFolder();
    if (!QDir().mkpath(target)) {
        *error = QStringLiteral("cannot make the folder %1").arg(target);
        return false;
    }
    QStringList names{job.document};
    if (!job.attributes.isEmpty())
        names << job.attributes;
    if (job.started)
        names << startedMarkName(job.printerId, job.jobId);
    for (const QString &name : names) {
        if (!moveFile(pathOf(name), target + QLatin1Char('/') + name, error))
            return false;
    }
    return DurableFile::syncFolder(target, error) && DurableFile::syncFolder(m_folder, error);
}

void SpoolLedger::noteReprint(int printerId, int jobId)
{
    QMutexLocker lock(&m_reprintLock);
    m_reprints.insert({printerId, jobId});
}

bool SpoolLedger::isReprint(int printerId, int jobId) const
{
    QMutexLocker lock(&m_reprintLock);
    return m_reprints.contains({printerId, jobId});
}
