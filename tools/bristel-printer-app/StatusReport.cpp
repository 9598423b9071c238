#include "StatusReport.h"

#include <QByteArray>

#include <cups/cups.h>

#include <memory>
#include <unistd.h>

namespace {

constexpr const char *ReportPath = "/bristel/status.txt";
constexpr int ConnectTimeoutMs = 30000;

struct HttpCloser
{
    void operator()(http_t *http) const { httpClose(http); }
};

} // namespace

QByteArray StatusReport::socketPath(const QString &programName)
{
    // Where libpappl puts the server's socket: root's in /run, a user's in the runtime folder,
    // or in the temporary folder under a name with the user's id.
    const QByteArray name = programName.toLocal8Bit();
    if (getuid() == 0)
        return "/run/" + name + ".sock";
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty())
        return runtime + '/' + name + ".sock";
    const QByteArray temporary =
        qEnvironmentVariableIsEmpty("TMPDIR") ? QByteArray("/tmp") : qgetenv("TMPDIR");
    return temporary + '/' + name + QByteArray::number(getuid()) + ".sock";
}

QByteArray StatusReport::fetch(const QString &programName, QString *error)
{
    const QByteArray path = socketPath(programName);
    const std::unique_ptr<http_t, HttpCloser> http(httpConnect2(
        path.constData(), 0, nullptr, AF_UNSPEC, HTTP_ENCRYPTION_NEVER, 1, ConnectTimeoutMs, nullptr));
    if (!http) {
        *error = QStringLiteral("the server does not answer on %1").arg(QString::fromLocal8Bit(path));
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
