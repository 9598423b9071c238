#include "printerapp/JobRecord.h"

#include <QCryptographicHash>
#include <QHash>
#include <QList>

namespace {

const QByteArray Magic = QByteArrayLiteral("bristel-job-record 1");
const QByteArray EndLine = QByteArrayLiteral("end");

QByteArray stateName(JobRecord::State state)
{
    switch (state) {
    case JobRecord::State::Pending:
        return QByteArrayLiteral("pending");
    case JobRecord::State::Started:
        return QByteArrayLiteral("started");
    case JobRecord::State::Done:
        return QByteArrayLiteral("done");
    }
    return {};
}

std::optional<JobRecord::State> stateFromName(const QByteArray &name)
{
    for (const JobRecord::State state :
         {JobRecord::State::Pending, JobRecord::State::Started, JobRecord::State::Done}) {
        if (stateName(state) == name)
            return state;
    }
    return std::nullopt;
}

std::optional<qint64> number(const QByteArray &text)
{
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    return ok && value >= 0 ? std::optional<qint64>(value) : std::nullopt;
}

} // namespace

QByteArray JobRecord::digestOf(const QByteArray &data)
{
    return QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex();
}

QByteArray JobRecord::serialized() const
{
    QByteArray out = Magic + '\n';
    const auto line = [&out](const char *key, const QByteArray &value) {
        out += key;
        out += '=';
        out += value.toPercentEncoding();
        out += '\n';
    };
    line("sequence", QByteArray::number(sequence));
    line("id", id.toUtf8());
    line("printer", printer.toUtf8());
    line("format", format.toUtf8());
    line("state", stateName(state));
    line("size", QByteArray::number(dataSize));
    line("sha256", dataDigest);
    return out + EndLine + '\n';
}

std::optional<JobRecord> JobRecord::parse(const QByteArray &bytes)
{
    QList<QByteArray> lines = bytes.split('\n');
    // A whole record ends with "end\n": split leaves an empty piece after it.
    if (lines.size() < 3 || lines.takeLast() != QByteArray() || lines.takeLast() != EndLine ||
        lines.takeFirst() != Magic)
        return std::nullopt;
    QHash<QByteArray, QByteArray> values;
    for (const QByteArray &line : lines) {
        const qsizetype equals = line.indexOf('=');
        if (equals <= 0)
            return std::nullopt;
        values.insert(line.left(equals), QByteArray::fromPercentEncoding(line.mid(equals + 1)));
    }
    const std::optional<qint64> sequence = number(values.value("sequence"));
    const std::optional<qint64> size = number(values.value("size"));
    const std::optional<State> state = stateFromName(values.value("state"));
    const QByteArray printer = values.value("printer");
    if (!sequence || !size || !state || printer.isEmpty() || !values.contains("sha256"))
        return std::nullopt;
    JobRecord record;
    record.sequence = *sequence;
    record.id = QString::fromUtf8(values.value("id"));
    record.printer = QString::fromUtf8(printer);
    record.format = QString::fromUtf8(values.value("format"));
    record.state = *state;
    record.dataSize = *size;
    record.dataDigest = values.value("sha256");
    return record;
}
