#ifndef BRISTEL_PRINTERAPP_PRINTERLINK_H
#define BRISTEL_PRINTERAPP_PRINTERLINK_H

#include <QByteArray>

// The two-way connection to a receipt printer, as a status query needs it: the server's
// device connection in the application, a scripted one in tests.
class PrinterLink
{
public:
    virtual ~PrinterLink() = default;

    // False when the printer did not take all of the bytes (connection refused or dropped).
    [[nodiscard]] virtual bool write(const QByteArray &bytes) = 0;
    // What the printer sent back within the link's own timeout; empty when nothing came.
    virtual QByteArray read() = 0;
};

#endif
