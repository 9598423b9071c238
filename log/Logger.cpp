#include "log/Logger.h"

#include "config/BRConfiguration.h"
#include "config/SyncSingleton.h"

#include <QFile>
#include <QTextStream>

#include <cstdio>

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
{
    initialise(configuration);
}

Logger::~Logger()
{
    if (m_file)
        m_file->close();
    m_file.reset();
}

void Logger::initialise(const BRConfiguration &configuration)
{
    setLevel(configuration.getStrValue(QStringLiteral("bristel.logger.level")));
    const QString directory = configuration.getStrValue(QStringLiteral("bristel.logger.basedir"));
    const QString file = configuration.getStrValue(QStringLiteral("bristel.logger.filename"));
    m_fileName = directory + QLatin1Char('/') + file;
    m_file = std::make_unique<QFile>(m_fileName);
    setType(configuration.getStrValue(QStringLiteral("bristel.logger.type")));
    write(DEBUG, QStringLiteral("Start Logger"));
}

void Logger::setLevel(const QString &text)
{
    const QString upper = text.toUpper();
    if (upper == QLatin1String("DEBUG"))
        m_level = DEBUG;
    else if (upper == QLatin1String("INFO"))
        m_level = INFO;
    else if (upper == QLatin1String("WARNING"))
        m_level = WARNING;
    else if (upper == QLatin1String("ERROR"))
        m_level = ERROR;
    else if (upper == QLatin1String("FATAL"))
        m_level = FATAL;
    else
        m_level = DEBUG;
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

    if (m_file->isOpen())
        m_file->close();
    // Unbuffered: each line goes to the file in one write.  On a full disk a line that does
    // not fit is lost instead of piling up in a buffer that every later line would retry.
    if (!m_file->open(mode | QIODevice::Unbuffered)) {
        const QByteArray line = "Error in the method Logger::setType(" + text.toLocal8Bit() + ")\n";
        std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
        std::fflush(stdout);
    }
}

bool Logger::isOpen() const
{
    return m_file && m_file->isOpen();
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
    if (level < m_level)
        return;
    // A closed file loses the line; writing to it would only raise device warnings.
    if (!isOpen())
        return;
    const QString time = now().toString(QStringLiteral("MM-dd-yyyy hh:mm:ss:zzz"));
    const QString line =
        QLatin1Char('[') + time + QLatin1String("] ") + levelText(level) + QLatin1String(": ") + message;
    // A failed write (a full disk) loses this line only; the caller goes on with its work.
    m_file->write((line + QLatin1Char('\n')).toUtf8());
}

void Logger::setClock(Clock clock)
{
    clockFunction() = std::move(clock);
}
