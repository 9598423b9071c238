#ifndef BRISTEL_TESTS_DATABASEFIXTURE_H
#define BRISTEL_TESTS_DATABASEFIXTURE_H

#include "support/DatabaseManager.h"

#include "TestSupport.h"

#include <QSqlDatabase>
#include <QString>

#include <gtest/gtest.h>

/*
 * Tests against the private PostgreSQL server whose socket folder is recorded in the file
 * $BRISTEL_TEST_PGRECORD, or named by $BRISTEL_TEST_PGHOST when run by hand (database
 * "bristel_test", user "bristel").
 *
 * Once per process, before the configuration singleton is first used, HOME is pointed at
 * a temporary folder whose .bristel/conf/bristel.conf holds the logger keys (level debug,
 * overwrite, <home>/logs/database.log) and the database keys; the "default" logger is
 * registered and the default connection opened through HLibrary::newDBConnection.  The
 * logger's clock is fixed, so log lines can be compared byte for byte.
 *
 * Each test gets its own table, named after the test, with an id serial primary key and a
 * name column defaulting to 'x'.  A test that cannot reach the server fails.
 */
class DatabaseTest : public ::testing::Test
{
protected:
    static const QString stamp; // "[..] " prefix of every log line

    void SetUp() override;
    void TearDown() override;

    static DatabaseManager &manager();
    static QString host();
    static QString logPath();

    // The log text written since SetUp.
    QString newLog() const;
    // One log line as the logger writes it.
    static QString line(const QString &level, const QString &message);
    // The two DEBUG lines of showQueryError for a successful statement.
    static QString queryLines(const QString &label, const QString &sql, int rows);

    // Runs a statement on the default connection, outside the helper; fails the test on error.
    static void run(const QString &sql);
    // A second connection to the same database, for checking what others see.
    static QSqlDatabase &second();
    static int countOn(QSqlDatabase database, const QString &table);

    QString table;

private:
    qint64 m_logOffset = 0;
};

// A fixture of the kind Base with, beside its table, a sequence of its own named after it
// (minimum 0, starting at 3), dropped when the test ends.
template <typename Base> class WithSequence : public Base
{
protected:
    void SetUp() override
    {
        Base::SetUp();
        if (this->HasFatalFailure())
            return;
        sequence = this->table + QStringLiteral("_seq3");
        Base::run(QStringLiteral("drop sequence if exists ") + sequence);
        Base::run(QStringLiteral("create sequence ") + sequence + QStringLiteral(" minvalue 0 start 3"));
    }
    void TearDown() override
    {
        Base::run(QStringLiteral("drop sequence if exists ") + sequence);
        Base::TearDown();
    }

    QString sequence;
};

#endif
