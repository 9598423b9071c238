#ifndef BRISTEL_PRINTERAPP_SPOOLLEDGER_H
#define BRISTEL_PRINTERAPP_SPOOLLEDGER_H

#include <QList>
#include <QMutex>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

// What makes the printer application's jobs outlive the server, a kill -9 and a power cut.
//
// The print server writes each document into its spool folder as "p<printer>j<job>-NAME.EXT"
// (five and nine digits) before it tells the submitter the job is accepted, and forgets the
// jobs still waiting when it stops. The ledger makes that folder's writes synchronous, so the
// document is on the disk before the answer goes out; after a restart it lists the documents
// left there, each printer's in the order they came, to be printed again.
//
// Beside each document it keeps a "started" mark, on the disk before the first byte goes to
// the printer: a job found with that mark after a restart may have printed in part, and is
// printed again as a reprint. Once the printer confirmed a job, the mark and the document go,
// and the folder is flushed, so a job confirmed is never printed again. A job the server gives
// up as it stops is kept under a name the server does not remove ("kept-" before it).
class SpoolLedger
{
public:
    // A document found in the spool folder.
    struct Job
    {
        int printerId = 0;
        int jobId = 0;
        QString document;   // its file name in the folder
        QString attributes; // the server's file of the job's attributes, when there is one
        bool started = false;
    };

    // The parts of a document's name; std::nullopt for a name that is not one.
    struct DocumentName
    {
        int printerId = 0;
        int jobId = 0;
        QString extension;
    };

    explicit SpoolLedger(QString folder);
    Q_DISABLE_COPY_MOVE(SpoolLedger)

    QString folder() const { return m_folder; }
    QString pathOf(const QString &name) const;

    // Sets the folder's synchronous-write attributes, which the files made in it inherit;
    // false with *error set where the file system does not have them.
    [[nodiscard]] bool makeWritesSynchronous(QString *error);

    // The documents left in the folder, by printer, each printer's in arrival order. Marks
    // of jobs whose document is gone and files a crash left half-written are removed; names
    // the ledger does not know are left alone and named in problems().
    QList<Job> leftovers();
    QStringList problems() const { return m_problems; }

    [[nodiscard]] bool markStarted(int printerId, int jobId, QString *error);
    bool hasStarted(int printerId, int jobId) const;
    // The printer confirmed the job: its mark and its document go, durably.
    [[nodiscard]] bool markDone(int printerId, int jobId, const QString &documentPath, QString *error);
    // Removes what the folder still holds of a job that lives on under another number.
    [[nodiscard]] bool forget(const Job &job, QString *error);
    // Keeps a document the server would remove for the next start.
    [[nodiscard]] bool keepForRestart(const QString &documentPath, QString *error);
    // Moves a job no printer takes any more into the folder setAsideFolder(), mark and all.
    [[nodiscard]] bool setAside(const Job &job, QString *error);
    QString setAsideFolder() const;

    // The jobs that print under the reprint line, noted as they are put back after a restart.
    void noteReprint(int printerId, int jobId);
    bool isReprint(int printerId, int jobId) const;

    static std::optional<DocumentName> parseDocumentName(const QString &name);
    static QString startedMarkName(int printerId, int jobId);
    static QString keptPrefix() { return QStringLiteral("kept-"); }

private:
    void examine(const QString &name, QList<Job> *jobs, QStringList *marks);
    void removeOrphanMarks(const QList<Job> &jobs, const QStringList &marks);

    QString m_folder;
    QStringList m_problems;
    mutable QMutex m_reprintLock;
    QSet<QPair<int, int>> m_reprints;
};

#endif
