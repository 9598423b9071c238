// The binding family of the helper against the real server, fed the values a hostile waiter,
// online order or document could send: nothing they hold may change what a statement does.
#include "DatabaseFixture.h"

#include "TestSupport.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

namespace {

const QString error = QStringLiteral("ERROR");

class BindingTest : public DatabaseTest
{
protected:
    void fill()
    {
        run(QStringLiteral("insert into ") + table +
            QStringLiteral(" (name) values ('alpha'), ('beta'), ('gamma')"));
    }

    // Every row of the test's table, as another connection sees it.
    QStringList rows() const
    {
        QSqlQuery query(second());
        EXPECT_TRUE(query.exec(QStringLiteral("select id, md5(name) from ") + table +
                               QStringLiteral(" order by id")));
        QStringList result;
        while (query.next())
            result << query.value(0).toString() + QLatin1Char(' ') + query.value(1).toString();
        return result;
    }

    // The test's own table, as long as it exists: other tests create and drop tables of their
    // own in the same database at the same time.
    QStringList tables() const
    {
        QSqlQuery query(second());
        EXPECT_TRUE(query.exec(QStringLiteral("select tablename from pg_tables where schemaname = 'public' "
                                              "and tablename = '") +
                               table + QStringLiteral("' order by tablename")));
        QStringList result;
        while (query.next())
            result << query.value(0).toString();
        return result;
    }

    // Inserts a row with the given name, bound, and returns its id.
    QString insertNamed(const QString &name)
    {
        QSqlQuery query(QSqlDatabase::database());
        EXPECT_TRUE(query.prepare(QStringLiteral("insert into ") + table +
                                  QStringLiteral(" (name) values (?) returning id")));
        query.addBindValue(name);
        EXPECT_TRUE(query.exec()) << query.lastError().text().toStdString();
        return query.next() ? query.value(0).toString() : QString();
    }

    // The values of the task's list, built around this test's table.
    QStringList hostileValues() const
    {
        return {QStringLiteral("1; drop table ") + table,
                QStringLiteral("1 or 1=1"),
                QStringLiteral("x'); delete from ") + table + QStringLiteral("; --"),
                QStringLiteral("2' or '1'='1"),
                QStringLiteral("1); drop table ") + table + QStringLiteral("; --"),
                QStringLiteral("$$; drop table ") + table + QStringLiteral("; $$"),
                QStringLiteral("\\'; delete from ") + table + QStringLiteral("; --"),
                QStringLiteral("1\n") + stamp + QStringLiteral("INFO: a forged line"),
                QStringLiteral("1\u202e; drop table ") + table + QStringLiteral("\u2028--")};
    }

    // Every line written since SetUp is one of the logger's own lines.
    void expectNoForgedLines() const
    {
        const QStringList lines = newLog().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString &logLine : lines)
            EXPECT_TRUE(logLine.startsWith(stamp + QStringLiteral("DEBUG: ")) ||
                        logLine.startsWith(stamp + QStringLiteral("ERROR: ")))
                << logLine.left(200).toStdString();
        EXPECT_FALSE(newLog().contains(QStringLiteral("INFO: a forged line\n")));
    }

    // The bytes of a file that is not UTF-8, as an online order could deliver them.
    static QByteArray invalidUtf8()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("order.txt"));
        static const char raw[] = "\xff\xfe"
                                  "1 or 1=1 \xc3\x28 \xed\xa0\x80; drop table t; --\x80";
        writeFile(path, QByteArray(raw, sizeof raw - 1));
        return readFile(path);
    }
};

TEST_F(BindingTest, BoundCallsDoTheWorkOfTheConcatenatingOnes)
{
    fill();
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), QStringLiteral("2")),
              QStringLiteral("beta"));
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), 3, &second()), QStringLiteral("gamma"));
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), 42), QString());
    EXPECT_TRUE(manager().rowExists(table, 1));
    EXPECT_FALSE(manager().rowExists(table, QStringLiteral("4")));
    EXPECT_EQ(manager().countRows(table), 3);
    EXPECT_EQ(manager().countRows(table, QStringLiteral("name"), QStringLiteral("beta")), 1);
    EXPECT_EQ(manager().countRows(table, QStringLiteral("name"), QStringLiteral("none")), 0);
    EXPECT_EQ(manager().maxId(table), QStringLiteral("3"));
    EXPECT_EQ(manager().insertRow(table), QStringLiteral("4"));
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), 4), QStringLiteral("x"));
    EXPECT_EQ(manager().deleteRow(table, 4), 1);
    EXPECT_EQ(manager().deleteRow(table, 4), 0);
    EXPECT_EQ(countOn(second(), table), 3);
    EXPECT_EQ(manager().maxId(table), QStringLiteral("3"));
}

TEST_F(BindingTest, TheLogShowsStatementsWithPlaceholdersNeverValues)
{
    fill();
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), QStringLiteral("2")),
              QStringLiteral("beta"));
    EXPECT_EQ(manager().countRows(table, QStringLiteral("name"), QStringLiteral("secret-value")), 0);
    EXPECT_EQ(
        newLog(),
        queryLines(QStringLiteral("DatabaseManager::fieldValue(...)"),
                   QStringLiteral("select \"name\" from \"") + table + QStringLiteral("\" where id = ?"), 1) +
            queryLines(QStringLiteral("DatabaseManager::countRows(...)"),
                       QStringLiteral("select count(*) from \"") + table +
                           QStringLiteral("\" where \"name\" = ?"),
                       1));
}

TEST_F(BindingTest, AnEmptyTableHasAnEmptyMaxIdAndTheFirstInsertGetsOne)
{
    EXPECT_EQ(manager().maxId(table), QString());
    EXPECT_EQ(manager().insertRow(table, &second()), QStringLiteral("1"));
    EXPECT_EQ(manager().maxId(table), QStringLiteral("1"));
}

TEST_F(BindingTest, NamesAreReadAsPostgreSqlReadsThemUnquoted)
{
    fill();
    // "user" is a reserved word: unquoted it would name the connected role, not the column.
    run(QStringLiteral("alter table ") + table +
        QStringLiteral(" add column \"user\" text default 'waiter'"));
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("user"), 1), QStringLiteral("waiter"));
    EXPECT_EQ(manager().fieldValue(table.toUpper(), QStringLiteral("NAME"), 1), QStringLiteral("alpha"));
    EXPECT_EQ(manager().countRows(table.toUpper()), 3);
}

TEST_F(BindingTest, HostileIdsChangeNothing)
{
    fill();
    const QStringList before = rows();
    const QStringList tablesBefore = tables();
    ASSERT_EQ(tablesBefore, QStringList{table});
    for (const QString &id : hostileValues()) {
        SCOPED_TRACE(id.toStdString());
        EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), id), QString());
        EXPECT_FALSE(manager().rowExists(table, id));
        EXPECT_EQ(manager().deleteRow(table, id), -1);
        EXPECT_EQ(manager().countRows(table, QStringLiteral("id"), id), -1);
        EXPECT_EQ(manager().countRows(table, QStringLiteral("name"), id), 0);
    }
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(tables(), tablesBefore);
    const QString log = newLog();
    EXPECT_TRUE(
        log.contains(line(error, QStringLiteral("Error in the method DatabaseManager::deleteRow(...), "
                                                "to query: delete from \"") +
                                     table + QStringLiteral("\" where id = ?"))))
        << log.left(2000).toStdString();
    EXPECT_TRUE(log.contains(QStringLiteral("invalid input syntax for type integer")))
        << log.left(2000).toStdString();
    expectNoForgedLines();
}

TEST_F(BindingTest, AHostileValueIsMatchedAsTheTextItIs)
{
    fill();
    for (const QString &value : hostileValues()) {
        SCOPED_TRACE(value.toStdString());
        const QString id = insertNamed(value);
        ASSERT_FALSE(id.isEmpty());
        EXPECT_EQ(manager().countRows(table, QStringLiteral("name"), value), 1);
        EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), id), value);
    }
    EXPECT_EQ(countOn(second(), table), 3 + hostileValues().size());
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), 1), QStringLiteral("alpha"));
}

TEST_F(BindingTest, HostileNamesAreRefusedLoggedAndRunNothing)
{
    fill();
    const QStringList before = rows();
    const QStringList tablesBefore = tables();
    ASSERT_EQ(tablesBefore, QStringList{table});
    QStringList names = hostileValues();
    names << table + QStringLiteral(" where 1=1 or id") << QStringLiteral("\"") + table + QStringLiteral("\"")
          << QStringLiteral("public.") + table << QString() << QStringLiteral("caf\u00e9")
          << QStringLiteral("1") + table << QString(64, QLatin1Char('a')) << QString::fromUtf8(invalidUtf8())
          << QStringLiteral("t\u0000; drop table x") << QString(1'000'000, QLatin1Char('t'));
    for (const QString &name : names) {
        SCOPED_TRACE(name.left(80).toStdString());
        EXPECT_EQ(manager().fieldValue(name, QStringLiteral("name"), 1), QString());
        EXPECT_EQ(manager().fieldValue(table, name, 1), QString());
        EXPECT_EQ(manager().deleteRow(name, 1), -1);
        EXPECT_FALSE(manager().rowExists(name, 1));
        EXPECT_EQ(manager().countRows(name), -1);
        EXPECT_EQ(manager().countRows(table, name, 1), -1);
        EXPECT_EQ(manager().maxId(name), QStringLiteral("Error"));
        EXPECT_EQ(manager().insertRow(name), QStringLiteral("Error"));
        EXPECT_EQ(manager().sequenceLastValue(name), QString());
        EXPECT_FALSE(manager().setSequenceValue(name, 1));
        EXPECT_EQ(manager().addToSequence(name, 1), QString());
        EXPECT_FALSE(manager().subtractFromSequenceIfEnough(name, 1));
    }
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(tables(), tablesBefore);

    const QString log = newLog();
    EXPECT_FALSE(log.contains(QStringLiteral("Query called from method")))
        << "a refused call ran a statement";
    EXPECT_TRUE(
        log.startsWith(line(error, QStringLiteral("DatabaseManager::fieldValue(...): refused table name "
                                                  "\"1; drop table ") +
                                       table + QStringLiteral("\": not a plain identifier"))))
        << log.left(300).toStdString();
    EXPECT_TRUE(
        log.contains(line(error, QStringLiteral("DatabaseManager::insertRow(...): refused table name "
                                                "\"1\\n[01-02-2026 03:04:05:006] INFO: a forged line\": "
                                                "not a plain identifier"))));
    EXPECT_TRUE(log.contains(
        line(error, QStringLiteral("DatabaseManager::countRows(...): refused column name \"\": not a plain "
                                   "identifier"))));
    // Every refusal is one line, and a huge name is not copied into the log.
    EXPECT_EQ(log.count(QLatin1Char('\n')), names.size() * 12);
    EXPECT_LT(log.size(), 200'000);
    expectNoForgedLines();
}

TEST_F(BindingTest, TheLongestPlainNameIsAccepted)
{
    const QString longest = QStringLiteral("t_") + QString(61, QLatin1Char('z'));
    EXPECT_TRUE(DatabaseManager::isPlainIdentifier(longest));
    run(QStringLiteral("create table ") + longest + QStringLiteral(" (id serial primary key)"));
    EXPECT_EQ(manager().insertRow(longest), QStringLiteral("1"));
    EXPECT_EQ(manager().countRows(longest), 1);
    run(QStringLiteral("drop table ") + longest);
}

TEST_F(BindingTest, ATenMegabyteValueIsBoundAndItsErrorLoggedInBrief)
{
    fill();
    const QString huge(10 * 1024 * 1024, QLatin1Char('9'));
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), huge), QString());
    EXPECT_EQ(manager().deleteRow(table, huge), -1);
    const QString hugeName = QString(10 * 1024 * 1024 - 1, QLatin1Char('a')) + QLatin1Char('\'');
    EXPECT_EQ(manager().countRows(table, QStringLiteral("name"), hugeName), 0);
    const QString log = newLog();
    EXPECT_TRUE(log.contains(QStringLiteral("... ("))) << "the error text was not cut";
    EXPECT_LT(log.size(), 8000);

    const QString id = insertNamed(hugeName);
    EXPECT_EQ(manager().countRows(table, QStringLiteral("name"), hugeName), 1);
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), id), hugeName);
    EXPECT_EQ(manager().deleteRow(table, id), 1);
    EXPECT_EQ(countOn(second(), table), 3);
}

TEST_F(BindingTest, ANulCharacterIsRefused)
{
    fill();
    const QStringList before = rows();
    const QString withNul = QStringLiteral("1\u0000 or 1=1");
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), withNul), QString());
    EXPECT_EQ(manager().deleteRow(table, withNul), -1);
    EXPECT_FALSE(manager().rowExists(table, withNul));
    EXPECT_EQ(manager().countRows(table, QStringLiteral("name"), QStringLiteral("alpha\u0000")), -1);
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(
        newLog(),
        line(error,
             QStringLiteral("DatabaseManager::fieldValue(...): refused a value holding a NUL character")) +
            line(error,
                 QStringLiteral("DatabaseManager::deleteRow(...): refused a value holding a NUL character")) +
            line(error,
                 QStringLiteral("DatabaseManager::rowExists(...): refused a value holding a NUL character")) +
            line(error,
                 QStringLiteral("DatabaseManager::countRows(...): refused a value holding a NUL character")));
}

TEST_F(BindingTest, InvalidUtf8FromAFileIsHarmless)
{
    fill();
    const QStringList before = rows();
    const QByteArray bytes = invalidUtf8();
    ASSERT_EQ(bytes.size(), 36);
    ASSERT_FALSE(QString::fromUtf8(bytes).toUtf8() == bytes) << "the bytes are valid UTF-8";
    const QString decoded = QString::fromUtf8(bytes);
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), decoded), QString());
    EXPECT_EQ(manager().deleteRow(table, decoded), -1);
    EXPECT_EQ(manager().countRows(table, QStringLiteral("name"), decoded), 0);
    // The raw bytes, handed over as they came.
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), bytes), QString());
    EXPECT_EQ(manager().deleteRow(table, bytes), -1);
    EXPECT_EQ(manager().countRows(table, QStringLiteral("name"), bytes), 0);
    EXPECT_EQ(rows(), before);
    // Decoded text is stored and found again as it was decoded.
    const QString id = insertNamed(decoded);
    EXPECT_EQ(manager().fieldValue(table, QStringLiteral("name"), id), decoded);
    EXPECT_TRUE(newLog().contains(QStringLiteral("Error in the method DatabaseManager::deleteRow(...)")));
    expectNoForgedLines();
}

class BindingSequenceTest : public WithSequence<BindingTest>
{
};

TEST_F(BindingSequenceTest, SequenceOperationsBindTheirValues)
{
    EXPECT_EQ(manager().sequenceLastValue(sequence), QStringLiteral("3"));
    EXPECT_TRUE(manager().setSequenceValue(sequence, 10));
    EXPECT_EQ(manager().sequenceLastValue(sequence, &second()), QStringLiteral("10"));
    EXPECT_EQ(manager().addToSequence(sequence, 5), QStringLiteral("10"));
    EXPECT_EQ(manager().subtractFromSequence(sequence, 4, &second()), QStringLiteral("15"));
    EXPECT_EQ(manager().sequenceLastValue(sequence), QStringLiteral("11"));
    EXPECT_TRUE(newLog().contains(queryLines(QStringLiteral("DatabaseManager::setSequenceValue(...)"),
                                             QStringLiteral("select setval(cast(? as regclass), ?)"), 1)));
}

TEST_F(BindingSequenceTest, SubtractIfEnoughNeverGoesBelowZero)
{
    EXPECT_FALSE(manager().subtractFromSequenceIfEnough(sequence, 5));
    EXPECT_EQ(manager().sequenceLastValue(sequence), QStringLiteral("3"));
    EXPECT_TRUE(manager().subtractFromSequenceIfEnough(sequence, 3, &second()));
    EXPECT_EQ(manager().sequenceLastValue(sequence), QStringLiteral("0"));
    EXPECT_FALSE(manager().subtractFromSequenceIfEnough(sequence, 1));
    EXPECT_EQ(manager().sequenceLastValue(sequence), QStringLiteral("0"));
}

TEST_F(BindingSequenceTest, HostileSequenceNamesLeaveTheSequenceAndTablesAlone)
{
    fill();
    const QStringList before = rows();
    const QStringList tablesBefore = tables();
    ASSERT_EQ(tablesBefore, QStringList{table});
    const QStringList names = {
        sequence + QStringLiteral("', 99); drop table ") + table + QStringLiteral("; --"),
        sequence + QStringLiteral("; delete from ") + table,
        sequence + QStringLiteral("\"; delete from ") + table + QStringLiteral("; --")};
    for (const QString &name : names) {
        EXPECT_EQ(manager().sequenceLastValue(name), QString());
        EXPECT_FALSE(manager().setSequenceValue(name, 99));
        EXPECT_EQ(manager().addToSequence(name, 99), QString());
        EXPECT_EQ(manager().subtractFromSequence(name, 1), QString());
        EXPECT_FALSE(manager().subtractFromSequenceIfEnough(name, 1));
    }
    EXPECT_EQ(manager().sequenceLastValue(sequence), QStringLiteral("3"));
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(tables(), tablesBefore);
}

TEST_F(BindingSequenceTest, AMissingSequenceIsNotTakenForZero)
{
    const QString missing = table + QStringLiteral("_missing");
    EXPECT_EQ(manager().addToSequence(missing, 5), QString());
    EXPECT_FALSE(manager().setSequenceValue(missing, 5));
    EXPECT_FALSE(manager().subtractFromSequenceIfEnough(missing, 0));
    const QString log = newLog();
    EXPECT_TRUE(log.contains(
        line(error, QStringLiteral("Error in the method DatabaseManager::sequenceLastValue(...), "
                                   "to query: select last_value from \"") +
                        missing + QStringLiteral("\""))))
        << log.toStdString();
    EXPECT_TRUE(log.contains(QStringLiteral("does not exist")));
    // The failed read stopped the addition: no setval was attempted.
    EXPECT_EQ(log.count(QStringLiteral("Query called from method DatabaseManager::setSequenceValue(...)")),
              1);
}

} // namespace
