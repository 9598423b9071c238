#include "ServerOptions.h"

#include <QStringList>

namespace {

// A whole number from low to high, or nothing.
std::optional<int> numberIn(const char *text, int low, int high)
{
    bool ok = false;
    const int number = QByteArray(text).toInt(&ok);
    if (!ok || number < low || number > high)
        return std::nullopt;
    return number;
}

struct LevelName
{
    const char *name;
    pappl_loglevel_t level;
};

constexpr LevelName LevelNames[] = {{"debug", PAPPL_LOGLEVEL_DEBUG},
                                    {"info", PAPPL_LOGLEVEL_INFO},
                                    {"warn", PAPPL_LOGLEVEL_WARN},
                                    {"error", PAPPL_LOGLEVEL_ERROR},
                                    {"fatal", PAPPL_LOGLEVEL_FATAL}};

std::optional<pappl_loglevel_t> levelNamed(const QByteArray &name)
{
    for (const LevelName &level : LevelNames) {
        if (name == level.name)
            return level.level;
    }
    return std::nullopt;
}

QString levelList()
{
    QStringList names;
    for (const LevelName &level : LevelNames)
        names << QLatin1String(level.name);
    return names.join(QStringLiteral(", "));
}

QString refusal(const char *option, const char *value, const QString &wanted)
{
    return QStringLiteral("%1: \"%2\" is not %3")
        .arg(QLatin1String(option), QString::fromLocal8Bit(value), wanted);
}

} // namespace

const char *ServerOptions::valueOf(int count, cups_option_t *options, const char *name)
{
    const char *value = cupsGetOption(name, count, options);
    return value && *value ? value : nullptr;
}

std::optional<ServerOptions> ServerOptions::read(int count, cups_option_t *options, QString *error)
{
    ServerOptions read;
    if (const char *port = valueOf(count, options, "server-port")) {
        const std::optional<int> number = numberIn(port, 1, 65535);
        if (!number) {
            *error = refusal("server-port", port, QStringLiteral("a port (1 to 65535)"));
            return std::nullopt;
        }
        read.port = *number;
    }
    if (const char *level = valueOf(count, options, "log-level")) {
        const std::optional<pappl_loglevel_t> named = levelNamed(level);
        if (!named) {
            *error = refusal("log-level", level, QStringLiteral("one of %1").arg(levelList()));
            return std::nullopt;
        }
        read.logLevel = *named;
    }
    if (const char *limit = valueOf(count, options, "max-pending-jobs")) {
        const std::optional<int> number = numberIn(limit, 1, 1000000);
        if (!number) {
            *error = refusal("max-pending-jobs", limit, QStringLiteral("a number of jobs (1 to 1000000)"));
            return std::nullopt;
        }
        read.maxPendingJobs = *number;
    }
    if (const char *host = valueOf(count, options, "listen-hostname"))
        read.listenHostname = host;
    if (const char *file = valueOf(count, options, "log-file"))
        read.logFile = file;
    return read;
}
