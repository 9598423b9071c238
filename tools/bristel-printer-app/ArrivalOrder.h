#ifndef BRISTEL_PRINTERAPP_ARRIVALORDER_H
#define BRISTEL_PRINTERAPP_ARRIVALORDER_H

#include <QtGlobal>

#include <pappl/pappl.h>

#include <memory>
#include <mutex>
#include <thread>

// Lets each printer's jobs print one at a time, in the order they arrived, each exactly once.
//
// Left to itself libpappl starts the newest job waiting when a printer is free, and it may
// start one job twice: whoever looks for work (a job ending, a document arriving, a device
// closing) starts a thread for the first waiting job, and the job counts as started only
// once that thread runs, so two looks close together start two threads for it. So a busy
// printer holds the jobs that arrive, and one thread of ours lets them go: the oldest job
// whose document is in, and only while no job of that printer waits to start, prints, or is
// still winding its thread up; nothing else of ours makes libpappl look for work meanwhile.
// A job a client asked to hold (job-hold-until) stays held until released by hand.
//
// libpappl prints a PWG or Apple raster page as it arrives, and takes one only while the
// printer neither prints nor holds new jobs: a printer stops holding them two seconds after
// its last job has ended. Jobs that reach such a printer at the same instant are left to
// libpappl as they were before.
class ArrivalOrder
{
public:
    ArrivalOrder();
    ~ArrivalOrder();
    Q_DISABLE_COPY_MOVE(ArrivalOrder)

    // Starts letting the jobs of the system's printers go. The system must stay until this
    // object goes, or until libpappl shuts it down.
    void attach(pappl_system_t *system);
    // Stops letting jobs go, once the thread doing it has ended: before libpappl deletes the
    // system it walks through.
    void stop();

    // A printer just made holds its new jobs from the start, as one that has just been busy.
    void printerCreated(pappl_printer_t *printer);
    // The jobs left in the spool folder when the server last stopped: each printer that had
    // some lets none of its jobs go from the start until jobsAllBack(), and then the jobs put
    // back (jobCameBack) first, in the order they came back, then the others.
    void jobsComingBack(pappl_printer_t *printer);
    void jobCameBack(pappl_job_t *job);
    void jobsAllBack();
    // Looks at every printer's jobs again: a printer idle long enough stops holding new jobs.
    void lookAgain();
    // For libpappl's event callback: every event (a document in, a job ended) may let a job go.
    void eventHappened();
    // Whether the calling thread is changing a printer's holding of new jobs, which libpappl
    // reports as an event while it keeps the printer locked.
    static bool changesHoldOnThisThread();

    // The calling thread prints this job: until the thread has ended, no other job of its
    // printer is let go. Returns once the job's document is in.
    void jobThreadStarted(pappl_job_t *job);

    // The printer's device, for a question to a printer that prints nothing. Empty when it
    // cannot be opened, and with *busy set while a job of the printer is about to start or
    // runs (closing the device then would make libpappl look for work a second time) or
    // someone else is asking the printer. The printer's jobs wait while its device is borrowed.
    class IdleDevice;
    std::unique_ptr<IdleDevice> borrowIdleDevice(pappl_printer_t *printer, bool *busy);

    struct State;

private:
    void letJobsGo(pappl_system_t *system);
    static void waitForDocument(pappl_job_t *job);

    std::shared_ptr<State> m_state;
    std::thread m_thread;
};

// A printer's device opened for a question while no job of the printer runs; closed and the
// printer's jobs free to go again when it goes.
class ArrivalOrder::IdleDevice
{
public:
    IdleDevice(std::shared_ptr<State> state, std::unique_lock<std::mutex> turn, pappl_printer_t *printer,
               pappl_device_t *device);
    ~IdleDevice();
    Q_DISABLE_COPY_MOVE(IdleDevice)

    pappl_device_t *device() const { return m_device; }

private:
    std::shared_ptr<State> m_state;
    std::unique_lock<std::mutex> m_turn;
    pappl_printer_t *m_printer;
    pappl_device_t *m_device;
};

#endif
