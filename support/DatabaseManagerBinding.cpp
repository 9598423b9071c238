// The binding family of DatabaseManager: the same work as the concatenating operations,
// with every value bound as a parameter and every name checked before it is quoted.
#include "support/DatabaseManager.h"

#include "log/Logger.h"
#include "support/DatabaseManager_p.h"

#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

namespace {

// PostgreSQL keeps names of at most 63 bytes; a longer one would be cut silently.
constexpr qsizetype longestName = 63;
// Enough of a database error text to see what went wrong, bounded so that a huge bound
// value echoed in the error cannot flood the log.
constexpr qsizetype longestErrorText = 500;

// One log line for any text: control and format characters (line ends, bidirectional
// overrides) written as escapes, so that a value echoed in an error text cannot end the line,
// forge another one or disguise it, and at most limit characters.
QString oneLine(const QString &text, qsizetype limit)
{
    QString result;
    result.reserve(qMin(text.size(), limit) + 16);
    qsizetype taken = 0;
    for (; taken < text.size() && result.size() < limit; ++taken) {
        const QChar c = text.at(taken);
        if (c == QLatin1Char('\n'))
            result += QLatin1String("\\n");
        else if (c == QLatin1Char('\r'))
            result += QLatin1String("\\r");
        else if (c == QLatin1Char('\t'))
            result += QLatin1String("\\t");
        else if (c.unicode() < 0x20 || c.unicode() == 0x7f || c.category() == QChar::Other_Control ||
                 c.category() == QChar::Other_Format || c == QChar::LineSeparator ||
                 c == QChar::ParagraphSeparator)
            result += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        else
            result += c;
    }
    if (taken < text.size())
        result += QStringLiteral("... (%1 characters)").arg(text.size());
    return result;
}

QString text(const QSqlQuery &query, int column)
{
    return query.isNull(column) ? QString() : query.value(column).toString();
}

const QString failure = QStringLiteral("Error");

} // namespace

bool DatabaseManager::isPlainIdentifier(const QString &name)
{
    if (name.isEmpty() || name.size() > longestName)
        return false;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const char16_t c = name.at(i).unicode();
        const bool letter = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
        const bool digit = c >= u'0' && c <= u'9';
        if (!letter && !(digit && i > 0))
            return false;
    }
    return true;
}

bool DatabaseManagerPrivate::acceptName(const QString &label, const QString &what, const QString &name) const
{
    if (DatabaseManager::isPlainIdentifier(name))
        return true;
    logError(label + QStringLiteral(": refused ") + what + QStringLiteral(" \"") +
             oneLine(name, longestName) + QStringLiteral("\": not a plain identifier"));
    return false;
}

bool DatabaseManagerPrivate::acceptValue(const QString &label, const QVariant &value) const
{
    if (value.typeId() != QMetaType::QString || !value.toString().contains(QChar(0)))
        return true;
    logError(label + QStringLiteral(": refused a value holding a NUL character"));
    return false;
}

QString DatabaseManagerPrivate::quotedName(const QSqlDatabase &database, const QString &name)
{
    const QString folded = name.toLower();
    const QSqlDriver *driver = database.driver();
    return driver ? driver->escapeIdentifier(folded, QSqlDriver::TableName)
                  : QLatin1Char('"') + folded + QLatin1Char('"');
}

bool DatabaseManagerPrivate::runBound(const QString &label, QSqlQuery &query, const QString &sql,
                                      const QVariantList &values) const
{
    bool ran = query.prepare(sql);
    if (ran) {
        for (const QVariant &value : values)
            query.addBindValue(value);
        ran = query.exec();
    }
    // The statement is logged as prepared, with its placeholders: values stay out of the log.
    logDebug(QStringLiteral("Query called from method ") + label + QStringLiteral(": ") + sql);
    logDebug(QStringLiteral("    numRowsAffected: ") + QString::number(query.numRowsAffected()));
    const QSqlError error = query.lastError();
    if (!ran || error.type() != QSqlError::NoError) {
        logError(QStringLiteral("Error in the method ") + label + QStringLiteral(", to query: ") + sql);
        logError(
            oneLine(error.databaseText().isEmpty() ? error.text() : error.databaseText(), longestErrorText));
        return false;
    }
    return true;
}

QString DatabaseManager::fieldValue(const QString &table, const QString &column, const QVariant &id,
                                    QSqlDatabase *db)
{
    const QString label = QStringLiteral("DatabaseManager::fieldValue(...)");
    if (!d->acceptName(label, QStringLiteral("table name"), table) ||
        !d->acceptName(label, QStringLiteral("column name"), column) || !d->acceptValue(label, id))
        return QString();
    const QSqlDatabase database = d->database(db);
    QSqlQuery query(database);
    const QString sql = QStringLiteral("select ") + d->quotedName(database, column) +
                        QStringLiteral(" from ") + d->quotedName(database, table) +
                        QStringLiteral(" where id = ?");
    if (!d->runBound(label, query, sql, {id}))
        return QString();
    return query.next() ? text(query, 0) : QString();
}

int DatabaseManager::deleteRow(const QString &table, const QVariant &id, QSqlDatabase *db)
{
    const QString label = QStringLiteral("DatabaseManager::deleteRow(...)");
    if (!d->acceptName(label, QStringLiteral("table name"), table) || !d->acceptValue(label, id))
        return -1;
    const QSqlDatabase database = d->database(db);
    QSqlQuery query(database);
    const QString sql =
        QStringLiteral("delete from ") + d->quotedName(database, table) + QStringLiteral(" where id = ?");
    if (!d->runBound(label, query, sql, {id}))
        return -1;
    return query.numRowsAffected();
}

bool DatabaseManager::rowExists(const QString &table, const QVariant &id, QSqlDatabase *db)
{
    const QString label = QStringLiteral("DatabaseManager::rowExists(...)");
    if (!d->acceptName(label, QStringLiteral("table name"), table) || !d->acceptValue(label, id))
        return false;
    const QSqlDatabase database = d->database(db);
    QSqlQuery query(database);
    const QString sql =
        QStringLiteral("select 1 from ") + d->quotedName(database, table) + QStringLiteral(" where id = ?");
    return d->runBound(label, query, sql, {id}) && query.next();
}

int DatabaseManager::countRows(const QString &table, QSqlDatabase *db)
{
    const QString label = QStringLiteral("DatabaseManager::countRows(...)");
    if (!d->acceptName(label, QStringLiteral("table name"), table))
        return -1;
    const QSqlDatabase database = d->database(db);
    QSqlQuery query(database);
    const QString sql = QStringLiteral("select count(*) from ") + d->quotedName(database, table);
    if (!d->runBound(label, query, sql, {}) || !query.next())
        return -1;
    return query.value(0).toInt();
}

int DatabaseManager::countRows(const QString &table, const QString &column, const QVariant &value,
                               QSqlDatabase *db)
{
    const QString label = QStringLiteral("DatabaseManager::countRows(...)");
    if (!d->acceptName(label, QStringLiteral("table name"), table) ||
        !d->acceptName(label, QStringLiteral("column name"), column) || !d->acceptValue(label, value))
        return -1;
    const QSqlDatabase database = d->database(db);
    QSqlQuery query(database);
    const QString sql = QStringLiteral("select count(*) from ") + d->quotedName(database, table) +
                        QStringLiteral(" where ") + d->quotedName(database, column) + QStringLiteral(" = ?");
    if (!d->runBound(label, query, sql, {value}) || !query.next())
        return -1;
    return query.value(0).toInt();
}

QString DatabaseManager::maxId(const QString &table, QSqlDatabase *db)
{
    const QString label = QStringLiteral("DatabaseManager::maxId(...)");
    if (!d->acceptName(label, QStringLiteral("table name"), table))
        return failure;
    const QSqlDatabase database = d->database(db);
    QSqlQuery query(database);
    const QString sql = QStringLiteral("select max(id) from ") + d->quotedName(database, table);
    if (!d->runBound(label, query, sql, {}) || !query.next())
        return failure;
    return text(query, 0);
}

QString DatabaseManager::insertRow(const QString &table, QSqlDatabase *db)
{
    const QString label = QStringLiteral("DatabaseManager::insertRow(...)");
    if (!d->acceptName(label, QStringLiteral("table name"), table))
        return failure;
    const QSqlDatabase database = d->database(db);
    QSqlQuery query(database);
    const QString sql = QStringLiteral("insert into ") + d->quotedName(database, table) +
                        QStringLiteral(" default values returning id");
    if (!d->runBound(label, query, sql, {}) || !query.next())
        return failure;
    return text(query, 0);
}

QString DatabaseManager::sequenceLastValue(const QString &sequence, QSqlDatabase *db)
{
    const QString label = QStringLiteral("DatabaseManager::sequenceLastValue(...)");
    if (!d->acceptName(label, QStringLiteral("sequence name"), sequence))
        return QString();
    const QSqlDatabase database = d->database(db);
    QSqlQuery query(database);
    const QString sql = QStringLiteral("select last_value from ") + d->quotedName(database, sequence);
    if (!d->runBound(label, query, sql, {}) || !query.next())
        return QString();
    return text(query, 0);
}

bool DatabaseManager::setSequenceValue(const QString &sequence, qint64 value, QSqlDatabase *db)
{
    const QString label = QStringLiteral("DatabaseManager::setSequenceValue(...)");
    if (!d->acceptName(label, QStringLiteral("sequence name"), sequence))
        return false;
    const QSqlDatabase database = d->database(db);
    QSqlQuery query(database);
    // setval reads its first argument as a name; the quoted form keeps it exactly this one.
    return d->runBound(label, query, QStringLiteral("select setval(cast(? as regclass), ?)"),
                       {d->quotedName(database, sequence), value});
}

QString DatabaseManager::addToSequence(const QString &sequence, qint64 step, QSqlDatabase *db)
{
    const QString before = sequenceLastValue(sequence, db);
    bool number = false;
    const qint64 value = before.toLongLong(&number, 10);
    // A value that could not be read is not taken for zero: nothing is changed.
    if (!number)
        return QString();
    return setSequenceValue(sequence, value + step, db) ? before : QString();
}

QString DatabaseManager::subtractFromSequence(const QString &sequence, qint64 step, QSqlDatabase *db)
{
    return addToSequence(sequence, -step, db);
}

bool DatabaseManager::subtractFromSequenceIfEnough(const QString &sequence, qint64 step, QSqlDatabase *db)
{
    bool number = false;
    const qint64 current = sequenceLastValue(sequence, db).toLongLong(&number, 10);
    if (!number || current < step)
        return false;
    return !addToSequence(sequence, -step, db).isEmpty();
}
