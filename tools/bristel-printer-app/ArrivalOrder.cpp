#include "ArrivalOrder.h"

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <map>
#include <vector>

namespace {

// Set while this thread changes whether a printer holds its new jobs: libpappl reports that
// change to the event callback with the printer still locked, where the state must not be saved.
thread_local bool changingHold = false;

void setHoldingNewJobs(pappl_printer_t *printer, bool hold)
{
    changingHold = true;
    if (hold)
        papplPrinterHoldNewJobs(printer);
    else
        papplPrinterReleaseHeldNewJobs(printer, nullptr);
    changingHold = false;
}

// While a job's document is still coming, it is looked at again after this, then after twice
// as long, up to the longest pause: a receipt is in within a fraction of a millisecond, and a
// client that never sends its document costs a few looks a second.
constexpr std::chrono::microseconds FirstDocumentLook{250};
constexpr std::chrono::microseconds LongestDocumentPause{20000};
// How long a printer goes on holding new jobs once it has nothing to do.
constexpr std::chrono::seconds HoldAfterBusy{2};
// How long a job let go before its document was in waits for it, and how often it looks.
constexpr std::chrono::milliseconds LongestDocumentWait{60000};
constexpr std::chrono::milliseconds DocumentWaitStep{1};

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

// The oldest held job whose document is in and that no client asked to hold.
const ActiveJob *oldestWaiting(const std::vector<ActiveJob> &jobs)
{
    const ActiveJob *oldest = nullptr;
    for (const ActiveJob &active : jobs) {
        if (active.state == IPP_JSTATE_HELD && active.documentIn && !active.heldByClient &&
            (!oldest || active.id < oldest->id))
            oldest = &active;
    }
    return oldest;
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

// What the letting thread, the job threads and the device borrowers share; job threads may
// outlive the application object, so they hold it too.
struct ArrivalOrder::State
{
    std::mutex lock;
    std::condition_variable woken;
    bool wakeRequested = false;
    bool stopping = false;
    // Once libpappl shuts the system down it may delete it at any moment: not touched again.
    bool systemGone = false;
    bool seenRunning = false;
    std::map<int, int> jobThreads;                                 // by printer id
    std::map<int, std::unique_ptr<std::mutex>> printerTurns;       // by printer id
    std::map<int, std::chrono::steady_clock::time_point> lastBusy; // by printer id

    void wake()
    {
        {
            const std::lock_guard<std::mutex> guard(lock);
            wakeRequested = true;
        }
        woken.notify_one();
    }

    int jobThreadsOf(int printerId)
    {
        const std::lock_guard<std::mutex> guard(lock);
        const auto found = jobThreads.find(printerId);
        return found == jobThreads.end() ? 0 : found->second;
    }

    // Held while a job of the printer is let go, and while its device is borrowed.
    std::mutex &printerTurn(int printerId)
    {
        const std::lock_guard<std::mutex> guard(lock);
        std::unique_ptr<std::mutex> &turn = printerTurns[printerId];
        if (!turn)
            turn = std::make_unique<std::mutex>();
        return *turn;
    }

    // libpappl takes a PWG or Apple raster job only from a printer that neither prints nor
    // holds new jobs (it prints such a job as it arrives), so a printer that has had nothing
    // to do for a while stops holding them, and the first job that comes makes it hold them
    // again. The while keeps a printer holding through a busy spell, whose orders come
    // moments apart; with nothing to do, it has no held job for libpappl to let go.
    void holdNewJobsWhileBusy(pappl_printer_t *printer, int printerId, bool busy)
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
        guard.unlock();
        if (holding && idleLongEnough)
            setHoldingNewJobs(printer, false);
    }

    // Lets a printer's oldest waiting job go when nothing of the printer runs; true while one
    // of its documents is still coming in.
    bool letOldestGo(pappl_printer_t *printer)
    {
        const int printerId = papplPrinterGetID(printer);
        std::unique_lock<std::mutex> turn(printerTurn(printerId), std::try_to_lock);
        if (!turn.owns_lock())
            return true; // its device is borrowed: looked at again when it is back
        const std::vector<ActiveJob> jobs = activeJobs(printer);
        const bool threadRuns = jobThreadsOf(printerId) > 0;
        holdNewJobsWhileBusy(printer, printerId, anyQueuedJob(jobs) || threadRuns);
        if (anyJobReleased(jobs) || threadRuns)
            return false;
        if (const ActiveJob *next = oldestWaiting(jobs))
            papplJobRelease(next->job, nullptr);
        return anyDocumentComing(jobs);
    }
};

namespace {

// The thread-local mark of a job thread: the printer counts as busy until the thread ends.
struct JobThreadMark
{
    std::shared_ptr<ArrivalOrder::State> state;
    int printerId = 0;

    ~JobThreadMark()
    {
        if (!state)
            return;
        {
            const std::lock_guard<std::mutex> guard(state->lock);
            --state->jobThreads[printerId];
        }
        state->wake();
    }
};

thread_local JobThreadMark jobThreadMark;

struct LookAround
{
    ArrivalOrder::State *state;
    bool lookAgainSoon = false;
};

extern "C" void letOldestJobOfPrinterGo(pappl_printer_t *printer, void *data)
{
    auto *look = static_cast<LookAround *>(data);
    if (look->state->letOldestGo(printer))
        look->lookAgainSoon = true;
}

} // namespace

ArrivalOrder::ArrivalOrder() : m_state(std::make_shared<State>()) {}

ArrivalOrder::~ArrivalOrder()
{
    stop();
}

void ArrivalOrder::stop()
{
    {
        const std::lock_guard<std::mutex> guard(m_state->lock);
        m_state->stopping = true;
    }
    m_state->woken.notify_one();
    if (m_thread.joinable() && m_thread.get_id() != std::this_thread::get_id())
        m_thread.join();
}

void ArrivalOrder::attach(pappl_system_t *system)
{
    if (m_thread.joinable())
        return;
    m_thread = std::thread([this, system] { letJobsGo(system); });
}

void ArrivalOrder::letJobsGo(pappl_system_t *system)
{
    State &state = *m_state;
    // How long to wait for a document still coming in; zero while none is.
    std::chrono::microseconds pause{0};
    std::unique_lock<std::mutex> guard(state.lock);
    for (;;) {
        const auto awake = [&state] { return state.wakeRequested || state.stopping; };
        if (pause.count() > 0)
            state.woken.wait_for(guard, pause, awake);
        else
            state.woken.wait(guard, awake);
        if (state.stopping)
            return;
        const bool woken = state.wakeRequested;
        state.wakeRequested = false;
        if (state.systemGone)
            continue;
        guard.unlock();
        // libpappl calls a system that does not run yet shut down too. The commands other than
        // "server" make a system that never runs and is deleted at once: it is not touched
        // again, and its events, if any, find nothing to do.
        const bool running = papplSystemIsRunning(system) && !papplSystemIsShutdown(system);
        LookAround look{&state};
        if (running)
            papplSystemIteratePrinters(system, letOldestJobOfPrinterGo, &look);
        guard.lock();
        state.seenRunning = state.seenRunning || running;
        state.systemGone = state.seenRunning && !running;
        if (!look.lookAgainSoon)
            pause = std::chrono::microseconds{0};
        else if (woken || pause.count() == 0)
            pause = FirstDocumentLook;
        else
            pause = std::min(pause * 2, LongestDocumentPause);
    }
}

void ArrivalOrder::printerCreated(pappl_printer_t *printer)
{
    {
        const std::lock_guard<std::mutex> guard(m_state->lock);
        m_state->lastBusy[papplPrinterGetID(printer)] = std::chrono::steady_clock::now();
    }
    setHoldingNewJobs(printer, true);
}

void ArrivalOrder::lookAgain()
{
    m_state->wake();
}

void ArrivalOrder::jobThreadStarted(pappl_job_t *job)
{
    if (jobThreadMark.state)
        return;
    const int printerId = papplPrinterGetID(papplJobGetPrinter(job));
    {
        const std::lock_guard<std::mutex> guard(m_state->lock);
        ++m_state->jobThreads[printerId];
    }
    jobThreadMark.state = m_state;
    jobThreadMark.printerId = printerId;
    waitForDocument(job);
}

// libpappl lets every held job go as a printer stops holding new jobs, one whose document is
// still coming in too; the document is then in a moment later, and libpappl, seeing the job
// printing, does not start it again.
void ArrivalOrder::waitForDocument(pappl_job_t *job)
{
    for (auto waited = std::chrono::milliseconds{0};
         !papplJobGetFilename(job) && !papplJobIsCanceled(job) && waited < LongestDocumentWait;
         waited += DocumentWaitStep)
        std::this_thread::sleep_for(DocumentWaitStep);
}

std::unique_ptr<ArrivalOrder::IdleDevice> ArrivalOrder::borrowIdleDevice(pappl_printer_t *printer, bool *busy)
{
    const int printerId = papplPrinterGetID(printer);
    // Someone else asking the printer meanwhile tells as much.
    std::unique_lock<std::mutex> turn(m_state->printerTurn(printerId), std::try_to_lock);
    *busy = !turn.owns_lock() || anyJobReleased(activeJobs(printer)) || m_state->jobThreadsOf(printerId) > 0;
    if (*busy)
        return nullptr;
    pappl_device_t *device = papplPrinterOpenDevice(printer);
    if (!device)
        return nullptr;
    return std::make_unique<IdleDevice>(m_state, std::move(turn), printer, device);
}

ArrivalOrder::IdleDevice::IdleDevice(std::shared_ptr<State> state, std::unique_lock<std::mutex> turn,
                                     pappl_printer_t *printer, pappl_device_t *device)
    : m_state(std::move(state)), m_turn(std::move(turn)), m_printer(printer), m_device(device)
{
}

ArrivalOrder::IdleDevice::~IdleDevice()
{
    // No job of the printer was let go meanwhile, so libpappl's look for work as the device
    // closes finds none.
    papplPrinterCloseDevice(m_printer);
    m_turn.unlock();
    m_state->wake();
}

bool ArrivalOrder::changesHoldOnThisThread()
{
    return changingHold;
}

void ArrivalOrder::eventHappened()
{
    // libpappl reports its events with its own locks held: only a word to the letting thread.
    m_state->wake();
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
