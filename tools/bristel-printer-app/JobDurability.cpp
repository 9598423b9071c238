#include "JobDurability.h"

#include "Application.h"

#include <QFile>
#include <QFileInfo>
#include <QString>

namespace {

// ESC @ first: the job cut off may have left the printer in a mode of its own (double height,
// another code page), and the line must read the same on every printer.
constexpr char ReprintLine[] = "\x1b@*** REPRINT: INTERRUPTED ***\n";

// The job's document, when it lies in the spool folder the ledger keeps.
QString spooledDocument(pappl_job_t *job)
{
    const char *fileName = papplJobGetFilename(job);
    if (!theApplication().ledger || !fileName || !*fileName)
        return {};
    const QString path = QFile::decodeName(fileName);
    return QFileInfo::exists(path) ? path : QString();
}

int printerIdOf(pappl_job_t *job)
{
    return papplPrinterGetID(papplJobGetPrinter(job));
}

} // namespace

void markJobStarted(pappl_job_t *job)
{
    if (spooledDocument(job).isEmpty())
        return;
    QString error;
    if (!theApplication().ledger->markStarted(printerIdOf(job), papplJobGetID(job), &error))
        papplLogJob(job, PAPPL_LOGLEVEL_ERROR,
                    "Cannot note that the job starts printing (%s): if the server stops before it ends, it "
                    "prints again without the reprint line.",
                    error.toLocal8Bit().constData());
}

void markJobDone(pappl_job_t *job)
{
    const QString document = spooledDocument(job);
    if (document.isEmpty())
        return;
    QString error;
    if (!theApplication().ledger->markDone(printerIdOf(job), papplJobGetID(job), document, &error))
        papplLogJob(job, PAPPL_LOGLEVEL_ERROR,
                    "Cannot note that the job has printed (%s): it may print again after a restart.",
                    error.toLocal8Bit().constData());
}

void keepJobIfServerStops(pappl_job_t *job)
{
    if (!papplSystemIsShutdown(papplPrinterGetSystem(papplJobGetPrinter(job))))
        return;
    const QString document = spooledDocument(job);
    if (document.isEmpty())
        return;
    QString error;
    if (theApplication().ledger->keepForRestart(document, &error))
        papplLogJob(job, PAPPL_LOGLEVEL_INFO, "The job is kept; it prints when the server starts again.");
    else
        papplLogJob(job, PAPPL_LOGLEVEL_ERROR, "The job cannot be kept for the next start: %s",
                    error.toLocal8Bit().constData());
}

QByteArray reprintLine(pappl_job_t *job)
{
    const Application &application = theApplication();
    if (!application.ledger || !application.ledger->isReprint(printerIdOf(job), papplJobGetID(job)))
        return {};
    return QByteArray(ReprintLine);
}
