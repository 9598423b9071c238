#include "JobConverter.h"
#include "PapplEdge.h"
#include "StatusReport.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>
#include <cstring>

namespace {

bool isStatusCommand(int argc, char *argv[])
{
    return argc >= 2 && std::strcmp(argv[1], "status") == 0;
}

// After libpappl's line on the server, each printer's status in words.
int printPrinterStatus(const char *program)
{
    QString error;
    const QByteArray report =
        StatusReport::fetch(QFileInfo(QString::fromLocal8Bit(program)).fileName(), &error);
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
    JobConverter converter;
    QString error;
    if (!converter.loadConfiguration(&error)) {
        std::fprintf(stderr, "bristel-printer-app: %s\n", qPrintable(error));
        return 1;
    }
    const int status = runPrinterApplication(argc, argv, converter);
    if (status != 0 || !isStatusCommand(argc, argv))
        return status;
    return printPrinterStatus(argv[0]);
}
