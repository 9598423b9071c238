#include "DocumentFixture.h"

#include "TestSupport.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QTextStream>
#include <QTranslator>

void RecordingDriver::setBold()
{
    trace << QStringLiteral("setBold");
}

void RecordingDriver::setCharSize()
{
    trace << QStringLiteral("setCharSize");
    CompanyPrinterDriver::setCharSize();
}

void RecordingDriver::setCharSize(int size)
{
    trace << QStringLiteral("setCharSize(%1)").arg(size);
    CompanyPrinterDriver::setCharSize(size);
}

void RecordingDriver::setCenterJustify()
{
    trace << QStringLiteral("setCenterJustify");
    CompanyPrinterDriver::setCenterJustify();
}

void RecordingDriver::initPrinter()
{
    trace << QStringLiteral("initPrinter");
}

void RecordingDriver::printLogo()
{
    trace << QStringLiteral("printLogo");
}

void RecordingDriver::fullCut()
{
    trace << QStringLiteral("fullCut");
}

void RecordingDriver::generatePulse()
{
    trace << QStringLiteral("generatePulse");
}

void RecordingDriver::reset()
{
    trace << QStringLiteral("reset");
}

void RecordingDriver::flush()
{
    if (outputStream)
        outputStream->flush();
}

void RecordingDriver::println(unsigned int indent, const QString &text)
{
    trace << QStringLiteral("println(%1):%2").arg(indent).arg(text);
    CompanyPrinterDriver::println(indent, text);
}

QXmlAttributes attributes(Attributes list)
{
    QXmlAttributes result;
    for (const auto &[name, value] : list)
        result.append(QString::fromUtf8(name), QString(), QString::fromUtf8(name), QString::fromUtf8(value));
    return result;
}

void DocumentTest::configure(const QByteArray &configurationText)
{
    const QString path = m_dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, configurationText);
    m_configuration = std::make_unique<BRConfiguration>(path, QStringLiteral("cfg"));
}

RecordingDriver &DocumentTest::driver()
{
    if (!m_configuration)
        configure(QByteArray());
    if (!m_driver)
        m_driver = std::make_unique<RecordingDriver>(m_dir.filePath(QStringLiteral("output.txt")),
                                                     m_configuration.get());
    return *m_driver;
}

void DocumentTest::start(const char *method)
{
    driver().startDocument();
    element("method", {{"name", method}});
}

void DocumentTest::element(const char *name, Attributes list)
{
    element(name, attributes(list));
}

void DocumentTest::element(const char *name, const QXmlAttributes &attributes)
{
    const QString qName = QString::fromUtf8(name);
    driver().startElement(QString(), qName, qName, attributes);
}

QByteArray DocumentTest::finish()
{
    driver().endDocument();
    return output();
}

QByteArray DocumentTest::output()
{
    driver().flush();
    return readFile(m_dir.filePath(QStringLiteral("output.txt")));
}

QByteArray printedLine(const QByteArray &text, unsigned int indent)
{
    const QByteArray blanks(static_cast<int>(indent), ' ');
    return blanks + text + blanks + QByteArray("\r\n\r");
}

QByteArray printedLines(std::initializer_list<QByteArray> texts)
{
    QByteArray bytes;
    for (const QByteArray &text : texts)
        bytes += printedLine(text);
    return bytes;
}

QByteArray separatorLine(int paperWidth)
{
    return printedLine(QByteArray(paperWidth > 0 ? paperWidth : 0, '='));
}

class LabelTranslation::Translator : public QTranslator
{
public:
    QHash<QString, QString> labels;

    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        if (qstrcmp(context, "QObject") != 0)
            return QString();
        return labels.value(QString::fromUtf8(sourceText));
    }
    bool isEmpty() const override { return labels.isEmpty(); }
};

LabelTranslation::LabelTranslation(std::initializer_list<std::pair<const char *, const char *>> labels)
    : m_translator(std::make_unique<Translator>())
{
    if (!QCoreApplication::instance()) {
        static int argc = 1;
        static char name[] = "documents_tests";
        static char *argv[] = {name, nullptr};
        new QCoreApplication(argc, argv); // lives until the test program ends
    }
    for (const auto &[source, translation] : labels)
        m_translator->labels.insert(QString::fromUtf8(source), QString::fromUtf8(translation));
    QCoreApplication::installTranslator(m_translator.get());
}

LabelTranslation::~LabelTranslation()
{
    QCoreApplication::removeTranslator(m_translator.get());
}
