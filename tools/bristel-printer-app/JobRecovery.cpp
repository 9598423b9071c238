#include "JobRecovery.h"

#include "Application.h"
#include "ArrivalOrder.h"
#include "JobConverter.h"
#include "job/JobDetection.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QString>

#include <deque>
#include <fcntl.h>
#include <memory>
#include <pwd.h>
#include <unistd.h>

namespace {

// libpappl keeps the name, user and format a job is created with as they are given, without a
// copy of its own: they must last as long as the process.
const char *lasting(const QByteArray &text)
{
    static QMutex lock;
    static std::deque<QByteArray> texts;
    const QMutexLocker locker(&lock);
    texts.push_back(text);
    return texts.back().constData();
}

// What the job was when it came: the server's own record of its attributes when it saved
// one, or else what the document itself says.
struct JobDescription
{
    QByteArray name;
    QByteArray user;
    QByteArray format;
};

struct IppDeleter
{
    void operator()(ipp_t *ipp) const { ippDelete(ipp); }
};

QByteArray ippString(ipp_t *ipp, const char *name)
{
    ipp_attribute_t *attribute = ippFindAttribute(ipp, name, IPP_TAG_ZERO);
    const char *value = attribute ? ippGetString(attribute, 0, nullptr) : nullptr;
    return value ? QByteArray(value) : QByteArray();
}

void readSavedAttributes(const QString &path, JobDescription *description)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return;
    const std::unique_ptr<ipp_t, IppDeleter> attributes(ippNew());
    const bool read = ippReadFile(fd, attributes.get()) == IPP_STATE_DATA;
    ::close(fd);
    if (!read)
        return;
    description->name = ippString(attributes.get(), "job-name");
    description->user = ippString(attributes.get(), "job-originating-user-name");
    description->format = ippString(attributes.get(), "document-format-supplied");
}

// The server names a document's file after its format only for the formats it knows; the
// printer's own bytes and a bristel job both end in ".prn", and a bristel job says what it is.
QByteArray formatOfDocument(const QString &path, const QString &extension)
{
    static const QHash<QString, QByteArray> byExtension = {
        {QStringLiteral("png"), JobConverter::PngFormat},
        {QStringLiteral("jpg"), JobConverter::JpegFormat},
        {QStringLiteral("pwg"), "image/pwg-raster"},
        {QStringLiteral("urf"), "image/urf"},
        {QStringLiteral("txt"), "text/plain"},
    };
    const auto known = byExtension.constFind(extension);
    if (known != byExtension.constEnd())
        return *known;
    QFile file(path);
    const QByteArray start = file.open(QIODevice::ReadOnly) ? file.read(bristelJobSniffLength) : QByteArray();
    return isBristelJob(start) ? QByteArray(JobConverter::BristelFormat)
                               : QByteArray(JobConverter::EscPosFormat);
}

QByteArray processUser()
{
    const passwd *entry = ::getpwuid(::geteuid());
    return entry ? QByteArray(entry->pw_name) : QByteArray("unknown");
}

JobDescription describe(const SpoolLedger &ledger, const SpoolLedger::Job &job)
{
    JobDescription description;
    if (!job.attributes.isEmpty())
        readSavedAttributes(ledger.pathOf(job.attributes), &description);
    const QString path = ledger.pathOf(job.document);
    if (description.format.isEmpty())
        description.format =
            formatOfDocument(path, SpoolLedger::parseDocumentName(job.document)->extension.toLower());
    if (description.name.isEmpty()) {
        const QString bare = QFileInfo(job.document).completeBaseName();
        description.name = bare.mid(bare.indexOf(QLatin1Char('-')) + 1).toUtf8();
    }
    if (description.user.isEmpty())
        description.user = processUser();
    return description;
}

void raiseNextJobIds(pappl_system_t *system, const QList<SpoolLedger::Job> &jobs)
{
    for (const SpoolLedger::Job &job : jobs) {
        pappl_printer_t *printer = papplSystemFindPrinter(system, nullptr, job.printerId, nullptr);
        if (printer && papplPrinterGetNextJobID(printer) <= job.jobId)
            papplPrinterSetNextJobID(printer, job.jobId + 1);
    }
}

void setAside(pappl_system_t *system, SpoolLedger &ledger, const SpoolLedger::Job &job)
{
    QString error;
    if (ledger.setAside(job, &error))
        papplLog(system, PAPPL_LOGLEVEL_WARN,
                 "Job %d of printer %d waited for a printer that is no longer there: its document %s is "
                 "kept in %s.",
                 job.jobId, job.printerId, job.document.toLocal8Bit().constData(),
                 ledger.setAsideFolder().toLocal8Bit().constData());
    else
        papplLog(system, PAPPL_LOGLEVEL_ERROR,
                 "Job %d of printer %d waited for a printer that is no longer there, and cannot be set "
                 "aside: %s.",
                 job.jobId, job.printerId, error.toLocal8Bit().constData());
}

// The job again, under the printer's next number; nullptr when the server refused it, and its
// document then stays for the next start.
pappl_job_t *putBack(pappl_printer_t *printer, SpoolLedger &ledger, const SpoolLedger::Job &job)
{
    pappl_system_t *system = papplPrinterGetSystem(printer);
    const int printerId = papplPrinterGetID(printer);
    // The job number it gets: a job may start printing as soon as it is created.
    const int id = papplPrinterGetNextJobID(printer);
    QString error;
    // The mark goes with the job before the document does: a crash in between leaves a mark
    // of a job that is not there, which the next start clears, and the job under its old mark.
    if (job.started) {
        if (!ledger.markStarted(printerId, id, &error))
            papplLog(system, PAPPL_LOGLEVEL_ERROR, "Cannot mark job %d as a reprint: %s", id,
                     error.toLocal8Bit().constData());
        ledger.noteReprint(printerId, id);
    }
    const JobDescription description = describe(ledger, job);
    pappl_job_t *created = papplJobCreateWithFile(
        printer, lasting(description.user), lasting(description.format), lasting(description.name), 0,
        nullptr, QFile::encodeName(ledger.pathOf(job.document)).constData());
    if (!created) {
        papplLogPrinter(printer, PAPPL_LOGLEVEL_ERROR,
                        "Job %d left when the server stopped cannot be put back.", job.jobId);
        return nullptr;
    }
    if (!ledger.forget(job, &error))
        papplLogPrinter(printer, PAPPL_LOGLEVEL_WARN, "%s", error.toLocal8Bit().constData());
    papplLogJob(created, PAPPL_LOGLEVEL_INFO, "Job %d%s, left when the server stopped, is back as job %d.",
                job.jobId, job.started ? " (cut off while printing: it prints as a reprint)" : "",
                papplJobGetID(created));
    return created;
}

} // namespace

void findLeftoverJobs(pappl_system_t *system, Application &application)
{
    SpoolLedger &ledger = *application.ledger;
    const QList<SpoolLedger::Job> jobs = ledger.leftovers();
    for (const QString &problem : ledger.problems())
        papplLog(system, PAPPL_LOGLEVEL_WARN, "Spool folder: %s", problem.toLocal8Bit().constData());
    raiseNextJobIds(system, jobs);
    application.jobsToPutBack.clear();
    for (const SpoolLedger::Job &job : jobs) {
        if (pappl_printer_t *printer = papplSystemFindPrinter(system, nullptr, job.printerId, nullptr)) {
            application.jobsToPutBack << job;
            application.arrivalOrder.jobsComingBack(printer);
        } else {
            setAside(system, ledger, job);
        }
    }
}

bool putBackLeftoverJobs(pappl_system_t *system, void *data)
{
    Application &application = *static_cast<Application *>(data);
    // Each printer holds its new jobs while its jobs come back, so that they go, oldest first,
    // one at a time, as jobs that come while one prints do; a job sent since the start, whose
    // number may be lower, waits until they have gone.
    int back = 0;
    for (const SpoolLedger::Job &job : std::as_const(application.jobsToPutBack)) {
        pappl_printer_t *printer = papplSystemFindPrinter(system, nullptr, job.printerId, nullptr);
        if (!printer)
            continue;
        application.arrivalOrder.printerCreated(printer);
        if (pappl_job_t *created = putBack(printer, *application.ledger, job)) {
            application.arrivalOrder.jobCameBack(created);
            ++back;
        }
    }
    application.jobsToPutBack.clear();
    application.arrivalOrder.jobsAllBack();
    papplLog(system, PAPPL_LOGLEVEL_INFO,
             "%d job(s) left when the server last stopped are back in their queues.", back);
    return false; // once
}
