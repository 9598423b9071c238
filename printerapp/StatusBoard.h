#ifndef BRISTEL_PRINTERAPP_STATUSBOARD_H
#define BRISTEL_PRINTERAPP_STATUSBOARD_H

#include "printerapp/PrinterStatus.h"

#include <QMutex>
#include <QString>

#include <map>
#include <optional>

// The last known status of each printer of the application, as the operator reads it on the
// status page and in the "status" command. Printers are asked from several threads (a job's,
// the idle timer's), so every member locks.
class StatusBoard
{
public:
    // What a new status changes, for the log.
    struct Change
    {
        bool changed = false;      // the words differ from the last ones (or none were known)
        bool firstSilence = false; // the printer is silent for the first time
    };

    StatusBoard() = default;
    Q_DISABLE_COPY_MOVE(StatusBoard)

    Change record(const QString &printer, const PrinterStatus &status);
    std::optional<PrinterStatus> status(const QString &printer) const;
    // A printer that never answered while it could be reached: it is asked no more while idle,
    // since each question costs it the read timeout.
    bool isSilent(const QString &printer) const;
    void forget(const QString &printer);

    // One line per printer, in the operator's words: "kitchen: Out of paper".
    QString textReport() const;
    // The same as an HTML table, names and words escaped.
    QString htmlReport() const;

private:
    struct Entry
    {
        PrinterStatus status;
        bool silenceSeen = false;
    };
    static QString words(const PrinterStatus &status);

    mutable QMutex m_lock;
    std::map<QString, Entry> m_entries;
};

#endif
