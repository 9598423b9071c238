#include "printerapp/PrinterQueue.h"

#include <algorithm>

PrinterQueue::PrinterQueue(QString printer, int limit)
    : m_printer(std::move(printer)), m_limit(qMax(1, limit))
{
}

bool PrinterQueue::canAccept(QString *refusal) const
{
    if (size() < m_limit)
        return true;
    *refusal = QStringLiteral("Printer %1 has %2 jobs waiting; it takes no more until some have printed.")
                   .arg(m_printer)
                   .arg(size());
    return false;
}

bool PrinterQueue::add(const Job &job, QString *refusal)
{
    if (!canAccept(refusal))
        return false;
    // Jobs put back after a restart come in order, new ones at the end; a job older than
    // the one printing still goes after it, since that one is already on its way.
    const auto first = m_headPrinting ? std::next(m_jobs.begin()) : m_jobs.begin();
    const auto place = std::upper_bound(first, m_jobs.end(), job,
                                        [](const Job &a, const Job &b) { return a.sequence < b.sequence; });
    m_jobs.insert(place, job);
    return true;
}

std::optional<PrinterQueue::Job> PrinterQueue::takeNext()
{
    if (m_headPrinting || m_jobs.isEmpty())
        return std::nullopt;
    m_headPrinting = true;
    return m_jobs.constFirst();
}

std::optional<PrinterQueue::Job> PrinterQueue::printing() const
{
    if (!m_headPrinting)
        return std::nullopt;
    return m_jobs.constFirst();
}

void PrinterQueue::finishPrinting()
{
    if (!m_headPrinting)
        return;
    m_jobs.removeFirst();
    m_headPrinting = false;
}

void PrinterQueue::returnPrinting()
{
    if (!m_headPrinting)
        return;
    // Part of it may be on the paper already.
    m_jobs.first().reprint = true;
    m_headPrinting = false;
}
