#ifndef BRISTEL_PRINTERAPP_PRINTERQUEUE_H
#define BRISTEL_PRINTERAPP_PRINTERQUEUE_H

#include <QList>
#include <QString>

#include <optional>

// The jobs of one printer that have not printed yet, in arrival order. One job at a time is
// handed out to print; it stays at the head of the queue until it is finished, and goes back
// to waiting there when its printing fails (the printer ran out of paper, went off), so a
// ticket never overtakes an older one. A queue holds at most limit() jobs, the one printing
// included: a printer that stays off must not fill the disk.
class PrinterQueue
{
public:
    static constexpr int DefaultLimit = 1000;

    struct Job
    {
        qint64 sequence = 0; // arrival order: the job's number on its printer
        bool reprint = false;
    };

    explicit PrinterQueue(QString printer, int limit = DefaultLimit);

    QString printer() const { return m_printer; }
    int limit() const { return m_limit; }
    int size() const { return static_cast<int>(m_jobs.size()); }
    bool isEmpty() const { return m_jobs.isEmpty(); }

    // Whether one more job fits; when it does not, *refusal says so in words for the submitter.
    bool canAccept(QString *refusal) const;
    // Adds a job in its arrival place; false (with *refusal set) when the queue is full.
    [[nodiscard]] bool add(const Job &job, QString *refusal);

    // The oldest job, when none is printing; std::nullopt while one is out or none waits.
    std::optional<Job> takeNext();
    std::optional<Job> printing() const;
    // The job handed out has printed: it leaves the queue.
    void finishPrinting();
    // The job handed out could not print: it waits again at the head, marked as a reprint.
    void returnPrinting();

private:
    QString m_printer;
    int m_limit;
    QList<Job> m_jobs; // sorted by sequence
    bool m_headPrinting = false;
};

#endif
