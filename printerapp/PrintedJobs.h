#ifndef BRISTEL_PRINTERAPP_PRINTEDJOBS_H
#define BRISTEL_PRINTERAPP_PRINTEDJOBS_H

#include <QByteArray>
#include <QMutex>

#include <deque>
#include <functional>
#include <map>

// The bytes each printer was sent for its last jobs, so that the printer's page shows a
// picture of what came out of it. Memory stays bounded: a printer keeps its last few jobs
// only, and a job grown past a limit (a photograph sent as raster, a runaway stream) keeps
// none of its bytes, only the fact that it was too large. A job's picture is drawn when first
// asked for and kept beside its bytes while it is small. Jobs print on the server's threads
// while the pages are served on others, so every member locks; a picture is drawn outside
// the lock.
class PrintedJobs
{
public:
    struct Limits
    {
        int jobsPerPrinter = 10;
        qsizetype bytesPerJob = 2 * 1024 * 1024; // 2 m of raster on 80 mm paper is about 1.2 MB
        qsizetype bytesPerPicture = 1024 * 1024; // larger pictures are drawn again each time
    };
    enum class Kept
    {
        Nothing,  // not a job of the last few, or it sent no bytes yet
        TooLarge, // its bytes outgrew the limit and were let go
        Bytes,
    };
    // Draws a job's picture from its bytes; a null array when it cannot.
    using Drawer = std::function<QByteArray(const QByteArray &bytes)>;

    PrintedJobs() = default;
    explicit PrintedJobs(const Limits &limits) : m_limits(limits) {}
    Q_DISABLE_COPY_MOVE(PrintedJobs)

    // Adds what a job sent its printer: a raster job sends a page at a time. A new job makes
    // the printer's oldest one go once there are more than the limit.
    void add(int printer, int jobId, const QByteArray &bytes);
    Kept kept(int printer, int jobId) const;
    // The bytes of a job, or a null array when they are not kept.
    QByteArray bytes(int printer, int jobId) const;
    // The job's picture: drawn by draw on the first call, the same bytes again afterwards. A
    // null array when the job's bytes are not kept or draw fails.
    QByteArray picture(int printer, int jobId, const Drawer &draw);
    // A deleted printer's jobs. Printers are told apart by their ids, never used again: a new
    // printer of a deleted one's name numbers its jobs from 1 again, and must not show the old
    // printer's pictures.
    void forget(int printer);

private:
    struct Job
    {
        int id = 0;
        bool tooLarge = false;
        QByteArray bytes;
        QByteArray picture;
    };
    using Jobs = std::deque<Job>;

    const Job *find(int printer, int jobId) const;
    Job *find(int printer, int jobId);
    Job &jobToAddTo(int printer, int jobId);

    const Limits m_limits;
    mutable QMutex m_lock;
    std::map<int, Jobs> m_printers; // by printer id
};

#endif
