#ifndef BRISTEL_SUPPORT_DATABASEMANAGER_P_H
#define BRISTEL_SUPPORT_DATABASEMANAGER_P_H

#include <QSqlDatabase>
#include <QString>
#include <QVariant>

class Logger;
class QSqlQuery;

/*
 * What the two families of DatabaseManager share: the logger and the steps every statement
 * goes through.  Not part of the library's interface; DatabaseManager.cpp (concatenating
 * family) and DatabaseManagerBinding.cpp (binding family) both use it.
 */
class DatabaseManagerPrivate
{
public:
    explicit DatabaseManagerPrivate(Logger *logger) : m_logger(logger) {}

    // The given database, or Qt's default connection for null.
    static QSqlDatabase database(QSqlDatabase *db);

    // Nothing is logged without a logger.
    void logDebug(const QString &message) const;
    void logError(const QString &message) const;

    // Whether a table, column or sequence name may be quoted into a statement; a refused
    // one is logged under label.
    bool acceptName(const QString &label, const QString &what, const QString &name) const;
    // Whether a bound value can reach PostgreSQL whole (text holding NUL cannot).
    bool acceptValue(const QString &label, const QVariant &value) const;
    // The name folded to lower case, as PostgreSQL reads an unquoted one, and quoted.
    static QString quotedName(const QSqlDatabase &database, const QString &name);
    // Prepares, binds values in order, runs and logs; false on any error.
    bool runBound(const QString &label, QSqlQuery &query, const QString &sql,
                  const QVariantList &values) const;

    Logger *m_logger = nullptr; // not owned
};

#endif
