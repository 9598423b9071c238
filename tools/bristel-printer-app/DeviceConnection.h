#ifndef BRISTEL_PRINTERAPP_DEVICECONNECTION_H
#define BRISTEL_PRINTERAPP_DEVICECONNECTION_H

#include "printerapp/PrinterLink.h"

#include <QByteArray>

#include <pappl/pappl.h>

#include <memory>

// Writes all of bytes to a printer and flushes them; false when the connection failed.
bool writeAll(pappl_device_t *device, const QByteArray &bytes);

// The server's connection to a printer, for its status questions. libpappl's socket device
// waits a bounded time for an answer.
class DeviceLink : public PrinterLink
{
public:
    explicit DeviceLink(pappl_device_t *device) : m_device(device) {}

    bool write(const QByteArray &bytes) override;
    QByteArray read() override;

private:
    pappl_device_t *m_device; // not owned
};

// The connection a job prints through: libpappl's, or a new one once the printer has dropped
// that one while the job waited (switched off and on again).
class JobConnection
{
public:
    JobConnection(pappl_printer_t *printer, pappl_device_t *device) : m_printer(printer), m_device(device) {}
    Q_DISABLE_COPY_MOVE(JobConnection)

    pappl_device_t *device() const { return m_replacement ? m_replacement.get() : m_device; }
    // A new connection; false while the printer still refuses one.
    bool reconnect();

private:
    struct DeviceCloser
    {
        void operator()(pappl_device_t *device) const { papplDeviceClose(device); }
    };

    pappl_printer_t *m_printer;
    pappl_device_t *m_device; // libpappl's, not owned
    std::unique_ptr<pappl_device_t, DeviceCloser> m_replacement;
};

#endif
