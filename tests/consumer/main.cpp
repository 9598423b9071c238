// A program of the installation on the installed libraries: reads its configuration file with
// the configuration reader, writes to its log through the logger and runs one statement through
// DatabaseManager.
//
//   bristel-consumer <configuration file>
//
// The file given replaces the user's configuration in the process-wide instance, and the
// logger is registered here, in the program: the library's own code (the connection settings
// read by HLibrary, the statement logged by DatabaseManager) sees both only if the program and
// the shared libraries share one instance of each singleton.

#include <bristel/config/BRConfiguration.h>
#include <bristel/config/SyncSingleton.h>
#include <bristel/log/HLogManager.h>
#include <bristel/log/Logger.h>
#include <bristel/support/DatabaseManager.h>
#include <bristel/support/HLibrary.h>

#include <QCoreApplication>
#include <QSqlDatabase>

#include <cstdio>
#include <memory>

namespace {

int fail(const char *message)
{
    std::fprintf(stderr, "bristel-consumer: %s\n", message);
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    // Qt's SQL module finds its driver plug-ins through the application object.
    QCoreApplication application(argc, argv);
    if (argc != 2)
        return fail("usage: bristel-consumer <configuration file>");

    BRConfiguration *configuration = SyncSingleton<BRConfiguration>::instance();
    configuration->readFile(QString::fromLocal8Bit(argv[1]), QStringLiteral("cfg"));
    const QString name = configuration->getStrValue(QStringLiteral("bristel.consumer.name"));
    if (name.isEmpty())
        return fail("bristel.consumer.name is not set");

    SyncSingleton<HLogManager>::instance()->set(QStringLiteral("consumer"));
    Logger *logger = SyncSingleton<HLogManager>::instance()->getLog();
    if (!logger || !logger->isOpen())
        return fail("the log file could not be opened");
    logger->info(QStringLiteral("%1 started").arg(name));

    const std::unique_ptr<QSqlDatabase> database = HLibrary::newDBConnection(QStringLiteral("consumer"));
    if (!database)
        return fail("no connection to the database");
    const QString answer = SyncSingleton<DatabaseManager>::instance()->executeSelectQuery(
        QStringLiteral("select 6 * 7"), database.get());
    std::printf("%s: %s\n", qPrintable(name), qPrintable(answer));
    return answer == QLatin1String("42") ? 0 : 1;
}
