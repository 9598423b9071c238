// bristeltoescpos: the CUPS filter that turns a bristel job (application/vnd.bristel+xml) into
// the bytes of an ESC/POS receipt printer (application/vnd.cups-raw).
//
//   bristeltoescpos job-id user title copies options [file]
//
// The scheduler runs it with the job on standard input (or in the file named last) and sends
// standard output to the printer.  Standard error is the scheduler's: every line begins with
// ERROR:, WARNING:, INFO:, DEBUG: or PAGE: and lands in the job's state and the error log.

#include "config/BRConfiguration.h"
#include "config/OutputFile.h"
#include "cups/QueueOptions.h"
#include "cups/SiteConfiguration.h"
#include "devices/escpos/EscPosSettings.h"
#include "job/JobConfiguration.h"
#include "job/RenderJob.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Where the settings of every queue live when the scheduler names no other file: the filter
// runs as the scheduler's user (lp), which has no home folder.
const char systemConfiguration[] = "/etc/bristel/bristel.conf";

// One line to the scheduler, which reads more than messages there: "STATE:", "ATTR:" and
// "PPD:" lines change the printer and its PPD file.  A job's title or a fault in its document
// must not start such a line, so every control character becomes '?'.
void say(const char *level, QString message)
{
    for (QChar &c : message) {
        if (c.unicode() < 0x20 || (c.unicode() >= 0x7f && c.unicode() < 0xa0))
            c = QLatin1Char('?');
    }
    std::fprintf(stderr, "%s: %s\n", level, qUtf8Printable(message));
}

// Says what went wrong and returns the failure status, once the scheduler has read the
// message: it reads standard error and notices the filter's exit in separate steps, and when
// the exit comes first the job keeps a bare "Filter failed" instead of the message.  Standard
// error is a pipe there, and the bytes still in it are counted until there are none (or a
// second has passed: the backend writes into the same pipe).
int fail(const QString &message)
{
    say("ERROR", message);
    struct stat channel;
    if (::fstat(STDERR_FILENO, &channel) != 0 || !S_ISFIFO(channel.st_mode))
        return 1;
    for (int waited = 0; waited < 1000; waited += 5) {
        int unread = 0;
        if (::ioctl(STDERR_FILENO, FIONREAD, &unread) != 0 || unread == 0)
            break;
        ::usleep(5000);
    }
    return 1;
}

// Every byte on standard output goes to the printer, so the printer's channel is set aside
// and standard output is pointed at standard error: a stray message from a library then ends
// up in the log instead of on the paper.
int takePrinterChannel()
{
    std::fflush(stdout);
    const int printer = ::dup(STDOUT_FILENO);
    if (printer < 0 || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
        return -1;
    return printer;
}

// The scheduler's arguments: job-id user title copies options [file].
struct FilterJob
{
    QString name;                    // "job 12 (title)", as messages call it
    int copies = 1;                  // copies are the filter's business: the backend sends its input once
    const char *options = nullptr;   // the job's options, name=value words
    std::optional<QString> fileName; // none: the job comes on standard input
};

FilterJob filterJob(int argc, char **argv)
{
    FilterJob job;
    job.name =
        QStringLiteral("job %1 (%2)").arg(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[3]));
    job.copies = std::max(1, std::atoi(argv[4]));
    job.options = argv[5];
    if (argc == 7)
        job.fileName = QString::fromLocal8Bit(argv[6]);
    return job;
}

// The file the scheduler names (SetEnv BRISTEL_CONFIG in cups-files.conf), or the system's.
bool loadConfiguration(JobConfiguration *configuration, QString *error)
{
    if (!loadSiteConfiguration(configuration, QString::fromLatin1(systemConfiguration), error))
        return false;
    if (configuration->fileName().isEmpty())
        say("INFO", QStringLiteral("%1 not found, every setting has its default")
                        .arg(QLatin1String(systemConfiguration)));
    for (const QString &problem : configuration->problems())
        say("WARNING", problem);
    return true;
}

// The queue's options over the file: a value that cannot be used leaves the file's (and the
// job still prints: a kitchen ticket in the wrong code page beats a lost order).
void applyQueueOptions(const char *jobOptions, EscPosSettings *settings)
{
    QueueOptions queueOptions;
    const QByteArray ppd = qgetenv("PPD");
    if (!ppd.isEmpty() && !queueOptions.addPpdDefaults(QString::fromLocal8Bit(ppd)))
        say("WARNING",
            QStringLiteral("%1: cannot read the queue's PPD file").arg(QString::fromLocal8Bit(ppd)));
    queueOptions.addJobOptions(jobOptions);
    for (const QString &problem : queueOptions.applyTo(*settings))
        say("WARNING", problem);
}

// The whole job is rendered before a byte leaves: a ticket cut off in the middle by a fault
// in the document would look like a whole order in the kitchen.
bool renderWholeJob(const FilterJob &job, const JobConfiguration &configuration,
                    const EscPosSettings &settings, QBuffer *rendered, QString *error)
{
    QFile input;
    const bool inputOpened = job.fileName
                                 ? (input.setFileName(*job.fileName), input.open(QIODevice::ReadOnly))
                                 : input.open(stdin, QIODevice::ReadOnly);
    if (!inputOpened) {
        *error = QStringLiteral("%1: cannot read the job: %2").arg(job.name, input.errorString());
        return false;
    }
    rendered->open(QIODevice::WriteOnly);
    const RenderResult result =
        renderJob(&input, rendered, RenderFormat::EscPos, configuration.configuration(), settings);
    for (const QString &warning : result.warnings.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        say("WARNING", warning);
    switch (result.status) {
    case RenderResult::Status::Ok:
        return true;
    case RenderResult::Status::MalformedDocument:
    case RenderResult::Status::UnknownMethod:
    case RenderResult::Status::InvalidCode:
        // One pass over the pattern: a title holding "%2" stays as it is.
        *error =
            QStringLiteral("%1: not printed: line %2, column %3: %4")
                .arg(job.name, QString::number(result.line), QString::number(result.column), result.message);
        return false;
    case RenderResult::Status::WriteFailed:
        *error = QStringLiteral("%1: %2").arg(job.name, result.message);
        return false;
    }
    return true;
}

bool sendToPrinter(int printer, const QByteArray &bytes, int copies, QString *error)
{
    QFile output;
    bool written = output.open(printer, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
    for (int copy = 0; written && copy < copies; ++copy)
        written = output.write(bytes) == bytes.size() && output.flush();
    if (!written)
        *error = QStringLiteral("cannot write to the printer: %1").arg(output.errorString());
    return written;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 6 || argc > 7) {
        std::fprintf(stderr, "Usage: %s job-id user title copies options [file]\n", argv[0]);
        return 1;
    }
    // A backend that goes away in the middle of a job is a failed write, reported to the
    // scheduler, not a filter killed without a word.
    OutputFile::reportClosedPipesAsWriteErrors();
    const int printer = takePrinterChannel();
    if (printer < 0)
        return fail(QStringLiteral("cannot set the printer's output channel aside"));
    QCoreApplication application(argc, argv);
    const FilterJob job = filterJob(argc, argv);

    JobConfiguration configuration;
    QString error;
    if (!loadConfiguration(&configuration, &error))
        return fail(error);
    EscPosSettings settings = configuration.settings();
    applyQueueOptions(job.options, &settings);
    QBuffer rendered;
    if (!renderWholeJob(job, configuration, settings, &rendered, &error))
        return fail(error);
    if (!sendToPrinter(printer, rendered.data(), job.copies, &error))
        return fail(error);
    std::fprintf(stderr, "PAGE: 1 %d\n", job.copies);
    return 0;
}
