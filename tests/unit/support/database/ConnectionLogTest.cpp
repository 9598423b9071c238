// The password of a connection never reaches the log, whatever way the connection fails.
#include "DatabaseFixture.h"

#include <QSqlDatabase>

namespace {

class ConnectionLogTest : public DatabaseTest
{
protected:
    void TearDown() override
    {
        for (const QString &name : std::as_const(m_names))
            QSqlDatabase::removeDatabase(name);
        DatabaseTest::TearDown();
    }

    // Connects under a name of its own; true when the connection opened.
    bool connect(const QString &database, const QString &user, const QString &password,
                 const QString &hostName)
    {
        const QString name = QStringLiteral("log_test_%1").arg(m_names.size());
        m_names << name;
        return manager().createConnection(QStringLiteral("QPSQL7"), database, user, password, hostName,
                                          name) != nullptr;
    }

    void expectNoPassword(const QString &password) const
    {
        const QString log = newLog();
        EXPECT_FALSE(log.contains(password)) << log.toStdString();
    }

private:
    QStringList m_names;
};

TEST_F(ConnectionLogTest, AFailedConnectionLogsTheReasonButNotThePassword)
{
    const QString password = QStringLiteral("Kitchen-Secret-4711");
    EXPECT_FALSE(connect(QStringLiteral("no_such_database"), QStringLiteral("bristel"), password, host()));
    const QString log = newLog();
    EXPECT_TRUE(log.startsWith(line(QStringLiteral("ERROR"), QStringLiteral("Failed to open database: ") +
                                                                 QStringLiteral("QPSQL: Unable to connect"))))
        << log.toStdString();
    EXPECT_TRUE(log.contains(QStringLiteral("database \"no_such_database\" does not exist")))
        << log.toStdString();
    expectNoPassword(password);
}

TEST_F(ConnectionLogTest, APasswordWithQuotesAndBlanksStaysOutOfTheLog)
{
    const QString password = QStringLiteral("pa ss' wo\\rd=\"x\" host=evil");
    EXPECT_FALSE(connect(QStringLiteral("no_such_database"), QStringLiteral("bristel"), password, host()));
    EXPECT_TRUE(newLog().contains(QStringLiteral("Failed to open database")));
    expectNoPassword(password);
    expectNoPassword(QStringLiteral("evil"));
}

TEST_F(ConnectionLogTest, APasswordTypedIntoTheUserFieldIsMaskedInTheServersAnswer)
{
    // The server names the unknown role in its answer, and here the role is the password.
    const QString password = QStringLiteral("Tr0ub4dor-and-3");
    EXPECT_FALSE(connect(QStringLiteral("bristel_test"), password, password, host()));
    const QString log = newLog();
    EXPECT_TRUE(log.contains(QStringLiteral("role \"********\" does not exist"))) << log.toStdString();
    expectNoPassword(password);
}

TEST_F(ConnectionLogTest, AnUnreachableServerLogsNoPassword)
{
    const QString password = QStringLiteral("Unreachable-Secret-1");
    EXPECT_FALSE(connect(QStringLiteral("bristel_test"), QStringLiteral("bristel"), password,
                         host() + QStringLiteral("/no-such-folder")));
    EXPECT_TRUE(newLog().contains(QStringLiteral("Failed to open database")));
    expectNoPassword(password);
}

TEST_F(ConnectionLogTest, ASuccessfulConnectionLogsNoPasswordEither)
{
    // The test server trusts its socket, so the password is sent and not needed.
    const QString password = QStringLiteral("Opened-Secret-2");
    EXPECT_TRUE(connect(QStringLiteral("bristel_test"), QStringLiteral("bristel"), password, host()));
    EXPECT_EQ(newLog(),
              line(QStringLiteral("DEBUG"), QStringLiteral("Connection With bristel_test DB established")));
}

} // namespace
