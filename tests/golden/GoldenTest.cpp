// Runs bristel-compile on every case directory and compares the output bytes exactly.

#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

std::vector<std::string> caseNames()
{
    std::vector<std::string> names;
    const QStringList entries =
        QDir(QStringLiteral(GOLDEN_CASES)).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &entry : entries)
        names.push_back(entry.toStdString());
    return names;
}

class GoldenCase : public ::testing::TestWithParam<std::string>
{
};

TEST_P(GoldenCase, OutputMatchesExpectedBytes)
{
    const QDir caseDir(QStringLiteral(GOLDEN_CASES) + QLatin1Char('/') + QString::fromStdString(GetParam()));
    QTemporaryDir work;
    ASSERT_TRUE(work.isValid());
    const QString home = work.filePath(QStringLiteral("home"));
    QDir().mkpath(home + QLatin1String("/.bristel/conf"));

    if (caseDir.exists(QStringLiteral("bristel.conf"))) {
        QByteArray conf = readFile(caseDir.filePath(QStringLiteral("bristel.conf")));
        conf.replace("@QMDIR@", QByteArrayLiteral(GOLDEN_QM_DIR));
        QFile out(home + QLatin1String("/.bristel/conf/bristel.conf"));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(conf);
    }
    const QString input = work.filePath(QStringLiteral("input.xml"));
    if (caseDir.exists(QStringLiteral("input.xml"))) {
        ASSERT_TRUE(QFile::copy(caseDir.filePath(QStringLiteral("input.xml")), input));
    }
    const QString output = work.filePath(QStringLiteral("output.txt"));

    QStringList arguments = {QStringLiteral("@input"), QStringLiteral("@output")};
    if (caseDir.exists(QStringLiteral("args")))
        arguments = QString::fromUtf8(readFile(caseDir.filePath(QStringLiteral("args"))))
                        .split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    for (QString &argument : arguments) {
        argument.replace(QLatin1String("@input"), input);
        argument.replace(QLatin1String("@output"), output);
        argument.replace(QLatin1String("@work"), work.path());
    }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    if (caseDir.exists(QStringLiteral("env"))) {
        const QStringList lines = QString::fromUtf8(readFile(caseDir.filePath(QStringLiteral("env"))))
                                      .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString &line : lines)
            environment.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1));
    }

    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(work.path());
    process.setProgram(QStringLiteral(COMPILER_PATH));
    process.setArguments(arguments);
    process.start();
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);

    QByteArray expectedStdout = readFile(caseDir.filePath(QStringLiteral("expected.stdout")));
    expectedStdout.replace("@COMPILER@", QByteArrayLiteral(COMPILER_PATH));
    expectedStdout.replace("@HOME@", QFile::encodeName(home));
    const QByteArray actualStdout = process.readAllStandardOutput();
    EXPECT_EQ(actualStdout, expectedStdout) << "stdout was:\n" << visible(actualStdout).toStdString();

    if (caseDir.exists(QStringLiteral("expected.out"))) {
        ASSERT_TRUE(QFile::exists(output)) << "no output file written";
        const QByteArray expected = readFile(caseDir.filePath(QStringLiteral("expected.out")));
        const QByteArray actual = readFile(output);
        EXPECT_EQ(actual, expected) << "expected:\n"
                                    << visible(expected).toStdString() << "\nactual:\n"
                                    << visible(actual).toStdString();
    } else {
        EXPECT_FALSE(QFile::exists(output)) << "an output file was written";
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenCase, ::testing::ValuesIn(caseNames()),
                         [](const ::testing::TestParamInfo<std::string> &info) {
                             std::string name = info.param;
                             for (char &c : name) {
                                 if (!std::isalnum(static_cast<unsigned char>(c)))
                                     c = '_';
                             }
                             return name;
                         });

} // namespace
