#include "JobPrinting.h"

#include "Application.h"
#include "ArrivalOrder.h"
#include "DeviceConnection.h"
#include "JobConverter.h"
#include "JobDurability.h"
#include "JobPictures.h"
#include "PrinterSettings.h"
#include "ReceiptDriver.h"
#include "StatusPolling.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

#include <chrono>
#include <thread>

namespace {

// How long a job waits before it sends its bytes again over a new connection.
constexpr std::chrono::seconds ResendPause{1};

// Sends a job's bytes once its printer can print them, and then waits until the printer can
// print again: a printer that runs out of paper in the middle of a receipt keeps the rest in
// its buffer and prints it when the paper is in, so the job is done only once the printer is
// well again. A connection dropped while the bytes went (the printer switched off) sends
// them again whole once the printer is back. The job is marked started before its first byte
// goes and done once the printer is well after it, so that a stop of the server in between
// prints it again, whole, under the reprint line.
bool printJobBytes(pappl_job_t *job, pappl_device_t *device, const QByteArray &bytes)
{
    JobConnection connection(papplJobGetPrinter(job), device);
    const QByteArray sent = reprintLine(job) + bytes;
    keepPrintedBytes(job, sent);
    for (bool started = false;; started = true) {
        if (!waitUntilPrintable(job, connection)) {
            keepJobIfServerStops(job);
            return false;
        }
        if (!started)
            markJobStarted(job);
        if (writeAll(connection.device(), sent))
            break;
        papplLogJob(job, PAPPL_LOGLEVEL_WARN,
                    "The printer dropped the connection while the job was sent; it is sent again.");
        std::this_thread::sleep_for(ResendPause);
    }
    if (!waitUntilPrintable(job, connection)) {
        keepJobIfServerStops(job);
        return false;
    }
    markJobDone(job);
    return true;
}

QByteArray readJobFile(pappl_job_t *job)
{
    QFile file(QString::fromLocal8Bit(papplJobGetFilename(job)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

extern "C" bool printFile(pappl_job_t *job, pappl_pr_options_t *, pappl_device_t *device)
{
    theApplication().arrivalOrder.jobThreadStarted(job);
    // ESC/POS is the printer's own language: the bytes go as they came.
    return printJobBytes(job, device, readJobFile(job));
}

extern "C" bool filterToEscPos(pappl_job_t *job, pappl_device_t *device, void *data)
{
    static_cast<Application *>(data)->arrivalOrder.jobThreadStarted(job);
    JobConverter &converter = static_cast<Application *>(data)->converter;
    const ReceiptDriver *driver = ReceiptDriver::find(papplPrinterGetDriverName(papplJobGetPrinter(job)));
    QString error;
    QStringList warnings;
    const QByteArray bytes =
        converter.convert(papplJobGetFormat(job), readJobFile(job), driver ? driver->widthDots : 0,
                          printerSettingsOf(job), &error, &warnings);
    for (const QString &warning : warnings)
        papplLogJob(job, PAPPL_LOGLEVEL_WARN, "%s", warning.toUtf8().constData());
    if (bytes.isNull()) {
        papplLogJob(job, PAPPL_LOGLEVEL_ERROR, "%s", error.toLocal8Bit().constData());
        papplJobSetMessage(job, "%s", error.toLocal8Bit().constData());
        return false;
    }
    return printJobBytes(job, device, bytes);
}
