#include "JobPictures.h"

#include "Application.h"
#include "ReceiptDriver.h"
#include "preview/PreviewWriter.h"
#include "virtualprinter/Paper.h"
#include "virtualprinter/VirtualPrinter.h"

#include <QString>

namespace {

// The longest piece of paper one picture shows, as bristel-preview draws it: 2 m.
constexpr int MaximumLength = 16000;

int paperWidthOf(pappl_printer_t *printer)
{
    const ReceiptDriver *driver = ReceiptDriver::find(papplPrinterGetDriverName(printer));
    return driver ? driver->widthDots : Paper::width80mm;
}

// What bristel-preview writes for these bytes on this paper (the first 2 m of a longer job).
QByteArray drawPaper(const QByteArray &bytes, int paperWidth)
{
    VirtualPrinter virtualPrinter(bytes, paperWidth);
    virtualPrinter.printSheet(MaximumLength);
    QString error;
    return paperPng(virtualPrinter.takeSheet(), &error);
}

} // namespace

QByteArray keepPrintedBytes(pappl_job_t *job, const QByteArray &bytes)
{
    theApplication().printed.add(papplPrinterGetID(papplJobGetPrinter(job)), papplJobGetID(job), bytes);
    return bytes;
}

QByteArray jobPicture(Application &application, pappl_printer_t *printer, int jobId)
{
    const int paperWidth = paperWidthOf(printer);
    return application.printed.picture(
        papplPrinterGetID(printer), jobId,
        [paperWidth](const QByteArray &bytes) { return drawPaper(bytes, paperWidth); });
}
