// What bristel-preview tells the person who runs it, and what it keeps to itself.

#include "devices/escpos/EscPosCodePage.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>
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

TEST(BristelPreviewMessages, EachUnusableOptionValueIsToldWithWhatServes)
{
    QTemporaryDir home;
    const QString output = home.filePath(QStringLiteral("r.png"));
    const struct
    {
        QStringList options;
        const char *message;
    } cases[] = {
        {{QStringLiteral("--codes"), QStringLiteral("qr")}, "--codes: unusable value \"qr\""},
        {{QStringLiteral("--paper"), QStringLiteral("76")},
         "--paper: unusable value \"76\" (58, 80 or 80-512)"},
        {{QStringLiteral("--input"), QStringLiteral("pcl")},
         "--input: unusable value \"pcl\" (escpos, xml or auto)"},
    };
    for (const auto &bad : cases) {
        const ProgramRun run =
            preview(bad.options + QStringList{receipt, output}, displaylessEnvironment(home.path()));
        EXPECT_EQ(run.status, 2) << bad.message;
        EXPECT_EQ(run.standardError, QStringLiteral("bristel-preview: %1\n").arg(QLatin1String(bad.message)));
    }
    const ProgramRun columns = preview({QStringLiteral("--columns"), QStringLiteral("x"), receipt, output},
                                       displaylessEnvironment(home.path()));
    EXPECT_EQ(columns.status, 2);
    EXPECT_TRUE(
        columns.standardError.startsWith(QLatin1String("bristel-preview: --columns: unusable value \"x\"")))
        << qPrintable(columns.standardError);
    EXPECT_FALSE(QFile::exists(output));
}

TEST(BristelPreviewMessages, UsageMistakesAreToldInWords)
{
    QTemporaryDir home;
    const QProcessEnvironment environment = displaylessEnvironment(home.path());
    ProgramRun run = preview({receipt}, environment);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.standardError,
              QStringLiteral("bristel-preview: expected an input and an output; see --help\n"));
    const QString gif = home.filePath(QStringLiteral("r.gif"));
    run = preview({receipt, gif}, environment);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        run.standardError,
        QStringLiteral("bristel-preview: %1: the output's suffix must be .png, .svg or .pdf\n").arg(gif));
    run = preview({QStringLiteral("--make-logo"), receipt}, environment);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.standardError,
              QStringLiteral(
                  "bristel-preview: --make-logo takes an image and the PBM file to write; see --help\n"));
}

TEST(BristelPreviewMessages, ALogoWidthOutsideItsRangeIsRefused)
{
    QTemporaryDir home;
    const QString picture = QStringLiteral(PREVIEW_DATA "/features.png");
    for (const char *width : {"7", "4097", "wide"}) {
        const ProgramRun run =
            preview({QStringLiteral("--make-logo"), QStringLiteral("--width"), QLatin1String(width), picture,
                     home.filePath(QStringLiteral("l.pbm"))},
                    displaylessEnvironment(home.path()));
        EXPECT_EQ(run.status, 2) << width;
        EXPECT_EQ(run.standardError,
                  QStringLiteral("bristel-preview: --width: unusable value \"%1\" (8 to 4096 dots)\n")
                      .arg(QLatin1String(width)));
    }
    const ProgramRun run =
        preview({QStringLiteral("--make-logo"), picture, QStringLiteral("/nonexistent/l.pbm")},
                displaylessEnvironment(home.path()));
    EXPECT_EQ(run.status, 6);
    EXPECT_TRUE(run.standardError.startsWith(QLatin1String("bristel-preview: /nonexistent/l.pbm: ")))
        << qPrintable(run.standardError);
}

TEST(BristelPreviewMessages, AFolderIsNoInput)
{
    QTemporaryDir home;
    const ProgramRun run =
        preview({home.path(), home.filePath(QStringLiteral("r.png"))}, displaylessEnvironment(home.path()));
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.standardError, QStringLiteral("bristel-preview: %1: is a folder\n").arg(home.path()));
}

TEST(BristelPreviewMessages, APieceThatCannotBeWrittenIsNamed)
{
    QTemporaryDir home;
    QByteArray job = "<document>\n<method name=\"printFullOrder\"/>\n";
    for (int i = 0; i < 700; ++i)
        job += "<receipe number=\"1\" name=\"Item\" price=\"1.00\" totalPrice=\"1.00\"/>\n";
    writeFile(home.filePath(QStringLiteral("long.xml")), job + "</document>\n");
    const ProgramRun run = preview({QStringLiteral("--split"), home.filePath(QStringLiteral("long.xml")),
                                    QStringLiteral("/nonexistent/long.png")},
                                   displaylessEnvironment(home.path()));
    EXPECT_EQ(run.status, 6);
    EXPECT_TRUE(run.standardError.startsWith(QLatin1String("bristel-preview: /nonexistent/long-001.png: ")))
        << qPrintable(run.standardError);
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
