// OutputFile opens each kind of place the way it needs: a regular file is replaced whole and
// keeps its mode and owner, a link is followed, a FIFO or a device is written directly, and
// every failure is kept for the caller.

#include "config/OutputFile.h"

#include "RefusedRename.h"
#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

constexpr uid_t nobody = 65534;
constexpr gid_t nogroup = 65534;

bool isRoot()
{
    return ::geteuid() == 0;
}

QStringList entries(const QTemporaryDir &dir)
{
    return QDir(dir.path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

struct stat statusOf(const QString &path)
{
    struct stat status;
    std::memset(&status, 0, sizeof status);
    EXPECT_EQ(::lstat(QFile::encodeName(path).constData(), &status), 0) << qPrintable(path);
    return status;
}

bool write(OutputFile &file, const QByteArray &bytes)
{
    return file.device() && file.device()->write(bytes) == bytes.size();
}

TEST(OutputFile, ANewFileAppearsWholeOnlyWhenCommitted)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.bin"));
    OutputFile file(path);
    ASSERT_TRUE(file.open());
    EXPECT_FALSE(file.isDirect());
    ASSERT_TRUE(write(file, "new bytes"));
    EXPECT_FALSE(QFile::exists(path));
    ASSERT_TRUE(file.commit()) << qPrintable(file.errorString());
    EXPECT_EQ(readFile(path), QByteArray("new bytes"));
    EXPECT_EQ(entries(dir), QStringList(QStringLiteral("out.bin")));
}

TEST(OutputFile, ACancelledOutputLeavesTheOldFile)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.bin"));
    writeFile(path, "old bytes");
    {
        OutputFile file(path);
        ASSERT_TRUE(file.open());
        ASSERT_TRUE(write(file, "new"));
        file.cancel();
    }
    {
        OutputFile abandoned(path); // neither committed nor cancelled
        ASSERT_TRUE(abandoned.open());
        ASSERT_TRUE(write(abandoned, "new"));
    }
    EXPECT_EQ(readFile(path), QByteArray("old bytes"));
    EXPECT_EQ(entries(dir), QStringList(QStringLiteral("out.bin")));
}

TEST(OutputFile, AReplacedFileKeepsItsModeAndOwner)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.bin"));
    writeFile(path, "old bytes");
    const QByteArray native = QFile::encodeName(path);
    // Root may give the file away; anybody else keeps it, and the mode is as telling.
    if (isRoot()) {
        ASSERT_EQ(::chown(native.constData(), nobody, nogroup), 0);
    }
    ASSERT_EQ(::chmod(native.constData(), 0604), 0);
    const struct stat before = statusOf(path);

    OutputFile file(path);
    ASSERT_TRUE(file.open());
    ASSERT_TRUE(write(file, "new bytes"));
    ASSERT_TRUE(file.commit()) << qPrintable(file.errorString());
    const struct stat after = statusOf(path);
    EXPECT_EQ(readFile(path), QByteArray("new bytes"));
    EXPECT_NE(after.st_ino, before.st_ino) << "the file was not replaced";
    EXPECT_EQ(after.st_mode & 07777, 0604u);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
}

TEST(OutputFile, ALinkIsFollowedToItsTargetAndStaysALink)
{
    QTemporaryDir dir;
    const QString target = dir.filePath(QStringLiteral("target"));
    const QString link = dir.filePath(QStringLiteral("link"));
    const QString chained = dir.filePath(QStringLiteral("chained"));
    writeFile(target, "old bytes");
    ASSERT_TRUE(QFile::link(QStringLiteral("target"), link)); // relative, as ln -s makes them
    ASSERT_TRUE(QFile::link(link, chained));
    OutputFile file(chained);
    ASSERT_TRUE(file.open());
    ASSERT_TRUE(write(file, "new bytes"));
    ASSERT_TRUE(file.commit()) << qPrintable(file.errorString());
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(QFileInfo(chained).isSymLink());
    EXPECT_EQ(readFile(target), QByteArray("new bytes"));
}

TEST(OutputFile, ADanglingLinkGetsItsTargetCreated)
{
    QTemporaryDir dir;
    const QString link = dir.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(QStringLiteral("target"), link));
    OutputFile file(link);
    ASSERT_TRUE(file.open());
    ASSERT_TRUE(write(file, "bytes"));
    ASSERT_TRUE(file.commit()) << qPrintable(file.errorString());
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("target"))), QByteArray("bytes"));
}

TEST(OutputFile, AFifoIsWrittenDirectlyAndStaysAFifo)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("fifo"));
    const QByteArray native = QFile::encodeName(path);
    ASSERT_EQ(::mkfifo(native.constData(), 0600), 0) << std::strerror(errno);
    // The reader is there first, so opening the writing end does not wait.
    const int reader = ::open(native.constData(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    OutputFile file(path);
    ASSERT_TRUE(file.open());
    EXPECT_TRUE(file.isDirect());
    ASSERT_TRUE(write(file, "through the FIFO"));
    ASSERT_TRUE(file.commit()) << qPrintable(file.errorString());
    char received[64] = {};
    EXPECT_EQ(::read(reader, received, sizeof received), 16);
    ::close(reader);
    EXPECT_EQ(QByteArray(received), QByteArray("through the FIFO"));
    EXPECT_TRUE(S_ISFIFO(statusOf(path).st_mode));
    EXPECT_EQ(entries(dir), QStringList(QStringLiteral("fifo")));
}

// The full device refuses every write with ENOSPC.  Root makes a node of its own, so that a
// writer that replaced it would replace nothing of the machine's; anybody else uses /dev/full.
TEST(OutputFile, AFullDeviceIsWrittenDirectlyAndItsFailureIsKept)
{
    QTemporaryDir dir;
    QString path = QStringLiteral("/dev/full");
    if (isRoot()) {
        path = dir.filePath(QStringLiteral("full"));
        ASSERT_EQ(::mknod(QFile::encodeName(path).constData(), S_IFCHR | 0666, makedev(1, 7)), 0)
            << std::strerror(errno);
    }
    OutputFile file(path);
    ASSERT_TRUE(file.open()) << qPrintable(file.errorString());
    EXPECT_TRUE(file.isDirect());
    (void)write(file, QByteArray(100, 'x'));
    EXPECT_FALSE(file.commit());
    EXPECT_NE(file.error(), QFileDevice::NoError);
    EXPECT_FALSE(file.errorString().isEmpty());
    EXPECT_TRUE(S_ISCHR(statusOf(path).st_mode));
    EXPECT_EQ(statusOf(path).st_rdev, makedev(1, 7));
}

TEST(OutputFile, AMissingFolderIsAnErrorOnOpen)
{
    QTemporaryDir dir;
    OutputFile file(dir.filePath(QStringLiteral("missing/out.bin")));
    EXPECT_FALSE(file.open());
    EXPECT_EQ(file.device(), nullptr);
    EXPECT_NE(file.error(), QFileDevice::NoError);
    EXPECT_FALSE(file.errorString().isEmpty());
}

TEST(OutputFile, ADashIsStandardOutputOnlyWhenAllowed)
{
    QTemporaryDir dir;
    const QString previous = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(dir.path()));
    {
        // No ASSERT here: the test must get back to the folder it started in.
        OutputFile named(QStringLiteral("-"));
        EXPECT_TRUE(named.open());
        EXPECT_FALSE(named.isDirect());
        EXPECT_TRUE(write(named, "a file called -"));
        EXPECT_TRUE(named.commit());
    }
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("-"))), QByteArray("a file called -"));
    QDir::setCurrent(previous);
    const QByteArray printed = captureStdout([] {
        OutputFile standardOutput(QStringLiteral("-"), OutputFile::Dash::IsStandardOutput);
        ASSERT_TRUE(standardOutput.open());
        EXPECT_TRUE(standardOutput.isDirect());
        ASSERT_TRUE(write(standardOutput, "on standard output"));
        EXPECT_TRUE(standardOutput.commit());
    });
    EXPECT_EQ(printed, QByteArray("on standard output"));
}

TEST(OutputFile, AFailedRenameIsReportedAndLeavesTheOldFile)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.bin"));
    writeFile(path, "old bytes");
    OutputFile file(path);
    ASSERT_TRUE(file.open());
    ASSERT_TRUE(write(file, "new bytes"));
    {
        RefusedRename refusal;
        EXPECT_FALSE(file.commit());
        EXPECT_GT(refusal.refused(), 0);
    }
    EXPECT_NE(file.error(), QFileDevice::NoError);
    EXPECT_FALSE(file.errorString().isEmpty());
    EXPECT_EQ(readFile(path), QByteArray("old bytes"));
    EXPECT_EQ(entries(dir), QStringList(QStringLiteral("out.bin")));
}

} // namespace
