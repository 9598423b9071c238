#include "StatusPolling.h"

#include "Application.h"
#include "ArrivalOrder.h"
#include "DeviceConnection.h"
#include "printerapp/StatusQuery.h"

#include <QByteArray>
#include <QStringList>

#include <chrono>
#include <thread>

namespace {

// How often a job held by its printer's state asks again whether it may print.
constexpr std::chrono::seconds HoldPollInterval{1};
// The reasons that come from the printer's own answers; the others are libpappl's.
constexpr pappl_preason_t StatusReasons =
    pappl_preason_t(PAPPL_PREASON_OTHER | PAPPL_PREASON_COVER_OPEN | PAPPL_PREASON_MEDIA_EMPTY |
                    PAPPL_PREASON_MEDIA_LOW | PAPPL_PREASON_OFFLINE);

pappl_preason_t reasonBit(const QString &keyword)
{
    if (keyword == QLatin1String("media-empty"))
        return PAPPL_PREASON_MEDIA_EMPTY;
    if (keyword == QLatin1String("media-low"))
        return PAPPL_PREASON_MEDIA_LOW;
    if (keyword == QLatin1String("cover-open"))
        return PAPPL_PREASON_COVER_OPEN;
    if (keyword == QLatin1String("offline-report"))
        return PAPPL_PREASON_OFFLINE;
    return PAPPL_PREASON_OTHER;
}

} // namespace

QString printerName(pappl_printer_t *printer)
{
    return QString::fromUtf8(papplPrinterGetName(printer));
}

namespace {

// Shows a printer's status as its printer-state-reasons, on the status page and in the log.
void publishStatus(Application &application, pappl_printer_t *printer, const PrinterStatus &status)
{
    unsigned bits = PAPPL_PREASON_NONE;
    for (const QString &reason : status.reasons())
        bits |= reasonBit(reason);
    papplPrinterSetReasons(printer, pappl_preason_t(bits), pappl_preason_t(StatusReasons & ~bits));
    const StatusBoard::Change change = application.board.record(printerName(printer), status);
    if (change.firstSilence)
        papplLogPrinter(printer, PAPPL_LOGLEVEL_WARN,
                        "The printer does not answer status queries (DLE EOT): status unknown, "
                        "jobs print without it.");
    if (change.changed)
        papplLogPrinter(printer, PAPPL_LOGLEVEL_INFO, "Printer status: %s.",
                        status.operatorMessages().join(QStringLiteral(", ")).toUtf8().constData());
}

// Asks a printer through a job's connection. A printer that never answered is not asked
// before and after its jobs: each question would cost the job the read timeout. Nothing when
// it is not asked.
std::optional<PrinterStatus> askPrinter(Application &application, pappl_printer_t *printer,
                                        pappl_device_t *device)
{
    if (application.board.isSilent(printerName(printer)))
        return std::nullopt;
    DeviceLink link(device);
    const PrinterStatus status = StatusQuery::ask(link);
    publishStatus(application, printer, status);
    return status;
}

// Asks a printer no job is using, on a connection of its own. The idle timer runs on the
// server's main loop, which must not wait out the read timeout of a printer known to be
// silent; someone reading the printer's attributes waits for it on a thread of their own.
enum class Silent
{
    Skip,
    AskAgain
};
void askIdlePrinter(Application &application, pappl_printer_t *printer, Silent silent)
{
    if (papplPrinterGetState(printer) == IPP_PSTATE_PROCESSING)
        return;
    if (silent == Silent::Skip && application.board.isSilent(printerName(printer)))
        return;
    bool busy = false;
    const std::unique_ptr<ArrivalOrder::IdleDevice> idle =
        application.arrivalOrder.borrowIdleDevice(printer, &busy);
    if (!idle) {
        // A job may have taken the device in between; its own questions tell then.
        if (!busy)
            publishStatus(application, printer, PrinterStatus::unreachable());
        return;
    }
    DeviceLink link(idle->device());
    publishStatus(application, printer, StatusQuery::ask(link));
}

} // namespace

// Asks the printer of a job, on a new connection when the old one is gone.
std::optional<PrinterStatus> askForJob(pappl_printer_t *printer, JobConnection &connection)
{
    std::optional<PrinterStatus> status = askPrinter(theApplication(), printer, connection.device());
    if (status && status->isUnreachable() && connection.reconnect())
        status = askPrinter(theApplication(), printer, connection.device());
    return status;
}

// Holds a job while its printer cannot print (out of paper, cover open, off, an error),
// asking it again every second, and shows why in the job's state; false when the job is
// canceled, its printer deleted or the server stops meanwhile. A printer that does not answer the questions
// never holds a job.
bool waitUntilPrintable(pappl_job_t *job, JobConnection &connection)
{
    pappl_printer_t *printer = papplJobGetPrinter(job);
    bool held = false;
    for (;;) {
        const std::optional<PrinterStatus> status = askForJob(printer, connection);
        if (!status || status->canPrint())
            break;
        const QByteArray words = status->operatorMessages().join(QStringLiteral(", ")).toUtf8();
        if (!held) {
            papplLogJob(job, PAPPL_LOGLEVEL_INFO, "Held until the printer can print: %s.", words.constData());
            papplJobSetReasons(job, PAPPL_JREASON_PRINTER_STOPPED, PAPPL_JREASON_NONE);
            held = true;
        }
        papplJobSetMessage(job, "Waiting for the printer: %s.", words.constData());
        if (papplJobIsCanceled(job))
            return false;
        // libpappl deletes a printer once its job has ended: the job ends here.
        if (papplPrinterIsDeleted(printer)) {
            papplLogJob(job, PAPPL_LOGLEVEL_WARN,
                        "Not printed: the printer was deleted while the job waited.");
            papplJobSetMessage(job, "Not printed: the printer was deleted while the job waited.");
            return false;
        }
        // Waiting on would only keep the server from stopping: the job is kept for its next start.
        if (papplSystemIsShutdown(papplPrinterGetSystem(printer))) {
            papplLogJob(job, PAPPL_LOGLEVEL_WARN, "The server stops while the job waits for its printer: %s.",
                        words.constData());
            return false;
        }
        std::this_thread::sleep_for(HoldPollInterval);
    }
    if (held) {
        papplLogJob(job, PAPPL_LOGLEVEL_INFO, "The printer can print again.");
        papplJobSetReasons(job, PAPPL_JREASON_NONE, PAPPL_JREASON_PRINTER_STOPPED);
        papplJobSetMessage(job, "Printing.");
    }
    return true;
}

extern "C" bool askPrinterStatus(pappl_printer_t *printer)
{
    askIdlePrinter(theApplication(), printer, Silent::AskAgain);
    return true;
}

extern "C" void askIdlePrinterOf(pappl_printer_t *printer, void *data)
{
    askIdlePrinter(*static_cast<Application *>(data), printer, Silent::Skip);
}

extern "C" bool askIdlePrinters(pappl_system_t *system, void *data)
{
    papplSystemIteratePrinters(system, askIdlePrinterOf, data);
    static_cast<Application *>(data)->arrivalOrder.lookAgain();
    return true;
}
