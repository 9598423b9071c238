#include "ControlSocket.h"
#include "JobConverter.h"
#include "PapplEdge.h"
#include "StatusReport.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cups/http.h>

#include <cstdio>
#include <cstring>

namespace {

bool isStatusCommand(int argc, char *argv[])
{
    return argc >= 2 && std::strcmp(argv[1], "status") == 0;
}

// The server a sub-command speaks to: the one "-u ipp://HOST:PORT/ipp/system" names, or the one
// on this program's local socket.
struct ServerAddress
{
    QByteArray host;
    int port = 0;
};

ServerAddress serverAddress(int argc, char *argv[])
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "-u") != 0)
            continue;
        char scheme[32], user[256], host[256], resource[256];
        int port = 0;
        if (httpSeparateURI(HTTP_URI_CODING_ALL, argv[i + 1], scheme, sizeof scheme, user, sizeof user, host,
                            sizeof host, &port, resource, sizeof resource) >= HTTP_URI_STATUS_OK)
            return {host, port};
    }
    return {ControlSocket::path(QFileInfo(QString::fromLocal8Bit(argv[0])).fileName()), 0};
}

// After libpappl's line on the server, each printer's status in words.
int printPrinterStatus(int argc, char *argv[])
{
    QString error;
    const ServerAddress server = serverAddress(argc, argv);
    const QByteArray report = StatusReport::fetch(server.host, server.port, &error);
    if (report.isNull()) {
        std::fprintf(stderr, "bristel-printer-app: %s\n", qPrintable(error));
        return 1;
    }
    std::fwrite(report.constData(), 1, size_t(report.size()), stdout);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    ControlSocket::placeInRuntimeFolder();
    JobConverter converter;
    QString error;
    if (!converter.loadConfiguration(&error)) {
        std::fprintf(stderr, "bristel-printer-app: %s\n", qPrintable(error));
        return 1;
    }
    const int status = runPrinterApplication(argc, argv, converter);
    if (status != 0 || !isStatusCommand(argc, argv))
        return status;
    return printPrinterStatus(argc, argv);
}
