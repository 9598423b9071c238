#include "config/OutputFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <csignal>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Linux gives up after as many links in a row; a longer chain, or a loop, is left to open()
// to refuse.
constexpr int mostLinksFollowed = 40;

// The file a chain of symbolic links ends at.  A dangling link gives the path of the file it
// names, which is then created there, as the shell's redirection does.
QString followLinks(const QString &path)
{
    QString current = path;
    for (int i = 0; i < mostLinksFollowed; ++i) {
        const QFileInfo info(current);
        if (!info.isSymLink())
            return current;
        current = info.symLinkTarget();
    }
    return current;
}

// A FIFO, a device or a socket, at the path or at the end of its links: something to write
// into, not a file to replace.
bool isWrittenDirectly(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return false;
    return S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode) ||
           S_ISSOCK(status.st_mode);
}

// The new file takes the old one's owner and group where the process may give them away
// (root may; anybody may hand a file to another group of their own), then its mode: changing
// the owner clears the set-user-ID bit, so the mode comes last.
void takeOwnerAndMode(int handle, const struct stat &old)
{
    if (old.st_uid != ::geteuid() || old.st_gid != ::getegid()) {
        if (::fchown(handle, old.st_uid, old.st_gid) != 0)
            (void)::fchown(handle, static_cast<uid_t>(-1), old.st_gid);
    }
    (void)::fchmod(handle, old.st_mode & 07777);
}

} // namespace

OutputFile::OutputFile(const QString &path, Dash dash) : m_path(path), m_dash(dash) {}

OutputFile::~OutputFile() = default; // QSaveFile throws an uncommitted temporary file away

bool OutputFile::open(QIODevice::OpenMode extraFlags)
{
    const QIODevice::OpenMode mode = QIODevice::WriteOnly | extraFlags;
    if (m_dash == Dash::IsStandardOutput && m_path == QLatin1String("-")) {
        m_direct = std::make_unique<QFile>();
        if (m_direct->open(stdout, mode))
            return true;
        keepFirstError(m_direct->error(), m_direct->errorString());
        m_direct.reset();
        return false;
    }
    // The kernel follows the links to a FIFO or device itself, /proc's magic ones included;
    // only a file to replace needs the path of its target.
    if (isWrittenDirectly(m_path))
        return openDirectly(m_path, mode);
    return openReplacing(followLinks(m_path), mode);
}

bool OutputFile::openDirectly(const QString &path, QIODevice::OpenMode mode)
{
    m_direct = std::make_unique<QFile>(path);
    if (m_direct->open(mode))
        return true;
    keepFirstError(m_direct->error(), m_direct->errorString());
    m_direct.reset();
    return false;
}

bool OutputFile::openReplacing(const QString &path, QIODevice::OpenMode mode)
{
    struct stat old;
    const bool replaces = ::stat(QFile::encodeName(path).constData(), &old) == 0 && S_ISREG(old.st_mode);
    m_replacing = std::make_unique<QSaveFile>(path);
    if (!m_replacing->open(mode)) {
        keepFirstError(m_replacing->error(), m_replacing->errorString());
        m_replacing.reset();
        return false;
    }
    if (replaces)
        takeOwnerAndMode(m_replacing->handle(), old);
    return true;
}

QFileDevice *OutputFile::device() const
{
    if (m_replacing)
        return m_replacing.get();
    return m_direct.get();
}

bool OutputFile::commit()
{
    if (m_replacing)
        return commitReplacing();
    if (m_direct)
        return commitDirectly();
    keepFirstError(QFileDevice::WriteError, QStringLiteral("the output is not open"));
    return false;
}

/*
 * The buffer is flushed and its error looked at before the commit: Qt 6.4's QSaveFile::commit()
 * does not notice a write that fails while it flushes its own buffer (a disk that fills up at
 * the end) and would put the short file in the old one's place.
 */
bool OutputFile::commitReplacing()
{
    const std::unique_ptr<QSaveFile> file = std::move(m_replacing);
    if (!file->flush() || file->error() != QFileDevice::NoError) {
        keepFirstError(file->error(), file->errorString());
        file->cancelWriting();
        (void)file->commit(); // refused after the cancel: removes the temporary file
        return false;
    }
    if (file->commit())
        return true;
    keepFirstError(file->error(), file->errorString());
    return false;
}

bool OutputFile::commitDirectly()
{
    const std::unique_ptr<QFile> file = std::move(m_direct);
    const bool flushed = file->flush() && file->error() == QFileDevice::NoError;
    if (!flushed)
        keepFirstError(file->error(), file->errorString());
    file->close();
    return flushed;
}

void OutputFile::cancel()
{
    if (m_replacing) {
        m_replacing->cancelWriting();
        (void)m_replacing->commit(); // refused after the cancel: removes the temporary file
        m_replacing.reset();
    }
    m_direct.reset();
}

void OutputFile::keepFirstError(QFileDevice::FileError error, const QString &text)
{
    if (m_error != QFileDevice::NoError)
        return;
    m_error = error == QFileDevice::NoError ? QFileDevice::WriteError : error;
    m_errorString = text.isEmpty() ? QStringLiteral("the output could not be written") : text;
}

void OutputFile::reportClosedPipesAsWriteErrors()
{
    std::signal(SIGPIPE, SIG_IGN);
}
