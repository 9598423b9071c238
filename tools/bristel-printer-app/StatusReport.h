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
    // The report of the server at host:port, or on the local socket host when port is 0; a
    // null array with *error set.
    static QByteArray fetch(const QByteArray &host, int port, QString *error);
};

#endif
