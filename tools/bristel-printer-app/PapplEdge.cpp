// Sets libpappl up for the receipt printers: the drivers, the formats and their filters, the
// idle timer, the web pages, the saved state and the jobs left in the spool folder; and runs
// its command line.
#include "PapplEdge.h"

#include "Application.h"
#include "JobConverter.h"
#include "JobPrinting.h"
#include "JobRecovery.h"
#include "PendingLimit.h"
#include "PrinterPlace.h"
#include "PrinterSettings.h"
#include "RasterCallbacks.h"
#include "ReceiptDriver.h"
#include "ServerOptions.h"
#include "StateFile.h"
#include "StatusPolling.h"
#include "WebPages.h"
#include "job/ProgramMessage.h"
#include "printerapp/DeviceIdentity.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <pappl/pappl.h>

#include <cstring>
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

// libpappl deletes every printer first when it deletes the system after a shutdown: the thread
// that lets the jobs go stops before the system it walks through is gone.
extern "C" void printerGoes(pappl_printer_t *printer, pappl_pr_driver_data_t *)
{
    if (!papplSystemIsShutdown(papplPrinterGetSystem(printer)))
        return;
    papplLogPrinter(printer, PAPPL_LOGLEVEL_DEBUG, "The server stops: no more jobs are let go.");
    theApplication().arrivalOrder.stop();
}

extern "C" bool setUpDriver(pappl_system_t *, const char *driverName, const char *, const char *,
                            pappl_pr_driver_data_t *data, ipp_t **attributes, void *)
{
    const ReceiptDriver *driver = ReceiptDriver::find(driverName);
    if (!driver)
        return false;
    data->extension = const_cast<ReceiptDriver *>(driver);
    data->printfile_cb = printFile;
    data->status_cb = askPrinterStatus;
    data->delete_cb = printerGoes;
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
    offerPrinterSettings(data, attributes, *driver);
    return true;
}

// The driver of a printer added by its device ID (a USB printer plugged in, "add -m auto"):
// a receipt printer that speaks ESC/POS, by the width of its paper; none for other printers.
extern "C" const char *chooseDriver(const char *, const char *, const char *deviceId, void *)
{
    const DeviceIdentity identity(QString::fromUtf8(deviceId ? deviceId : ""));
    if (!identity.speaksEscPos())
        return nullptr;
    return identity.paperWidthMm() == 58 ? "bristel_58mm" : "bristel_80mm";
}

// A printer just added, or read back from the saved state: its limit of waiting jobs, and it
// holds its new jobs from the start, as one that has just been busy.
extern "C" void setUpNewPrinter(pappl_printer_t *printer, void *data)
{
    limitPendingJobs(printer, nullptr);
    static_cast<Application *>(data)->arrivalOrder.printerCreated(printer);
}

std::vector<pappl_pr_driver_t> driverTable()
{
    std::vector<pappl_pr_driver_t> table;
    for (const ReceiptDriver &driver : ReceiptDriver::all())
        table.push_back({driver.name, driver.description, nullptr, nullptr});
    return table;
}

// A document sent as application/octet-stream (or with no format) is typed by its first bytes.
extern "C" const char *typeByContent(const unsigned char *header, size_t size, void *)
{
    return JobConverter::formatOf(QByteArrayView(header, qsizetype(size)));
}

extern "C" bool saveState(pappl_system_t *system, void *fileName)
{
    return saveStateDurably(system, static_cast<const QByteArray *>(fileName)->constData());
}

// libpappl saves a new printer or a printer's new settings only when its main loop next wakes,
// which may be seconds after the client heard that they were taken: they are saved at once.
constexpr pappl_event_t SavedEvents =
    pappl_event_t(PAPPL_EVENT_PRINTER_CREATED | PAPPL_EVENT_PRINTER_DELETED |
                  PAPPL_EVENT_PRINTER_CONFIG_CHANGED | PAPPL_EVENT_SYSTEM_CONFIG_CHANGED);

// The state file the server saves at once on a change; none in the other sub-commands.
const QByteArray *savedStateFile = nullptr;

// libpappl takes one event callback: each printer's count of waiting jobs, the jobs let go in
// arrival order, and the saved state.
extern "C" void onEvent(pappl_system_t *system, pappl_printer_t *printer, pappl_job_t *job,
                        pappl_event_t event, void *data)
{
    countPendingJobs(system, printer, job, event, nullptr);
    static_cast<Application *>(data)->arrivalOrder.eventHappened();
    if (savedStateFile && (event & SavedEvents) && !ArrivalOrder::changesHoldOnThisThread())
        saveStateDurably(system, *savedStateFile);
}

// A place named by an option, or the server's lasting default; nothing for the other
// sub-commands, which must not touch the server's folders.
QByteArray placeOf(int count, cups_option_t *options, const char *name, const Application &application,
                   const char *defaultName)
{
    if (const char *value = ServerOptions::valueOf(count, options, name))
        return value;
    if (!application.runsServer)
        return {};
    return defaultStateFolder() + '/' + defaultName;
}

void makeFolder(const QByteArray &path)
{
    if (!path.isEmpty())
        QDir().mkpath(QFile::decodeName(path));
}

// Makes the spool folder's writes synchronous, so that every document is on the disk before
// the client hears it was accepted, and puts back the jobs left there.
void openSpoolFolder(pappl_system_t *system, const QByteArray &spool, Application &application)
{
    application.ledger = std::make_unique<SpoolLedger>(QFile::decodeName(spool));
    QString error;
    if (!application.ledger->makeWritesSynchronous(&error))
        papplLog(system, PAPPL_LOGLEVEL_WARN,
                 "The spool folder cannot be made to write synchronously (%s): a power cut may lose the "
                 "jobs accepted in the last seconds before it. A folder on an ext4 file system keeps them.",
                 error.toLocal8Bit().constData());
    findLeftoverJobs(system, application);
    papplSystemAddTimerCallback(system, 0, 0, putBackLeftoverJobs, &application);
}

extern "C" pappl_system_t *createSystem(int count, cups_option_t *options, void *data)
{
    Application &application = *static_cast<Application *>(data);
    QString error;
    const std::optional<ServerOptions> settings = ServerOptions::read(count, options, &error);
    if (!settings) {
        printProgramMessage("bristel-printer-app", error);
        return nullptr;
    }
    static QByteArray spool;
    spool = placeOf(count, options, "spool-directory", application, "spool");
    static QByteArray stateFile;
    stateFile = placeOf(count, options, "state-file", application, "printers.state");
    makeFolder(spool);
    if (!stateFile.isEmpty())
        makeFolder(QFile::encodeName(QFileInfo(QFile::decodeName(stateFile)).absolutePath()));
    pappl_system_t *system =
        papplSystemCreate(pappl_soptions_t(PAPPL_SOPTIONS_MULTI_QUEUE | PAPPL_SOPTIONS_WEB_INTERFACE),
                          "bristel printer application", settings->port, "_print,_universal",
                          spool.isEmpty() ? nullptr : spool.constData(), settings->logFile.constData(),
                          settings->logLevel, nullptr, false);
    if (!system)
        return nullptr;
    // IPP and the web pages listen on a port only when one is named: "drivers" and the other
    // commands build a system too, and must not take a port for it. The commands themselves
    // reach the server through its local socket.
    if (settings->port > 0)
        papplSystemAddListeners(system, settings->listenHostname.constData());
    papplSystemSetFooterHTML(system, FooterHtml);
    setPendingLimit(settings->maxPendingJobs, application);
    papplSystemSetEventCallback(system, onEvent, &application);
    static std::vector<pappl_pr_driver_t> drivers = driverTable();
    // The drivers must be known before the saved printers are read back.
    papplSystemSetPrinterDrivers(system, int(drivers.size()), drivers.data(), chooseDriver, setUpNewPrinter,
                                 setUpDriver, data);
    for (const char *format : {JobConverter::BristelFormat, JobConverter::PngFormat, JobConverter::JpegFormat,
                               JobConverter::TextFormat})
        papplSystemAddMIMEFilter(system, format, JobConverter::EscPosFormat, filterToEscPos, data);
    papplSystemSetMIMECallback(system, typeByContent, nullptr);
    papplSystemAddTimerCallback(system, 0, IdlePollSeconds, askIdlePrinters, data);
    addWebPages(system, application);
    if (!stateFile.isEmpty())
        loadStateWithoutUnfinishedJobs(system, stateFile);
    // The saved state holds each printer's limit of the day it was saved: today's is the one.
    papplSystemIteratePrinters(system, limitPendingJobs, nullptr);
    // The jobs go back to the printers just read, before the server takes new ones.
    if (application.runsServer && !spool.isEmpty())
        openSpoolFolder(system, spool, application);
    if (!stateFile.isEmpty()) {
        papplSystemSetSaveCallback(system, saveState, &stateFile);
        if (application.runsServer) {
            // The printers' next job numbers, raised past the jobs put back, are on the disk
            // before any new job takes one.
            saveStateDurably(system, stateFile);
            savedStateFile = &stateFile;
        }
    }
    // libpappl 1.3.1 sets no printer's location or organization: "modify" sends them to this.
    papplSystemSetOperationCallback(system, answerOwnOperation,
                                    application.runsServer && !stateFile.isEmpty() ? &stateFile : nullptr);
    startCountingJobs();
    application.arrivalOrder.attach(system);
    return system;
}

} // namespace

int runPrinterApplication(int argc, char *argv[], JobConverter &converter)
{
    static std::vector<pappl_pr_driver_t> drivers = driverTable();
    Application application(converter);
    application.runsServer = argc >= 2 && std::strcmp(argv[1], "server") == 0;
    setTheApplication(&application);
    const int status =
        papplMainloop(argc, argv, Version, FooterHtml, int(drivers.size()), drivers.data(), chooseDriver,
                      setUpDriver, nullptr, nullptr, createSystem, nullptr, &application);
    setTheApplication(nullptr);
    return status;
}
