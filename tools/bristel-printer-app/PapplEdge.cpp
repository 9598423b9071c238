// The only file that speaks libpappl's C interface: each callback casts its data back to the
// C++ object it belongs to and calls one method.
#include "PapplEdge.h"

#include "JobConverter.h"
#include "ReceiptDriver.h"
#include "printerapp/PrinterLink.h"
#include "printerapp/PrinterQueues.h"
#include "printerapp/ReceiptBitmap.h"
#include "printerapp/StatusBoard.h"
#include "printerapp/StatusQuery.h"

#include <QByteArray>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QStringList>

#include <pappl/pappl.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace {

constexpr const char *Version = "1.0";
// libpappl's web pages print the footer without checking for none.
constexpr const char *FooterHtml = "bristel printer application";
constexpr const char *MediaType = "continuous";
constexpr const char *Source = "main-roll";
// A receipt is as long as its contents; the page length only bounds raster pages.
constexpr int RasterPageLengthMm = ReceiptDriver::RasterPageLengthMm;
constexpr int HundredthsPerMm = 100;
// How often idle printers are asked how they are: often enough that the operator sees paper
// run out before the next order, rarely enough not to busy the printer.
constexpr int IdlePollSeconds = 5;
// How often a job held by its printer's state asks again whether it may print.
constexpr std::chrono::seconds HoldPollInterval{1};
constexpr const char *StatusPagePath = "/bristel/status";
constexpr const char *StatusTextPath = "/bristel/status.txt";
// The reasons that come from the printer's own answers; the others are libpappl's.
constexpr pappl_preason_t StatusReasons =
    pappl_preason_t(PAPPL_PREASON_OTHER | PAPPL_PREASON_COVER_OPEN | PAPPL_PREASON_MEDIA_EMPTY |
                    PAPPL_PREASON_MEDIA_LOW | PAPPL_PREASON_OFFLINE);

// What the callbacks share: the converter of the documents and what each printer last said.
struct Application
{
    explicit Application(JobConverter &jobConverter) : converter(jobConverter) {}

    JobConverter &converter;
    StatusBoard board;
    // The jobs held back so that each printer prints in arrival order, oldest first.
    QMutex heldLock;
    PrinterQueues held;
};

// The driver callbacks of libpappl carry no data of their own: they reach the application
// through this, set once before the server starts.
Application *theApplication = nullptr;

const char *optionOr(int count, cups_option_t *options, const char *name, const char *fallback)
{
    const char *value = cupsGetOption(name, count, options);
    return value && *value ? value : fallback;
}

bool writeAll(pappl_device_t *device, const QByteArray &bytes)
{
    if (papplDeviceWrite(device, bytes.constData(), size_t(bytes.size())) != ssize_t(bytes.size()))
        return false;
    papplDeviceFlush(device);
    return true;
}

// The server's connection to a printer, for its status questions. libpappl's socket device
// waits a bounded time for an answer.
class DeviceLink : public PrinterLink
{
public:
    explicit DeviceLink(pappl_device_t *device) : m_device(device) {}

    bool write(const QByteArray &bytes) override { return writeAll(m_device, bytes); }
    QByteArray read() override
    {
        char buffer[64];
        const ssize_t count = papplDeviceRead(m_device, buffer, sizeof buffer);
        return count > 0 ? QByteArray(buffer, qsizetype(count)) : QByteArray();
    }

private:
    pappl_device_t *m_device; // not owned
};

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

QString printerName(pappl_printer_t *printer)
{
    return QString::fromUtf8(papplPrinterGetName(printer));
}

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
    pappl_device_t *device = papplPrinterOpenDevice(printer);
    if (!device) {
        // A job may have taken the device in between; its own questions tell then.
        if (papplPrinterGetState(printer) != IPP_PSTATE_PROCESSING)
            publishStatus(application, printer, PrinterStatus::unreachable());
        return;
    }
    DeviceLink link(device);
    publishStatus(application, printer, StatusQuery::ask(link));
    papplPrinterCloseDevice(printer);
}

// The connection a job prints through: libpappl's, or a new one once the printer has dropped
// that one while the job waited (switched off and on again).
class JobConnection
{
public:
    JobConnection(pappl_printer_t *printer, pappl_device_t *device) : m_printer(printer), m_device(device) {}
    Q_DISABLE_COPY_MOVE(JobConnection)

    pappl_device_t *device() const { return m_replacement ? m_replacement.get() : m_device; }
    // A new connection; false while the printer still refuses one.
    bool reconnect()
    {
        pappl_device_t *device = papplDeviceOpen(papplPrinterGetDeviceURI(m_printer), "job", papplLogDevice,
                                                 papplPrinterGetSystem(m_printer));
        if (!device)
            return false;
        m_replacement.reset(device);
        return true;
    }

private:
    struct DeviceCloser
    {
        void operator()(pappl_device_t *device) const { papplDeviceClose(device); }
    };

    pappl_printer_t *m_printer;
    pappl_device_t *m_device; // libpappl's, not owned
    std::unique_ptr<pappl_device_t, DeviceCloser> m_replacement;
};

// Asks the printer of a job, on a new connection when the old one is gone.
std::optional<PrinterStatus> askForJob(pappl_printer_t *printer, JobConnection &connection)
{
    std::optional<PrinterStatus> status = askPrinter(*theApplication, printer, connection.device());
    if (status && status->isUnreachable() && connection.reconnect())
        status = askPrinter(*theApplication, printer, connection.device());
    return status;
}

// Holds a job while its printer cannot print (out of paper, cover open, off, an error),
// asking it again every second, and shows why in the job's state; false when the job is
// canceled or the server stops meanwhile. A printer that does not answer the questions never holds a job.
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
        // The server does not keep its jobs across a restart: waiting on would only keep it
        // from stopping.
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

// A job of a printer's list, as it was when the list was read.
struct ActiveJob
{
    pappl_job_t *job;
    int id;
    ipp_jstate_t state;
};

extern "C" void collectActiveJob(pappl_job_t *job, void *data);

std::vector<ActiveJob> activeJobs(pappl_printer_t *printer)
{
    std::vector<ActiveJob> jobs;
    papplPrinterIterateActiveJobs(printer, collectActiveJob, &jobs, 1, 0);
    return jobs;
}

// libpappl starts the newest of the jobs waiting when a printer is free, and a kitchen's
// orders must print in the order they were sent: while a job prints, the others waiting are
// held back, and as it ends the oldest of them is let go, which is then the only one libpappl
// can start.
void holdBackWaitingJobs(Application &application, pappl_printer_t *printer, int printingId)
{
    const std::vector<ActiveJob> jobs = activeJobs(printer);
    QMutexLocker lock(&application.heldLock);
    PrinterQueue &queue = application.held.queue(printerName(printer));
    for (const ActiveJob &active : jobs) {
        QString refusal;
        if (active.id == printingId || active.state != IPP_JSTATE_PENDING || !queue.canAccept(&refusal))
            continue;
        if (papplJobHold(active.job, nullptr, "indefinite", 0) && !queue.add({active.id, false}, &refusal))
            papplJobRelease(active.job, nullptr);
    }
}

void releaseOldestHeldJob(Application &application, pappl_printer_t *printer)
{
    const std::vector<ActiveJob> jobs = activeJobs(printer);
    QMutexLocker lock(&application.heldLock);
    PrinterQueue &queue = application.held.queue(printerName(printer));
    while (const std::optional<PrinterQueue::Job> next = queue.takeNext()) {
        queue.finishPrinting();
        for (const ActiveJob &active : jobs) {
            // A job canceled while it was held back is no longer in the list: the next one.
            if (active.id == next->sequence && active.state == IPP_JSTATE_HELD) {
                papplJobRelease(active.job, nullptr);
                return;
            }
        }
    }
}

// While a printer prints nothing and no job waits for libpappl, the oldest job held back
// goes: a job whose end was not seen (a raster job that failed to start) holds none back.
void releaseHeldJobsOfIdlePrinter(Application &application, pappl_printer_t *printer)
{
    for (const ActiveJob &active : activeJobs(printer)) {
        if (active.state != IPP_JSTATE_HELD)
            return;
    }
    releaseOldestHeldJob(application, printer);
}

// Keeps a printer's jobs in arrival order for as long as one of them prints.
class ArrivalOrder
{
public:
    explicit ArrivalOrder(pappl_job_t *job) : m_printer(papplJobGetPrinter(job)), m_id(papplJobGetID(job))
    {
        holdBackWaitingJobs(*theApplication, m_printer, m_id);
    }
    ~ArrivalOrder()
    {
        holdBackWaitingJobs(*theApplication, m_printer, m_id);
        releaseOldestHeldJob(*theApplication, m_printer);
    }
    Q_DISABLE_COPY_MOVE(ArrivalOrder)

private:
    pappl_printer_t *m_printer;
    int m_id;
};

// Sends a job's bytes once its printer can print them, and then waits until the printer can
// print again: a printer that runs out of paper in the middle of a receipt keeps the rest in
// its buffer and prints it when the paper is in, so the job is done only once the printer is
// well again. A connection dropped while the bytes went (the printer switched off) sends
// them again whole once the printer is back.
bool printJobBytes(pappl_job_t *job, pappl_device_t *device, const QByteArray &bytes)
{
    const ArrivalOrder order(job);
    JobConnection connection(papplJobGetPrinter(job), device);
    for (;;) {
        if (!waitUntilPrintable(job, connection))
            return false;
        if (writeAll(connection.device(), bytes))
            break;
        papplLogJob(job, PAPPL_LOGLEVEL_WARN,
                    "The printer dropped the connection while the job was sent; it is sent again.");
        std::this_thread::sleep_for(HoldPollInterval);
    }
    return waitUntilPrintable(job, connection);
}

// The page a raster job is drawing, one bit per dot, black = 1.
struct RasterPage
{
    int bytesPerRow = 0;
    int rows = 0;
    QByteArray bits;
};

// A raster job between its start and its end: its connection, and the page being drawn.
struct RasterJob
{
    RasterJob(pappl_printer_t *printer, pappl_device_t *device) : connection(printer, device) {}

    JobConnection connection;
    std::unique_ptr<RasterPage> page;
};

// --- The C callbacks -------------------------------------------------------------------------

extern "C" bool printFile(pappl_job_t *job, pappl_pr_options_t *, pappl_device_t *device);
extern "C" bool filterToEscPos(pappl_job_t *job, pappl_device_t *device, void *data);
extern "C" bool askPrinterStatus(pappl_printer_t *printer);
extern "C" bool askIdlePrinters(pappl_system_t *system, void *data);
extern "C" void askIdlePrinterOf(pappl_printer_t *printer, void *data);
extern "C" bool serveStatusPage(pappl_client_t *client, void *data);
extern "C" bool serveStatusText(pappl_client_t *client, void *data);

QByteArray readJobFile(pappl_job_t *job)
{
    QFile file(QString::fromLocal8Bit(papplJobGetFilename(job)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

extern "C" bool printFile(pappl_job_t *job, pappl_pr_options_t *, pappl_device_t *device)
{
    // ESC/POS is the printer's own language: the bytes go as they came.
    return printJobBytes(job, device, readJobFile(job));
}

extern "C" bool filterToEscPos(pappl_job_t *job, pappl_device_t *device, void *data)
{
    JobConverter &converter = static_cast<Application *>(data)->converter;
    const ReceiptDriver *driver = ReceiptDriver::find(papplPrinterGetDriverName(papplJobGetPrinter(job)));
    QString error;
    const QByteArray bytes =
        converter.convert(papplJobGetFormat(job), readJobFile(job), driver ? driver->widthDots : 0, &error);
    if (bytes.isNull()) {
        papplLogJob(job, PAPPL_LOGLEVEL_ERROR, "%s", error.toLocal8Bit().constData());
        papplJobSetMessage(job, "%s", error.toLocal8Bit().constData());
        return false;
    }
    return printJobBytes(job, device, bytes);
}

extern "C" bool rasterStartJob(pappl_job_t *job, pappl_pr_options_t *, pappl_device_t *device)
{
    holdBackWaitingJobs(*theApplication, papplJobGetPrinter(job), papplJobGetID(job));
    auto rasterJob = std::make_unique<RasterJob>(papplJobGetPrinter(job), device);
    if (!waitUntilPrintable(job, rasterJob->connection))
        return false;
    papplJobSetData(job, rasterJob.release());
    return true;
}

extern "C" bool rasterStartPage(pappl_job_t *job, pappl_pr_options_t *options, pappl_device_t *, unsigned)
{
    auto page = std::make_unique<RasterPage>();
    const ReceiptDriver *driver = ReceiptDriver::find(papplPrinterGetDriverName(papplJobGetPrinter(job)));
    page->bytesPerRow = int(options->header.cupsBytesPerLine);
    if (driver && page->bytesPerRow > driver->widthDots / 8) {
        papplLogJob(job, PAPPL_LOGLEVEL_ERROR, "Raster page is %u dots wide, the head %d.",
                    options->header.cupsWidth, driver->widthDots);
        return false;
    }
    page->rows = int(options->header.cupsHeight);
    page->bits = QByteArray(qsizetype(page->bytesPerRow) * page->rows, '\0');
    auto *rasterJob = static_cast<RasterJob *>(papplJobGetData(job));
    if (!rasterJob)
        return false;
    rasterJob->page = std::move(page);
    return true;
}

extern "C" bool rasterWriteLine(pappl_job_t *job, pappl_pr_options_t *, pappl_device_t *, unsigned y,
                                const unsigned char *line)
{
    auto *rasterJob = static_cast<RasterJob *>(papplJobGetData(job));
    RasterPage *page = rasterJob ? rasterJob->page.get() : nullptr;
    if (!page || int(y) >= page->rows)
        return false;
    std::memcpy(page->bits.data() + qsizetype(y) * page->bytesPerRow, line, size_t(page->bytesPerRow));
    return true;
}

extern "C" bool rasterEndPage(pappl_job_t *job, pappl_pr_options_t *, pappl_device_t *, unsigned)
{
    auto *rasterJob = static_cast<RasterJob *>(papplJobGetData(job));
    if (!rasterJob || !rasterJob->page)
        return false;
    const std::unique_ptr<RasterPage> page = std::move(rasterJob->page);
    // Feed past the cutter and cut.
    const ReceiptBitmap dots = ReceiptBitmap::fromDots(page->bytesPerRow, page->rows, page->bits);
    return writeAll(rasterJob->connection.device(),
                    dots.withoutBlankFoot().rasterCommands() + JobConverter::feedAndCut());
}

extern "C" bool rasterEndJob(pappl_job_t *job, pappl_pr_options_t *, pappl_device_t *)
{
    const std::unique_ptr<RasterJob> rasterJob(static_cast<RasterJob *>(papplJobGetData(job)));
    papplJobSetData(job, nullptr);
    const bool printed = rasterJob && waitUntilPrintable(job, rasterJob->connection);
    holdBackWaitingJobs(*theApplication, papplJobGetPrinter(job), papplJobGetID(job));
    releaseOldestHeldJob(*theApplication, papplJobGetPrinter(job));
    return printed;
}

extern "C" bool askPrinterStatus(pappl_printer_t *printer)
{
    askIdlePrinter(*theApplication, printer, Silent::AskAgain);
    return true;
}

extern "C" void collectActiveJob(pappl_job_t *job, void *data)
{
    static_cast<std::vector<ActiveJob> *>(data)->push_back({job, papplJobGetID(job), papplJobGetState(job)});
}

extern "C" bool askIdlePrinters(pappl_system_t *system, void *data)
{
    papplSystemIteratePrinters(system, askIdlePrinterOf, data);
    return true;
}

extern "C" void askIdlePrinterOf(pappl_printer_t *printer, void *data)
{
    askIdlePrinter(*static_cast<Application *>(data), printer, Silent::Skip);
    if (papplPrinterGetState(printer) != IPP_PSTATE_PROCESSING)
        releaseHeldJobsOfIdlePrinter(*static_cast<Application *>(data), printer);
}

extern "C" bool serveStatusPage(pappl_client_t *client, void *data)
{
    const QByteArray table = static_cast<Application *>(data)->board.htmlReport().toUtf8();
    if (!papplClientRespond(client, HTTP_STATUS_OK, nullptr, "text/html", 0, 0))
        return false;
    papplClientHTMLHeader(client, "Printer status", IdlePollSeconds);
    papplClientHTMLPuts(client, "<div class=\"content\"><div class=\"row\"><div class=\"col-12\">\n"
                                "<h1 class=\"title\">Printer status</h1>\n");
    papplClientHTMLPuts(client, table.constData());
    papplClientHTMLPuts(client, "</div></div></div>\n");
    papplClientHTMLFooter(client);
    return true;
}

extern "C" bool serveStatusText(pappl_client_t *client, void *data)
{
    const QByteArray text = static_cast<Application *>(data)->board.textReport().toUtf8();
    if (!papplClientRespond(client, HTTP_STATUS_OK, nullptr, "text/plain", 0, size_t(text.size())))
        return false;
    return httpWrite2(papplClientGetHTTP(client), text.constData(), size_t(text.size())) ==
           ssize_t(text.size());
}

void describeMedia(pappl_pr_driver_data_t *data, const ReceiptDriver &driver)
{
    data->num_media = 1;
    data->media[0] = driver.mediaName;
    pappl_media_col_t media = {};
    // The paper as wide as the head prints, so that raster pages come exactly as wide as the
    // head: the rest of the roll is a margin the printer keeps by itself.
    media.size_width = driver.printableWidthHundredthsMm();
    media.size_length = RasterPageLengthMm * HundredthsPerMm;
    data->left_right = 0;
    data->bottom_top = 0;
    papplCopyString(media.size_name, driver.mediaName, sizeof media.size_name);
    papplCopyString(media.source, Source, sizeof media.source);
    papplCopyString(media.type, MediaType, sizeof media.type);
    data->media_default = media;
    data->media_ready[0] = media;
    data->num_source = 1;
    data->source[0] = Source;
    data->num_type = 1;
    data->type[0] = MediaType;
}

extern "C" bool setUpDriver(pappl_system_t *, const char *driverName, const char *, const char *,
                            pappl_pr_driver_data_t *data, ipp_t **, void *)
{
    const ReceiptDriver *driver = ReceiptDriver::find(driverName);
    if (!driver)
        return false;
    data->extension = const_cast<ReceiptDriver *>(driver);
    data->printfile_cb = printFile;
    data->status_cb = askPrinterStatus;
    data->rstartjob_cb = rasterStartJob;
    data->rstartpage_cb = rasterStartPage;
    data->rwriteline_cb = rasterWriteLine;
    data->rendpage_cb = rasterEndPage;
    data->rendjob_cb = rasterEndJob;
    data->format = JobConverter::EscPosFormat;
    papplCopyString(data->make_and_model, driver->description, sizeof data->make_and_model);
    data->ppm = 10;
    data->kind = PAPPL_KIND_RECEIPT;
    data->orient_default = IPP_ORIENT_NONE;
    data->quality_default = IPP_QUALITY_NORMAL;
    data->color_supported = PAPPL_COLOR_MODE_MONOCHROME;
    data->color_default = PAPPL_COLOR_MODE_MONOCHROME;
    data->content_default = PAPPL_CONTENT_AUTO;
    data->raster_types = PAPPL_PWG_RASTER_TYPE_BLACK_1;
    data->force_raster_type = PAPPL_PWG_RASTER_TYPE_BLACK_1;
    data->sides_supported = PAPPL_SIDES_ONE_SIDED;
    data->sides_default = PAPPL_SIDES_ONE_SIDED;
    data->num_resolution = 1;
    data->x_resolution[0] = data->y_resolution[0] = driver->dpi;
    data->x_default = data->y_default = driver->dpi;
    describeMedia(data, *driver);
    return true;
}

std::vector<pappl_pr_driver_t> driverTable()
{
    std::vector<pappl_pr_driver_t> table;
    for (const ReceiptDriver &driver : ReceiptDriver::all())
        table.push_back({driver.name, driver.description, nullptr, nullptr});
    return table;
}

extern "C" bool saveState(pappl_system_t *system, void *fileName)
{
    return papplSystemSaveState(system, static_cast<const char *>(fileName));
}

extern "C" pappl_system_t *createSystem(int count, cups_option_t *options, void *data)
{
    const char *spool = optionOr(count, options, "spool-directory", nullptr);
    // The system log when no file is named: standard error would mix with the output of
    // commands such as "drivers", which build a system too, and libpappl's own default leaves a
    // file in the temporary folder for each of them.
    const char *logFile = optionOr(count, options, "log-file", "syslog");
    const char *stateFile = optionOr(count, options, "state-file", nullptr);
    const int port = atoi(optionOr(count, options, "server-port", "0"));
    const pappl_loglevel_t level = std::strcmp(optionOr(count, options, "log-level", "info"), "debug") == 0
                                       ? PAPPL_LOGLEVEL_DEBUG
                                       : PAPPL_LOGLEVEL_INFO;
    pappl_system_t *system = papplSystemCreate(
        pappl_soptions_t(PAPPL_SOPTIONS_MULTI_QUEUE | PAPPL_SOPTIONS_WEB_INTERFACE),
        "bristel printer application", port, "_print,_universal", spool, logFile, level, nullptr, false);
    if (!system)
        return nullptr;
    // IPP and the web pages listen on a port only when one is named: "drivers" and the other
    // commands build a system too, and must not take a port for it. The commands themselves
    // reach the server through its local socket.
    if (port > 0)
        papplSystemAddListeners(system, optionOr(count, options, "listen-hostname", "localhost"));
    papplSystemSetFooterHTML(system, FooterHtml);
    static std::vector<pappl_pr_driver_t> drivers = driverTable();
    // The drivers must be known before the saved printers are read back.
    papplSystemSetPrinterDrivers(system, int(drivers.size()), drivers.data(), nullptr, nullptr, setUpDriver,
                                 data);
    for (const char *format :
         {JobConverter::BristelFormat, JobConverter::PngFormat, JobConverter::JpegFormat})
        papplSystemAddMIMEFilter(system, format, JobConverter::EscPosFormat, filterToEscPos, data);
    papplSystemAddTimerCallback(system, 0, IdlePollSeconds, askIdlePrinters, data);
    papplSystemAddResourceCallback(system, StatusPagePath, "text/html", serveStatusPage, data);
    papplSystemAddResourceCallback(system, StatusTextPath, "text/plain", serveStatusText, data);
    papplSystemAddLink(system, "Printer status", StatusPagePath,
                       pappl_loptions_t(PAPPL_LOPTIONS_NAVIGATION | PAPPL_LOPTIONS_STATUS));
    if (stateFile) {
        static QByteArray stateFileName;
        stateFileName = stateFile;
        papplSystemLoadState(system, stateFileName.constData());
        papplSystemSetSaveCallback(system, saveState, stateFileName.data());
    }
    return system;
}

} // namespace

int runPrinterApplication(int argc, char *argv[], JobConverter &converter)
{
    static std::vector<pappl_pr_driver_t> drivers = driverTable();
    Application application(converter);
    theApplication = &application;
    const int status =
        papplMainloop(argc, argv, Version, FooterHtml, int(drivers.size()), drivers.data(), nullptr,
                      setUpDriver, nullptr, nullptr, createSystem, nullptr, &application);
    theApplication = nullptr;
    return status;
}
