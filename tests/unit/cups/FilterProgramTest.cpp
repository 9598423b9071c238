// bristeltoescpos run as the scheduler runs it: six or seven arguments, the job on standard
// input or in a file, the printer on standard output and the scheduler's lines on standard
// error.

#include "TestSupport.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString Receipt = QStringLiteral(BRISTEL_TEST_DATA "/../examples/documents/printFullOrderReceipt.xml");

struct FilterRun
{
    int status = -1;
    QByteArray printer; // what reached standard output
    QString log;        // standard error
};

class FilterProgram : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_work.isValid());
        m_config = path("bristel.conf");
        writeFile(m_config, "bristel : { escpos : { codepage = \"PC858\"; columns = \"32\"; }; };\n");
    }

    QString path(const QString &name) const { return m_work.filePath(name); }

    // Runs the filter with BRISTEL_CONFIG (and PPD, when given) set; standard output goes to
    // printerFile when one is named.
    FilterRun run(const QStringList &arguments, const QString &config, const QString &ppd = QString(),
                  const QByteArray &job = QByteArray(), const QString &printerFile = QString())
    {
        QProcessEnvironment environment = userEnvironment(m_work.path());
        environment.remove(QStringLiteral("BRISTEL_CONFIG"));
        environment.remove(QStringLiteral("PPD"));
        environment.insert(QStringLiteral("BRISTEL_CONFIG"), config);
        if (!ppd.isEmpty())
            environment.insert(QStringLiteral("PPD"), ppd);
        QProcess process;
        process.setProcessEnvironment(environment);
        if (!printerFile.isEmpty())
            process.setStandardOutputFile(printerFile);
        process.start(QStringLiteral(BRISTEL_BIN_DIR "/bristeltoescpos"), arguments);
        EXPECT_TRUE(process.waitForStarted());
        process.write(job);
        process.closeWriteChannel();
        EXPECT_TRUE(process.waitForFinished(60000));
        FilterRun result;
        result.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        result.printer = process.readAllStandardOutput();
        result.log = QString::fromUtf8(process.readAllStandardError());
        return result;
    }

    // The bytes bristel-render makes of the receipt with the same settings.
    QByteArray rendered(const QStringList &options = {})
    {
        const ProgramRun render =
            runProgram(QStringLiteral(BRISTEL_BIN_DIR "/bristel-render"),
                       QStringList{QStringLiteral("-c"), m_config} + options + QStringList{Receipt},
                       userEnvironment(m_work.path()));
        EXPECT_EQ(render.status, 0) << qPrintable(render.standardError);
        return render.standardOutput;
    }

    QTemporaryDir m_work;
    QString m_config;
};

QStringList job(const char *id, const char *copies, const QString &options = QString())
{
    return {QString::fromLatin1(id), QStringLiteral("alice"), QStringLiteral("order"),
            QString::fromLatin1(copies), options};
}

TEST_F(FilterProgram, PrintsEachCopyOfAJobFromAFileAndCountsThePages)
{
    const FilterRun r = run(job("7", "2") + QStringList{Receipt}, m_config);
    ASSERT_EQ(r.status, 0) << qPrintable(r.log);
    EXPECT_EQ(r.printer, rendered() + rendered());
    EXPECT_EQ(r.log, QStringLiteral("PAGE: 1 2\n"));
}

TEST_F(FilterProgram, ACopyCountThatIsNoPositiveNumberPrintsOnce)
{
    for (const char *copies : {"0", "-3", "many"}) {
        const FilterRun r = run(job("7", copies) + QStringList{Receipt}, m_config);
        ASSERT_EQ(r.status, 0) << copies;
        EXPECT_EQ(r.printer, rendered()) << copies;
        EXPECT_EQ(r.log, QStringLiteral("PAGE: 1 1\n")) << copies;
    }
}

TEST_F(FilterProgram, ReadsTheJobFromStandardInputWithSixArguments)
{
    const FilterRun r =
        run(job("8", "1", QStringLiteral("BristelCut=None")), m_config, QString(), readFile(Receipt));
    ASSERT_EQ(r.status, 0) << qPrintable(r.log);
    EXPECT_EQ(r.printer, rendered({QStringLiteral("--cut"), QStringLiteral("none")}));
}

TEST_F(FilterProgram, TheWrongNumberOfArgumentsIsAUsageMessage)
{
    FilterRun r =
        run({QStringLiteral("1"), QStringLiteral("alice"), QStringLiteral("order"), QStringLiteral("1")},
            m_config);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.log.startsWith(QLatin1String("Usage: "))) << qPrintable(r.log);
    EXPECT_TRUE(r.log.endsWith(QLatin1String(" job-id user title copies options [file]\n")));
    r = run(job("1", "1") + QStringList{Receipt, QStringLiteral("extra")}, m_config);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.printer.isEmpty());
}

TEST_F(FilterProgram, AConfigurationTheSchedulerNamesMustBeThereAndReadable)
{
    const QString missing = path(QStringLiteral("missing.conf"));
    FilterRun r = run(job("9", "1") + QStringList{Receipt}, missing);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(
        r.log,
        QStringLiteral("ERROR: %1 (BRISTEL_CONFIG): the configuration file does not exist\n").arg(missing));
    EXPECT_TRUE(r.printer.isEmpty());

    r = run(job("9", "1") + QStringList{Receipt}, m_work.path());
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(
        r.log.startsWith(QStringLiteral("ERROR: %1 (BRISTEL_CONFIG): cannot read the configuration file: ")
                             .arg(m_work.path())))
        << qPrintable(r.log);
    EXPECT_TRUE(r.printer.isEmpty());
}

TEST_F(FilterProgram, UnusableSettingsAndAnUnreadablePpdAreWarningsAndTheJobPrints)
{
    const QString ppd = path(QStringLiteral("missing.ppd"));
    const FilterRun r =
        run(job("10", "1", QStringLiteral("BristelCodePage=KLINGON")) + QStringList{Receipt}, m_config, ppd);
    ASSERT_EQ(r.status, 0) << qPrintable(r.log);
    EXPECT_TRUE(r.log.startsWith(QStringLiteral("WARNING: %1: cannot read the queue's PPD file\n"
                                                "WARNING: BristelCodePage: unusable value \"KLINGON\"")
                                     .arg(ppd)))
        << qPrintable(r.log);
    EXPECT_EQ(r.printer, rendered());
}

TEST_F(FilterProgram, AJobThatCannotBeReadOrIsDamagedPrintsNothing)
{
    FilterRun r = run(job("11", "1") + QStringList{path(QStringLiteral("none.xml"))}, m_config);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.log.startsWith(QLatin1String("ERROR: job 11 (order): cannot read the job: ")))
        << qPrintable(r.log);

    const QString cut = path(QStringLiteral("cut.xml"));
    writeFile(cut, "<document>\n<method name=\"printFullOrderReceipt\"/>\n<company name=\"a\"/>\n<receipe");
    r = run(job("12", "1") + QStringList{cut}, m_config);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.log.startsWith(QLatin1String("ERROR: job 12 (order): not printed: line 4, column ")))
        << qPrintable(r.log);
    EXPECT_TRUE(r.printer.isEmpty());

    const QString unknown = path(QStringLiteral("unknown.xml"));
    writeFile(unknown, "<document>\n<method name=\"printMenu\"/>\n</document>\n");
    r = run(job("13", "1") + QStringList{unknown}, m_config);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.log.startsWith(QLatin1String("ERROR: job 13 (order): not printed: line 2, column ")))
        << qPrintable(r.log);
    EXPECT_TRUE(r.log.contains(QLatin1String("printMenu")));
}

TEST_F(FilterProgram, AFullPrinterChannelIsAnError)
{
    const FilterRun r = run(job("14", "1") + QStringList{Receipt}, m_config, QString(), QByteArray(),
                            QStringLiteral("/dev/full"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.log, QStringLiteral("ERROR: cannot write to the printer: No space left on device\n"));
}

} // namespace
