// bristel-config started where there is no desktop session: from a console, over ssh, as root.

#include "ConfigViewsSupport.h"
#include "TestSupport.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct Outcome
{
    bool crashed = true;
    int status = -1;
    QString standardError;
};

// The environment of a console: no display named, no session runtime folder, no platform.
QProcessEnvironment consoleEnvironment(const QTemporaryDir &home)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    return environment;
}

Outcome runEditor(const QProcessEnvironment &environment, const QStringList &arguments)
{
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(BRISTEL_BIN_DIR "/bristel-config"), arguments);
    Outcome outcome;
    if (!program.waitForFinished(60000))
        return outcome;
    outcome.crashed = program.exitStatus() != QProcess::NormalExit;
    outcome.status = program.exitCode();
    outcome.standardError = QString::fromLocal8Bit(program.readAllStandardError());
    return outcome;
}

TEST(ConfigEditorEnvironment, WithoutADisplayItSaysSoAndHowToRunIt)
{
    QTemporaryDir home;
    const Outcome outcome = runEditor(consoleEnvironment(home), {});
    EXPECT_FALSE(outcome.crashed);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(outcome.standardError.startsWith(QStringLiteral("bristel-config: no display")))
        << qPrintable(outcome.standardError);
    EXPECT_TRUE(outcome.standardError.contains(QStringLiteral("QT_QPA_PLATFORM=offscreen")));
    EXPECT_TRUE(outcome.standardError.contains(QStringLiteral("xvfb-run")));
    EXPECT_FALSE(outcome.standardError.contains(QStringLiteral("Reinstalling")));
}

TEST(ConfigEditorEnvironment, ADisplayThatCannotBeReachedIsReportedNotAborted)
{
    QTemporaryDir home;
    QProcessEnvironment environment = consoleEnvironment(home);
    // No X server listens on a display of this number: its socket would be /tmp/.X11-unix/X4093.
    environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":4093"));
    const Outcome outcome = runEditor(environment, {});
    EXPECT_FALSE(outcome.crashed) << qPrintable(outcome.standardError);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(
        outcome.standardError.contains(QStringLiteral("bristel-config: cannot open the display :4093")))
        << qPrintable(outcome.standardError);
    EXPECT_TRUE(outcome.standardError.contains(QStringLiteral("xvfb-run")));
}

TEST(ConfigEditorEnvironment, WithoutASessionTheToolkitFindsARuntimeFolderAndSaysNothingOfIt)
{
    QTemporaryDir home;
    QProcessEnvironment environment = consoleEnvironment(home);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    const QString path = home.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, readFile(samplePath()));
    const Outcome outcome = runEditor(
        environment, {QStringLiteral("--screenshot"), home.filePath(QStringLiteral("editor.png")), path});
    EXPECT_FALSE(outcome.crashed);
    EXPECT_EQ(outcome.status, 0) << qPrintable(outcome.standardError);
    EXPECT_FALSE(outcome.standardError.contains(QStringLiteral("XDG_RUNTIME_DIR")))
        << qPrintable(outcome.standardError);
    EXPECT_FALSE(outcome.standardError.contains(QStringLiteral("QStandardPaths")));
}

} // namespace
