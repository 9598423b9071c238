#ifndef BRISTEL_PRINTERAPP_JOBRECORD_H
#define BRISTEL_PRINTERAPP_JOBRECORD_H

#include <QByteArray>
#include <QString>

#include <optional>

// The small record the job journal keeps beside each job's data: who the job is for, what it
// is, where it stands, and the size and digest of its data, so that data cut short by a crash
// is never printed as a job. Stored as "key=value" lines (values percent-encoded) closed by
// an "end" line: a record without its end line was cut short and is not a record.
struct JobRecord
{
    enum class State
    {
        Pending,
        Started,
        Done
    };

    qint64 sequence = 0; // arrival order across all printers of the application
    QString id;          // the job's name in the server that accepted it
    QString printer;
    QString format; // MIME type, e.g. "application/vnd.escpos"
    State state = State::Pending;
    qint64 dataSize = 0;
    QByteArray dataDigest; // SHA-256 of the data, hexadecimal

    QByteArray serialized() const;
    // std::nullopt for anything that is not a whole record.
    static std::optional<JobRecord> parse(const QByteArray &bytes);
    static QByteArray digestOf(const QByteArray &data);
};

#endif
