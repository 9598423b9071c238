#ifndef BRISTEL_PRINTERAPP_PRINTERPAGE_H
#define BRISTEL_PRINTERAPP_PRINTERPAGE_H

#include "printerapp/PrintedJobs.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// The body of a printer's own page: how the printer is, in the operator's words, and its last
// jobs, each with the picture of the paper it printed. Every text on it is escaped: job names
// come from whoever prints, and a job named "<script>" shows as those eight characters.
class PrinterPage
{
public:
    struct Job
    {
        int id = 0;
        QString name;
        QString state;   // "pending", "processing", "completed", ...
        QString message; // why it waits, why it failed; may be empty
        QDateTime sent;
        PrintedJobs::Kept kept = PrintedJobs::Kept::Nothing;
    };

    // What an address asks for: the printer named in its query, and for a picture the job.
    struct Request
    {
        QString printer;
        std::optional<int> job;
    };

    explicit PrinterPage(const QString &printer) : m_printer(printer) {}

    // Where the pages of the printers and the pictures of their jobs are served: one address
    // each, the printer and the job in the query ("?name=kitchen&job=12").
    static QString pagePath() { return QStringLiteral("/bristel/printer"); }
    static QString picturePath() { return QStringLiteral("/bristel/printer/picture"); }
    static QString address(const QString &printer);
    static QString pictureAddress(const QString &printer, int jobId);
    static Request requestOf(const QString &query);

    // The words of the printer's status, most severe first; none when it was not asked yet.
    void setStatus(const QStringList &words) { m_status = words; }
    // Jobs show in the order they are added.
    void addJob(const Job &job) { m_jobs.append(job); }

    QString html() const;

private:
    QString statusHtml() const;
    QString jobRowHtml(const Job &job) const;
    QString pictureHtml(const Job &job) const;

    QString m_printer;
    QStringList m_status;
    QList<Job> m_jobs;
};

#endif
