#include "printerapp/DurableFile.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

QString systemError(const QString &what, const QString &path)
{
    return QStringLiteral("%1 %2: %3").arg(what, path, QString::fromLocal8Bit(std::strerror(errno)));
}

// Closes the descriptor it holds when it goes out of scope.
class Descriptor
{
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    ~Descriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int fd() const { return m_fd; }
    // Closes now, reporting the result: a late write error shows up here on some file systems.
    bool close()
    {
        const int fd = m_fd;
        m_fd = -1;
        return ::close(fd) == 0;
    }

private:
    int m_fd;
};

bool writeAll(int fd, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t written =
            ::write(fd, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

QString pathOf(const QString &folder, const QString &name)
{
    return folder + QLatin1Char('/') + name;
}

} // namespace

bool DurableFile::syncFolder(const QString &folder, QString *error)
{
    Descriptor directory(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.fd() < 0 || ::fsync(directory.fd()) != 0) {
        *error = systemError(QStringLiteral("cannot flush the folder"), folder);
        return false;
    }
    return true;
}

bool DurableFile::write(const QString &folder, const QString &name, const QByteArray &bytes, QString *error)
{
    const QString temporary = pathOf(folder, temporaryPrefix() + name);
    const QByteArray temporaryName = QFile::encodeName(temporary);
    Descriptor file(::open(temporaryName.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (file.fd() < 0) {
        *error = systemError(QStringLiteral("cannot create"), temporary);
        return false;
    }
    if (!writeAll(file.fd(), bytes) || ::fsync(file.fd()) != 0 || !file.close()) {
        *error = systemError(QStringLiteral("cannot write"), temporary);
        ::unlink(temporaryName.constData());
        return false;
    }
    const QString target = pathOf(folder, name);
    if (::rename(temporaryName.constData(), QFile::encodeName(target).constData()) != 0) {
        *error = systemError(QStringLiteral("cannot rename into"), target);
        ::unlink(temporaryName.constData());
        return false;
    }
    return syncFolder(folder, error);
}

bool DurableFile::replace(const QString &folder, const QString &temporaryName, const QString &name,
                          QString *error)
{
    const QString temporary = pathOf(folder, temporaryName);
    const QByteArray temporaryPath = QFile::encodeName(temporary);
    Descriptor file(::open(temporaryPath.constData(), O_RDONLY | O_CLOEXEC));
    if (file.fd() < 0 || ::fsync(file.fd()) != 0 || !file.close()) {
        *error = systemError(QStringLiteral("cannot flush"), temporary);
        return false;
    }
    const QString target = pathOf(folder, name);
    if (::rename(temporaryPath.constData(), QFile::encodeName(target).constData()) != 0) {
        *error = systemError(QStringLiteral("cannot rename into"), target);
        return false;
    }
    return syncFolder(folder, error);
}

bool DurableFile::remove(const QString &folder, const QString &name, QString *error)
{
    const QString path = pathOf(folder, name);
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT) {
        *error = systemError(QStringLiteral("cannot remove"), path);
        return false;
    }
    return syncFolder(folder, error);
}
