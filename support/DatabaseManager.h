#ifndef BRISTEL_SUPPORT_DATABASEMANAGER_H
#define BRISTEL_SUPPORT_DATABASEMANAGER_H

#include "bristel_database_export.h"

#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

class DatabaseManagerPrivate;
class Logger;
class QSqlQuery;
class QSqlTableModel;

/*
 * Thin helper over Qt's SQL module for the installation's PostgreSQL database, reached
 * through SyncSingleton<DatabaseManager>.
 *
 * Every operation that runs SQL takes the database as its last argument; a null pointer
 * means Qt's default connection.  The helper keeps no connection of its own: connections
 * live in Qt's registry under their names.  Every statement and every error is written to
 * the logger registered under "default" in HLogManager; when none is registered nothing
 * is logged.
 *
 * Two families do the same work.  Concatenate (trusted text only): getField, removeRecord,
 * existRecord, numRecords, executeSelectQuery*, executeQuery, getLastId, newRecord,
 * safeNewRecord, sequenceValue, setSequence, incrementSequence, decrementSequence,
 * decrementSequenceIfPositive; bind (any value): fieldValue, deleteRow, rowExists, countRows,
 * maxId, insertRow, sequenceLastValue, setSequenceValue, addToSequence, subtractFromSequence,
 * subtractFromSequenceIfEnough.  begin, commit and rollback send fixed texts only.
 *
 * The concatenating family keeps the statement texts the rest of the installation depends
 * on: table, field, sequence, id and condition texts are inserted exactly as given, without
 * quoting or escaping, so its callers must pass trusted identifiers and values only, never
 * text coming from waiters, online orders or documents.  New code uses the binding family.
 *
 * Failures are never thrown: they are logged and the result falls back to the empty
 * string, the empty list, false, -1, 0 rows or "Error" as each operation states.  The
 * operations take no lock and are meant for one thread per connection.
 *
 * The state lives behind a private pointer, so that the class keeps its layout in the
 * shared library whatever a later release keeps in it.
 */
class BRISTEL_DATABASE_EXPORT DatabaseManager
{
public:
    // Takes the "default" logger of the process-wide HLogManager (possibly none).
    DatabaseManager();
    // Logs to the given logger (not owned); null disables logging.
    explicit DatabaseManager(Logger *logger);
    ~DatabaseManager();

    DatabaseManager(const DatabaseManager &) = delete;
    DatabaseManager &operator=(const DatabaseManager &) = delete;

    Logger *logger() const;

    // Registers and opens a database under connectionName (the default connection when
    // empty).  "QPSQL7" is accepted as the older name of "QPSQL".  Returns a handle on the
    // registered connection, or null when the driver is unknown or the open failed.  The
    // password never appears in the log lines, not even inside the server's answer.
    std::unique_ptr<QSqlDatabase> createConnection(const QString &driver, const QString &databaseName,
                                                   const QString &userName, const QString &password,
                                                   const QString &hostName, const QString &connectionName);

    // "select <field> from <table> where id = <id>": the first value, "" when no row.
    QString getField(const QString &table, const QString &field, const QString &id,
                     QSqlDatabase *db = nullptr);
    // "delete from <table> where ID = <id>": the number of rows affected.
    int removeRecord(const QString &table, const QString &id, QSqlDatabase *db = nullptr);
    // "select * from <table> where ID = <id>": whether a row came back.
    bool existRecord(const QString &table, const QString &id, QSqlDatabase *db = nullptr);
    // "select count(*) from <table> where <condition>": the count, -1 when no row.
    int numRecords(const QString &table, const QString &condition, QSqlDatabase *db = nullptr);

    // The first column of the first row, "" when no row.
    QString executeSelectQuery(const QString &sql, QSqlDatabase *db = nullptr);
    // The first column of every row, in row order.
    QStringList executeSelectQuery2(const QString &sql, QSqlDatabase *db = nullptr);
    // Columns 0 to count - 1 of the first row; empty when no row.
    QStringList executeSelectQuery3(const QString &sql, int count, QSqlDatabase *db = nullptr);
    // Any statement: the number of rows affected.
    int executeQuery(const QString &sql, QSqlDatabase *db = nullptr);

    // "select max(ID) from <table>": the value as text ("" for an empty table), or
    // "Error" when no row came back.
    QString getLastId(const QString &table, QSqlDatabase *db = nullptr);
    // Inserts a row of default values and returns getLastId().
    QString newRecord(const QString &table, QSqlDatabase *db = nullptr);
    // The same inside begin()/commit().  The transaction is committed whatever happened.
    QString safeNewRecord(const QString &table, QSqlDatabase *db = nullptr);

    // PostgreSQL sequences.
    QString sequenceValue(const QString &sequence, QSqlDatabase *db = nullptr);
    void setSequence(const QString &sequence, int value, QSqlDatabase *db = nullptr);
    // Adds step and returns the value read before the change.
    QString incrementSequence(const QString &sequence, int step, QSqlDatabase *db = nullptr);
    QString decrementSequence(const QString &sequence, int step, QSqlDatabase *db = nullptr);
    // Subtracts step unless the value (always read on the default connection) is below
    // step; returns whether it did.
    bool decrementSequenceIfPositive(const QString &sequence, int step, QSqlDatabase *db = nullptr);

    // With a database, its own transaction calls; with null, the statements "BEGIN",
    // "COMMIT" and "ROLLBACK" on the default connection.
    void begin(QSqlDatabase *db = nullptr);
    void commit(QSqlDatabase *db = nullptr);
    void rollback(QSqlDatabase *db = nullptr);

    /*
     * The binding family.  Every value is bound as a parameter (QSqlQuery::prepare and
     * bindValue), so no value can change what a statement does.  Table, column and sequence
     * names cannot be bound: they are accepted only when isPlainIdentifier() holds, folded to
     * lower case as PostgreSQL reads an unquoted name (Orders and orders are one table), and
     * quoted with the driver's escapeIdentifier.  A text value holding a NUL character is
     * refused too: PostgreSQL text cannot carry one, and the driver would cut it there.
     *
     * A refused name or value runs nothing, logs one ERROR line
     * "<label>: refused <what> "<text>"" (the text escaped and cut) and returns the failure
     * value given below.  The log shows each statement with its placeholders, never the bound
     * values; a database error text is logged on one line, control characters escaped, at
     * most 500 characters, so that a hostile value cannot forge or flood log lines.  The id
     * column is "id" in every statement.
     */

    // [A-Za-z_][A-Za-z0-9_]*, at most 63 characters (PostgreSQL's longest name).
    static bool isPlainIdentifier(const QString &name);

    // "select <column> from <table> where id = ?": the value as text ("" for NULL); "" when
    // no row, on error or when refused.
    QString fieldValue(const QString &table, const QString &column, const QVariant &id,
                       QSqlDatabase *db = nullptr);
    // "delete from <table> where id = ?": the rows deleted; -1 on error or when refused.
    int deleteRow(const QString &table, const QVariant &id, QSqlDatabase *db = nullptr);
    // "select 1 from <table> where id = ?": whether the row exists; false on error or when
    // refused.
    bool rowExists(const QString &table, const QVariant &id, QSqlDatabase *db = nullptr);
    // "select count(*) from <table>": -1 on error or when refused.
    int countRows(const QString &table, QSqlDatabase *db = nullptr);
    // "select count(*) from <table> where <column> = ?": -1 on error or when refused.
    int countRows(const QString &table, const QString &column, const QVariant &value,
                  QSqlDatabase *db = nullptr);
    // "select max(id) from <table>": "" for an empty table; "Error" on error or when refused.
    QString maxId(const QString &table, QSqlDatabase *db = nullptr);
    // "insert into <table> default values returning id": the id of the row this call
    // inserted (one statement, so no transaction is needed and no other insert can slip in
    // between); "Error" on error or when refused.
    QString insertRow(const QString &table, QSqlDatabase *db = nullptr);

    // "select last_value from <sequence>": "" on error or when refused.
    QString sequenceLastValue(const QString &sequence, QSqlDatabase *db = nullptr);
    // "select setval(cast(? as regclass), ?)": whether it ran.
    bool setSequenceValue(const QString &sequence, qint64 value, QSqlDatabase *db = nullptr);
    // Adds step and returns the value read before the change; "" when the value cannot be
    // read (nothing is then changed) or when refused.
    QString addToSequence(const QString &sequence, qint64 step, QSqlDatabase *db = nullptr);
    QString subtractFromSequence(const QString &sequence, qint64 step, QSqlDatabase *db = nullptr);
    // Subtracts step unless the value, read through the same db, is below step (or cannot
    // be read); returns whether it did.
    bool subtractFromSequenceIfEnough(const QString &sequence, qint64 step, QSqlDatabase *db = nullptr);

    // Logs the statement and its row count at DEBUG, and any error at ERROR.
    void showQueryError(const QString &label, const QSqlQuery &query);
    // Logs the error of a table model (named after its table) at ERROR, if any.
    void showCursorError(const QString &label, const QSqlTableModel &cursor);

private:
    std::unique_ptr<DatabaseManagerPrivate> d;
};

#endif
