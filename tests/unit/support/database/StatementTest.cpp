#include "DatabaseFixture.h"

#include "TestSupport.h"

#include <QSqlError>
#include <QSqlQuery>

namespace {

const QString debug = QStringLiteral("DEBUG");
const QString error = QStringLiteral("ERROR");

// PostgreSQL's report of an error in a one-line statement, as the driver passes it on: the
// message, the statement with a caret under the offending position, and the SQLSTATE code.
QString serverError(const QString &message, const QString &statement, qsizetype position, const char *code)
{
    return QStringLiteral("ERROR:  ") + message + QStringLiteral("\nLINE 1: ") + statement +
           QLatin1Char('\n') + QString(8 + position, QLatin1Char(' ')) + QStringLiteral("^\n(") +
           QLatin1String(code) + QLatin1Char(')');
}

class StatementTest : public DatabaseTest
{
protected:
    void fill()
    {
        run(QStringLiteral("insert into ") + table +
            QStringLiteral(" (name) values ('alpha'), ('beta'), ('gamma')"));
    }
};

TEST_F(StatementTest, GetFieldReadsOneValue)
{
    fill();
    EXPECT_EQ(manager().getField(table, QStringLiteral("name"), QStringLiteral("2")), QStringLiteral("beta"));
    const QString sql = QStringLiteral("select name from ") + table + QStringLiteral(" where id = 2");
    EXPECT_EQ(newLog(), queryLines(QStringLiteral("DatabaseManager::getField(...)"), sql, 1));
}

TEST_F(StatementTest, GetFieldOfAMissingRowIsEmpty)
{
    fill();
    EXPECT_EQ(manager().getField(table, QStringLiteral("name"), QStringLiteral("42")), QString());
    EXPECT_EQ(manager().getField(table, QStringLiteral("name"), QStringLiteral("3"), &second()),
              QStringLiteral("gamma"));
}

TEST_F(StatementTest, FailedStatementLogsBothErrorLines)
{
    const QString sql = QStringLiteral("select name from no_such_table where id = 1");
    EXPECT_EQ(
        manager().getField(QStringLiteral("no_such_table"), QStringLiteral("name"), QStringLiteral("1")),
        QString());
    EXPECT_EQ(
        newLog(),
        line(debug, QStringLiteral("Query called from method DatabaseManager::getField(...): ") + sql) +
            line(debug, QStringLiteral("    numRowsAffected: -1")) +
            line(error,
                 QStringLiteral("Error in the method DatabaseManager::getField(...), to query: ") + sql) +
            line(error, serverError(QStringLiteral("relation \"no_such_table\" does not exist"), sql,
                                    sql.indexOf(QStringLiteral("no_such_table")), "42P01")));
}

TEST_F(StatementTest, RemoveRecordReportsRowsAffected)
{
    fill();
    EXPECT_EQ(manager().removeRecord(table, QStringLiteral("1")), 1);
    EXPECT_EQ(manager().removeRecord(table, QStringLiteral("1")), 0);
    EXPECT_EQ(countOn(second(), table), 2);
    const QString sql = QStringLiteral("delete from ") + table + QStringLiteral(" where ID = 1");
    EXPECT_EQ(newLog(), queryLines(QStringLiteral("removeRecord"), sql, 1) +
                            queryLines(QStringLiteral("removeRecord"), sql, 0));
}

TEST_F(StatementTest, ExistRecordTellsWhetherARowCameBack)
{
    fill();
    EXPECT_TRUE(manager().existRecord(table, QStringLiteral("3")));
    EXPECT_FALSE(manager().existRecord(table, QStringLiteral("4")));
    EXPECT_FALSE(manager().existRecord(QStringLiteral("no_such_table"), QStringLiteral("1")));
    const QString label = QStringLiteral("DatabaseManager::existRecord(...)");
    const QString missing = QStringLiteral("select * from no_such_table where ID = 1");
    EXPECT_EQ(
        newLog(),
        queryLines(label, QStringLiteral("select * from ") + table + QStringLiteral(" where ID = 3"), 1) +
            queryLines(label, QStringLiteral("select * from ") + table + QStringLiteral(" where ID = 4"), 0) +
            queryLines(label, missing, -1) +
            line(error,
                 QStringLiteral("Error in the method ") + label + QStringLiteral(", to query: ") + missing) +
            line(error, serverError(QStringLiteral("relation \"no_such_table\" does not exist"), missing,
                                    missing.indexOf(QStringLiteral("no_such_table")), "42P01")));
}

TEST_F(StatementTest, NumRecordsCountsUnderTheExistRecordLabel)
{
    fill();
    EXPECT_EQ(manager().numRecords(table, QStringLiteral("1=1")), 3);
    EXPECT_EQ(manager().numRecords(table, QStringLiteral("name like '%a'")), 3);
    EXPECT_EQ(manager().numRecords(table, QStringLiteral("name = 'beta'")), 1);
    EXPECT_EQ(manager().numRecords(table, QStringLiteral("name = 'none'")), 0);
    const QString label = QStringLiteral("DatabaseManager::existRecord(...)");
    const QString head = QStringLiteral("select count(*) from ") + table + QStringLiteral(" where ");
    EXPECT_EQ(newLog(), queryLines(label, head + QStringLiteral("1=1"), 1) +
                            queryLines(label, head + QStringLiteral("name like '%a'"), 1) +
                            queryLines(label, head + QStringLiteral("name = 'beta'"), 1) +
                            queryLines(label, head + QStringLiteral("name = 'none'"), 1));
}

TEST_F(StatementTest, NumRecordsOfAFailedCountIsMinusOne)
{
    EXPECT_EQ(manager().numRecords(table, QStringLiteral("no_such_column = 1")), -1);
    const QString label = QStringLiteral("DatabaseManager::existRecord(...)");
    const QString sql =
        QStringLiteral("select count(*) from ") + table + QStringLiteral(" where no_such_column = 1");
    // The server shortens a long statement around the position, with "..." on both sides.
    const QString shown = QStringLiteral("...) from ") + table + QStringLiteral(" where no_such_co...");
    EXPECT_EQ(newLog(),
              queryLines(label, sql, -1) +
                  line(error, QStringLiteral("Error in the method ") + label +
                                  QStringLiteral(", to query: ") + sql) +
                  line(error, serverError(QStringLiteral("column \"no_such_column\" does not exist"), shown,
                                          shown.indexOf(QStringLiteral("no_such_co")), "42703")));
}

TEST_F(StatementTest, ExecuteSelectQueryReadsTheFirstValue)
{
    fill();
    const QString sql = QStringLiteral("select name from ") + table + QStringLiteral(" order by id desc");
    EXPECT_EQ(manager().executeSelectQuery(sql), QStringLiteral("gamma"));
    EXPECT_EQ(manager().executeSelectQuery(QStringLiteral("select name from ") + table +
                                           QStringLiteral(" where id > 10")),
              QString());
    EXPECT_EQ(newLog(),
              queryLines(QStringLiteral("executeSelectQuery(...)"), sql, 3) +
                  queryLines(QStringLiteral("executeSelectQuery(...)"),
                             QStringLiteral("select name from ") + table + QStringLiteral(" where id > 10"),
                             0));
}

TEST_F(StatementTest, ExecuteSelectQuery2ListsTheFirstColumnInRowOrder)
{
    fill();
    const QString sql =
        QStringLiteral("select name, id from ") + table + QStringLiteral(" order by name desc");
    EXPECT_EQ(manager().executeSelectQuery2(sql),
              (QStringList{QStringLiteral("gamma"), QStringLiteral("beta"), QStringLiteral("alpha")}));
    EXPECT_EQ(manager().executeSelectQuery2(QStringLiteral("select name from ") + table +
                                            QStringLiteral(" where id > 10")),
              QStringList());
    EXPECT_EQ(manager().executeSelectQuery2(QStringLiteral("select broken from nowhere")), QStringList());
    const QString label = QStringLiteral("executeSelectQuery(...)");
    const QString broken = QStringLiteral("select broken from nowhere");
    EXPECT_EQ(newLog(),
              queryLines(label, sql, 3) +
                  queryLines(label,
                             QStringLiteral("select name from ") + table + QStringLiteral(" where id > 10"),
                             0) +
                  queryLines(label, broken, -1) +
                  line(error, QStringLiteral("Error in the method ") + label +
                                  QStringLiteral(", to query: ") + broken) +
                  line(error, serverError(QStringLiteral("relation \"nowhere\" does not exist"), broken,
                                          broken.indexOf(QStringLiteral("nowhere")), "42P01")));
}

TEST_F(StatementTest, ExecuteSelectQuery3ReadsColumnsOfTheFirstRow)
{
    fill();
    const QString sql =
        QStringLiteral("select id, name, 'const' from ") + table + QStringLiteral(" order by id");
    EXPECT_EQ(manager().executeSelectQuery3(sql, 3),
              (QStringList{QStringLiteral("1"), QStringLiteral("alpha"), QStringLiteral("const")}));
    EXPECT_EQ(manager().executeSelectQuery3(sql, 2),
              (QStringList{QStringLiteral("1"), QStringLiteral("alpha")}));
    EXPECT_EQ(manager().executeSelectQuery3(
                  QStringLiteral("select id, name from ") + table + QStringLiteral(" where id > 10"), 2),
              QStringList());
    const QString label = QStringLiteral("executeSelectQuery(...)");
    EXPECT_EQ(newLog(), queryLines(label, sql, 3) + queryLines(label, sql, 3) +
                            queryLines(label,
                                       QStringLiteral("select id, name from ") + table +
                                           QStringLiteral(" where id > 10"),
                                       0));
}

TEST_F(StatementTest, ExecuteQueryReportsRowsAffected)
{
    fill();
    const QString sql = QStringLiteral("update ") + table + QStringLiteral(" set name = 'z' where id < 3");
    EXPECT_EQ(manager().executeQuery(sql), 2);
    EXPECT_EQ(manager().numRecords(table, QStringLiteral("name = 'z'"), &second()), 2);
    // The count through the other connection is logged too, as one row.
    EXPECT_EQ(newLog(), queryLines(QStringLiteral("executeQuery(...)"), sql, 2) +
                            queryLines(QStringLiteral("DatabaseManager::existRecord(...)"),
                                       QStringLiteral("select count(*) from ") + table +
                                           QStringLiteral(" where name = 'z'"),
                                       1));
}

TEST_F(StatementTest, GetLastIdOfAnEmptyTableIsEmptyNotError)
{
    EXPECT_EQ(manager().getLastId(table), QString());
    EXPECT_EQ(newLog(),
              queryLines(QStringLiteral("getLastId"), QStringLiteral("select max(ID) from ") + table, 1));
}

TEST_F(StatementTest, GetLastIdReadsTheHighestId)
{
    fill();
    run(QStringLiteral("delete from ") + table + QStringLiteral(" where id = 2"));
    EXPECT_EQ(manager().getLastId(table), QStringLiteral("3"));
}

TEST_F(StatementTest, GetLastIdWithoutARowIsError)
{
    const QString sql = QStringLiteral("select max(ID) from no_such_table");
    EXPECT_EQ(manager().getLastId(QStringLiteral("no_such_table")), QStringLiteral("Error"));
    EXPECT_EQ(newLog(),
              queryLines(QStringLiteral("getLastId"), sql, -1) +
                  line(error, QStringLiteral("Error in the method getLastId, to query: ") + sql) +
                  line(error, serverError(QStringLiteral("relation \"no_such_table\" does not exist"), sql,
                                          sql.indexOf(QStringLiteral("no_such_table")), "42P01")) +
                  line(error, QStringLiteral("getLastId( no_such_table ): ") + sql +
                                  QStringLiteral(" return empty result")));
}

TEST_F(StatementTest, NewRecordInsertsDefaultsAndReturnsTheNewId)
{
    EXPECT_EQ(manager().newRecord(table), QStringLiteral("1"));
    EXPECT_EQ(manager().newRecord(table, &second()), QStringLiteral("2"));
    EXPECT_EQ(manager().getField(table, QStringLiteral("name"), QStringLiteral("2")), QStringLiteral("x"));
    const QString insert = QStringLiteral("insert into ") + table + QStringLiteral(" values(default)");
    const QString last = QStringLiteral("select max(ID) from ") + table;
    const QString oneRecord =
        queryLines(QStringLiteral("newRecord"), insert, 1) + queryLines(QStringLiteral("getLastId"), last, 1);
    EXPECT_EQ(newLog(),
              oneRecord + oneRecord +
                  queryLines(QStringLiteral("DatabaseManager::getField(...)"),
                             QStringLiteral("select name from ") + table + QStringLiteral(" where id = 2"),
                             1));
}

TEST_F(StatementTest, NewRecordOnAMissingTableFallsBackToError)
{
    EXPECT_EQ(manager().newRecord(QStringLiteral("no_such_table")), QStringLiteral("Error"));
}

TEST_F(StatementTest, ShowQueryErrorOnASuccessfulQueryLogsOnlyDebugLines)
{
    QSqlQuery query(QSqlDatabase::database());
    ASSERT_TRUE(
        query.exec(QStringLiteral("insert into ") + table + QStringLiteral(" (name) values ('a'), ('b')")));
    manager().showQueryError(QStringLiteral("custom"), query);
    EXPECT_EQ(newLog(), queryLines(QStringLiteral("custom"), query.lastQuery(), 2));
}

TEST_F(StatementTest, HelperWithoutLoggerStillRunsStatements)
{
    DatabaseManager silent(nullptr);
    EXPECT_EQ(silent.logger(), nullptr);
    EXPECT_EQ(silent.newRecord(table), QStringLiteral("1"));
    EXPECT_EQ(silent.getLastId(QStringLiteral("no_such_table")), QStringLiteral("Error"));
    EXPECT_EQ(silent.numRecords(table, QStringLiteral("1=1")), 1);
    silent.commit();
    EXPECT_EQ(newLog(), QString());
}

} // namespace
