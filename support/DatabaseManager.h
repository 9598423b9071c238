#ifndef BRISTEL_SUPPORT_DATABASEMANAGER_H
#define BRISTEL_SUPPORT_DATABASEMANAGER_H

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <memory>

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
 * SECURITY: statements are built by plain string concatenation, without quoting or
 * escaping.  Table, field, sequence, id and condition texts are inserted exactly as given,
 * so callers must pass trusted identifiers and values only, never text coming from users
 * or documents.
 *
 * Failures are never thrown: they are logged and the result falls back to the empty
 * string, the empty list, false, -1, 0 rows or "Error" as each operation states.  The
 * operations take no lock and are meant for one thread per connection.
 */
class DatabaseManager
{
public:
    // Takes the "default" logger of the process-wide HLogManager (possibly none).
    DatabaseManager();
    // Logs to the given logger (not owned); null disables logging.
    explicit DatabaseManager(Logger *logger);

    DatabaseManager(const DatabaseManager &) = delete;
    DatabaseManager &operator=(const DatabaseManager &) = delete;

    Logger *logger() const { return m_logger; }

    // Registers and opens a database under connectionName (the default connection when
    // empty).  "QPSQL7" is accepted as the older name of "QPSQL".  Returns a handle on the
    // registered connection, or null when the driver is unknown or the open failed.
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

    // Logs the statement and its row count at DEBUG, and any error at ERROR.
    void showQueryError(const QString &label, const QSqlQuery &query);
    // Logs the error of a table model (named after its table) at ERROR, if any.
    void showCursorError(const QString &label, const QSqlTableModel &cursor);

private:
    static QSqlDatabase database(QSqlDatabase *db);
    void logDebug(const QString &message);
    void logError(const QString &message);

    Logger *m_logger = nullptr; // not owned
};

#endif
