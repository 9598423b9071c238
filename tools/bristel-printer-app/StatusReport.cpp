#include "StatusReport.h"

#include <QByteArray>

#include <cups/cups.h>

#include <memory>

namespace {

constexpr const char *ReportPath = "/bristel/status.txt";
constexpr int ConnectTimeoutMs = 30000;

struct HttpCloser
{
    void operator()(http_t *http) const { httpClose(http); }
};

} // namespace

QByteArray StatusReport::fetch(const QByteArray &host, int port, QString *error)
{
    const std::unique_ptr<http_t, HttpCloser> http(httpConnect2(
        host.constData(), port, nullptr, AF_UNSPEC, HTTP_ENCRYPTION_NEVER, 1, ConnectTimeoutMs, nullptr));
    if (!http) {
        const QString where =
            QString::fromLocal8Bit(host) + (port > 0 ? QStringLiteral(":%1").arg(port) : QString());
        *error = QStringLiteral("the server does not answer on %1").arg(where);
        return {};
    }
    httpClearFields(http.get());
    httpSetField(http.get(), HTTP_FIELD_HOST, "localhost");
    if (httpGet(http.get(), ReportPath) != 0) {
        *error = QStringLiteral("the printers' status could not be asked");
        return {};
    }
    http_status_t status = HTTP_STATUS_CONTINUE;
    while (status == HTTP_STATUS_CONTINUE)
        status = httpUpdate(http.get());
    if (status != HTTP_STATUS_OK) {
        *error = QStringLiteral("the server refused the printers' status (HTTP %1)").arg(int(status));
        return {};
    }
    QByteArray report("");
    char buffer[4096];
    ssize_t count = 0;
    while ((count = httpRead2(http.get(), buffer, sizeof buffer)) > 0)
        report.append(buffer, qsizetype(count));
    return report;
}
