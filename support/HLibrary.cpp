#include "support/HLibrary.h"

#include "config/BRConfiguration.h"
#include "config/DocumentProfileKind.h"
#include "config/SyncSingleton.h"
#include "support/DatabaseManager.h"
#include "support/HLibrary_p.h"
#include "support/SleepThread.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QObject>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <thread>

namespace {

QString configValue(const QString &key)
{
    return SyncSingleton<BRConfiguration>::instance()->getStrValue(key);
}

std::function<void()> &promptHook()
{
    static std::function<void()> hook;
    return hook;
}

void askForNewSheet()
{
    const std::function<void()> &hook = promptHook();
    if (hook)
        hook();
    else
        HLibrary::newSheetPrompt();
}

void pause(int milliseconds)
{
    if (milliseconds != 0) {
        SleepThread sleeper(static_cast<unsigned long>(milliseconds));
    }
}

// Longest piece read as one line, as the spooler has always done.
constexpr qint64 lineBufferSize = 128;

// Reads the next line (or 127-byte piece of it) and writes it out as read.
void copyLine(QFile &source, QFile &destination)
{
    char buffer[lineBufferSize];
    const qint64 length = source.readLine(buffer, lineBufferSize);
    if (length > 0)
        destination.write(buffer, length);
    destination.flush();
}

} // namespace

QString HLibrary::appData()
{
    return QString();
}

QString HLibrary::programFiles()
{
    return QString();
}

QString HLibrary::dataPath()
{
    return QDir::homePath();
}

QString HLibrary::toWindowsFormat(const QString &path)
{
    return path;
}

QString HLibrary::fromUtf8(const QString &text)
{
    return text;
}

QString HLibrary::psql()
{
    return QStringLiteral("psql");
}

QString HLibrary::dropdb()
{
    return QStringLiteral("dropdb");
}

QString HLibrary::pg_dump()
{
    return QStringLiteral("pg_dump");
}

QString HLibrary::pg_restore()
{
    return QStringLiteral("pg_restore");
}

QString HLibrary::pathWithBinaryFile(const QString &file)
{
    return configValue(QStringLiteral("bristel.bin.path")) + QLatin1Char('/') + file;
}

QString HLibrary::getCoreFile()
{
    const QStringList entries = QDir::current().entryList(QStringList{QStringLiteral("core*")});
    return entries.isEmpty() ? QString() : entries.first();
}

QString HLibrary::dbname()
{
    return configValue(QStringLiteral("bristel.db.dbname"));
}

QString HLibrary::username()
{
    return configValue(QStringLiteral("bristel.db.username"));
}

QString HLibrary::password()
{
    return configValue(QStringLiteral("bristel.db.password"));
}

QString HLibrary::hostname()
{
    return configValue(QStringLiteral("bristel.db.hostname"));
}

std::unique_ptr<QSqlDatabase> HLibrary::newDBConnection(const QString &connectionName)
{
    return SyncSingleton<DatabaseManager>::instance()->createConnection(
        QStringLiteral("QPSQL7"), dbname(), username(), password(), hostname(), connectionName);
}

QString HLibrary::copyNumber(const QString &kind)
{
    const QString lowered = kind.toLower();
    const DocumentProfileKind *row = findDocumentProfileKind(lowered);
    if (!row || !row->hasCopyNumber) {
        const QByteArray line =
            "Error into HLibrary::copyNumber::documentPath: " + lowered.toLocal8Bit() + '\n';
        std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
        std::fflush(stdout);
        row = &fallbackDocumentProfileKind();
    }
    return configValue(QString::fromLatin1(row->keyPrefix) + QLatin1String("copyNumber"));
}

QString HLibrary::truncateDecimal(double value)
{
    // Hundredths carrying one more digit; later decimals are dropped.
    const double tenths = std::trunc(value * 1000.0) / 10.0;
    double hundredths = std::trunc(tenths);
    if (tenths - hundredths >= 0.5)
        hundredths = std::trunc(tenths + 1.0);
    const double rounded = hundredths / 100.0;

    // Shortest round-trip digits without an exponent, so large amounts stay readable.
    const QString text = QString::number(rounded, 'f', QLocale::FloatingPointShortest);
    const qsizetype point = text.indexOf(QLatin1Char('.'));
    if (point < 0)
        return text + QStringLiteral(".00");
    return text.left(point) + text.mid(point).leftJustified(3, QLatin1Char('0'));
}

bool HLibrary::copy(const QString &source, const QString &destination, int pageLength, int delay)
{
    QFile in(source);
    QFile out(destination);
    if (!in.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;

    int lines = 0;
    while (!in.atEnd()) {
        copyLine(in, out);
        // Tested before counting: the first sheet holds pageLength + 1 lines.
        if (pageLength != 0 && lines >= pageLength) {
            askForNewSheet();
            lines = 0;
        }
        pause(delay);
        ++lines;
    }
    out.close();
    in.close();
    return true;
}

bool HLibrary::copy(const QString &source, const QString &destination, const QString &pageLength,
                    const QString &delay)
{
    return copy(source, destination, pageLength.toInt(nullptr, 10), delay.toInt(nullptr, 10));
}

bool HLibrary::copy(const QString &source, const QString &destination, int pageLength, int delay, int page)
{
    QFile in(source);
    QFile out(destination);
    if (!in.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;

    const long long skip = static_cast<long long>(pageLength) * page;
    char buffer[lineBufferSize];
    for (long long skipped = 0; skipped < skip; ++skipped) {
        if (in.atEnd())
            return false;
        in.readLine(buffer, lineBufferSize);
    }
    if (in.atEnd())
        return false;

    int lines = 0;
    while (!in.atEnd()) {
        copyLine(in, out);
        ++lines;
        if (pageLength != 0 && lines == pageLength)
            return true;
        if (!in.atEnd())
            pause(delay);
    }
    out.close();
    in.close();
    return true;
}

void HLibrary::touch(const QString &path)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.close();
}

QString HLibrary::getNewRand()
{
    std::srand(static_cast<unsigned int>(std::time(nullptr)));
    return QString::number(std::rand());
}

int HLibrary::comboBoxIndexOf(const QComboBox *comboBox, const QString &text)
{
    if (!comboBox)
        return -1;
    for (int index = 0; index < comboBox->count(); ++index) {
        if (comboBox->itemText(index) == text)
            return index;
    }
    return -1;
}

std::chrono::milliseconds HLibraryPrivate::hsleepInterval(unsigned int seconds)
{
    return std::chrono::seconds(seconds);
}

void HLibraryPrivate::sleepFor(std::chrono::milliseconds interval)
{
    // std::this_thread::sleep_for sleeps again for what is left after a signal.
    std::this_thread::sleep_for(interval);
}

void HLibrary::hsleep(unsigned int seconds)
{
    HLibraryPrivate::sleepFor(HLibraryPrivate::hsleepInterval(seconds));
}

void HLibrary::newSheetPrompt()
{
    if (qobject_cast<QApplication *>(QCoreApplication::instance())) {
        QMessageBox::information(nullptr, QObject::tr("PaperWindow"), QObject::tr("Insert a new sheet"));
        return;
    }
    // No widgets available: ask on the console and wait for the operator's Enter.
    const QByteArray text = QObject::tr("Insert a new sheet").toLocal8Bit() + '\n';
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
    std::fflush(stdout);
    for (int c = std::getchar(); c != EOF && c != '\n'; c = std::getchar()) {
    }
}

void HLibrary::setNewSheetPrompt(std::function<void()> prompt)
{
    promptHook() = std::move(prompt);
}
