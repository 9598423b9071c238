#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

QByteArray captureStdout(const std::function<void()> &body)
{
    std::fflush(stdout);
    std::FILE *capture = std::tmpfile();
    const int saved = dup(fileno(stdout));
    dup2(fileno(capture), fileno(stdout));
    body();
    std::fflush(stdout);
    dup2(saved, fileno(stdout));
    close(saved);
    std::rewind(capture);
    QByteArray bytes;
    char buffer[4096];
    for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, capture)) > 0;)
        bytes.append(buffer, static_cast<qsizetype>(n));
    std::fclose(capture);
    return bytes;
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
