#include "ControlSocket.h"
#include "JobConverter.h"
#include "PapplEdge.h"
#include "PrinterPlace.h"
#include "ServerConnection.h"
#include "job/ProgramMessage.h"

#include <QCoreApplication>

#include <cups/cups.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

bool isCommand(int argc, char *argv[], const char *command)
{
    return argc >= 2 && std::strcmp(argv[1], command) == 0;
}

int fail(const QString &message)
{
    printProgramMessage("bristel-printer-app", message);
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

// The printer "-d NAME" names, as the server knows it: its id (0 for none, with the reason in
// *error) for an IPP request of our own.
int namedPrinterId(ServerConnection &server, const char *command, int argc, char *argv[], QString *name,
                   QString *error)
{
    *name = printerNameArgument(argc, argv);
    if (name->isEmpty()) {
        *error = QStringLiteral("%1 needs the printer: -d PRINTER").arg(QLatin1String(command));
        return 0;
    }
    const QByteArray list = server.fetch("/bristel/printers.txt", error);
    if (list.isNull())
        return 0;
    const int id = printerIdIn(list, *name);
    if (id <= 0)
        *error = QStringLiteral("no printer is called %1").arg(*name);
    return id;
}

// "delete -d PRINTER": libpappl 1.3.1's own finds no printer added since the server started.
int deletePrinter(int argc, char *argv[])
{
    ServerConnection server = ServerConnection::fromArguments(argc, argv);
    QString name;
    QString error;
    const int id = namedPrinterId(server, "delete", argc, argv, &name, &error);
    if (id <= 0)
        return fail(error);
    if (!server.deletePrinter(id, &error))
        return fail(QStringLiteral("%1 was not deleted: %2").arg(name, error));
    return 0;
}

// The arguments of "modify" without the printer's place, which it sends itself: libpappl
// 1.3.1 would hand the place to the printer's geo-location (see PrinterPlace).
struct ModifyArguments
{
    std::vector<QByteArray> others;
    PrinterPlace::Values place;
};

// An option again as "-o" takes it: the value quoted, as cupsParseOptions reads it back.
QByteArray optionArgument(const cups_option_t &option)
{
    QByteArray value(option.value);
    value.replace('\\', "\\\\").replace('"', "\\\"");
    return QByteArray(option.name) + "=\"" + value + '"';
}

ModifyArguments splitModifyArguments(int argc, char *argv[])
{
    ModifyArguments split;
    for (int i = 0; i < argc; ++i) {
        if (std::strcmp(argv[i], "-o") != 0 || i + 1 >= argc) {
            split.others.emplace_back(argv[i]);
            continue;
        }
        cups_option_t *options = nullptr;
        const int count = cupsParseOptions(argv[++i], 0, &options);
        for (int n = 0; n < count; ++n) {
            if (PrinterPlace::isPlaceAttribute(options[n].name)) {
                split.place.emplace_back(options[n].name, options[n].value);
                continue;
            }
            split.others.emplace_back("-o");
            split.others.push_back(optionArgument(options[n]));
        }
        cupsFreeOptions(count, options);
    }
    return split;
}

bool hasOptions(const std::vector<QByteArray> &arguments)
{
    return std::find(arguments.begin(), arguments.end(), QByteArray("-o")) != arguments.end();
}

int setPrinterPlace(int argc, char *argv[], const PrinterPlace::Values &place)
{
    ServerConnection server = ServerConnection::fromArguments(argc, argv);
    QString name;
    QString error;
    const int id = namedPrinterId(server, "modify", argc, argv, &name, &error);
    if (id <= 0)
        return fail(error);
    if (!server.setPrinterPlace(id, place, &error))
        return fail(QStringLiteral("the place of %1 was not set: %2").arg(name, error));
    return 0;
}

// "modify": libpappl's, for all but the printer's place, which goes to the server by itself.
int modifyPrinter(int argc, char *argv[], JobConverter &converter)
{
    ModifyArguments split = splitModifyArguments(argc, argv);
    if (split.place.empty())
        return runPrinterApplication(argc, argv, converter);
    if (hasOptions(split.others)) {
        std::vector<char *> others;
        for (QByteArray &argument : split.others)
            others.push_back(argument.data());
        others.push_back(nullptr);
        if (const int status = runPrinterApplication(int(others.size()) - 1, others.data(), converter))
            return status;
    }
    return setPrinterPlace(argc, argv, split.place);
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
    if (isCommand(argc, argv, "modify"))
        return modifyPrinter(argc, argv, converter);
    const int status = runPrinterApplication(argc, argv, converter);
    if (status != 0 || !isCommand(argc, argv, "status"))
        return status;
    return printPrinterStatus(argc, argv);
}
