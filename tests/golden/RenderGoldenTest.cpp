// Runs bristel-render on every golden case that bristel-compile runs with its plain operands:
// as text it writes the command file byte for byte, and as ESC/POS it prints the same text
// lines, wherever the command file holds text lines only.

#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/EscPosListing.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QDir caseDir(const std::string &name)
{
    return QDir(QStringLiteral(GOLDEN_CASES) + QLatin1Char('/') + QString::fromStdString(name));
}

// The command file's lines with "\n" for their line ends; fiscal records keep their CR LF.
QByteArray textLines(QByteArray commandFile)
{
    return commandFile.replace("\r\n\r", "\n");
}

// Cases about the command line itself (operands, missing files) have nothing to render.
std::vector<std::string> renderableCases(bool textLinesOnly)
{
    std::vector<std::string> names;
    const QStringList entries =
        QDir(QStringLiteral(GOLDEN_CASES)).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &entry : entries) {
        const QDir dir = caseDir(entry.toStdString());
        if (!dir.exists(QStringLiteral("input.xml")) || !dir.exists(QStringLiteral("expected.out")) ||
            dir.exists(QStringLiteral("args")))
            continue;
        if (textLinesOnly && textLines(readFile(dir.filePath(QStringLiteral("expected.out")))).contains('\r'))
            continue;
        names.push_back(entry.toStdString());
    }
    return names;
}

std::string testName(const ::testing::TestParamInfo<std::string> &info)
{
    std::string name = info.param;
    for (char &c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c)))
            c = '_';
    }
    return name;
}

class RenderCase : public ::testing::TestWithParam<std::string>
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_work.isValid());
        const QDir dir = caseDir(GetParam());
        m_home = m_work.filePath(QStringLiteral("home"));
        QDir().mkpath(m_home + QLatin1String("/.bristel/conf"));
        if (dir.exists(QStringLiteral("bristel.conf"))) {
            QByteArray conf = readFile(dir.filePath(QStringLiteral("bristel.conf")));
            conf.replace("@QMDIR@", QByteArrayLiteral(GOLDEN_QM_DIR));
            writeFile(m_home + QLatin1String("/.bristel/conf/bristel.conf"), conf);
        }
        m_environment = QProcessEnvironment::systemEnvironment();
        m_environment.insert(QStringLiteral("HOME"), m_home);
        m_environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        if (dir.exists(QStringLiteral("env"))) {
            const QStringList lines = QString::fromUtf8(readFile(dir.filePath(QStringLiteral("env"))))
                                          .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            for (const QString &line : lines)
                m_environment.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1));
        }
        m_input = dir.filePath(QStringLiteral("input.xml"));
        m_expected = readFile(dir.filePath(QStringLiteral("expected.out")));
    }

    QByteArray render(const QString &format)
    {
        QProcess process;
        process.setProcessEnvironment(m_environment);
        process.start(QStringLiteral(RENDER_PATH), {QStringLiteral("--format"), format, m_input});
        EXPECT_TRUE(process.waitForFinished(60000));
        // Malformed documents and unknown methods end in an error status; the output stays.
        return process.readAllStandardOutput();
    }

    QTemporaryDir m_work;
    QString m_home;
    QString m_input;
    QByteArray m_expected;
    QProcessEnvironment m_environment;
};

class TextRenderCase : public RenderCase
{
};

class EscPosRenderCase : public RenderCase
{
};

TEST_P(TextRenderCase, TextIsTheCommandFileByteForByte)
{
    const QByteArray actual = render(QStringLiteral("text"));
    EXPECT_EQ(actual, m_expected) << "expected:\n"
                                  << visible(m_expected).toStdString() << "\nactual:\n"
                                  << visible(actual).toStdString();
}

TEST_P(EscPosRenderCase, EscPosPrintsTheTextLinesOfTheCommandFile)
{
    const QByteArray lines = textLines(m_expected);
    // What the printer can print of the text: characters outside its table become '?'.
    const EscPosCodePage *page = EscPosCodePage::byName(u"PC858");
    const QString expected = page->decode(page->encode(QString::fromUtf8(lines)));
    const QString printed = escPosPrintedText(render(QStringLiteral("escpos")));
    EXPECT_EQ(printed.toStdString(), expected.toStdString());
}

INSTANTIATE_TEST_SUITE_P(Cases, TextRenderCase, ::testing::ValuesIn(renderableCases(false)), testName);
INSTANTIATE_TEST_SUITE_P(Cases, EscPosRenderCase, ::testing::ValuesIn(renderableCases(true)), testName);

} // namespace
