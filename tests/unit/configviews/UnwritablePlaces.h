#ifndef BRISTEL_TESTS_UNWRITABLEPLACES_H
#define BRISTEL_TESTS_UNWRITABLEPLACES_H

#include <QString>
#include <QTemporaryDir>

#include <memory>

/*
 * Places where a save must fail, made for real whoever runs the tests.
 *
 * ReadOnlyFolder: a folder without write permission holding one file that anybody may write.
 * Root passes over permissions, so while a ReadOnlyFolder::Visitor is alive a process run as
 * root looks at files with the identity of "nobody" (setfsuid: this thread only, and the
 * kernel drops root's file capabilities with it).  The folder lives under /tmp then, which
 * nobody can reach whatever folder the checkout is in.
 *
 * FullFileSystem: a folder with no room left.  Root mounts a small tmpfs there and fills it;
 * where mounting is not allowed, the process's file size limit (RLIMIT_FSIZE) is lowered
 * while a FullFileSystem::Writer is alive, so that the kernel refuses the bytes past it just
 * as a full disk does, and the limit is restored afterwards.
 */
class ReadOnlyFolder
{
public:
    // Creates the folder with the file holding bytes, then takes the write permission away.
    ReadOnlyFolder(const QString &fileName, const QByteArray &bytes);
    ~ReadOnlyFolder();

    QString filePath() const { return m_filePath; }
    bool isValid() const { return m_valid; }
    // The names of the entries of the folder.
    QStringList entries() const;

    class Visitor
    {
    public:
        Visitor();
        ~Visitor();
        bool isValid() const { return m_valid; }

    private:
        bool m_valid = false;
        bool m_switched = false;
    };

private:
    std::unique_ptr<QTemporaryDir> m_base;
    QString m_folder;
    QString m_filePath;
    bool m_valid = false;
};

class FullFileSystem
{
public:
    // A file holding bytes, on a file system that has no room for a second copy of them.
    FullFileSystem(const QString &fileName, const QByteArray &bytes);
    ~FullFileSystem();

    QString filePath() const { return m_filePath; }
    bool isValid() const { return m_valid; }
    // "tmpfs" or "file size limit": how the lack of room was made.
    QString kind() const { return m_mounted ? QStringLiteral("tmpfs") : QStringLiteral("file size limit"); }
    QStringList entries() const;
    // Gives the room back (the next save can succeed).
    void makeRoom();

    class Writer
    {
    public:
        explicit Writer(const FullFileSystem &place);
        ~Writer();

    private:
        bool m_limited = false;
        unsigned long long m_soft = 0;
        void (*m_previousHandler)(int) = nullptr;
    };

private:
    QTemporaryDir m_base;
    QString m_mountPoint;
    QString m_filePath;
    bool m_mounted = false;
    bool m_valid = false;
    bool m_roomMade = false;
    qint64 m_limit = 0;
};

#endif
