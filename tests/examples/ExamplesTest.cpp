// The shipped examples compile to their committed outputs, with the shipped configuration.

#include "config/BRConfiguration.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

std::vector<std::string> documentNames()
{
    std::vector<std::string> names;
    const QStringList files = QDir(QStringLiteral(EXAMPLES_DIR "/documents"))
                                  .entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name);
    for (const QString &file : files)
        names.push_back(file.chopped(4).toStdString());
    return names;
}

// The sample configuration with its translation directory pointed at the build's.
QByteArray sampleConfiguration()
{
    QByteArray conf = readFile(QStringLiteral(EXAMPLES_DIR "/bristel.conf"));
    conf.replace("/usr/share/bristel/translations/", QByteArrayLiteral(QM_DIR "/"));
    return conf;
}

class Example : public ::testing::TestWithParam<std::string>
{
};

TEST_P(Example, CompilesToTheCommittedOutput)
{
    const QString base = QStringLiteral(EXAMPLES_DIR "/documents/") + QString::fromStdString(GetParam());
    QTemporaryDir work;
    ASSERT_TRUE(work.isValid());
    const QString home = work.filePath(QStringLiteral("home"));
    ASSERT_TRUE(QDir().mkpath(home + QLatin1String("/.bristel/conf")));
    QFile conf(home + QLatin1String("/.bristel/conf/bristel.conf"));
    ASSERT_TRUE(conf.open(QIODevice::WriteOnly));
    conf.write(sampleConfiguration());
    conf.close();

    const QString output = work.filePath(QStringLiteral("output.txt"));
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(COMPILER_PATH), {base + QLatin1String(".xml"), output});
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(process.readAllStandardOutput(), QByteArray());

    ASSERT_TRUE(QFile::exists(base + QLatin1String(".out"))) << "missing " << GetParam() << ".out";
    EXPECT_EQ(readFile(output), readFile(base + QLatin1String(".out")));
}

INSTANTIATE_TEST_SUITE_P(Documents, Example, ::testing::ValuesIn(documentNames()),
                         [](const ::testing::TestParamInfo<std::string> &info) { return info.param; });

TEST(SampleConfiguration, EveryEntryIsFoundByItsKey)
{
    // The entries are collected line by line, independently of the reader: a comment that
    // spoils an entry's name, or an entry the reader loses, shows up as a missing key.
    BRConfiguration configuration(QStringLiteral(EXAMPLES_DIR "/bristel.conf"), QStringLiteral("cfg"));
    const QStringList lines =
        QString::fromUtf8(readFile(QStringLiteral(EXAMPLES_DIR "/bristel.conf"))).split('\n');
    const QRegularExpression blockLine(QStringLiteral("^\\s*(\\w+) :\\s*$"));
    const QRegularExpression entryLine(QStringLiteral("^\\s*(\\w+) = \"?([^\";]*)\"?;\\s*$"));
    QStringList blocks;
    int entries = 0;
    for (const QString &line : lines) {
        if (const QRegularExpressionMatch block = blockLine.match(line); block.hasMatch()) {
            blocks << block.captured(1);
        } else if (line.trimmed() == QLatin1String("};")) {
            ASSERT_FALSE(blocks.isEmpty());
            blocks.removeLast();
        } else if (const QRegularExpressionMatch entry = entryLine.match(line); entry.hasMatch()) {
            const QString key = (blocks + QStringList{entry.captured(1)}).join(QLatin1Char('.'));
            EXPECT_EQ(configuration.getStrValue(key), entry.captured(2)) << key.toStdString();
            ++entries;
        }
    }
    EXPECT_TRUE(blocks.isEmpty());
    // Language, eight profiles of 25 or 26 entries, logger, database and program folder.
    EXPECT_EQ(entries, 2 + 8 * 25 + 1 + 4 + 4 + 1);
}

} // namespace
