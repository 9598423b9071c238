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
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_work.isValid());
        m_home = m_work.filePath(QStringLiteral("home"));
        writeFile(m_home + QLatin1String("/.bristel/conf/bristel.conf"), sampleConfiguration());
    }

    QString base() const
    {
        return QStringLiteral(EXAMPLES_DIR "/documents/") + QString::fromStdString(GetParam());
    }

    // Runs a program with the sample configuration as the user's; its standard output.
    QByteArray run(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_home);
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
        return process.readAllStandardOutput();
    }

    QTemporaryDir m_work;
    QString m_home;
};

TEST_P(Example, CompilesToTheCommittedOutput)
{
    const QString output = m_work.filePath(QStringLiteral("output.txt"));
    EXPECT_EQ(run(QStringLiteral(COMPILER_PATH), {base() + QLatin1String(".xml"), output}), QByteArray());
    const QString base = this->base();

    ASSERT_TRUE(QFile::exists(base + QLatin1String(".out"))) << "missing " << GetParam() << ".out";
    EXPECT_EQ(readFile(output), readFile(base + QLatin1String(".out")));
}

// The committed .escpos files are the printer's bytes; the .lst beside each is the same stream
// as bristel-render lists it, which is how a reviewer reads what the bytes do.
TEST_P(Example, RendersToTheCommittedEscPosBytesAndListing)
{
    const QString input = base() + QLatin1String(".xml");
    const QByteArray escpos =
        run(QStringLiteral(RENDER_PATH), {QStringLiteral("-f"), QStringLiteral("escpos"), input});
    EXPECT_EQ(escpos, readFile(base() + QLatin1String(".escpos")));
    const QByteArray listing =
        run(QStringLiteral(RENDER_PATH), {QStringLiteral("-f"), QStringLiteral("listing"), input});
    EXPECT_EQ(listing, readFile(base() + QLatin1String(".lst")));
}

TEST_P(Example, RendersTheCommandFileByteForByte)
{
    const QByteArray text =
        run(QStringLiteral(RENDER_PATH),
            {QStringLiteral("--format"), QStringLiteral("text"), base() + QLatin1String(".xml")});
    EXPECT_EQ(text, readFile(base() + QLatin1String(".out")));
}

// QR codes and barcodes, valid or not, after every element of the document: the command file
// has no codes, so bristel-compile and bristel-render's text write the same bytes as without them.
TEST_P(Example, CompilesToTheSameBytesWithCodesAfterEveryElement)
{
    const QByteArray codes = "<qrcode data=\"https://example.com/pay?t=7\" size=\"4\" ecc=\"Q\"/>"
                             "<barcode type=\"ean13\" data=\"400638133393\" height=\"60\" hri=\"none\"/>"
                             "<barcode type=\"ean13\" data=\"4006381333932\"/><barcode type=\"pdf417\"/>"
                             "<qrcode size=\"99\" ecc=\"Z\"/>";
    QByteArray document = readFile(base() + QLatin1String(".xml"));
    ASSERT_TRUE(document.contains("/>"));
    document.replace("/>", "/>" + codes);
    const QString input = m_work.filePath(QStringLiteral("with-codes.xml"));
    writeFile(input, document);

    const QString output = m_work.filePath(QStringLiteral("output.txt"));
    EXPECT_EQ(run(QStringLiteral(COMPILER_PATH), {input, output}), QByteArray());
    EXPECT_EQ(readFile(output), readFile(base() + QLatin1String(".out")));
    EXPECT_EQ(run(QStringLiteral(RENDER_PATH), {QStringLiteral("--format"), QStringLiteral("text"), input}),
              readFile(base() + QLatin1String(".out")));
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
    // Language, eight profiles of 25 or 26 entries, receipt printer, logger, database and
    // program folder.
    EXPECT_EQ(entries, 2 + 8 * 25 + 1 + 10 + 4 + 4 + 1);
}

} // namespace
