// bristeltoescpos: the CUPS filter that turns a bristel job (application/vnd.bristel+xml) into
// the bytes of an ESC/POS receipt printer (application/vnd.cups-raw).
//
//   bristeltoescpos job-id user title copies options [file]
//
// The scheduler runs it with the job on standard input (or in the file named last) and sends
// standard output to the printer.  Standard error is the scheduler's: every line begins with
// ERROR:, WARNING:, INFO:, DEBUG: or PAGE: and lands in the job's state and the error log.

#include "app/JobConfiguration.h"
#include "app/RenderJob.h"
#include "backend/EscPosSettings.h"
#include "config/BRConfiguration.h"
#include "config/OutputFile.h"
#include "cups/ConfigurationFileCheck.h"
#include "cups/QueueOptions.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
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
    const QString job =
        QStringLiteral("job %1 (%2)").arg(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[3]));

    // A file the scheduler names (SetEnv BRISTEL_CONFIG in cups-files.conf) must be there; the
    // system-wide file may be missing, and then every setting has its default.  Either file,
    // when it is there, must be readable: printing with defaults instead of the settings the
    // administrator wrote would put the wrong code page, width and cut on every ticket.
    const QByteArray named = qgetenv("BRISTEL_CONFIG");
    const QString configName =
        named.isEmpty() ? QString::fromLatin1(systemConfiguration) : QString::fromLocal8Bit(named);
    const QString source = named.isEmpty() ? QString() : QStringLiteral(" (BRISTEL_CONFIG)");
    const ConfigurationFileCheck check(configName);
    if (check.state() == ConfigurationFileCheck::State::Unreadable)
        return fail(QStringLiteral("%1%2: cannot read the configuration file: %3")
                        .arg(configName, source, check.reason()));
    if (check.state() == ConfigurationFileCheck::State::Missing && !named.isEmpty())
        return fail(QStringLiteral("%1%2: the configuration file does not exist").arg(configName, source));
    JobConfiguration configuration;
    QString error;
    if (!configuration.load(configName, JobConfiguration::Missing::MeansDefaults, &error))
        return fail(error + source);
    if (configuration.fileName().isEmpty())
        say("INFO", QStringLiteral("%1 not found, every setting has its default").arg(configName));
    for (const QString &problem : configuration.problems())
        say("WARNING", problem);
    EscPosSettings settings = configuration.settings();

    // The queue's options over the file: a value that cannot be used leaves the file's (and
    // the job still prints: a kitchen ticket in the wrong code page beats a lost order).
    QueueOptions queueOptions;
    const QByteArray ppd = qgetenv("PPD");
    if (!ppd.isEmpty() && !queueOptions.addPpdDefaults(QString::fromLocal8Bit(ppd)))
        say("WARNING",
            QStringLiteral("%1: cannot read the queue's PPD file").arg(QString::fromLocal8Bit(ppd)));
    queueOptions.addJobOptions(argv[5]);
    for (const QString &problem : queueOptions.applyTo(settings))
        say("WARNING", problem);

    QFile input;
    const bool inputOpened =
        argc == 7 ? (input.setFileName(QString::fromLocal8Bit(argv[6])), input.open(QIODevice::ReadOnly))
                  : input.open(stdin, QIODevice::ReadOnly);
    if (!inputOpened)
        return fail(QStringLiteral("%1: cannot read the job: %2").arg(job, input.errorString()));

    // The whole job is rendered before a byte leaves: a ticket cut off in the middle by a
    // fault in the document would look like a whole order in the kitchen.
    QBuffer rendered;
    rendered.open(QIODevice::WriteOnly);
    const RenderResult result =
        renderJob(&input, &rendered, RenderFormat::EscPos, configuration.configuration(), settings);
    for (const QString &warning : result.warnings.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        say("WARNING", warning);
    switch (result.status) {
    case RenderResult::Status::Ok:
        break;
    case RenderResult::Status::MalformedDocument:
    case RenderResult::Status::UnknownMethod:
    case RenderResult::Status::InvalidCode:
        // One pass over the pattern: a title holding "%2" stays as it is.
        return fail(
            QStringLiteral("%1: not printed: line %2, column %3: %4")
                .arg(job, QString::number(result.line), QString::number(result.column), result.message));
    case RenderResult::Status::WriteFailed:
        return fail(QStringLiteral("%1: %2").arg(job, result.message));
    }

    // Copies are the filter's business: the backend sends its input once.
    const int copies = std::max(1, std::atoi(argv[4]));
    QFile output;
    if (!output.open(printer, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle))
        return fail(QStringLiteral("cannot write to the printer: %1").arg(output.errorString()));
    for (int copy = 0; copy < copies; ++copy) {
        if (output.write(rendered.data()) != rendered.data().size() || !output.flush())
            return fail(QStringLiteral("cannot write to the printer: %1").arg(output.errorString()));
    }
    std::fprintf(stderr, "PAGE: 1 %d\n", copies);
    return 0;
}
