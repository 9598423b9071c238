#ifndef BRISTEL_LOG_LOGGER_H
#define BRISTEL_LOG_LOGGER_H

#include "bristel_log_export.h"

#include <QDateTime>
#include <QString>

#include <functional>
#include <memory>

class BRConfiguration;
class LoggerPrivate;

/*
 * A named log that appends levelled, time-stamped lines to one text file.
 *
 * Directory, file name, opening mode and threshold come from the configuration keys
 * "bristel.logger.basedir", "bristel.logger.filename", "bristel.logger.type" and
 * "bristel.logger.level"; every logger reads the same keys whatever its name.  Each line
 * has the form
 *
 *     [MM-dd-yyyy hh:mm:ss:zzz] LEVEL: message
 *
 * and is written at once, so the file is complete after every call.  A logger whose type
 * was not recognised, or whose file could not be opened, silently drops its lines; so does
 * a write that fails (a full disk), and only that line is lost.
 * No locking: a logger is meant for one thread.
 *
 * The state lives behind a private pointer, so that the class keeps its size and layout in
 * the shared library whatever a later release keeps in it.
 */
class BRISTEL_LOG_EXPORT Logger
{
public:
    enum Level
    {
        DEBUG = 0,
        INFO = 1,
        WARNING = 2,
        ERROR = 3,
        FATAL = 4
    };

    // Source of the time stamps.  An empty function stands for QDateTime::currentDateTime.
    using Clock = std::function<QDateTime()>;

    // Reads the logger keys from the process-wide configuration.  The name is not used.
    explicit Logger(const QString &name = QString());
    // The same, reading the keys from the given configuration.
    Logger(const QString &name, const BRConfiguration &configuration);
    ~Logger();

    Logger(const Logger &) = delete;
    Logger &operator=(const Logger &) = delete;

    // "DEBUG", "INFO", "WARNING", "ERROR" or "FATAL" in any case; anything else means DEBUG.
    void setLevel(const QString &text);
    // "APPEND" or "OVERWRITE" in any case opens the file; anything else leaves it closed.
    // A failed open prints "Error in the method Logger::setType(<text>)" on standard output.
    void setType(const QString &text);

    // Writes one line when level is at or above the threshold.
    void write(int level, const QString &message);

    void fatal(const QString &message) { write(FATAL, message); }
    void error(const QString &message) { write(ERROR, message); }
    void warning(const QString &message) { write(WARNING, message); }
    void info(const QString &message) { write(INFO, message); }
    void debug(const QString &message) { write(DEBUG, message); }

    int level() const;
    QString fileName() const;
    bool isOpen() const;

    // The text of a level ("DEBUG" ... "FATAL"), empty outside 0 to 4.
    static QString levelText(int level);

    // Replaces the time source of every logger, so that tests can fix the time stamps.
    // Pass an empty function to return to the system clock.
    static void setClock(Clock clock);

private:
    std::unique_ptr<LoggerPrivate> d;
};

#endif
