#include "printerapp/PrintedJobs.h"

#include <QMutexLocker>

#include <algorithm>

const PrintedJobs::Job *PrintedJobs::find(int printer, int jobId) const
{
    const auto jobs = m_printers.find(printer);
    if (jobs == m_printers.end())
        return nullptr;
    const auto job = std::find_if(jobs->second.begin(), jobs->second.end(),
                                  [jobId](const Job &job) { return job.id == jobId; });
    return job == jobs->second.end() ? nullptr : &*job;
}

PrintedJobs::Job *PrintedJobs::find(int printer, int jobId)
{
    return const_cast<Job *>(std::as_const(*this).find(printer, jobId));
}

PrintedJobs::Job &PrintedJobs::jobToAddTo(int printer, int jobId)
{
    if (Job *job = find(printer, jobId))
        return *job;
    Jobs &jobs = m_printers[printer];
    jobs.push_back(Job{jobId, false, {}, {}});
    while (int(jobs.size()) > std::max(m_limits.jobsPerPrinter, 1))
        jobs.pop_front();
    return jobs.back();
}

void PrintedJobs::add(int printer, int jobId, const QByteArray &bytes)
{
    QMutexLocker lock(&m_lock);
    Job &job = jobToAddTo(printer, jobId);
    if (job.tooLarge)
        return;
    // A picture of part of the job would show paper that did not come out that way.
    if (job.bytes.size() + bytes.size() > m_limits.bytesPerJob) {
        job = Job{jobId, true, {}, {}};
        return;
    }
    job.bytes += bytes;
    job.picture.clear();
}

PrintedJobs::Kept PrintedJobs::kept(int printer, int jobId) const
{
    QMutexLocker lock(&m_lock);
    const Job *job = find(printer, jobId);
    if (!job)
        return Kept::Nothing;
    if (job->tooLarge)
        return Kept::TooLarge;
    return job->bytes.isEmpty() ? Kept::Nothing : Kept::Bytes;
}

QByteArray PrintedJobs::bytes(int printer, int jobId) const
{
    QMutexLocker lock(&m_lock);
    const Job *job = find(printer, jobId);
    return job && !job->bytes.isEmpty() ? job->bytes : QByteArray();
}

QByteArray PrintedJobs::picture(int printer, int jobId, const Drawer &draw)
{
    QByteArray bytes;
    {
        QMutexLocker lock(&m_lock);
        const Job *job = find(printer, jobId);
        if (!job || job->bytes.isEmpty())
            return {};
        if (!job->picture.isNull())
            return job->picture;
        bytes = job->bytes; // shared, not copied: the job may go while its picture is drawn
    }
    const QByteArray picture = draw(bytes);
    if (picture.isNull() || picture.size() > m_limits.bytesPerPicture)
        return picture;
    QMutexLocker lock(&m_lock);
    // Kept only for the bytes it was drawn from: a raster job may have sent another page.
    Job *job = find(printer, jobId);
    if (job && job->bytes == bytes)
        job->picture = picture;
    return picture;
}

void PrintedJobs::forget(int printer)
{
    QMutexLocker lock(&m_lock);
    m_printers.erase(printer);
}
