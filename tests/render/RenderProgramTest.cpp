// bristel-render from the outside: what a person at a terminal, a script or a printer pipe sees.

#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/EscPosListing.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString Receipt = QStringLiteral(EXAMPLES_DIR "/documents/printFullOrderReceipt.xml");

struct Outcome
{
    int status = -1;
    QByteArray out;
    QByteArray err;
};

class RenderProgram : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_work.isValid());
        // A home without a configuration: every setting takes its default.
        m_home = m_work.filePath(QStringLiteral("home"));
        ASSERT_TRUE(QDir().mkpath(m_home));
    }

    Outcome run(const QStringList &arguments, const QByteArray &standardInput = QByteArray())
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_home);
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_work.path());
        process.start(QStringLiteral(RENDER_PATH), arguments);
        EXPECT_TRUE(process.waitForStarted());
        process.write(standardInput);
        process.closeWriteChannel();
        EXPECT_TRUE(process.waitForFinished(60000));
        Outcome result;
        result.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        result.out = process.readAllStandardOutput();
        result.err = process.readAllStandardError();
        return result;
    }

    QString path(const char *name) const { return m_work.filePath(QString::fromLatin1(name)); }

    QTemporaryDir m_work;
    QString m_home;
};

TEST_F(RenderProgram, WritesEscPosToStandardOutputByDefault)
{
    const Outcome r = run({Receipt});
    EXPECT_EQ(r.status, 0) << r.err.constData();
    EXPECT_TRUE(r.out.startsWith("\x1b@\x1bt\x13"));
    EXPECT_TRUE(r.out.endsWith(QByteArray("\x1dV\x42\x00", 4)));
    EXPECT_TRUE(r.err.isEmpty());
}

TEST_F(RenderProgram, TheOutputSuffixChoosesTheFormatUnlessOneIsNamed)
{
    EXPECT_EQ(run({Receipt, path("out.txt")}).status, 0);
    EXPECT_TRUE(readFile(path("out.txt")).contains("\r\n\r"));
    EXPECT_EQ(run({Receipt, path("out.lst")}).status, 0);
    EXPECT_TRUE(readFile(path("out.lst")).startsWith("[initialize] [code table 19 PC858]"));
    EXPECT_EQ(run({Receipt, path("out.bin")}).status, 0);
    EXPECT_TRUE(readFile(path("out.bin")).startsWith("\x1b@"));
    EXPECT_EQ(run({QStringLiteral("-f"), QStringLiteral("escpos"), Receipt, path("forced.txt")}).status, 0);
    EXPECT_TRUE(readFile(path("forced.txt")).startsWith("\x1b@"));
}

TEST_F(RenderProgram, ReadsTheJobFromStandardInput)
{
    const Outcome r =
        run({QStringLiteral("-f"), QStringLiteral("text"), QStringLiteral("-"), QStringLiteral("-")},
            readFile(Receipt));
    EXPECT_EQ(r.status, 0);
    const Outcome fromFile = run({QStringLiteral("-f"), QStringLiteral("text"), Receipt});
    EXPECT_EQ(r.out, fromFile.out);
    EXPECT_FALSE(r.out.isEmpty());
}

TEST_F(RenderProgram, OptionsOverrideThePrinterSettings)
{
    const Outcome r = run({QStringLiteral("--codepage"), QStringLiteral("pc850"), QStringLiteral("--cut"),
                           QStringLiteral("full"), QStringLiteral("--cut-feed"), QStringLiteral("4"),
                           QStringLiteral("--columns"), QStringLiteral("48"), QStringLiteral("-f"),
                           QStringLiteral("listing"), Receipt});
    EXPECT_EQ(r.status, 0) << r.err.constData();
    EXPECT_TRUE(r.out.startsWith("[initialize] [code table 2 PC850]"));
    EXPECT_TRUE(r.out.contains("[cut full, feed 4]"));
}

TEST_F(RenderProgram, TheConfigurationFileGivesThePrinterSettings)
{
    writeFile(path("printer.conf"), "bristel : { escpos : { codePage = \"WPC1252\"; cut = \"none\"; }; };");
    const Outcome r = run({QStringLiteral("-c"), path("printer.conf"), QStringLiteral("-f"),
                           QStringLiteral("listing"), Receipt});
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(r.out.startsWith("[initialize] [code table 16 WPC1252]"));
    EXPECT_FALSE(r.out.contains("[cut"));
}

TEST_F(RenderProgram, AMalformedDocumentIsReportedWithFileLineAndColumnAndKeepsWhatWasRendered)
{
    writeFile(path("broken.xml"),
              "<document>\n<method name=\"printSold\"/>\n<receipe quantity=\"2\" description=\"Acqua\" "
              "amount=\"3.00\"/>\n  <oops\n");
    const Outcome r = run({QStringLiteral("-f"), QStringLiteral("listing"), path("broken.xml")});
    EXPECT_EQ(r.status, 4);
    EXPECT_TRUE(r.err.startsWith("bristel-render: " + QFile::encodeName(path("broken.xml")) + ":5:1: "))
        << r.err.constData();
    EXPECT_TRUE(r.out.contains("Acqua"));
    EXPECT_TRUE(r.out.contains("[cut partial, feed 0]"));
}

TEST_F(RenderProgram, CodesArePrintedNativelyOrAsPicturesByTheOptionOrTheConfiguration)
{
    writeFile(path("codes.xml"), "<document><method name=\"printSold\"/><qrcode data=\"7\"/>"
                                 "<barcode type=\"itf\" data=\"42\"/></document>");
    const Outcome native = run({path("codes.xml")});
    EXPECT_EQ(native.status, 0) << native.err.constData();
    EXPECT_TRUE(native.out.contains("\x1d(k"));
    EXPECT_TRUE(native.out.contains("\x1dkF\x02"
                                    "42"));
    EXPECT_FALSE(native.out.contains("\x1dv0"));
    const Outcome raster = run({QStringLiteral("--codes"), QStringLiteral("raster"), path("codes.xml")});
    EXPECT_EQ(raster.status, 0) << raster.err.constData();
    EXPECT_FALSE(raster.out.contains("\x1d(k"));
    EXPECT_FALSE(raster.out.contains("\x1dk"));
    EXPECT_EQ(raster.out.count("\x1dv0"), 2);
    writeFile(path("raster.conf"), "bristel : { escpos : { codes = \"raster\"; }; };");
    const Outcome configured = run({QStringLiteral("-c"), path("raster.conf"), path("codes.xml")});
    EXPECT_EQ(configured.out, raster.out);
    const Outcome overridden = run({QStringLiteral("-c"), path("raster.conf"), QStringLiteral("--codes"),
                                    QStringLiteral("native"), path("codes.xml")});
    EXPECT_EQ(overridden.out, native.out);
}

TEST_F(RenderProgram, ACodeThatCannotBePrintedIsReportedAtItsElementAndTheJobStops)
{
    writeFile(path("badcode.xml"), "<document>\n<method name=\"printSold\"/>\n<receipe quantity=\"2\" "
                                   "description=\"Acqua\" amount=\"3.00\"/>\n\t<barcode type=\"ean13\" "
                                   "data=\"4006381333932\"/>\n<receipe description=\"Vino\"/></document>\n");
    for (const char *codes : {"native", "raster"}) {
        const Outcome r = run({QStringLiteral("--codes"), QString::fromLatin1(codes), QStringLiteral("-f"),
                               QStringLiteral("listing"), path("badcode.xml")});
        EXPECT_EQ(r.status, 4) << codes;
        EXPECT_EQ(r.err, "bristel-render: " + QFile::encodeName(path("badcode.xml")) +
                             ":4:2: barcode: EAN-13 data \"4006381333932\": Error 275: Invalid check digit "
                             "'2', expecting '1'\n")
            << codes;
        // What came before is printed and the paper cut; nothing after the element.
        EXPECT_TRUE(r.out.contains("Acqua"));
        EXPECT_FALSE(r.out.contains("Vino"));
        EXPECT_TRUE(r.out.contains("[cut partial, feed 0]"));
    }
    // The command file has no codes, and no complaint about them.
    const Outcome text = run({QStringLiteral("-f"), QStringLiteral("text"), path("badcode.xml")});
    EXPECT_EQ(text.status, 0);
    EXPECT_TRUE(text.err.isEmpty());
    EXPECT_TRUE(text.out.contains("Vino"));
}

TEST_F(RenderProgram, AnUnknownPrintMethodIsReported)
{
    writeFile(path("unknown.xml"), "<document>\n  <method name=\"printMenu\"/>\n</document>\n");
    const Outcome r = run({path("unknown.xml")});
    EXPECT_EQ(r.status, 5);
    EXPECT_TRUE(r.err.contains("unknown.xml:2:"));
    EXPECT_TRUE(r.err.contains("unknown print method \"printMenu\"")) << r.err.constData();
    // Nothing goes to standard output but the printer's bytes.
    EXPECT_FALSE(r.out.contains("File Format Not Supported"));
}

TEST_F(RenderProgram, AnUnreadableInputIsReported)
{
    Outcome r = run({path("missing.xml")});
    EXPECT_EQ(r.status, 3);
    EXPECT_TRUE(r.err.startsWith("bristel-render: " + QFile::encodeName(path("missing.xml")) + ": "));
    r = run({m_work.path()});
    EXPECT_EQ(r.status, 3);
}

TEST_F(RenderProgram, AnUnwritableOutputIsReported)
{
    const Outcome r = run({Receipt, path("no/such/folder/out.bin")});
    EXPECT_EQ(r.status, 6);
    EXPECT_TRUE(r.err.contains("no/such/folder/out.bin"));
}

TEST_F(RenderProgram, AFullDiskIsAClearMessageAndAStatusNotACrash)
{
    for (const char *format : {"escpos", "text", "listing"}) {
        const Outcome r =
            run({QStringLiteral("-f"), QString::fromLatin1(format), Receipt, QStringLiteral("/dev/full")});
        EXPECT_EQ(r.status, 6) << format;
        EXPECT_TRUE(r.err.startsWith("bristel-render: /dev/full: ")) << r.err.constData();
        EXPECT_TRUE(r.err.contains("space")) << r.err.constData();
    }
}

TEST_F(RenderProgram, BadOptionValuesAreReportedBeforeAnythingIsWritten)
{
    const QStringList bad[] = {{QStringLiteral("--codepage"), QStringLiteral("PC999")},
                               {QStringLiteral("--columns"), QStringLiteral("0")},
                               {QStringLiteral("--cut"), QStringLiteral("half")},
                               {QStringLiteral("--drawer-pin"), QStringLiteral("3")},
                               {QStringLiteral("--drawer-on"), QStringLiteral("600")},
                               {QStringLiteral("--codes"), QStringLiteral("bitmap")},
                               {QStringLiteral("-f"), QStringLiteral("pdf")},
                               {QStringLiteral("-c"), QStringLiteral("/nonexistent.conf")}};
    for (const QStringList &option : bad) {
        const Outcome r = run(option + QStringList{Receipt, path("never.bin")});
        EXPECT_EQ(r.status, 2) << option.join(QLatin1Char(' ')).toStdString();
        EXPECT_TRUE(r.err.startsWith("bristel-render: ")) << r.err.constData();
        EXPECT_FALSE(QFile::exists(path("never.bin")));
    }
}

TEST_F(RenderProgram, AnUnknownCodePageIsToldWithTheNamesThatServe)
{
    const Outcome r = run({QStringLiteral("--codepage"), QStringLiteral("PC999"), Receipt});
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(r.err.startsWith("bristel-render: --codepage: unusable value \"PC999\" ("))
        << r.err.constData();
    for (const QString &name : EscPosCodePage::names())
        EXPECT_TRUE(r.err.contains(name.toLatin1())) << qPrintable(name);
}

TEST_F(RenderProgram, AMethodElementWithoutANameIsReported)
{
    writeFile(path("nameless.xml"), "<document><method/></document>");
    const Outcome r = run({path("nameless.xml")});
    EXPECT_EQ(r.status, 5);
    EXPECT_TRUE(r.err.contains("the method element has no name")) << r.err.constData();
}

TEST_F(RenderProgram, UsageErrorsFollowTheCommandLineConventions)
{
    EXPECT_EQ(run({}).status, 1);
    EXPECT_EQ(run({Receipt, path("a"), path("b")}).status, 1);
    EXPECT_EQ(run({QStringLiteral("--no-such-option"), Receipt}).status, 1);
    const Outcome help = run({QStringLiteral("--help")});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.contains("--codepage"));
    const Outcome version = run({QStringLiteral("--version")});
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(version.out.startsWith("bristel-render 1."));
}

TEST_F(RenderProgram, EachPrinterSettingOptionNamesItselfWhenItsValueCannotBeUsed)
{
    for (const char *option : {"codepage", "codepage-number", "columns", "cut", "cut-feed", "drawer-pin",
                               "drawer-on", "drawer-off", "codes"}) {
        const Outcome r = run({QStringLiteral("--") + QLatin1String(option), QStringLiteral("x9"), Receipt});
        EXPECT_EQ(r.status, 2) << option;
        EXPECT_TRUE(r.err.startsWith("bristel-render: --" + QByteArray(option) + ": unusable value \"x9\""))
            << r.err.constData();
        EXPECT_TRUE(r.out.isEmpty()) << option;
    }
}

TEST_F(RenderProgram, UsageAndFormatMistakesAreToldInWords)
{
    EXPECT_EQ(run({}).err, "bristel-render: expected an input and at most one output; see --help\n");
    const Outcome r = run({QStringLiteral("--format"), QStringLiteral("pdf"), Receipt});
    EXPECT_EQ(r.err, "bristel-render: --format: unknown format \"pdf\" (text, escpos or listing)\n");
}

TEST_F(RenderProgram, AFaultInAJobOnStandardInputIsPlacedInStdin)
{
    const Outcome r = run({QStringLiteral("-"), path("out.txt")},
                          "<document>\n<method name=\"printFullOrderReceipt\"/>\n<total");
    EXPECT_EQ(r.status, 4);
    EXPECT_TRUE(r.err.startsWith("bristel-render: <stdin>:3:")) << r.err.constData();
    writeFile(path("menu.xml"), "<document>\n<method name=\"printMenu\"/>\n</document>\n");
    const Outcome unknown = run({QStringLiteral("-")}, readFile(path("menu.xml")));
    EXPECT_EQ(unknown.status, 5);
    EXPECT_TRUE(unknown.err.startsWith("bristel-render: <stdin>:2:")) << unknown.err.constData();
}

TEST_F(RenderProgram, AFullStandardOutputIsNamedStdout)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), m_home);
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(QStringLiteral(RENDER_PATH), {Receipt});
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 6);
    EXPECT_EQ(process.readAllStandardError(), "bristel-render: <stdout>: No space left on device\n");
}

TEST_F(RenderProgram, AnUnreadableLogoIsAWarningAndTheJobStillPrints)
{
    writeFile(path("logo.xml"), "<document><method name=\"printSold\"/><logo/></document>");
    const Outcome r = run({QStringLiteral("--logo"), path("missing.pbm"), path("logo.xml")});
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(r.err.contains("logo not printed")) << r.err.constData();
    EXPECT_TRUE(r.out.startsWith("\x1b@"));
}

} // namespace
