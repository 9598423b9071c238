#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <gtest/gtest.h>

#include <cstdio>
#include <unistd.h>

void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

QProcessEnvironment userEnvironment(const QString &home)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

QProcessEnvironment displaylessEnvironment(const QString &home)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    return environment;
}

ProgramRun runProgram(const QString &program, const QStringList &arguments,
                      const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    ProgramRun run;
    if (!process.waitForFinished(120000))
        return run;
    run.crashed = process.exitStatus() != QProcess::NormalExit;
    run.status = run.crashed ? -1 : process.exitCode();
    run.standardOutput = process.readAllStandardOutput();
    run.standardError = QString::fromUtf8(process.readAllStandardError());
    return run;
}

namespace {

QByteArray captureStream(std::FILE *stream, const std::function<void()> &body)
{
    std::fflush(stream);
    std::FILE *capture = std::tmpfile();
    const int saved = dup(fileno(stream));
    dup2(fileno(capture), fileno(stream));
    body();
    std::fflush(stream);
    dup2(saved, fileno(stream));
    close(saved);
    std::rewind(capture);
    QByteArray bytes;
    char buffer[4096];
    for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, capture)) > 0;)
        bytes.append(buffer, static_cast<qsizetype>(n));
    std::fclose(capture);
    return bytes;
}

} // namespace

QByteArray captureStdout(const std::function<void()> &body)
{
    return captureStream(stdout, body);
}

QByteArray captureStderr(const std::function<void()> &body)
{
    return captureStream(stderr, body);
}

QString visible(const QByteArray &bytes)
{
    QString text;
    for (const char c : bytes) {
        if (c == '\r')
            text += QLatin1String("\\r");
        else if (c == '\n')
            text += QLatin1String("\\n\n");
        else if (static_cast<unsigned char>(c) < 32)
            text += QStringLiteral("\\x%1").arg(static_cast<unsigned char>(c), 2, 16, QLatin1Char('0'));
        else
            text += QLatin1Char(c);
    }
    return text;
}

long peakResidentKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine()) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return -1;
}

bool resetPeakResident()
{
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    return clear.open(QIODevice::WriteOnly) && clear.write("5") == 1;
}

namespace {

void printQuoted(const QByteArray &utf8, bool escapeHigh, std::ostream *out)
{
    static const char digits[] = "0123456789abcdef";
    *out << '"';
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
        case '\r':
            *out << "\\r";
            break;
        case '\n':
            *out << "\\n";
            break;
        case '\t':
            *out << "\\t";
            break;
        case '\\':
            *out << "\\\\";
            break;
        case '"':
            *out << "\\\"";
            break;
        default:
            if (byte < 0x20 || byte == 0x7f || (escapeHigh && byte > 0x7f))
                *out << "\\x" << digits[byte >> 4] << digits[byte & 0xf];
            else
                *out << c;
        }
    }
    *out << '"';
}

} // namespace

void PrintTo(const QString &text, std::ostream *out)
{
    printQuoted(text.toUtf8(), false, out);
}

void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    printQuoted(bytes, true, out);
}
