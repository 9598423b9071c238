#include "log/Logger.h"

#include "config/BRConfiguration.h"
#include "config/SyncSingleton.h"

#include <QFile>

#include <cstdio>

// The file is written unbuffered, one write a line, so no text stream sits between the
// logger and its file.
class LoggerPrivate
{
public:
    std::unique_ptr<QFile> m_file;
    int m_level = Logger::DEBUG;
    QString m_fileName;
};

namespace {

Logger::Clock &clockFunction()
{
    static Logger::Clock clock;
    return clock;
}

QDateTime now()
{
    const Logger::Clock &clock = clockFunction();
    return clock ? clock() : QDateTime::currentDateTime();
}

} // namespace

Logger::Logger(const QString &name) : Logger(name, *SyncSingleton<BRConfiguration>::instance()) {}

Logger::Logger(const QString & /*name*/, const BRConfiguration &configuration)
    : d(std::make_unique<LoggerPrivate>())
{
    setLevel(configuration.getStrValue(QStringLiteral("bristel.logger.level")));
    const QString directory = configuration.getStrValue(QStringLiteral("bristel.logger.basedir"));
    const QString file = configuration.getStrValue(QStringLiteral("bristel.logger.filename"));
    d->m_fileName = directory + QLatin1Char('/') + file;
    d->m_file = std::make_unique<QFile>(d->m_fileName);
    setType(configuration.getStrValue(QStringLiteral("bristel.logger.type")));
    write(DEBUG, QStringLiteral("Start Logger"));
}

Logger::~Logger()
{
    if (d->m_file)
        d->m_file->close();
    d->m_file.reset();
}

void Logger::setLevel(const QString &text)
{
    const QString upper = text.toUpper();
    if (upper == QLatin1String("DEBUG"))
        d->m_level = DEBUG;
    else if (upper == QLatin1String("INFO"))
        d->m_level = INFO;
    else if (upper == QLatin1String("WARNING"))
        d->m_level = WARNING;
    else if (upper == QLatin1String("ERROR"))
        d->m_level = ERROR;
    else if (upper == QLatin1String("FATAL"))
        d->m_level = FATAL;
    else
        d->m_level = DEBUG;
}

void Logger::setType(const QString &text)
{
    const QString upper = text.toUpper();
    QIODevice::OpenMode mode;
    if (upper == QLatin1String("APPEND"))
        mode = QIODevice::WriteOnly | QIODevice::Append;
    else if (upper == QLatin1String("OVERWRITE"))
        mode = QIODevice::WriteOnly | QIODevice::Truncate;
    else
        return;

    if (d->m_file->isOpen())
        d->m_file->close();
    // Unbuffered: each line goes to the file in one write.  On a full disk a line that does
    // not fit is lost instead of piling up in a buffer that every later line would retry.
    if (!d->m_file->open(mode | QIODevice::Unbuffered)) {
        const QByteArray line = "Error in the method Logger::setType(" + text.toLocal8Bit() + ")\n";
        std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
        std::fflush(stdout);
    }
}

int Logger::level() const
{
    return d->m_level;
}

QString Logger::fileName() const
{
    return d->m_fileName;
}

bool Logger::isOpen() const
{
    return d->m_file && d->m_file->isOpen();
}

QString Logger::levelText(int level)
{
    switch (level) {
    case DEBUG:
        return QStringLiteral("DEBUG");
    case INFO:
        return QStringLiteral("INFO");
    case WARNING:
        return QStringLiteral("WARNING");
    case ERROR:
        return QStringLiteral("ERROR");
    case FATAL:
        return QStringLiteral("FATAL");
    default:
        return QString();
    }
}

void Logger::write(int level, const QString &message)
{
    if (level < d->m_level)
        return;
    // A closed file loses the line; writing to it would only raise device warnings.
    if (!isOpen())
        return;
    const QString time = now().toString(QStringLiteral("MM-dd-yyyy hh:mm:ss:zzz"));
    const QString line =
        QLatin1Char('[') + time + QLatin1String("] ") + levelText(level) + QLatin1String(": ") + message;
    // A failed write (a full disk) loses this line only; the caller goes on with its work.
    d->m_file->write((line + QLatin1Char('\n')).toUtf8());
}

void Logger::setClock(Clock clock)
{
    clockFunction() = std::move(clock);
}
