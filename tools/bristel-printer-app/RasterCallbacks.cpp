#include "RasterCallbacks.h"

#include "Application.h"
#include "DeviceConnection.h"
#include "JobConverter.h"
#include "JobDurability.h"
#include "JobPictures.h"
#include "PrinterSettings.h"
#include "ReceiptDriver.h"
#include "StatusPolling.h"
#include "devices/escpos/EscPosSettings.h"
#include "printerapp/ReceiptBitmap.h"

#include <QByteArray>

#include <cstring>
#include <memory>

namespace {

// The page a raster job is drawing, one bit per dot, black = 1.
struct RasterPage
{
    int bytesPerRow = 0;
    int rows = 0;
    int rowsWritten = 0;
    QByteArray bits;
};

// A raster job between its start and its end: its connection, and the page being drawn.
struct RasterJob
{
    RasterJob(pappl_printer_t *printer, pappl_device_t *device) : connection(printer, device) {}

    JobConnection connection;
    std::unique_ptr<RasterPage> page;
};

} // namespace

extern "C" bool rasterStartJob(pappl_job_t *job, pappl_pr_options_t *, pappl_device_t *device)
{
    auto rasterJob = std::make_unique<RasterJob>(papplJobGetPrinter(job), device);
    if (!waitUntilPrintable(job, rasterJob->connection)) {
        keepJobIfServerStops(job);
        return false;
    }
    markJobStarted(job);
    const QByteArray reprint = reprintLine(job);
    if (!reprint.isEmpty() && !writeAll(rasterJob->connection.device(), reprint))
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
    page->rowsWritten = qMax(page->rowsWritten, int(y) + 1);
    return true;
}

extern "C" bool rasterEndPage(pappl_job_t *job, pappl_pr_options_t *, pappl_device_t *, unsigned)
{
    auto *rasterJob = static_cast<RasterJob *>(papplJobGetData(job));
    if (!rasterJob || !rasterJob->page)
        return false;
    const std::unique_ptr<RasterPage> page = std::move(rasterJob->page);
    // libpappl hands every row of the paper's length, blank ones below a shorter page: fewer
    // means the document ended before the page its header announced (cut short, or a header
    // that claims more than was sent). Half a picture is not printed as if it were whole.
    if (page->rowsWritten < page->rows) {
        papplLogJob(job, PAPPL_LOGLEVEL_ERROR,
                    "Not printed: the raster data ended after %d of the page's %d rows.", page->rowsWritten,
                    page->rows);
        papplJobSetMessage(job, "Not printed: the raster data ended after %d of the page's %d rows.",
                           page->rowsWritten, page->rows);
        return false;
    }
    // The printer's cut, as after a picture.
    const QByteArray cut =
        JobConverter::cutCommand(theApplication().converter.settingsWith(printerSettingsOf(job)));
    const ReceiptBitmap dots = ReceiptBitmap::fromDots(page->bytesPerRow, page->rows, page->bits);
    return writeAll(rasterJob->connection.device(),
                    keepPrintedBytes(job, dots.withoutBlankFoot().rasterCommands() + cut));
}

extern "C" bool rasterEndJob(pappl_job_t *job, pappl_pr_options_t *, pappl_device_t *)
{
    const std::unique_ptr<RasterJob> rasterJob(static_cast<RasterJob *>(papplJobGetData(job)));
    papplJobSetData(job, nullptr);
    const bool printed = rasterJob && waitUntilPrintable(job, rasterJob->connection);
    if (printed)
        markJobDone(job);
    else
        keepJobIfServerStops(job);
    return printed;
}
