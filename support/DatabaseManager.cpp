#include "support/DatabaseManager.h"

#include "config/SyncSingleton.h"
#include "log/HLogManager.h"
#include "log/Logger.h"
#include "support/DatabaseManager_p.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlTableModel>
#include <QVariant>

namespace {

const QString selectLabel = QStringLiteral("executeSelectQuery(...)");
const QString existLabel = QStringLiteral("DatabaseManager::existRecord(...)");

// A column of the current row as text; SQL NULL reads as the empty string (Qt 6 would
// otherwise give the zero of the column's type, "0" for an empty max(ID)).
QString text(const QSqlQuery &query, int column)
{
    return query.isNull(column) ? QString() : query.value(column).toString();
}

// A driver's error text may quote what it was given (a password typed into the user name
// field comes back as the name of an unknown role); the password never reaches the log.
QString withoutPassword(QString text, const QString &password)
{
    if (!password.isEmpty())
        text.replace(password, QStringLiteral("********"));
    return text;
}

} // namespace

DatabaseManager::DatabaseManager()
    : DatabaseManager(SyncSingleton<HLogManager>::instance()->getLog(QString()))
{
}

DatabaseManager::DatabaseManager(Logger *logger) : d(std::make_unique<DatabaseManagerPrivate>(logger)) {}

DatabaseManager::~DatabaseManager() = default;

Logger *DatabaseManager::logger() const
{
    return d->m_logger;
}

QSqlDatabase DatabaseManagerPrivate::database(QSqlDatabase *db)
{
    return db ? *db : QSqlDatabase::database();
}

void DatabaseManagerPrivate::logDebug(const QString &message) const
{
    if (m_logger)
        m_logger->debug(message);
}

void DatabaseManagerPrivate::logError(const QString &message) const
{
    if (m_logger)
        m_logger->error(message);
}

std::unique_ptr<QSqlDatabase>
DatabaseManager::createConnection(const QString &driver, const QString &databaseName, const QString &userName,
                                  const QString &password, const QString &hostName,
                                  const QString &connectionName)
{
    // Qt 6 knows the PostgreSQL driver only by its current name.
    const QString driverName = driver == QLatin1String("QPSQL7") ? QStringLiteral("QPSQL") : driver;
    QSqlDatabase created = connectionName.isEmpty() ? QSqlDatabase::addDatabase(driverName)
                                                    : QSqlDatabase::addDatabase(driverName, connectionName);
    if (!created.isValid()) {
        d->logError(QStringLiteral("Failed to connect to driver"));
        return nullptr;
    }
    created.setDatabaseName(databaseName);
    created.setUserName(userName);
    created.setPassword(password);
    created.setHostName(hostName);
    if (!created.open()) {
        const QSqlError error = created.lastError();
        d->logError(
            withoutPassword(QStringLiteral("Failed to open database: ") + error.driverText(), password));
        d->logError(withoutPassword(error.databaseText(), password));
        return nullptr;
    }
    d->logDebug(withoutPassword(
        QStringLiteral("Connection With ") + databaseName + QStringLiteral(" DB established"), password));
    return std::make_unique<QSqlDatabase>(created);
}

QString DatabaseManager::getField(const QString &table, const QString &field, const QString &id,
                                  QSqlDatabase *db)
{
    QSqlQuery query(d->database(db));
    query.exec(QStringLiteral("select ") + field + QStringLiteral(" from ") + table +
               QStringLiteral(" where id = ") + id);
    showQueryError(QStringLiteral("DatabaseManager::getField(...)"), query);
    return query.next() ? text(query, 0) : QString();
}

int DatabaseManager::removeRecord(const QString &table, const QString &id, QSqlDatabase *db)
{
    QSqlQuery query(d->database(db));
    query.exec(QStringLiteral("delete from ") + table + QStringLiteral(" where ID = ") + id);
    showQueryError(QStringLiteral("removeRecord"), query);
    return query.numRowsAffected();
}

bool DatabaseManager::existRecord(const QString &table, const QString &id, QSqlDatabase *db)
{
    QSqlQuery query(d->database(db));
    query.exec(QStringLiteral("select * from ") + table + QStringLiteral(" where ID = ") + id);
    showQueryError(existLabel, query);
    return query.next();
}

int DatabaseManager::numRecords(const QString &table, const QString &condition, QSqlDatabase *db)
{
    QSqlQuery query(d->database(db));
    query.exec(QStringLiteral("select count(*) from ") + table + QStringLiteral(" where ") + condition);
    // The count reports under the existRecord label, as it always has.
    showQueryError(existLabel, query);
    return query.next() ? query.value(0).toInt() : -1;
}

QString DatabaseManager::executeSelectQuery(const QString &sql, QSqlDatabase *db)
{
    QSqlQuery query(d->database(db));
    query.exec(sql);
    showQueryError(selectLabel, query);
    return query.next() ? text(query, 0) : QString();
}

QStringList DatabaseManager::executeSelectQuery2(const QString &sql, QSqlDatabase *db)
{
    QSqlQuery query(d->database(db));
    query.exec(sql);
    showQueryError(selectLabel, query);
    QStringList values;
    while (query.next())
        values.append(text(query, 0));
    return values;
}

QStringList DatabaseManager::executeSelectQuery3(const QString &sql, int count, QSqlDatabase *db)
{
    QSqlQuery query(d->database(db));
    query.exec(sql);
    showQueryError(selectLabel, query);
    QStringList values;
    if (query.next()) {
        for (int column = 0; column < count; ++column)
            values.append(text(query, column));
    }
    return values;
}

int DatabaseManager::executeQuery(const QString &sql, QSqlDatabase *db)
{
    QSqlQuery query(d->database(db));
    query.exec(sql);
    showQueryError(QStringLiteral("executeQuery(...)"), query);
    return query.numRowsAffected();
}

QString DatabaseManager::getLastId(const QString &table, QSqlDatabase *db)
{
    const QString sql = QStringLiteral("select max(ID) from ") + table;
    QSqlQuery query(d->database(db));
    query.exec(sql);
    showQueryError(QStringLiteral("getLastId"), query);
    if (query.next())
        return text(query, 0);
    d->logError(QStringLiteral("getLastId( ") + table + QStringLiteral(" ): ") + sql +
                QStringLiteral(" return empty result"));
    return QStringLiteral("Error");
}

QString DatabaseManager::newRecord(const QString &table, QSqlDatabase *db)
{
    {
        QSqlQuery query(d->database(db));
        query.exec(QStringLiteral("insert into ") + table + QStringLiteral(" values(default)"));
        showQueryError(QStringLiteral("newRecord"), query);
    }
    return getLastId(table, db);
}

QString DatabaseManager::safeNewRecord(const QString &table, QSqlDatabase *db)
{
    begin(db);
    const QString result = newRecord(table, db);
    commit(db);
    return result;
}

QString DatabaseManager::sequenceValue(const QString &sequence, QSqlDatabase *db)
{
    return executeSelectQuery(QStringLiteral("select last_value from ") + sequence, db);
}

void DatabaseManager::setSequence(const QString &sequence, int value, QSqlDatabase *db)
{
    executeSelectQuery(QStringLiteral("SELECT setval('") + sequence + QStringLiteral("', ") +
                           QString::number(value) + QLatin1Char(')'),
                       db);
}

QString DatabaseManager::incrementSequence(const QString &sequence, int step, QSqlDatabase *db)
{
    const QString before = sequenceValue(sequence, db);
    setSequence(sequence, before.toInt(nullptr, 10) + step, db);
    return before;
}

QString DatabaseManager::decrementSequence(const QString &sequence, int step, QSqlDatabase *db)
{
    return incrementSequence(sequence, -step, db);
}

bool DatabaseManager::decrementSequenceIfPositive(const QString &sequence, int step, QSqlDatabase *db)
{
    // The guard always reads through the default connection, whatever db is.
    const int current = sequenceValue(sequence, nullptr).toInt(nullptr, 10);
    if (current < step)
        return false;
    incrementSequence(sequence, -step, db);
    return true;
}

void DatabaseManager::begin(QSqlDatabase *db)
{
    if (db)
        db->transaction();
    else
        executeQuery(QStringLiteral("BEGIN"), nullptr);
    d->logDebug(QStringLiteral("BEGIN\n\n"));
}

void DatabaseManager::commit(QSqlDatabase *db)
{
    if (db)
        db->commit();
    else
        executeQuery(QStringLiteral("COMMIT"), nullptr);
    d->logDebug(QStringLiteral("COMMIT\n\n"));
}

void DatabaseManager::rollback(QSqlDatabase *db)
{
    if (db)
        db->rollback();
    else
        executeQuery(QStringLiteral("ROLLBACK"), nullptr);
    d->logDebug(QStringLiteral("ROLLBACK\n\n"));
}

void DatabaseManager::showQueryError(const QString &label, const QSqlQuery &query)
{
    d->logDebug(QStringLiteral("Query called from method ") + label + QStringLiteral(": ") +
                query.lastQuery());
    d->logDebug(QStringLiteral("    numRowsAffected: ") + QString::number(query.numRowsAffected()));
    const QSqlError error = query.lastError();
    if (error.type() != QSqlError::NoError) {
        d->logError(QStringLiteral("Error in the method ") + label + QStringLiteral(", to query: ") +
                    query.lastQuery());
        d->logError(error.databaseText());
    }
}

void DatabaseManager::showCursorError(const QString &label, const QSqlTableModel &cursor)
{
    const QSqlError error = cursor.lastError();
    if (error.type() != QSqlError::NoError) {
        d->logError(QStringLiteral("Error in the method ") + label + QStringLiteral(", to cursor: ") +
                    cursor.tableName());
        d->logError(error.databaseText());
    }
}
