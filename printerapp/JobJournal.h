#ifndef BRISTEL_PRINTERAPP_JOBJOURNAL_H
#define BRISTEL_PRINTERAPP_JOBJOURNAL_H

#include "printerapp/JobRecord.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

// The printer application's promise that no accepted job is lost: one spool folder holds, for
// every job not yet printed, its data ("<sequence>.data") and its record ("<sequence>.record").
//
// accept() writes the data, then the record, each through DurableFile (temporary file, fsync,
// rename, fsync of the folder): when it returns, the job survives kill -9 and a power cut,
// and only then may its submitter hear "accepted". A crash inside accept() leaves at worst a
// temporary file or data without a record, which load() clears away: such a job was never
// accepted. markDone() first records the job as done and only then removes its data, so a
// crash between the two leaves a done job, never a job to print twice.
//
// After a restart load() gives every job still to print, of every printer, in arrival order;
// a job that had started but not finished comes back with reprint set, since the printer may
// have printed part of it. The record of the latest done job stays, so arrival numbers keep
// growing across restarts.
class JobJournal
{
public:
    struct Entry
    {
        JobRecord record;
        bool reprint = false; // started before a restart: print again, marked as a reprint
    };

    explicit JobJournal(QString folder);
    Q_DISABLE_COPY_MOVE(JobJournal)

    // Creates the folder (private to its owner) when missing and reads what it holds; false
    // with *error set when the folder cannot be used. Files that hold no whole job are removed
    // (leftovers of an interrupted accept) or moved into "damaged/" (a record or data the
    // disk spoilt), each noted in problems().
    [[nodiscard]] bool load(QString *error);
    // The jobs still to print after load(), in arrival order.
    QList<Entry> pendingJobs() const;
    QStringList problems() const { return m_problems; }

    // Stores a job durably and gives its record; std::nullopt with *error set otherwise
    // (also before load(), which finds the arrival number to go on from).
    std::optional<JobRecord> accept(const QString &printer, const QString &id, const QString &format,
                                    const QByteArray &data, QString *error);
    [[nodiscard]] bool markStarted(qint64 sequence, QString *error);
    [[nodiscard]] bool markDone(qint64 sequence, QString *error);

    QString folder() const { return m_folder; }
    QString dataPath(qint64 sequence) const;
    // The data of a job still in the journal, checked against its record.
    std::optional<QByteArray> data(qint64 sequence, QString *error) const;

    static QString recordName(qint64 sequence);
    static QString dataName(qint64 sequence);

private:
    bool writeRecord(const JobRecord &record, QString *error);
    void examineRecord(const QString &name);
    void setAside(const QString &name, const QString &why);
    void forgetOlderDoneRecords();
    void removeLeftovers();
    bool dataMatches(const JobRecord &record) const;

    QString m_folder;
    QMap<qint64, JobRecord> m_jobs; // every job with a record, done ones included
    qint64 m_lastSequence = 0;
    QStringList m_problems;
    bool m_loaded = false; // accept() numbers jobs after those load() found
};

#endif
