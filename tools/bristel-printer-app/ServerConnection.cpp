#include "ServerConnection.h"

#include "ControlSocket.h"

#include <QFileInfo>

#include <cups/cups.h>

#include <cstring>

namespace {

constexpr int ConnectTimeoutMs = 30000;
constexpr const char *SystemResource = "/ipp/system";

} // namespace

void ServerConnection::HttpCloser::operator()(http_t *http) const
{
    httpClose(http);
}

ServerConnection::ServerConnection(QByteArray host, int port) : m_host(std::move(host)), m_port(port) {}
ServerConnection::ServerConnection(ServerConnection &&) noexcept = default;
ServerConnection::~ServerConnection() = default;

ServerConnection ServerConnection::fromArguments(int argc, char *argv[])
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "-u") != 0)
            continue;
        char scheme[32], user[256], host[256], resource[256];
        int port = 0;
        if (httpSeparateURI(HTTP_URI_CODING_ALL, argv[i + 1], scheme, sizeof scheme, user, sizeof user, host,
                            sizeof host, &port, resource, sizeof resource) >= HTTP_URI_STATUS_OK)
            return ServerConnection(host, port);
    }
    return ServerConnection(ControlSocket::path(QFileInfo(QString::fromLocal8Bit(argv[0])).fileName()), 0);
}

bool ServerConnection::connect(QString *error)
{
    if (m_http)
        return true;
    m_http.reset(httpConnect2(m_host.constData(), m_port, nullptr, AF_UNSPEC, HTTP_ENCRYPTION_NEVER, 1,
                              ConnectTimeoutMs, nullptr));
    if (m_http)
        return true;
    const QString where =
        QString::fromLocal8Bit(m_host) + (m_port > 0 ? QStringLiteral(":%1").arg(m_port) : QString());
    *error = QStringLiteral("the server does not answer on %1").arg(where);
    return false;
}

QByteArray ServerConnection::fetch(const char *path, QString *error)
{
    if (!connect(error))
        return {};
    httpClearFields(m_http.get());
    httpSetField(m_http.get(), HTTP_FIELD_HOST, "localhost");
    if (httpGet(m_http.get(), path) != 0) {
        *error = QStringLiteral("the server could not be asked for %1").arg(QLatin1String(path));
        return {};
    }
    http_status_t status = HTTP_STATUS_CONTINUE;
    while (status == HTTP_STATUS_CONTINUE)
        status = httpUpdate(m_http.get());
    if (status != HTTP_STATUS_OK) {
        httpFlush(m_http.get());
        *error = QStringLiteral("the server refused %1 (HTTP %2)").arg(QLatin1String(path)).arg(int(status));
        return {};
    }
    QByteArray body("");
    char buffer[4096];
    ssize_t count = 0;
    while ((count = httpRead2(m_http.get(), buffer, sizeof buffer)) > 0)
        body.append(buffer, qsizetype(count));
    return body;
}

bool ServerConnection::ask(ipp_t *request, QString *error)
{
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    if (!connect(error)) {
        ippDelete(request);
        return false;
    }
    ippDelete(cupsDoRequest(m_http.get(), request, SystemResource)); // cupsDoRequest frees the request
    if (cupsLastError() >= IPP_STATUS_ERROR_BAD_REQUEST) {
        *error = QString::fromUtf8(cupsLastErrorString());
        return false;
    }
    return true;
}

bool ServerConnection::deletePrinter(int printerId, QString *error)
{
    ipp_t *request = ippNewRequest(IPP_OP_DELETE_PRINTER);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "system-uri", nullptr,
                 "ipp://localhost/ipp/system");
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "printer-id", printerId);
    return ask(request, error);
}

bool ServerConnection::setPrinterPlace(int printerId, const PrinterPlace::Values &values, QString *error)
{
    ipp_t *request = ippNewRequest(PrinterPlace::SetPrinterPlace);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "system-uri", nullptr,
                 "ipp://localhost/ipp/system");
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "printer-id", printerId);
    for (const auto &[name, value] : values)
        ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_TEXT, name.constData(), nullptr, value.constData());
    return ask(request, error);
}
