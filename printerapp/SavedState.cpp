#include "printerapp/SavedState.h"

#include <QList>
#include <QRegularExpression>

namespace {

// IPP's job states: pending 3, pending-held 4, processing 5, processing-stopped 6; from 7 on
// (canceled, aborted, completed) a job is finished.
constexpr int FirstFinishedState = 7;

} // namespace

bool SavedState::isUnfinishedJob(const QByteArray &line)
{
    if (!line.startsWith("Job "))
        return false;
    static const QRegularExpression state(QStringLiteral("\\sstate=\"(\\d+)\""));
    const QRegularExpressionMatch match = state.match(QString::fromUtf8(line));
    return !match.hasMatch() || match.captured(1).toInt() < FirstFinishedState;
}

QByteArray SavedState::withoutUnfinishedJobs(const QByteArray &state)
{
    QByteArray kept;
    kept.reserve(state.size());
    const QList<QByteArray> lines = state.split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (isUnfinishedJob(lines.at(i)))
            continue;
        kept += lines.at(i);
        if (i + 1 < lines.size())
            kept += '\n';
    }
    return kept;
}
