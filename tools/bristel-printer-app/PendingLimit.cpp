#include "PendingLimit.h"

#include "Application.h"
#include "StatusPolling.h"

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QStringList>

namespace {

// The limit, and the jobs each printer holds that have not ended. Events come while libpappl
// holds the printer's lock, so the count is kept here instead of asked of libpappl.
struct PendingJobs
{
    int limit = DefaultMaxPendingJobs;
    Application *application = nullptr;
    QMutex lock;
    bool counting = false;
    QHash<const pappl_printer_t *, int> counts;
};

PendingJobs &pendingJobs()
{
    static PendingJobs jobs;
    return jobs;
}

// Why the printer's jobs wait: what it last said of itself.
QByteArray reasonOfWaiting(pappl_printer_t *printer)
{
    const std::optional<PrinterStatus> status =
        pendingJobs().application->board.status(QString::fromUtf8(papplPrinterGetName(printer)));
    if (!status || status->canPrint())
        return QByteArrayLiteral("the printer prints them one after the other");
    return status->operatorMessages().join(QStringLiteral(", ")).toUtf8();
}

// libpappl answers a job beyond the limit with words of its own that name neither the
// printer nor the cause: the log says both once the printer is full. The answer cannot be
// ours: libpappl 1.3.1 hands an application's operation callback only the operations it does
// not handle itself, never Print-Job or Create-Job, and its authentication callback answers
// with an HTTP status alone.
void sayFull(pappl_printer_t *printer, int limit)
{
    papplLogPrinter(printer, PAPPL_LOGLEVEL_WARN,
                    "%s has %d jobs waiting: %s. New jobs are refused until one ends.",
                    papplPrinterGetName(printer), limit, reasonOfWaiting(printer).constData());
}

} // namespace

void setPendingLimit(int limit, Application &application)
{
    pendingJobs().limit = limit;
    pendingJobs().application = &application;
}

void startCountingJobs()
{
    QMutexLocker lock(&pendingJobs().lock);
    pendingJobs().counting = true;
}

extern "C" void limitPendingJobs(pappl_printer_t *printer, void *)
{
    papplPrinterSetMaxActiveJobs(printer, pendingJobs().limit);
}

extern "C" void countPendingJobs(pappl_system_t *, pappl_printer_t *printer, pappl_job_t *job,
                                 pappl_event_t event, void *)
{
    if (!printer)
        return;
    PendingJobs &jobs = pendingJobs();
    QMutexLocker lock(&jobs.lock);
    if (event & PAPPL_EVENT_PRINTER_DELETED) {
        jobs.counts.remove(printer);
        return;
    }
    if (!job || !jobs.counting)
        return;
    int &count = jobs.counts[printer];
    if (event & PAPPL_EVENT_JOB_CREATED) {
        if (++count == jobs.limit)
            sayFull(printer, jobs.limit);
    } else if (event & PAPPL_EVENT_JOB_COMPLETED) {
        count = qMax(0, count - 1);
    }
}
