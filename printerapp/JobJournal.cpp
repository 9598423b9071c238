#include "printerapp/JobJournal.h"

#include "printerapp/DurableFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

const QString RecordSuffix = QStringLiteral(".record");
const QString DataSuffix = QStringLiteral(".data");
const QString DamagedFolder = QStringLiteral("damaged");
constexpr int SequenceDigits = 12; // file names sort in arrival order

QString sequenceText(qint64 sequence)
{
    return QStringLiteral("%1").arg(sequence, SequenceDigits, 10, QLatin1Char('0'));
}

std::optional<qint64> sequenceOfName(const QString &name, const QString &suffix)
{
    if (!name.endsWith(suffix))
        return std::nullopt;
    bool ok = false;
    const qint64 sequence = name.left(name.size() - suffix.size()).toLongLong(&ok);
    return ok && sequence > 0 ? std::optional<qint64>(sequence) : std::nullopt;
}

std::optional<QByteArray> readWhole(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

} // namespace

JobJournal::JobJournal(QString folder) : m_folder(std::move(folder)) {}

QString JobJournal::recordName(qint64 sequence)
{
    return sequenceText(sequence) + RecordSuffix;
}

QString JobJournal::dataName(qint64 sequence)
{
    return sequenceText(sequence) + DataSuffix;
}

QString JobJournal::dataPath(qint64 sequence) const
{
    return m_folder + QLatin1Char('/') + dataName(sequence);
}

bool JobJournal::load(QString *error)
{
    m_jobs.clear();
    m_problems.clear();
    m_lastSequence = 0;
    m_loaded = false;
    QDir directory(m_folder);
    if (!directory.exists() && !QDir().mkpath(m_folder)) {
        *error = QStringLiteral("cannot create the spool folder %1").arg(m_folder);
        return false;
    }
    QFile::setPermissions(m_folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    if (!directory.isReadable()) {
        *error = QStringLiteral("cannot read the spool folder %1").arg(m_folder);
        return false;
    }
    const QStringList names = directory.entryList({QLatin1Char('*') + RecordSuffix}, QDir::Files, QDir::Name);
    for (const QString &name : names)
        examineRecord(name);
    removeLeftovers();
    forgetOlderDoneRecords();
    m_loaded = DurableFile::syncFolder(m_folder, error);
    return m_loaded;
}

void JobJournal::examineRecord(const QString &name)
{
    const std::optional<qint64> sequence = sequenceOfName(name, RecordSuffix);
    const std::optional<QByteArray> bytes = readWhole(m_folder + QLatin1Char('/') + name);
    const std::optional<JobRecord> record = bytes ? JobRecord::parse(*bytes) : std::nullopt;
    if (!sequence || !record || record->sequence != *sequence) {
        setAside(name, QStringLiteral("the record is incomplete or unreadable"));
        return;
    }
    m_lastSequence = qMax(m_lastSequence, *sequence);
    if (record->state != JobRecord::State::Done && !dataMatches(*record)) {
        setAside(name, QStringLiteral("its job data is missing or differs from what was accepted"));
        setAside(dataName(*sequence), QStringLiteral("it differs from what was accepted"));
        return;
    }
    m_jobs.insert(*sequence, *record);
}

bool JobJournal::dataMatches(const JobRecord &record) const
{
    const QString path = dataPath(record.sequence);
    if (QFileInfo(path).size() != record.dataSize)
        return false;
    const std::optional<QByteArray> data = readWhole(path);
    return data && JobRecord::digestOf(*data) == record.dataDigest;
}

void JobJournal::setAside(const QString &name, const QString &why)
{
    const QString path = m_folder + QLatin1Char('/') + name;
    if (!QFileInfo::exists(path))
        return;
    QDir(m_folder).mkdir(DamagedFolder);
    const QString target = m_folder + QLatin1Char('/') + DamagedFolder + QLatin1Char('/') + name;
    QFile::remove(target);
    QFile::rename(path, target);
    m_problems << QStringLiteral("%1 moved to %2: %3").arg(name, DamagedFolder, why);
}

// Temporary files of an interrupted write, and data whose record never got written (the job
// was not accepted) or whose job is done (the crash came between the two steps of markDone).
void JobJournal::removeLeftovers()
{
    QDir directory(m_folder);
    const QStringList temporaries =
        directory.entryList({DurableFile::temporaryPrefix() + QLatin1Char('*')}, QDir::Files | QDir::Hidden);
    for (const QString &name : temporaries) {
        directory.remove(name);
        m_problems << QStringLiteral("%1 removed: a write interrupted by a crash").arg(name);
    }
    const QStringList dataFiles = directory.entryList({QLatin1Char('*') + DataSuffix}, QDir::Files);
    for (const QString &name : dataFiles) {
        const std::optional<qint64> sequence = sequenceOfName(name, DataSuffix);
        const auto job = sequence ? m_jobs.constFind(*sequence) : m_jobs.constEnd();
        if (job != m_jobs.constEnd() && job->state != JobRecord::State::Done)
            continue;
        directory.remove(name);
        if (job == m_jobs.constEnd())
            m_problems << QStringLiteral("%1 removed: its job was never accepted").arg(name);
    }
}

// Only the latest done record is needed: it carries the arrival number forward.
void JobJournal::forgetOlderDoneRecords()
{
    QDir directory(m_folder);
    for (auto job = m_jobs.begin(); job != m_jobs.end();) {
        if (job->state == JobRecord::State::Done && job.key() != m_lastSequence) {
            directory.remove(recordName(job.key()));
            job = m_jobs.erase(job);
        } else {
            ++job;
        }
    }
}

QList<JobJournal::Entry> JobJournal::pendingJobs() const
{
    QList<Entry> entries;
    for (const JobRecord &record : m_jobs) {
        if (record.state != JobRecord::State::Done)
            entries.append({record, record.state == JobRecord::State::Started});
    }
    return entries;
}

bool JobJournal::writeRecord(const JobRecord &record, QString *error)
{
    return DurableFile::write(m_folder, recordName(record.sequence), record.serialized(), error);
}

std::optional<JobRecord> JobJournal::accept(const QString &printer, const QString &id, const QString &format,
                                            const QByteArray &data, QString *error)
{
    JobRecord record;
    if (!m_loaded) {
        *error = QStringLiteral("the journal in %1 has not been read yet").arg(m_folder);
        return std::nullopt;
    }
    record.sequence = m_lastSequence + 1;
    record.id = id;
    record.printer = printer;
    record.format = format;
    record.dataSize = data.size();
    record.dataDigest = JobRecord::digestOf(data);
    if (!DurableFile::write(m_folder, dataName(record.sequence), data, error))
        return std::nullopt;
    if (!writeRecord(record, error)) {
        QString ignored;
        (void)DurableFile::remove(m_folder, dataName(record.sequence), &ignored);
        return std::nullopt;
    }
    m_lastSequence = record.sequence;
    m_jobs.insert(record.sequence, record);
    return record;
}

bool JobJournal::markStarted(qint64 sequence, QString *error)
{
    const auto job = m_jobs.find(sequence);
    if (job == m_jobs.end() || job->state == JobRecord::State::Done) {
        *error = QStringLiteral("job %1 is not waiting in the journal").arg(sequence);
        return false;
    }
    JobRecord started = *job;
    started.state = JobRecord::State::Started;
    if (!writeRecord(started, error))
        return false;
    *job = started;
    return true;
}

bool JobJournal::markDone(qint64 sequence, QString *error)
{
    const auto job = m_jobs.find(sequence);
    if (job == m_jobs.end() || job->state == JobRecord::State::Done) {
        *error = QStringLiteral("job %1 is not waiting in the journal").arg(sequence);
        return false;
    }
    JobRecord done = *job;
    done.state = JobRecord::State::Done;
    if (!writeRecord(done, error))
        return false;
    *job = done;
    if (!DurableFile::remove(m_folder, dataName(sequence), error))
        return false;
    // Its record stays only while it carries the latest arrival number.
    forgetOlderDoneRecords();
    return true;
}

std::optional<QByteArray> JobJournal::data(qint64 sequence, QString *error) const
{
    const auto job = m_jobs.constFind(sequence);
    if (job == m_jobs.constEnd() || job->state == JobRecord::State::Done) {
        *error = QStringLiteral("job %1 is not waiting in the journal").arg(sequence);
        return std::nullopt;
    }
    std::optional<QByteArray> bytes = readWhole(dataPath(sequence));
    if (!bytes || JobRecord::digestOf(*bytes) != job->dataDigest) {
        *error = QStringLiteral("the data of job %1 cannot be read whole").arg(sequence);
        return std::nullopt;
    }
    return bytes;
}
