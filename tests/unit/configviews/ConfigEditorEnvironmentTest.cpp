// bristel-config started where there is no desktop: from a console, over ssh, as root.

#include "ConfigViewsSupport.h"
#include "TestSupport.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

ProgramRun runEditor(const QProcessEnvironment &environment, const QStringList &arguments)
{
    return runProgram(QStringLiteral(BRISTEL_BIN_DIR "/bristel-config"), arguments, environment);
}

TEST(ConfigEditorEnvironment, WithoutADisplayItSaysSoAndHowToRunIt)
{
    QTemporaryDir home;
    const ProgramRun outcome = runEditor(displaylessEnvironment(home.path()), {});
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
    QProcessEnvironment environment = displaylessEnvironment(home.path());
    // No X server listens on a display of this number: its socket would be /tmp/.X11-unix/X4093.
    environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":4093"));
    const ProgramRun outcome = runEditor(environment, {});
    EXPECT_FALSE(outcome.crashed) << qPrintable(outcome.standardError);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(
        outcome.standardError.contains(QStringLiteral("bristel-config: cannot open the display :4093")))
        << qPrintable(outcome.standardError);
    EXPECT_TRUE(outcome.standardError.contains(QStringLiteral("xvfb-run")));
}

TEST(ConfigEditorEnvironment, WithoutADesktopTheToolkitFindsARuntimeFolderAndSaysNothingOfIt)
{
    QTemporaryDir home;
    QProcessEnvironment environment = displaylessEnvironment(home.path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    const QString path = home.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, readFile(samplePath()));
    const ProgramRun outcome = runEditor(
        environment, {QStringLiteral("--screenshot"), home.filePath(QStringLiteral("editor.png")), path});
    EXPECT_FALSE(outcome.crashed);
    EXPECT_EQ(outcome.status, 0) << qPrintable(outcome.standardError);
    EXPECT_FALSE(outcome.standardError.contains(QStringLiteral("XDG_RUNTIME_DIR")))
        << qPrintable(outcome.standardError);
    EXPECT_FALSE(outcome.standardError.contains(QStringLiteral("QStandardPaths")));
}

} // namespace
