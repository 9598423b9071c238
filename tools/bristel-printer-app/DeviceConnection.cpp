#include "DeviceConnection.h"

bool writeAll(pappl_device_t *device, const QByteArray &bytes)
{
    if (papplDeviceWrite(device, bytes.constData(), size_t(bytes.size())) != ssize_t(bytes.size()))
        return false;
    papplDeviceFlush(device);
    return true;
}

bool DeviceLink::write(const QByteArray &bytes)
{
    return writeAll(m_device, bytes);
}

QByteArray DeviceLink::read()
{
    char buffer[64];
    const ssize_t count = papplDeviceRead(m_device, buffer, sizeof buffer);
    return count > 0 ? QByteArray(buffer, qsizetype(count)) : QByteArray();
}

bool JobConnection::reconnect()
{
    pappl_device_t *device = papplDeviceOpen(papplPrinterGetDeviceURI(m_printer), "job", papplLogDevice,
                                             papplPrinterGetSystem(m_printer));
    if (!device)
        return false;
    m_replacement.reset(device);
    return true;
}
