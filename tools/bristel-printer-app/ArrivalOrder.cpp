#include "ArrivalOrder.h"

#include "ArrivalOrderState.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <optional>

namespace {

// While a job's document is still coming, it is looked at again after this, then after twice
// as long, up to the longest pause: a receipt is in within a fraction of a millisecond, and a
// client that never sends its document costs a few looks a second.
constexpr std::chrono::microseconds FirstDocumentLook{250};
constexpr std::chrono::microseconds LongestDocumentPause{20000};
// How long a job let go before its document was in waits for it, and how often it looks.
constexpr std::chrono::milliseconds LongestDocumentWait{60000};
constexpr std::chrono::milliseconds DocumentWaitStep{1};

// The moment a pause from now ends (none for no pause), or the other one if that comes first.
std::optional<std::chrono::steady_clock::time_point>
earliestOf(std::chrono::microseconds pause, std::optional<std::chrono::steady_clock::time_point> other)
{
    if (pause.count() <= 0)
        return other;
    const auto afterPause = std::chrono::steady_clock::now() + pause;
    return other && *other < afterPause ? other : afterPause;
}

} // namespace

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
            // The printer goes on holding new jobs for a moment after its job ends.
            state->lastBusy[printerId] = std::chrono::steady_clock::now();
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
    // When to look again without an event; none while nothing waits for time to pass.
    std::optional<std::chrono::steady_clock::time_point> nextLook;
    std::unique_lock<std::mutex> guard(state.lock);
    for (;;) {
        const auto awake = [&state] { return state.wakeRequested || state.stopping; };
        if (nextLook)
            state.woken.wait_until(guard, *nextLook, awake);
        else
            state.woken.wait(guard, awake);
        if (state.stopping)
            return;
        const bool woken = state.wakeRequested;
        state.wakeRequested = false;
        if (state.systemGone) {
            nextLook.reset();
            continue;
        }
        state.holdEnds.reset();
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
        nextLook = earliestOf(pause, state.holdEnds);
    }
}

void ArrivalOrder::printerCreated(pappl_printer_t *printer)
{
    {
        const std::lock_guard<std::mutex> guard(m_state->lock);
        m_state->lastBusy[papplPrinterGetID(printer)] = std::chrono::steady_clock::now();
    }
    State::setHoldingNewJobs(printer, true);
}

void ArrivalOrder::jobsComingBack(pappl_printer_t *printer)
{
    const std::lock_guard<std::mutex> guard(m_state->lock);
    m_state->printersAwaitingJobs.insert(papplPrinterGetID(printer));
}

void ArrivalOrder::jobCameBack(pappl_job_t *job)
{
    const std::lock_guard<std::mutex> guard(m_state->lock);
    m_state->putBackJobs[papplPrinterGetID(papplJobGetPrinter(job))].insert(papplJobGetID(job));
}

void ArrivalOrder::jobsAllBack()
{
    {
        const std::lock_guard<std::mutex> guard(m_state->lock);
        m_state->printersAwaitingJobs.clear();
    }
    m_state->wake();
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
    *busy = !turn.owns_lock() || m_state->printerBusy(printer, printerId);
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
    return State::changesHoldOnThisThread();
}

void ArrivalOrder::eventHappened()
{
    // libpappl reports its events with its own locks held: only a word to the letting thread.
    m_state->wake();
}
