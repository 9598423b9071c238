#include "ArrivalOrderState.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <vector>

namespace {

// Set while this thread changes whether a printer holds its new jobs: libpappl reports that
// change to the event callback with the printer still locked, where the state must not be saved.
thread_local bool changingHold = false;

// How long a printer goes on holding new jobs once it has nothing to do.
constexpr std::chrono::seconds HoldAfterBusy{2};

// A job of a printer's list, as it was when the list was read.
struct ActiveJob
{
    pappl_job_t *job;
    int id;
    ipp_jstate_t state;
    bool documentIn;
    bool heldByClient;
    bool rasterStream;
};

// libpappl prints a PWG or Apple raster job as it arrives, on the connection that brings it,
// and only on a printer that neither prints nor holds new jobs.
bool isRasterStream(const char *format)
{
    return format && (std::strcmp(format, "image/pwg-raster") == 0 || std::strcmp(format, "image/urf") == 0);
}

// Whether a printer has queued work: a raster page printing as it arrives is none.
bool anyQueuedJob(const std::vector<ActiveJob> &jobs)
{
    for (const ActiveJob &active : jobs) {
        if (!active.rasterStream)
            return true;
    }
    return false;
}

extern "C" void collectActiveJob(pappl_job_t *job, void *data);

std::vector<ActiveJob> activeJobs(pappl_printer_t *printer)
{
    std::vector<ActiveJob> jobs;
    papplPrinterIterateActiveJobs(printer, collectActiveJob, &jobs, 1, 0);
    return jobs;
}

// Whether a job of the list has been let go and not yet finished by libpappl.
bool anyJobReleased(const std::vector<ActiveJob> &jobs)
{
    for (const ActiveJob &active : jobs) {
        if (active.state == IPP_JSTATE_PENDING || active.state == IPP_JSTATE_PROCESSING ||
            active.state == IPP_JSTATE_STOPPED)
            return true;
    }
    return false;
}

// Whether a job goes before another: the jobs put back from the spool folder come first,
// whatever numbers they got, then the oldest.
bool goesBefore(const ActiveJob &job, const ActiveJob &other, const std::set<int> &putBack)
{
    const bool jobPutBack = putBack.count(job.id) != 0;
    const bool otherPutBack = putBack.count(other.id) != 0;
    if (jobPutBack != otherPutBack)
        return jobPutBack;
    return job.id < other.id;
}

// The held job to go next whose document is in and that no client asked to hold.
const ActiveJob *nextWaiting(const std::vector<ActiveJob> &jobs, const std::set<int> &putBack)
{
    const ActiveJob *next = nullptr;
    for (const ActiveJob &active : jobs) {
        if (active.state == IPP_JSTATE_HELD && active.documentIn && !active.heldByClient &&
            (!next || goesBefore(active, *next, putBack)))
            next = &active;
    }
    return next;
}

// Keeps of the jobs put back those the printer still has: a job cancelled meanwhile is gone.
void keepActive(std::set<int> &putBack, const std::vector<ActiveJob> &jobs)
{
    std::set<int> active;
    for (const ActiveJob &job : jobs) {
        if (putBack.count(job.id) != 0)
            active.insert(job.id);
    }
    putBack.swap(active);
}

bool anyDocumentComing(const std::vector<ActiveJob> &jobs)
{
    for (const ActiveJob &active : jobs) {
        if (active.state == IPP_JSTATE_HELD && !active.documentIn)
            return true;
    }
    return false;
}

} // namespace

void ArrivalOrder::State::wake()
{
    {
        const std::lock_guard<std::mutex> guard(lock);
        wakeRequested = true;
    }
    woken.notify_one();
}

int ArrivalOrder::State::jobThreadsOf(int printerId)
{
    const std::lock_guard<std::mutex> guard(lock);
    const auto found = jobThreads.find(printerId);
    return found == jobThreads.end() ? 0 : found->second;
}

std::mutex &ArrivalOrder::State::printerTurn(int printerId)
{
    const std::lock_guard<std::mutex> guard(lock);
    std::unique_ptr<std::mutex> &turn = printerTurns[printerId];
    if (!turn)
        turn = std::make_unique<std::mutex>();
    return *turn;
}

void ArrivalOrder::State::holdNewJobsWhileBusy(pappl_printer_t *printer, int printerId, bool busy)
{
    const auto now = std::chrono::steady_clock::now();
    const bool holding = papplPrinterIsHoldingNewJobs(printer);
    std::unique_lock<std::mutex> guard(lock);
    if (busy) {
        lastBusy[printerId] = now;
        guard.unlock();
        if (!holding)
            setHoldingNewJobs(printer, true);
        return;
    }
    const auto found = lastBusy.find(printerId);
    const bool idleLongEnough = found == lastBusy.end() || now - found->second >= HoldAfterBusy;
    // Left to the next event, the hold would last until the idle printers are next asked how
    // they are, up to five seconds more, and a raster client would hear "busy" meanwhile.
    if (holding && !idleLongEnough) {
        const auto end = found->second + HoldAfterBusy;
        holdEnds = holdEnds ? std::min(*holdEnds, end) : end;
    }
    guard.unlock();
    if (holding && idleLongEnough)
        setHoldingNewJobs(printer, false);
}

bool ArrivalOrder::State::letOldestGo(pappl_printer_t *printer)
{
    const int printerId = papplPrinterGetID(printer);
    std::unique_lock<std::mutex> turn(printerTurn(printerId), std::try_to_lock);
    if (!turn.owns_lock())
        return true; // its device is borrowed: looked at again when it is back
    const std::vector<ActiveJob> jobs = activeJobs(printer);
    const bool threadRuns = jobThreadsOf(printerId) > 0;
    const bool jobsComingBack = jobsComingBackTo(printerId);
    holdNewJobsWhileBusy(printer, printerId, jobsComingBack || anyQueuedJob(jobs) || threadRuns);
    if (jobsComingBack || anyJobReleased(jobs) || threadRuns)
        return false;
    std::set<int> putBack = takeJobsPutBack(printerId);
    keepActive(putBack, jobs);
    if (const ActiveJob *next = nextWaiting(jobs, putBack)) {
        papplJobRelease(next->job, nullptr);
        putBack.erase(next->id);
    }
    if (!putBack.empty())
        keepJobsPutBack(printerId, std::move(putBack));
    return anyDocumentComing(jobs);
}

bool ArrivalOrder::State::jobsComingBackTo(int printerId)
{
    const std::lock_guard<std::mutex> guard(lock);
    return printersAwaitingJobs.count(printerId) != 0;
}

std::set<int> ArrivalOrder::State::takeJobsPutBack(int printerId)
{
    const std::lock_guard<std::mutex> guard(lock);
    const auto found = putBackJobs.find(printerId);
    if (found == putBackJobs.end())
        return {};
    std::set<int> jobs = std::move(found->second);
    putBackJobs.erase(found);
    return jobs;
}

void ArrivalOrder::State::keepJobsPutBack(int printerId, std::set<int> jobs)
{
    const std::lock_guard<std::mutex> guard(lock);
    std::set<int> &kept = putBackJobs[printerId];
    kept.insert(jobs.begin(), jobs.end());
}

bool ArrivalOrder::State::printerBusy(pappl_printer_t *printer, int printerId)
{
    return anyJobReleased(activeJobs(printer)) || jobThreadsOf(printerId) > 0;
}

void ArrivalOrder::State::setHoldingNewJobs(pappl_printer_t *printer, bool hold)
{
    changingHold = true;
    if (hold)
        papplPrinterHoldNewJobs(printer);
    else
        papplPrinterReleaseHeldNewJobs(printer, nullptr);
    changingHold = false;
}

bool ArrivalOrder::State::changesHoldOnThisThread()
{
    return changingHold;
}

namespace {

extern "C" void collectActiveJob(pappl_job_t *job, void *data)
{
    const bool heldByClient = (papplJobGetReasons(job) & PAPPL_JREASON_JOB_HOLD_UNTIL_SPECIFIED) != 0;
    static_cast<std::vector<ActiveJob> *>(data)->push_back({job, papplJobGetID(job), papplJobGetState(job),
                                                            papplJobGetFilename(job) != nullptr, heldByClient,
                                                            isRasterStream(papplJobGetFormat(job))});
}

} // namespace
