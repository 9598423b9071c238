#ifndef BRISTEL_TESTS_TESTSUPPORT_H
#define BRISTEL_TESTS_TESTSUPPORT_H

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <ostream>

// Writes bytes to a file, creating its directory; fails the test on error.
void writeFile(const QString &path, const QByteArray &bytes);
QByteArray readFile(const QString &path);

// The bytes written to standard output while body runs.
QByteArray captureStdout(const std::function<void()> &body);
// The same for standard error.
QByteArray captureStderr(const std::function<void()> &body);

// Makes "\r", "\n" and other control bytes visible, for readable failure messages.
QString visible(const QByteArray &bytes);

// The peak resident memory of this process in KiB since the last resetPeakResident() (or
// since it started), from VmHWM in /proc/self/status; -1 when unknown.
long peakResidentKiB();
// Starts a new peak, so that a measurement does not see what an earlier test used (Linux
// resets VmHWM on "5" written to /proc/self/clear_refs).  False when that fails.
bool resetPeakResident();

// What a program that a test ran did.  A run that crashed or did not finish keeps crashed
// true and status -1.
struct ProgramRun
{
    bool crashed = true;
    int status = -1;
    QByteArray standardOutput;
    QString standardError;
};

// The environment of a person's shell with a home folder of its own: UTF-8 text and the
// offscreen platform, so that no display is needed.
QProcessEnvironment userEnvironment(const QString &home);

// A terminal without a login of its own (root at a console, a cron job): no display named, no
// runtime folder and no platform chosen; a home folder of its own.
QProcessEnvironment displaylessEnvironment(const QString &home);

// Runs program to its end in environment; standard error is read as UTF-8.
ProgramRun runProgram(const QString &program, const QStringList &arguments,
                      const QProcessEnvironment &environment);

// GoogleTest prints these in failure messages: quoted text with \r, \n, \t, \\, \" and
// other control characters escaped (bytes above 0x7e of a QByteArray as \xNN), instead of a
// list of bytes or code units.
void PrintTo(const QString &text, std::ostream *out);
void PrintTo(const QByteArray &bytes, std::ostream *out);

#endif
