#include "JobConverter.h"
#include "PapplEdge.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    JobConverter converter;
    QString error;
    if (!converter.loadConfiguration(&error)) {
        std::fprintf(stderr, "bristel-printer-app: %s\n", qPrintable(error));
        return 1;
    }
    return runPrinterApplication(argc, argv, converter);
}
