// The run sequence: translation loading, the parse over the real reader, the whole program.

#include "compiler/Compile.h"
#include "compiler/StreamSaxReader.h"
#include "config/BRConfiguration.h"
#include "devices/commandfile/CompanyPrinterDriver.h"

#include "TestSupport.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QProcess>
#include <QTranslator>

#include <gtest/gtest.h>

#include <memory>

namespace {

// A back-end that records the lines and sales the print methods hand it (trimmed, and not
// written) and the end of the document.
class Probe : public CompanyPrinterDriver
{
public:
    using CompanyPrinterDriver::CompanyPrinterDriver;
    QStringList calls;
    void endSection() override
    {
        calls << QStringLiteral("endSection");
        CompanyPrinterDriver::endSection();
    }
    void println(const QString &text) override { calls << QStringLiteral("line:") + text.trimmed(); }
    void printRowFiscal(const QString &, const QString &, const QString &description,
                        const QString &) override
    {
        calls << QStringLiteral("sale:") + description;
    }
};

class Run : public ::testing::Test
{
protected:
    Run() : m_configuration(m_dir.filePath(QStringLiteral("none.xml")), QStringLiteral("xml")) {}

    QString outputPath() const { return m_dir.filePath(QStringLiteral("out.txt")); }

    // Parses xml with the real reader into a probe; returns the output file's bytes.
    QByteArray parseWithProbe(const QByteArray &xml, QStringList *calls = nullptr, QByteArray *out = nullptr,
                              QStringList *messages = nullptr)
    {
        QBuffer input;
        input.setData(xml);
        input.open(QIODevice::ReadOnly);
        const QByteArray printed = captureStdout([&] {
            Probe probe(outputPath(), &m_configuration);
            StreamSaxReader reader;
            reader.setContentHandler(&probe);
            reader.parse(&input);
            if (calls)
                *calls = probe.calls;
            if (messages)
                *messages = probe.takeMessages();
        });
        if (out)
            *out = printed;
        return readFile(outputPath());
    }

    QByteArray compileText(const QByteArray &xml, QByteArray *out = nullptr)
    {
        QBuffer input;
        input.setData(xml);
        input.open(QIODevice::ReadOnly);
        const QByteArray printed =
            captureStdout([&] { compileDocument(&input, outputPath(), &m_configuration); });
        if (out)
            *out = printed;
        return readFile(outputPath());
    }

    QTemporaryDir m_dir;
    BRConfiguration m_configuration;
};

TEST_F(Run, UnknownMethodStopsTheParse)
{
    QStringList calls;
    QByteArray out;
    QStringList messages;
    const QByteArray file =
        parseWithProbe("<d><method name=\"printAbstractOrderFiscal\"/><receipe_type name=\"item\"/>"
                       "<method name=\"printReceipt\"/><receipe_type name=\"after\"/>"
                       "<method name=\"printReport\"/><taxrate_item taxrate=\"3\"/></d>",
                       &calls, &out, &messages);
    // The driver keeps the line for the program; compileDocument prints it.
    EXPECT_TRUE(out.isEmpty()) << out.constData();
    EXPECT_EQ(messages, QStringList(QStringLiteral("File Format Not Supported")));
    // Nothing after the unknown method is handled, and the document is not ended.
    EXPECT_EQ(calls, QStringList({QStringLiteral("sale:item")}));
    EXPECT_EQ(file, QByteArray("1020;1\r\n"));
}

TEST_F(Run, CompileDocumentPrintsTheDriversLinesOnStandardOutput)
{
    QByteArray out;
    compileText("<d><method name=\"printReceipt\"/><item/></d>", &out);
    EXPECT_EQ(out, QByteArray("File Format Not Supported\n"));

    QBuffer input;
    input.setData("<d/>");
    input.open(QIODevice::ReadOnly);
    const QString unopenable = m_dir.filePath(QStringLiteral("missing/out.txt"));
    EXPECT_EQ(captureStdout([&] { compileDocument(&input, unopenable, &m_configuration); }),
              QByteArray("PrintManager::printAbstractOrder(...): Unable To Open File\n"));
}

TEST_F(Run, ElementsBeforeTheMethodReachNothing)
{
    QStringList calls;
    const QByteArray file =
        parseWithProbe("<report><taxrate_item taxrate=\"0\"/><method name=\"printReport\"/>"
                       "<taxrate_item taxrate=\"1\"><taxrate_item taxrate=\"2\"/>"
                       "</taxrate_item></report>",
                       &calls);
    EXPECT_EQ(calls, QStringList({"line:1%", "line:2%", "endSection"}));
    EXPECT_EQ(file, QByteArray());
}

TEST_F(Run, FiscalDocumentWithoutItems)
{
    QByteArray out;
    EXPECT_EQ(compileText("<d><method name=\"printFullOrderFiscal\"/></d>", &out),
              QByteArray("1020;1\r\n1030;1;1\r\n"));
    EXPECT_TRUE(out.isEmpty());
}

TEST_F(Run, DocumentWithoutMethod)
{
    QByteArray out;
    EXPECT_EQ(compileText("<d><company name=\"ACME\"/><receipe/></d>", &out), QByteArray());
    EXPECT_TRUE(out.isEmpty());
    EXPECT_TRUE(QFile::exists(outputPath()));
}

TEST_F(Run, MalformedInputKeepsWhatWasWritten)
{
    EXPECT_EQ(compileText("<d><method name=\"printAbstractOrderFiscal\"/><oops></d>"),
              QByteArray("1020;1\r\n"));
}

TEST_F(Run, OutputFileIsEmptiedFirst)
{
    writeFile(outputPath(), "stale contents");
    EXPECT_EQ(compileText("<d/>"), QByteArray());
}

// Builds a translation file with one message with the build's lrelease; empty on failure.
QByteArray translationFile(const QString &dir, const char *translation)
{
    const QString tool = QStringLiteral(BRISTEL_LRELEASE);
    const QString ts = dir + QLatin1String("/t.ts");
    writeFile(ts,
              QByteArray("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n<TS version=\"2.1\">\n"
                         "<context><name>QObject</name><message><source>Total</source>"
                         "<translation>") +
                  translation + "</translation></message></context>\n</TS>\n");
    const QString qm = dir + QLatin1String("/t.qm");
    QProcess::execute(tool, {QStringLiteral("-silent"), ts, QStringLiteral("-qm"), qm});
    return readFile(qm);
}

class Translation : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_qm = translationFile(m_dir.path(), "Totale");
        ASSERT_FALSE(m_qm.isEmpty()) << "lrelease (" BRISTEL_LRELEASE ") made no translation file";
    }

    // The translation loaded with the two language keys, or "" when none loads.
    QString translated(const QByteArray &basedir, const QByteArray &file)
    {
        const QString conf = m_dir.filePath(QStringLiteral("bristel.conf"));
        writeFile(conf,
                  "bristel : { language : { basedir = \"" + basedir + "\"; file = \"" + file + "\"; }; };");
        const BRConfiguration configuration(conf, QStringLiteral("cfg"));
        QTranslator translator;
        if (!loadTranslation(translator, configuration))
            return QString();
        return translator.translate("QObject", "Total");
    }

    QString lang() const { return m_dir.filePath(QStringLiteral("lang")); }

    QTemporaryDir m_dir;
    QByteArray m_qm;
};

TEST_F(Translation, FileNameJoinedToTheDirectoryAsItStands)
{
    writeFile(lang() + QLatin1String("/de.qm"), m_qm);
    EXPECT_EQ(translated(lang().toUtf8() + "/", "de.qm"), QStringLiteral("Totale"));
    EXPECT_EQ(translated(lang().toUtf8(), "/de.qm"), QStringLiteral("Totale"));
    // Without a separator the names run together: <dir>/langde.qm.
    EXPECT_EQ(translated(lang().toUtf8(), "de.qm"), QString());
    writeFile(lang() + QLatin1String("de.qm"), m_qm);
    EXPECT_EQ(translated(lang().toUtf8(), "de.qm"), QStringLiteral("Totale"));
}

TEST_F(Translation, SlashAsksForTheLocalesFile)
{
    writeFile(lang() + QLatin1String("/bristel_") + QLocale::system().name() + QLatin1String(".qm"), m_qm);
    EXPECT_EQ(translated(lang().toUtf8(), "/"), QStringLiteral("Totale"));
    EXPECT_EQ(translated(lang().toUtf8() + "/other", "/"), QString());
}

TEST_F(Translation, MissingTranslationLoadsNothing)
{
    EXPECT_EQ(translated(lang().toUtf8(), "/"), QString());
    EXPECT_EQ(translated("", ""), QString());
    EXPECT_EQ(translated("/nonexistent/", "x.qm"), QString());
}

// The whole program, run as the ordering application runs it.
QString compiler()
{
    return QStringLiteral(BRISTEL_BIN_DIR "/bristel-compile");
}

struct Result
{
    int exitCode;
    QByteArray out;
};

Result runCompiler(const QString &home, const QStringList &arguments, const QString &workDir)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(workDir);
    process.start(compiler(), arguments);
    process.waitForFinished(60000);
    return {process.exitCode(), process.readAllStandardOutput()};
}

TEST(Program, OutputNameIsDecodedFromTheLocale)
{
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral(".bristel/conf/bristel.conf")), "");
    writeFile(dir.filePath(QStringLiteral("in.xml")), "<d><method name=\"printFullOrderFiscal\"/></d>");
    const QString output = dir.filePath(QString::fromUtf8("sc\xc3\xa9nario-\xe2\x82\xac.txt"));
    const Result result =
        runCompiler(dir.path(), {dir.filePath(QStringLiteral("in.xml")), output}, dir.path());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.isEmpty()) << result.out.toStdString();
    EXPECT_EQ(readFile(output), QByteArray("1020;1\r\n1030;1;1\r\n"));
}

TEST(Program, UsageForEveryOtherOperandCount)
{
    QTemporaryDir dir;
    const QStringList operandLists[] = {
        {}, {QStringLiteral("a")}, {"a", "b", "c", "d"}, {"a", "b", "c", "d", "e"}};
    for (const QStringList &operands : operandLists) {
        const Result result = runCompiler(dir.path(), operands, dir.path());
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out, "Usage: " + QFile::encodeName(compiler()) + " input_file output_file\n");
    }
    // Nothing was created, not even the configuration's directory.
    EXPECT_TRUE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden).isEmpty());
}

TEST(Program, UsageLineInProcess)
{
    char program[] = "/opt/bin/compile";
    char one[] = "only";
    char *argv1[] = {program, one, nullptr};
    EXPECT_EQ(captureStdout([&] { compile(2, argv1); }),
              QByteArray("Usage: /opt/bin/compile input_file output_file\n"));
    char *argv0[] = {program, nullptr};
    EXPECT_EQ(captureStdout([&] { compile(1, argv0); }),
              QByteArray("Usage: /opt/bin/compile input_file output_file\n"));
    char *none[] = {nullptr};
    EXPECT_EQ(captureStdout([&] { compile(0, none); }), QByteArray("Usage:  input_file output_file\n"));
}

TEST(Program, ThirdOperandIsIgnored)
{
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral(".bristel/conf/bristel.conf")), "");
    writeFile(dir.filePath(QStringLiteral("in.xml")), "<d><method name=\"printAbstractOrderFiscal\"/></d>");
    const Result result =
        runCompiler(dir.path(),
                    {dir.filePath(QStringLiteral("in.xml")), dir.filePath(QStringLiteral("out.txt")),
                     dir.filePath(QStringLiteral("extra.txt"))},
                    dir.path());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.isEmpty());
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("out.txt"))), QByteArray("1020;1\r\n1030;1;1\r\n"));
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("extra.txt"))));
}

TEST(Program, MissingInputLeavesAnEmptyOutput)
{
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral(".bristel/conf/bristel.conf")), "");
    writeFile(dir.filePath(QStringLiteral("out.txt")), "old");
    const Result result = runCompiler(
        dir.path(), {dir.filePath(QStringLiteral("none.xml")), dir.filePath(QStringLiteral("out.txt"))},
        dir.path());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.isEmpty());
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("out.txt"))));
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("out.txt"))), QByteArray());
}

TEST(Program, DeeplyNestedInputIsCompiled)
{
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral(".bristel/conf/bristel.conf")), "");
    QByteArray xml = "<d><method name=\"printAbstractOrderFiscal\"/>";
    for (int i = 0; i < 200000; ++i)
        xml += "<n>";
    for (int i = 0; i < 200000; ++i)
        xml += "</n>";
    writeFile(dir.filePath(QStringLiteral("in.xml")), xml + "</d>");
    const Result result = runCompiler(
        dir.path(), {dir.filePath(QStringLiteral("in.xml")), dir.filePath(QStringLiteral("out.txt"))},
        dir.path());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("out.txt"))).right(10), QByteArray("1030;1;1\r\n"));
}

} // namespace
