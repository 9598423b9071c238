#ifndef BRISTEL_TESTS_TESTSUPPORT_H
#define BRISTEL_TESTS_TESTSUPPORT_H

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <functional>

// Writes bytes to a file, creating its directory; fails the test on error.
void writeFile(const QString &path, const QByteArray &bytes);
QByteArray readFile(const QString &path);

// The bytes written to standard output while body runs.
QByteArray captureStdout(const std::function<void()> &body);

// Makes "\r", "\n" and other control bytes visible, for readable failure messages.
QString visible(const QByteArray &bytes);

#endif
