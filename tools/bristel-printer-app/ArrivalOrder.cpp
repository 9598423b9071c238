#include "ArrivalOrder.h"

#include "Application.h"
#include "StatusPolling.h"

#include <QMutexLocker>
#include <QString>

#include <optional>
#include <vector>

namespace {

// A job of a printer's list, as it was when the list was read.
struct ActiveJob
{
    pappl_job_t *job;
    int id;
    ipp_jstate_t state;
};

extern "C" void collectActiveJob(pappl_job_t *job, void *data);

std::vector<ActiveJob> activeJobs(pappl_printer_t *printer)
{
    std::vector<ActiveJob> jobs;
    papplPrinterIterateActiveJobs(printer, collectActiveJob, &jobs, 1, 0);
    return jobs;
}

} // namespace

void holdBackWaitingJobs(Application &application, pappl_printer_t *printer, int printingId)
{
    const std::vector<ActiveJob> jobs = activeJobs(printer);
    QMutexLocker lock(&application.heldLock);
    PrinterQueue &queue = application.held.queue(printerName(printer));
    for (const ActiveJob &active : jobs) {
        QString refusal;
        if (active.id == printingId || active.state != IPP_JSTATE_PENDING || !queue.canAccept(&refusal))
            continue;
        if (papplJobHold(active.job, nullptr, "indefinite", 0) && !queue.add({active.id, false}, &refusal))
            papplJobRelease(active.job, nullptr);
    }
}

void releaseOldestHeldJob(Application &application, pappl_printer_t *printer)
{
    const std::vector<ActiveJob> jobs = activeJobs(printer);
    QMutexLocker lock(&application.heldLock);
    PrinterQueue &queue = application.held.queue(printerName(printer));
    while (const std::optional<PrinterQueue::Job> next = queue.takeNext()) {
        queue.finishPrinting();
        for (const ActiveJob &active : jobs) {
            // A job canceled while it was held back is no longer in the list: the next one.
            if (active.id == next->sequence && active.state == IPP_JSTATE_HELD) {
                papplJobRelease(active.job, nullptr);
                return;
            }
        }
    }
}

// While a printer prints nothing and no job waits for libpappl, the oldest job held back
// goes: a job whose end was not seen (a raster job that failed to start) holds none back.
void releaseHeldJobsOfIdlePrinter(Application &application, pappl_printer_t *printer)
{
    for (const ActiveJob &active : activeJobs(printer)) {
        if (active.state != IPP_JSTATE_HELD)
            return;
    }
    releaseOldestHeldJob(application, printer);
}

ArrivalOrder::ArrivalOrder(pappl_job_t *job) : m_printer(papplJobGetPrinter(job)), m_id(papplJobGetID(job))
{
    holdBackWaitingJobs(theApplication(), m_printer, m_id);
}

ArrivalOrder::~ArrivalOrder()
{
    holdBackWaitingJobs(theApplication(), m_printer, m_id);
    releaseOldestHeldJob(theApplication(), m_printer);
}

extern "C" void collectActiveJob(pappl_job_t *job, void *data)
{
    static_cast<std::vector<ActiveJob> *>(data)->push_back({job, papplJobGetID(job), papplJobGetState(job)});
}
