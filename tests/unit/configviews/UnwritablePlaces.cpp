#include "UnwritablePlaces.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr uid_t nobody = 65534;
constexpr gid_t nogroup = 65534;

bool isRoot()
{
    return geteuid() == 0;
}

QStringList entriesOf(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

} // namespace

ReadOnlyFolder::ReadOnlyFolder(const QString &fileName, const QByteArray &bytes)
    : m_base(isRoot() ? std::make_unique<QTemporaryDir>(QStringLiteral("/tmp/bristel-readonly-XXXXXX"))
                      : std::make_unique<QTemporaryDir>())
{
    if (!m_base->isValid())
        return;
    m_folder = m_base->filePath(QStringLiteral("conf"));
    m_filePath = m_folder + QLatin1Char('/') + fileName;
    writeFile(m_filePath, bytes);
    // Everybody may enter the base and write the file itself: only the folder is read-only.
    m_valid = ::chmod(QFile::encodeName(m_base->path()).constData(), 0755) == 0 &&
              ::chmod(QFile::encodeName(m_filePath).constData(), 0666) == 0 &&
              ::chmod(QFile::encodeName(m_folder).constData(), 0555) == 0;
}

ReadOnlyFolder::~ReadOnlyFolder()
{
    if (!m_folder.isEmpty())
        ::chmod(QFile::encodeName(m_folder).constData(), 0755); // so that the folder can be removed
}

QStringList ReadOnlyFolder::entries() const
{
    return entriesOf(m_folder);
}

ReadOnlyFolder::Visitor::Visitor()
{
    if (!isRoot()) {
        m_valid = true;
        return;
    }
    // setfsuid reports the previous identity; asking again with an impossible one reports
    // the current one without changing it.
    setfsgid(nogroup);
    setfsuid(nobody);
    m_switched = true;
    m_valid = static_cast<uid_t>(setfsuid(static_cast<uid_t>(-1))) == nobody &&
              static_cast<gid_t>(setfsgid(static_cast<gid_t>(-1))) == nogroup;
}

ReadOnlyFolder::Visitor::~Visitor()
{
    if (m_switched) {
        setfsuid(0);
        setfsgid(0);
    }
}

FullFileSystem::FullFileSystem(const QString &fileName, const QByteArray &bytes)
{
    if (!m_base.isValid())
        return;
    m_mountPoint = m_base.filePath(QStringLiteral("full"));
    QDir().mkpath(m_mountPoint);
    m_filePath = m_mountPoint + QLatin1Char('/') + fileName;
    // Room for the file, rounded up to whole pages, and not a byte more once filled.
    const qint64 size = ((bytes.size() + 4095) / 4096 + 2) * 4096;
    const QByteArray options = "size=" + QByteArray::number(size) + ",mode=0755";
    m_mounted = isRoot() && ::mount("tmpfs", QFile::encodeName(m_mountPoint).constData(), "tmpfs", 0,
                                    options.constData()) == 0;
    writeFile(m_filePath, bytes);
    if (m_mounted) {
        QFile filler(m_mountPoint + QStringLiteral("/filler"));
        if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return;
        const QByteArray page(4096, 'f');
        while (filler.write(page) == page.size()) {
        }
        // A tmpfs may still take a part of a page; fill it byte by byte.
        while (filler.write("f", 1) == 1) {
        }
        m_valid = true;
    } else {
        // The limit lies inside the first copy's length: a second copy cannot be completed.
        m_limit = bytes.size() / 2;
        m_valid = m_limit > 0;
    }
}

FullFileSystem::~FullFileSystem()
{
    if (m_mounted)
        ::umount2(QFile::encodeName(m_mountPoint).constData(), MNT_DETACH);
}

QStringList FullFileSystem::entries() const
{
    QStringList names = entriesOf(m_mountPoint);
    names.removeAll(QStringLiteral("filler"));
    return names;
}

void FullFileSystem::makeRoom()
{
    if (m_mounted)
        QFile::remove(m_mountPoint + QStringLiteral("/filler"));
    m_roomMade = true;
}

FullFileSystem::Writer::Writer(const FullFileSystem &place)
{
    if (place.m_mounted || place.m_roomMade)
        return;
    rlimit limit{};
    if (getrlimit(RLIMIT_FSIZE, &limit) != 0)
        return;
    m_soft = limit.rlim_cur;
    // Past the limit the kernel sends SIGXFSZ, which would end the process; ignored, the write
    // fails with EFBIG instead and the writer sees an error as on a full disk.
    m_previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    limit.rlim_cur = static_cast<rlim_t>(place.m_limit);
    m_limited = setrlimit(RLIMIT_FSIZE, &limit) == 0;
    if (!m_limited)
        std::signal(SIGXFSZ, m_previousHandler);
}

FullFileSystem::Writer::~Writer()
{
    if (!m_limited)
        return;
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = static_cast<rlim_t>(m_soft);
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, m_previousHandler);
}
