#ifndef BRISTEL_PRINTERAPP_STATUSREPORT_H
#define BRISTEL_PRINTERAPP_STATUSREPORT_H

#include <QByteArray>
#include <QString>

// The running server's words for each printer's status ("kitchen: Out of paper"),
// fetched through its local socket for the "status" command: libpappl's own status line gives
// the server's state only.
class StatusReport
{
public:
    // The report, or a null array with *error set. programName is the server's name, which
    // its socket is named after.
    static QByteArray fetch(const QString &programName, QString *error);

private:
    static QByteArray socketPath(const QString &programName);
};

#endif
