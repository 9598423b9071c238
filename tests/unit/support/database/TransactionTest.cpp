#include "DatabaseFixture.h"

#include "support/HLibrary.h"

#include "TestSupport.h"

#include <QRegularExpression>
#include <QSqlQuery>
#include <QSqlTableModel>

namespace {

const QString debug = QStringLiteral("DEBUG");
const QString error = QStringLiteral("ERROR");

class TransactionTest : public DatabaseTest
{
protected:
    QString insert() const
    {
        return QStringLiteral("insert into ") + table + QStringLiteral(" values(default)");
    }
};

TEST_F(TransactionTest, CommitOnTheDefaultConnectionRunsTheStatement)
{
    manager().begin();
    manager().executeQuery(insert());
    EXPECT_EQ(countOn(second(), table), 0); // not visible before the commit
    manager().commit();
    EXPECT_EQ(countOn(second(), table), 1);
    EXPECT_EQ(newLog(), queryLines(QStringLiteral("executeQuery(...)"), QStringLiteral("BEGIN"), 0) +
                            line(debug, QStringLiteral("BEGIN\n\n")) +
                            queryLines(QStringLiteral("executeQuery(...)"), insert(), 1) +
                            queryLines(QStringLiteral("executeQuery(...)"), QStringLiteral("COMMIT"), 0) +
                            line(debug, QStringLiteral("COMMIT\n\n")));
}

TEST_F(TransactionTest, RollbackOnTheDefaultConnectionDiscards)
{
    manager().begin();
    manager().executeQuery(insert());
    manager().rollback();
    EXPECT_EQ(countOn(second(), table), 0);
    EXPECT_EQ(countOn(QSqlDatabase::database(), table), 0);
    EXPECT_TRUE(
        newLog().endsWith(queryLines(QStringLiteral("executeQuery(...)"), QStringLiteral("ROLLBACK"), 0) +
                          line(debug, QStringLiteral("ROLLBACK\n\n"))));
}

TEST_F(TransactionTest, CommitOnAGivenDatabaseUsesItsOwnTransaction)
{
    manager().begin(&second());
    manager().executeQuery(insert(), &second());
    EXPECT_EQ(countOn(QSqlDatabase::database(), table), 0);
    manager().commit(&second());
    EXPECT_EQ(countOn(QSqlDatabase::database(), table), 1);
    EXPECT_EQ(newLog(), line(debug, QStringLiteral("BEGIN\n\n")) +
                            queryLines(QStringLiteral("executeQuery(...)"), insert(), 1) +
                            line(debug, QStringLiteral("COMMIT\n\n")));
}

TEST_F(TransactionTest, RollbackOnAGivenDatabaseDiscards)
{
    manager().begin(&second());
    manager().executeQuery(insert(), &second());
    EXPECT_EQ(countOn(second(), table), 1);
    manager().rollback(&second());
    EXPECT_EQ(countOn(second(), table), 0);
    EXPECT_EQ(newLog(), line(debug, QStringLiteral("BEGIN\n\n")) +
                            queryLines(QStringLiteral("executeQuery(...)"), insert(), 1) +
                            line(debug, QStringLiteral("ROLLBACK\n\n")));
}

TEST_F(TransactionTest, SafeNewRecordCommitsOnTheDefaultConnection)
{
    EXPECT_EQ(manager().safeNewRecord(table), QStringLiteral("1"));
    EXPECT_EQ(countOn(second(), table), 1);
    EXPECT_EQ(newLog(),
              queryLines(QStringLiteral("executeQuery(...)"), QStringLiteral("BEGIN"), 0) +
                  line(debug, QStringLiteral("BEGIN\n\n")) +
                  queryLines(QStringLiteral("newRecord"), insert(), 1) +
                  queryLines(QStringLiteral("getLastId"), QStringLiteral("select max(ID) from ") + table, 1) +
                  queryLines(QStringLiteral("executeQuery(...)"), QStringLiteral("COMMIT"), 0) +
                  line(debug, QStringLiteral("COMMIT\n\n")));
}

TEST_F(TransactionTest, SafeNewRecordOnAGivenDatabase)
{
    manager().newRecord(table);
    EXPECT_EQ(manager().safeNewRecord(table, &second()), QStringLiteral("2"));
    EXPECT_EQ(countOn(QSqlDatabase::database(), table), 2);
}

TEST_F(TransactionTest, CursorErrorNamesTheTable)
{
    QSqlTableModel model(nullptr, QSqlDatabase::database());
    model.setTable(table);
    model.setFilter(QStringLiteral("no_such_column = 1"));
    EXPECT_FALSE(model.select());
    manager().showCursorError(QStringLiteral("TransactionTest::cursor"), model);
    // The model's own statement, shortened by the server around the position of the error.
    const QString shown =
        QStringLiteral("...\", \"name\" FROM \"") + table + QStringLiteral("\" WHERE no_such_co...");
    EXPECT_EQ(
        newLog(),
        line(error, QStringLiteral("Error in the method TransactionTest::cursor, to cursor: ") + table) +
            line(error, QStringLiteral("ERROR:  column \"no_such_column\" does not exist\nLINE 1: ") + shown +
                            QLatin1Char('\n') +
                            QString(8 + shown.indexOf(QStringLiteral("no_such_co")), QLatin1Char(' ')) +
                            QStringLiteral("^\n(42703)")));
}

TEST_F(TransactionTest, CursorWithoutErrorLogsNothing)
{
    QSqlTableModel model(nullptr, QSqlDatabase::database());
    model.setTable(table);
    EXPECT_TRUE(model.select());
    manager().showCursorError(QStringLiteral("quiet"), model);
    EXPECT_EQ(newLog(), QString());
}

TEST_F(TransactionTest, NewConnectionUsesTheConfiguredSettings)
{
    EXPECT_EQ(HLibrary::dbname(), QStringLiteral("bristel_test"));
    EXPECT_EQ(HLibrary::username(), QStringLiteral("bristel"));
    EXPECT_EQ(HLibrary::hostname(), host());
    EXPECT_EQ(HLibrary::password(), QString());
    const auto connection = HLibrary::newDBConnection(QStringLiteral("third"));
    ASSERT_TRUE(connection);
    EXPECT_TRUE(connection->isOpen());
    EXPECT_EQ(connection->connectionName(), QStringLiteral("third"));
    EXPECT_EQ(connection->driverName(), QStringLiteral("QPSQL"));
    EXPECT_EQ(QSqlDatabase::database(QStringLiteral("third")).databaseName(), QStringLiteral("bristel_test"));
    EXPECT_EQ(newLog(), line(debug, QStringLiteral("Connection With bristel_test DB established")));
}

TEST_F(TransactionTest, ConnectionsWereLoggedFromTheStart)
{
    const QString log = QString::fromUtf8(readFile(logPath()));
    EXPECT_TRUE(log.startsWith(line(debug, QStringLiteral("Start Logger")) +
                               line(debug, QStringLiteral("Connection With bristel_test DB established")) +
                               line(debug, QStringLiteral("Connection With bristel_test DB established"))))
        << log.toStdString();
}

TEST_F(TransactionTest, CurrentDriverNameIsAcceptedToo)
{
    const auto connection =
        manager().createConnection(QStringLiteral("QPSQL"), QStringLiteral("bristel_test"),
                                   QStringLiteral("bristel"), QString(), host(), QStringLiteral("fourth"));
    ASSERT_TRUE(connection);
    EXPECT_TRUE(connection->isOpen());
}

TEST_F(TransactionTest, OpenFailureLogsDriverAndDatabaseTexts)
{
    const auto connection =
        manager().createConnection(QStringLiteral("QPSQL7"), QStringLiteral("no_such_database"),
                                   QStringLiteral("bristel"), QString(), host(), QStringLiteral("broken"));
    EXPECT_FALSE(connection);
    const QString log = newLog();
    // Qt prefixes the driver text with the driver's name ("QPSQL: Unable to connect").
    const QRegularExpression expected(
        QStringLiteral("^") + QRegularExpression::escape(stamp) +
        QStringLiteral("ERROR: Failed to open database: [^\\n]*Unable to connect\\n") +
        QRegularExpression::escape(stamp) + QStringLiteral("ERROR: \\S"));
    EXPECT_TRUE(expected.match(log).hasMatch()) << log.toStdString();
    EXPECT_TRUE(log.contains(QStringLiteral("\"no_such_database\" does not exist"))) << log.toStdString();
    EXPECT_FALSE(log.contains(QStringLiteral("established")));
}

TEST_F(TransactionTest, UnknownDriverIsReported)
{
    const auto connection =
        manager().createConnection(QStringLiteral("NOSUCHDRIVER"), QStringLiteral("x"), QString(), QString(),
                                   QString(), QStringLiteral("nodriver"));
    EXPECT_FALSE(connection);
    EXPECT_EQ(newLog(), line(error, QStringLiteral("Failed to connect to driver")));
}

} // namespace
