#include "ControlSocket.h"
#include "JobConverter.h"
#include "PapplEdge.h"
#include "ServerConnection.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstring>

namespace {

bool isCommand(int argc, char *argv[], const char *command)
{
    return argc >= 2 && std::strcmp(argv[1], command) == 0;
}

int fail(const QString &message)
{
    std::fprintf(stderr, "bristel-printer-app: %s\n", qPrintable(message));
    return 1;
}

// After libpappl's line on the server, each printer's status in words.
int printPrinterStatus(int argc, char *argv[])
{
    QString error;
    const QByteArray report =
        ServerConnection::fromArguments(argc, argv).fetch("/bristel/status.txt", &error);
    if (report.isNull())
        return fail(error);
    std::fwrite(report.constData(), 1, size_t(report.size()), stdout);
    return 0;
}

QString printerNameArgument(int argc, char *argv[])
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "-d") == 0)
            return QString::fromLocal8Bit(argv[i + 1]);
    }
    return QString();
}

// The id of the printer called name in the server's list ("ID<tab>name" lines); 0 for none.
int printerIdIn(const QByteArray &list, const QString &name)
{
    for (const QByteArray &line : list.split('\n')) {
        const qsizetype tab = line.indexOf('\t');
        if (tab > 0 && QString::fromUtf8(line.mid(tab + 1)) == name)
            return line.left(tab).toInt();
    }
    return 0;
}

// "delete -d PRINTER": libpappl 1.3.1's own finds no printer added since the server started.
int deletePrinter(int argc, char *argv[])
{
    const QString name = printerNameArgument(argc, argv);
    if (name.isEmpty())
        return fail(QStringLiteral("delete needs the printer: -d PRINTER"));
    ServerConnection server = ServerConnection::fromArguments(argc, argv);
    QString error;
    const QByteArray list = server.fetch("/bristel/printers.txt", &error);
    if (list.isNull())
        return fail(error);
    const int id = printerIdIn(list, name);
    if (id <= 0)
        return fail(QStringLiteral("no printer is called %1").arg(name));
    if (!server.deletePrinter(id, &error))
        return fail(QStringLiteral("%1 was not deleted: %2").arg(name, error));
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    ControlSocket::placeInRuntimeFolder();
    if (isCommand(argc, argv, "delete"))
        return deletePrinter(argc, argv);
    JobConverter converter;
    QString error;
    if (!converter.loadConfiguration(&error))
        return fail(error);
    const int status = runPrinterApplication(argc, argv, converter);
    if (status != 0 || !isCommand(argc, argv, "status"))
        return status;
    return printPrinterStatus(argc, argv);
}
