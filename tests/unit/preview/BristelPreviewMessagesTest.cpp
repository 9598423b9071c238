// What bristel-preview tells the person who runs it, and what it keeps to itself.

#include "backend/EscPosCodePage.h"

#include "TestSupport.h"

#include <QDir>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString receipt = QStringLiteral(BRISTEL_EXAMPLES "/documents/printFullOrderReceipt.xml");

ProgramRun preview(const QStringList &arguments, const QProcessEnvironment &environment)
{
    return runProgram(QStringLiteral(BRISTEL_BIN_DIR "/bristel-preview"), arguments, environment);
}

TEST(BristelPreviewMessages, AnUnknownCodePageIsToldWithTheNamesThatServe)
{
    QTemporaryDir home;
    const ProgramRun run = preview({QStringLiteral("--codepage"), QStringLiteral("PC999"), receipt,
                                    home.filePath(QStringLiteral("r.png"))},
                                   displaylessEnvironment(home.path()));
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(
        run.standardError.startsWith(QStringLiteral("bristel-preview: --codepage: unusable value \"PC999\"")))
        << qPrintable(run.standardError);
    for (const QString &name : EscPosCodePage::names())
        EXPECT_TRUE(run.standardError.contains(name)) << qPrintable(name);
}

TEST(BristelPreviewMessages, AnUnknownPrintMethodIsNamed)
{
    QTemporaryDir home;
    const QString job = home.filePath(QStringLiteral("menu.xml"));
    writeFile(job, "<document>\n  <method name=\"printMenu\"/>\n</document>\n");
    const ProgramRun run =
        preview({job, home.filePath(QStringLiteral("menu.png"))}, displaylessEnvironment(home.path()));
    EXPECT_EQ(run.status, 5);
    EXPECT_TRUE(run.standardError.contains(QStringLiteral("menu.xml:2:")));
    EXPECT_TRUE(run.standardError.contains(QStringLiteral("unknown print method \"printMenu\"")))
        << qPrintable(run.standardError);
}

TEST(BristelPreviewMessages, WithoutADesktopNothingButItsOwnMessagesReachTheTerminal)
{
    // SVG and PDF start the toolkit's GUI layer, which looks for the user's runtime folder.
    QTemporaryDir home;
    for (const QString &name : {QStringLiteral("r.svg"), QStringLiteral("r.pdf"), QStringLiteral("r.png")}) {
        const ProgramRun run = preview({receipt, home.filePath(name)}, displaylessEnvironment(home.path()));
        EXPECT_EQ(run.status, 0) << qPrintable(name);
        EXPECT_EQ(run.standardError, QString()) << qPrintable(name);
    }
}

TEST(BristelPreviewMessages, TheRuntimeFolderItMakesGoesWithIt)
{
    // However the program ends: a picture, its help, a bad option.
    QTemporaryDir home;
    QTemporaryDir temporary;
    QProcessEnvironment environment = displaylessEnvironment(home.path());
    environment.insert(QStringLiteral("TMPDIR"), temporary.path());
    const QStringList runs[] = {
        {receipt, home.filePath(QStringLiteral("r.svg"))},
        {QStringLiteral("--help")},
        {QStringLiteral("--version")},
        {QStringLiteral("--no-such-option"), receipt, home.filePath(QStringLiteral("r.pdf"))}};
    for (const QStringList &arguments : runs) {
        const ProgramRun run = preview(arguments, environment);
        EXPECT_NE(run.status, -1) << qPrintable(arguments.join(QLatin1Char(' ')));
        EXPECT_EQ(QDir(temporary.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                  QStringList())
            << qPrintable(arguments.join(QLatin1Char(' ')));
    }
}

} // namespace
