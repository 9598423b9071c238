#include "printerapp/StatusBoard.h"

#include <QMutexLocker>

StatusBoard::Change StatusBoard::record(const QString &printer, const PrinterStatus &status)
{
    QMutexLocker lock(&m_lock);
    Change change;
    const auto found = m_entries.find(printer);
    if (found == m_entries.end()) {
        change.changed = true;
        change.firstSilence = status.isSilent();
        m_entries.emplace(printer, Entry{status, status.isSilent()});
        return change;
    }
    Entry &entry = found->second;
    change.changed = entry.status.operatorMessages() != status.operatorMessages();
    change.firstSilence = status.isSilent() && !entry.silenceSeen;
    entry.status = status;
    entry.silenceSeen = entry.silenceSeen || status.isSilent();
    return change;
}

std::optional<PrinterStatus> StatusBoard::status(const QString &printer) const
{
    QMutexLocker lock(&m_lock);
    const auto found = m_entries.find(printer);
    if (found == m_entries.end())
        return std::nullopt;
    return found->second.status;
}

bool StatusBoard::isSilent(const QString &printer) const
{
    QMutexLocker lock(&m_lock);
    const auto found = m_entries.find(printer);
    return found != m_entries.end() && found->second.status.isSilent();
}

void StatusBoard::forget(const QString &printer)
{
    QMutexLocker lock(&m_lock);
    m_entries.erase(printer);
}

QString StatusBoard::words(const PrinterStatus &status)
{
    return status.operatorMessages().join(QStringLiteral(", "));
}

QString StatusBoard::textReport() const
{
    QMutexLocker lock(&m_lock);
    QString report;
    for (const auto &[printer, entry] : m_entries) {
        report += QStringLiteral("%1: %2\n").arg(printer, words(entry.status));
    }
    return report;
}

QString StatusBoard::htmlReport() const
{
    QMutexLocker lock(&m_lock);
    if (m_entries.empty())
        return QStringLiteral("<p>No printer has been asked yet.</p>\n");
    QString report = QStringLiteral("<table>\n<tr><th>Printer</th><th>Status</th></tr>\n");
    for (const auto &[printer, entry] : m_entries) {
        report += QStringLiteral("<tr><td>%1</td><td>%2</td></tr>\n")
                      .arg(printer.toHtmlEscaped(), words(entry.status).toHtmlEscaped());
    }
    return report + QStringLiteral("</table>\n");
}
