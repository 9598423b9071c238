#include "printerapp/PrinterPage.h"

#include <QUrl>
#include <QUrlQuery>

namespace {

QString escaped(const QString &text)
{
    return text.toHtmlEscaped();
}

QString query(const QString &printer)
{
    return QStringLiteral("name=") + QString::fromLatin1(QUrl::toPercentEncoding(printer));
}

} // namespace

QString PrinterPage::address(const QString &printer)
{
    return pagePath() + QLatin1Char('?') + query(printer);
}

QString PrinterPage::pictureAddress(const QString &printer, int jobId)
{
    return picturePath() + QLatin1Char('?') + query(printer) + QStringLiteral("&job=%1").arg(jobId);
}

PrinterPage::Request PrinterPage::requestOf(const QString &queryText)
{
    const QUrlQuery query(queryText);
    Request request;
    request.printer = query.queryItemValue(QStringLiteral("name"), QUrl::FullyDecoded);
    bool ok = false;
    const int job = query.queryItemValue(QStringLiteral("job")).toInt(&ok);
    if (ok && job > 0)
        request.job = job;
    return request;
}

QString PrinterPage::statusHtml() const
{
    const QString words =
        m_status.isEmpty() ? QStringLiteral("Not asked yet") : m_status.join(QStringLiteral(", "));
    return QStringLiteral("<p>Status: <strong id=\"printer-status\">%1</strong></p>\n").arg(escaped(words));
}

QString PrinterPage::pictureHtml(const Job &job) const
{
    switch (job.kept) {
    case PrintedJobs::Kept::Bytes:
        // One arg() for both: the address may hold "%2F", which a second arg() would take as a marker.
        return QStringLiteral(
                   "<a href=\"%1\"><img class=\"job-picture\" src=\"%1\" alt=\"The paper of job %2\"></a>")
            .arg(escaped(pictureAddress(m_printer, job.id)), QString::number(job.id));
    case PrintedJobs::Kept::TooLarge:
        return QStringLiteral("Too large to show");
    case PrintedJobs::Kept::Nothing:
        break;
    }
    return QStringLiteral("Nothing printed yet");
}

QString PrinterPage::jobRowHtml(const Job &job) const
{
    QString state = escaped(job.state);
    if (!job.message.isEmpty())
        state += QStringLiteral("<br>") + escaped(job.message);
    return QStringLiteral("<tr id=\"job-%1\"><td>%1</td><td class=\"job-name\">%2</td><td>%3</td><td "
                          "class=\"job-sent\">%4</td>"
                          "<td>%5</td></tr>\n")
        .arg(job.id)
        .arg(escaped(job.name), state,
             escaped(job.sent.isValid() ? job.sent.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                                        : QString()),
             pictureHtml(job));
}

QString PrinterPage::html() const
{
    // A receipt's picture is drawn dot for dot, as wide as a page column or more: the page
    // shows it smaller, and the picture itself is a click away.
    QString html = QStringLiteral("<style>img.job-picture { max-width: 24em; height: auto; }\n"
                                  "td.job-sent { white-space: nowrap; }</style>\n") +
                   statusHtml();
    if (m_jobs.isEmpty())
        return html + QStringLiteral("<p>No jobs yet.</p>\n");
    html += QStringLiteral(
        "<table class=\"list\" id=\"jobs\">\n<thead><tr><th>Job</th><th>Name</th><th>State</th>"
        "<th>Sent</th><th>Paper</th></tr></thead>\n<tbody>\n");
    for (const Job &job : m_jobs)
        html += jobRowHtml(job);
    return html + QStringLiteral("</tbody>\n</table>\n");
}
