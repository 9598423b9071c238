// Every program that writes a file writes it the way the place needs: a device or a FIFO
// directly, through a symbolic link to its target, a regular file replaced whole with its mode
// and owner; and a write that fails (a full device, a reader gone) is a message and a status,
// never a silent end by SIGPIPE.
#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <linux/capability.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

constexpr uid_t nobody = 65534;
constexpr gid_t nogroup = 65534;

const QString Receipt = QStringLiteral(EXAMPLES_DIR "/documents/printFullOrderReceipt.xml");

bool isRoot()
{
    return ::geteuid() == 0;
}

struct Finished
{
    int status = -1; // the exit status, or 128 + the signal that ended the program, as a shell says
    QByteArray err;
};

// How the program runs beside the test: where its standard output goes, whether it runs
// without root's power over permissions, and what the test does while it runs (read from
// a FIFO, for instance).
struct Run
{
    Run(QString program, QStringList arguments, int standardOutput = -1, bool withoutOverride = false,
        std::function<void(pid_t)> whileRunning = {})
        : program(std::move(program)), arguments(std::move(arguments)), standardOutput(standardOutput),
          withoutOverride(withoutOverride), whileRunning(std::move(whileRunning))
    {
    }

    QString program;
    QStringList arguments;
    int standardOutput; // -1: /dev/null
    bool withoutOverride;
    std::function<void(pid_t)> whileRunning; // given the program's process id
};

// A root child that must meet permissions as anybody else does: without the capability to
// override them, taken from the bounding set so that the program does not regain it.
void dropPermissionOverride()
{
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
    ::prctl(PR_CAPBSET_DROP, CAP_FOWNER, 0, 0, 0);
}

[[noreturn]] void execute(const Run &run, const QTemporaryDir &home, int errorFile)
{
    const int output = run.standardOutput >= 0 ? run.standardOutput : ::open("/dev/null", O_WRONLY);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(errorFile, STDERR_FILENO);
    // As a shell starts it: SIGPIPE at its default action, whatever the test runner did.
    std::signal(SIGPIPE, SIG_DFL);
    if (run.withoutOverride && isRoot())
        dropPermissionOverride();
    ::setenv("LC_ALL", "C.UTF-8", 1);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::setenv("HOME", QFile::encodeName(home.path()).constData(), 1);
    ::unsetenv("BRISTEL_CONFIG");
    std::vector<QByteArray> words{QFile::encodeName(run.program)};
    for (const QString &argument : run.arguments)
        words.push_back(QFile::encodeName(argument));
    std::vector<char *> argv;
    for (QByteArray &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    ::execv(argv[0], argv.data());
    ::_exit(127);
}

Finished runProgram(const Run &run)
{
    QTemporaryDir home;
    const QString errorPath = home.filePath(QStringLiteral("stderr"));
    const int errorFile =
        ::open(QFile::encodeName(errorPath).constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    Finished finished;
    if (errorFile < 0)
        return finished;
    const pid_t child = ::fork();
    if (child == 0)
        execute(run, home, errorFile);
    ::close(errorFile);
    if (child < 0)
        return finished;
    if (run.whileRunning)
        run.whileRunning(child);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    finished.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    finished.err = readFile(errorPath);
    return finished;
}

// A job whose output is larger than a pipe holds (64 KiB), so that a reader that stops early
// leaves the program writing into a pipe nobody reads.
QString bigJob(const QTemporaryDir &dir, int items)
{
    QByteArray job = "<document><method name=\"printSold\"/>";
    for (int i = 0; i < items; ++i)
        job += "<receipe quantity=\"1\" description=\"item " + QByteArray::number(i) + "\" amount=\"1.00\"/>";
    job += "</document>";
    const QString path = dir.filePath(QStringLiteral("big.xml"));
    writeFile(path, job);
    return path;
}

/*
 * Reads what the program writes into fd, at most `most` bytes (all of them when negative), and
 * closes it.  fd is non-blocking; the wait is for data or for the end of the program (through
 * its pidfd), so a program that never opens its output does not leave the test waiting.
 */
QByteArray readThenClose(int fd, pid_t child, qsizetype most)
{
    QByteArray bytes;
    const int exited = int(::syscall(SYS_pidfd_open, child, 0));
    char buffer[65536];
    while (most < 0 || bytes.size() < most) {
        pollfd waited[2] = {{fd, POLLIN, 0}, {exited, POLLIN, 0}};
        if (::poll(waited, exited >= 0 ? 2 : 1, -1) < 0 && errno != EINTR)
            break;
        const qsizetype wanted =
            most < 0 ? qsizetype(sizeof buffer) : std::min<qsizetype>(most - bytes.size(), sizeof buffer);
        const ssize_t n = ::read(fd, buffer, size_t(wanted));
        if (n > 0) {
            bytes.append(buffer, n);
            continue;
        }
        const bool writerGone = n == 0 && (waited[0].revents & POLLHUP);
        if (writerGone || (n < 0 && errno != EAGAIN) || (waited[1].revents & POLLIN))
            break;
    }
    if (exited >= 0)
        ::close(exited);
    ::close(fd);
    return bytes;
}

// The reading end of a FIFO, opened without waiting for a writer.
int openFifoForReading(const QString &path)
{
    return ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK);
}

bool isCharacterDevice(const QString &path)
{
    struct stat status;
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISCHR(status.st_mode);
}

bool isFifo(const QString &path)
{
    struct stat status;
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

// The full device (every write fails with ENOSPC) under the name `name` in dir: a node of its
// own where the test may make one (root), so that a program that replaced it would replace
// nothing of the machine's; otherwise /dev/full itself, through a link that carries the name.
QString fullDevice(const QTemporaryDir &dir, const QString &name)
{
    const QString path = dir.filePath(name);
    if (isRoot()) {
        EXPECT_EQ(::mknod(QFile::encodeName(path).constData(), S_IFCHR | 0666, makedev(1, 7)), 0)
            << std::strerror(errno);
        return path;
    }
    EXPECT_TRUE(QFile::link(QStringLiteral("/dev/full"), path));
    return path;
}

QString fifo(const QTemporaryDir &dir, const QString &name)
{
    const QString path = dir.filePath(name);
    EXPECT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0) << std::strerror(errno);
    return path;
}

// A file owned by somebody else where the test may give it away (root), with a mode the
// program would not choose by itself.
struct OwnedFile
{
    uid_t owner;
    gid_t group;
    mode_t mode = 0640;
};

OwnedFile makeOwnedFile(const QString &path)
{
    writeFile(path, "old bytes");
    OwnedFile file{::geteuid(), ::getegid()};
    if (isRoot()) {
        EXPECT_EQ(::chown(QFile::encodeName(path).constData(), nobody, nogroup), 0);
        file.owner = nobody;
        file.group = nogroup;
    }
    EXPECT_EQ(::chmod(QFile::encodeName(path).constData(), file.mode), 0);
    return file;
}

void expectOwnerAndMode(const QString &path, const OwnedFile &expected)
{
    struct stat status;
    ASSERT_EQ(::lstat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode));
    EXPECT_EQ(status.st_uid, expected.owner);
    EXPECT_EQ(status.st_gid, expected.group);
    EXPECT_EQ(status.st_mode & 07777, expected.mode);
}

const QString Compile = QStringLiteral(COMPILE_PATH);
const QString Render = QStringLiteral(RENDER_PATH);
const QString Preview = QStringLiteral(PREVIEW_PATH);
const QString Filter = QStringLiteral(FILTER_PATH);

// Runs program with a reader at the FIFO path that takes at most `most` bytes (-1: all the
// program writes) and then closes its end; *received is what the reader got.
Finished runWithFifoReader(const QString &program, const QStringList &arguments, const QString &path,
                           qsizetype most, QByteArray *received)
{
    return runProgram({program, arguments, -1, false, [&](pid_t child) {
                           *received = readThenClose(openFifoForReading(path), child, most);
                       }});
}

// --- a full device ----------------------------------------------------------------------

TEST(OutputTargets, PreviewReportsAFullDeviceAndLeavesTheNodeAlone)
{
    QTemporaryDir dir;
    const QString device = fullDevice(dir, QStringLiteral("full.png"));
    const Finished r = runProgram({Preview, {Receipt, device}});
    EXPECT_EQ(r.status, 6) << r.err.constData();
    EXPECT_TRUE(r.err.startsWith("bristel-preview: " + QFile::encodeName(device) + ": "))
        << r.err.constData();
    EXPECT_TRUE(isCharacterDevice(isRoot() ? device : QStringLiteral("/dev/full")));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size(), 1)
        << "a temporary file is left";
}

TEST(OutputTargets, TheLogoMakerReportsAFullDeviceAndLeavesTheNodeAlone)
{
    QTemporaryDir dir;
    const QString device = fullDevice(dir, QStringLiteral("logo.pbm"));
    const Finished r = runProgram(
        {Preview,
         {QStringLiteral("--make-logo"), QStringLiteral(SOURCE_DIR "/docs/receipt-preview.png"), device}});
    EXPECT_EQ(r.status, 6) << r.err.constData();
    EXPECT_TRUE(r.err.startsWith("bristel-preview: " + QFile::encodeName(device) + ": "))
        << r.err.constData();
    EXPECT_TRUE(isCharacterDevice(isRoot() ? device : QStringLiteral("/dev/full")));
}

TEST(OutputTargets, RenderReportsAFullDeviceInEveryFormatAndLeavesTheNodeAlone)
{
    for (const char *format : {"text", "escpos", "listing"}) {
        SCOPED_TRACE(format);
        QTemporaryDir dir;
        const QString device = fullDevice(dir, QStringLiteral("printer"));
        const Finished r =
            runProgram({Render, {QStringLiteral("-f"), QString::fromLatin1(format), Receipt, device}});
        EXPECT_EQ(r.status, 6) << r.err.constData();
        EXPECT_TRUE(r.err.startsWith("bristel-render: " + QFile::encodeName(device) + ": "))
            << r.err.constData();
        EXPECT_TRUE(isCharacterDevice(isRoot() ? device : QStringLiteral("/dev/full")));
    }
}

// Kept: the compiler reports nothing and exits 0; it must only write into the device itself.
TEST(OutputTargets, CompileWritesIntoADeviceAndLeavesTheNodeAlone)
{
    QTemporaryDir dir;
    const QString device = fullDevice(dir, QStringLiteral("printer"));
    const Finished r = runProgram({Compile, {Receipt, device}});
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(isCharacterDevice(isRoot() ? device : QStringLiteral("/dev/full")));
}

// --- a FIFO with a reader -----------------------------------------------------------------

TEST(OutputTargets, PreviewWritesIntoAFifoAndTheReaderGetsThePicture)
{
    QTemporaryDir dir;
    const QString path = fifo(dir, QStringLiteral("paper.png"));
    QByteArray received;
    const Finished r = runWithFifoReader(Preview, {Receipt, path}, path, -1, &received);
    EXPECT_EQ(r.status, 0) << r.err.constData();
    EXPECT_TRUE(received.startsWith("\x89PNG\r\n")) << received.left(16).toHex(' ').constData();
    EXPECT_TRUE(isFifo(path));
}

TEST(OutputTargets, RenderAndCompileWriteIntoAFifoAndTheReaderGetsTheBytes)
{
    QTemporaryDir dir;
    const QString path = fifo(dir, QStringLiteral("printer"));
    for (const QString &program : {Render, Compile}) {
        SCOPED_TRACE(program.toStdString());
        const QStringList arguments =
            program == Render ? QStringList{QStringLiteral("-f"), QStringLiteral("text"), Receipt, path}
                              : QStringList{Receipt, path};
        QByteArray received;
        const Finished r = runWithFifoReader(program, arguments, path, -1, &received);
        EXPECT_EQ(r.status, 0) << r.err.constData();
        EXPECT_TRUE(received.contains("Serial Number")) << received.left(64).constData();
        EXPECT_TRUE(isFifo(path));
    }
}

// --- a reader that goes away early ----------------------------------------------------------

TEST(OutputTargets, RenderReportsAClosedPipeOnStandardOutput)
{
    QTemporaryDir dir;
    const QString job = bigJob(dir, 2000);
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const int readEnd = ends[0];
    ASSERT_EQ(::fcntl(readEnd, F_SETFL, O_NONBLOCK), 0); // the program's end blocks, as a shell's pipe
    const Finished r = runProgram(
        {Render, {QStringLiteral("-f"), QStringLiteral("escpos"), job}, ends[1], false, [&](pid_t child) {
             ::close(ends[1]);
             EXPECT_EQ(readThenClose(readEnd, child, 10).size(), 10);
         }});
    EXPECT_EQ(r.status, 6) << "ended by signal " << r.status - 128;
    EXPECT_TRUE(r.err.startsWith("bristel-render: <stdout>: ")) << r.err.constData();
}

TEST(OutputTargets, PreviewReportsAFifoWhoseReaderGoesAway)
{
    QTemporaryDir dir;
    const QString job = bigJob(dir, 200);
    const QString path = fifo(dir, QStringLiteral("paper.png"));
    QByteArray received;
    const Finished r = runWithFifoReader(Preview, {job, path}, path, 10, &received);
    EXPECT_EQ(received.size(), 10);
    EXPECT_EQ(r.status, 6) << "ended by signal " << r.status - 128;
    // The PNG library says its own word first.
    EXPECT_TRUE(r.err.contains("bristel-preview: " + QFile::encodeName(path) + ": ")) << r.err.constData();
}

// Kept: the compiler's status is 0 whatever became of its output.
TEST(OutputTargets, CompileOutlivesAFifoWhoseReaderGoesAway)
{
    QTemporaryDir dir;
    const QString job = bigJob(dir, 2000);
    const QString path = fifo(dir, QStringLiteral("printer"));
    QByteArray received;
    const Finished r = runWithFifoReader(Compile, {job, path}, path, 10, &received);
    EXPECT_EQ(received.size(), 10);
    EXPECT_EQ(r.status, 0) << "ended by signal " << r.status - 128;
}

TEST(OutputTargets, TheCupsFilterReportsAPrinterChannelClosedEarly)
{
    QTemporaryDir dir;
    const QString job = bigJob(dir, 2000);
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const int readEnd = ends[0];
    ASSERT_EQ(::fcntl(readEnd, F_SETFL, O_NONBLOCK), 0); // the program's end blocks, as a shell's pipe
    const Finished r = runProgram({Filter,
                                   {QStringLiteral("7"), QStringLiteral("user"), QStringLiteral("title"),
                                    QStringLiteral("1"), QString(), job},
                                   ends[1],
                                   false,
                                   [&](pid_t child) {
                                       ::close(ends[1]);
                                       EXPECT_EQ(readThenClose(readEnd, child, 10).size(), 10);
                                   }});
    EXPECT_EQ(r.status, 1) << "ended by signal " << r.status - 128;
    EXPECT_TRUE(r.err.contains("ERROR: cannot write to the printer: ")) << r.err.constData();
}

// --- a symbolic link, and the mode and owner of a replaced file ------------------------------

TEST(OutputTargets, EveryWriterWritesThroughALinkAndKeepsTheTargetsModeAndOwner)
{
    struct Writer
    {
        const char *name;
        QString program;
        QStringList arguments; // the output comes last
        QByteArray holds;
    };
    const Writer writers[] = {
        {"preview", Preview, {Receipt}, "\x89PNG\r\n"},
        {"logo",
         Preview,
         {QStringLiteral("--make-logo"), QStringLiteral(SOURCE_DIR "/docs/receipt-preview.png")},
         "P4\n"},
        {"render", Render, {QStringLiteral("-f"), QStringLiteral("text"), Receipt}, "Serial Number: "},
        {"compile", Compile, {Receipt}, "Serial Number: "},
    };
    for (const Writer &writer : writers) {
        SCOPED_TRACE(writer.name);
        QTemporaryDir dir;
        const QString target = dir.filePath(QStringLiteral("target.png"));
        const QString link = dir.filePath(QStringLiteral("link.png"));
        const OwnedFile owned = makeOwnedFile(target);
        ASSERT_TRUE(QFile::link(QStringLiteral("target.png"), link));
        const Finished r = runProgram({writer.program, writer.arguments + QStringList{link}});
        EXPECT_EQ(r.status, 0) << r.err.constData();
        EXPECT_TRUE(QFileInfo(link).isSymLink());
        EXPECT_TRUE(readFile(target).contains(writer.holds)) << readFile(target).left(16).constData();
        expectOwnerAndMode(target, owned);
    }
}

// --- a read-only folder ----------------------------------------------------------------------

TEST(OutputTargets, AReadOnlyFolderIsReportedAndKeepsTheOldFile)
{
    struct Writer
    {
        const char *name;
        QString program;
        QStringList arguments;
        QByteArray message;
    };
    const Writer writers[] = {
        {"preview", Preview, {Receipt}, "bristel-preview: "},
        {"logo",
         Preview,
         {QStringLiteral("--make-logo"), QStringLiteral(SOURCE_DIR "/docs/receipt-preview.png")},
         "bristel-preview: "},
        {"render", Render, {QStringLiteral("-f"), QStringLiteral("text"), Receipt}, "bristel-render: "},
    };
    for (const Writer &writer : writers) {
        SCOPED_TRACE(writer.name);
        QTemporaryDir dir;
        const QString folder = dir.filePath(QStringLiteral("locked"));
        const QString path = folder + QStringLiteral("/out.png");
        writeFile(path, "old bytes");
        ASSERT_EQ(::chmod(QFile::encodeName(folder).constData(), 0555), 0);
        const Finished r = runProgram({writer.program, writer.arguments + QStringList{path}, -1, true});
        ::chmod(QFile::encodeName(folder).constData(), 0755);
        EXPECT_EQ(r.status, 6) << r.err.constData();
        EXPECT_TRUE(r.err.startsWith(writer.message + QFile::encodeName(path) + ": ")) << r.err.constData();
        EXPECT_EQ(readFile(path), QByteArray("old bytes"));
        EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                  QStringList(QStringLiteral("out.png")));
    }
}

} // namespace
