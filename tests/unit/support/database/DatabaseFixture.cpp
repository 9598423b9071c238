#include "DatabaseFixture.h"

#include "config/SyncSingleton.h"
#include "log/HLogManager.h"
#include "log/Logger.h"
#include "support/HLibrary.h"

#include "TestSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <memory>

namespace {

const QDateTime fixedTime(QDate(2026, 1, 2), QTime(3, 4, 5, 6));

struct Environment
{
    // Qt's SQL module loads its driver plug-ins through the application object.
    int argc = 1;
    char name[16] = "database_tests";
    char *argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    QTemporaryDir home;
    QString host;
    std::unique_ptr<QSqlDatabase> connection;
    std::unique_ptr<QSqlDatabase> second;
};

// The socket folder of the test server: $BRISTEL_TEST_PGHOST when run by hand, otherwise the
// first line of the file $BRISTEL_TEST_PGRECORD, which the fixture's start writes.
QString serverFolder()
{
    if (qEnvironmentVariableIsSet("BRISTEL_TEST_PGHOST"))
        return qEnvironmentVariable("BRISTEL_TEST_PGHOST");
    QFile record(qEnvironmentVariable("BRISTEL_TEST_PGRECORD"));
    if (!record.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromLocal8Bit(record.readLine()).trimmed();
}

Environment &environment()
{
    // Built on first use, after Qt's SQL registry exists, so it goes away before it.
    static const std::unique_ptr<Environment> env = [] {
        auto created = std::make_unique<Environment>();
        created->host = serverFolder();
        Logger::setClock([] { return fixedTime; });
        const QString logs = created->home.filePath(QStringLiteral("logs"));
        QDir().mkpath(logs);
        writeFile(created->home.filePath(QStringLiteral(".bristel/conf/bristel.conf")),
                  QStringLiteral("bristel : {\n"
                                 "  logger : {\n    level = debug;\n    basedir = %1;\n"
                                 "    filename = database.log;\n    type = overwrite;\n  };\n"
                                 "  db : {\n    dbname = bristel_test;\n    username = bristel;\n"
                                 "    hostname = %2;\n  };\n"
                                 "};\n")
                      .arg(logs, created->host)
                      .toUtf8());
        qputenv("HOME", created->home.path().toLocal8Bit());
        if (!created->host.isEmpty()) {
            SyncSingleton<HLogManager>::instance()->set(QStringLiteral("database"));
            created->connection = HLibrary::newDBConnection(QString());
            created->second = HLibrary::newDBConnection(QStringLiteral("second"));
        }
        return created;
    }();
    return *env;
}

} // namespace

const QString DatabaseTest::stamp = QStringLiteral("[01-02-2026 03:04:05:006] ");

void DatabaseTest::SetUp()
{
    Environment &env = environment();
    ASSERT_FALSE(env.host.isEmpty()) << "no test server recorded in $BRISTEL_TEST_PGRECORD: run the database "
                                        "tests through ctest (fixture bristel_postgres)";
    ASSERT_TRUE(env.connection && env.connection->isOpen())
        << "cannot reach the test server in " << env.host.toStdString();
    ASSERT_TRUE(env.second && env.second->isOpen());
    Logger::setClock([] { return fixedTime; });

    table = QStringLiteral("t_") +
            QString::fromLatin1(::testing::UnitTest::GetInstance()->current_test_info()->name()).toLower();
    run(QStringLiteral("drop table if exists ") + table);
    run(QStringLiteral("create table ") + table +
        QStringLiteral(" (id serial primary key, name text default 'x')"));
    m_logOffset = QFileInfo(logPath()).size();
}

void DatabaseTest::TearDown()
{
    QSqlQuery query(QSqlDatabase::database());
    query.exec(QStringLiteral("drop table if exists ") + table);
}

DatabaseManager &DatabaseTest::manager()
{
    return *SyncSingleton<DatabaseManager>::instance();
}

QString DatabaseTest::host()
{
    return environment().host;
}

QString DatabaseTest::logPath()
{
    return environment().home.filePath(QStringLiteral("logs/database.log"));
}

QString DatabaseTest::newLog() const
{
    return QString::fromUtf8(readFile(logPath()).mid(m_logOffset));
}

QString DatabaseTest::line(const QString &level, const QString &message)
{
    return stamp + level + QStringLiteral(": ") + message + QLatin1Char('\n');
}

QString DatabaseTest::queryLines(const QString &label, const QString &sql, int rows)
{
    return line(QStringLiteral("DEBUG"),
                QStringLiteral("Query called from method ") + label + QStringLiteral(": ") + sql) +
           line(QStringLiteral("DEBUG"), QStringLiteral("    numRowsAffected: ") + QString::number(rows));
}

void DatabaseTest::run(const QString &sql)
{
    QSqlQuery query(QSqlDatabase::database());
    ASSERT_TRUE(query.exec(sql)) << sql.toStdString() << ": " << query.lastError().text().toStdString();
}

QSqlDatabase &DatabaseTest::second()
{
    return *environment().second;
}

int DatabaseTest::countOn(QSqlDatabase database, const QString &table)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("select count(*) from ") + table) || !query.next())
        return -1;
    return query.value(0).toInt();
}
