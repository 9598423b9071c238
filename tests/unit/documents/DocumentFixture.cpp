#include "DocumentFixture.h"

#include "TestSupport.h"

#include <QFile>
#include <QHash>
#include <QTextStream>

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
    if (QTextStream *stream = outputStream())
        stream->flush();
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

const BRConfiguration *DocumentTest::configuration()
{
    if (!m_configuration)
        configure(QByteArray());
    return m_configuration.get();
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
