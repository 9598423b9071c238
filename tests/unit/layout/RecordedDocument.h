#ifndef BRISTEL_TESTS_RECORDEDDOCUMENT_H
#define BRISTEL_TESTS_RECORDEDDOCUMENT_H

#include "RecordingBackEnd.h"

#include "config/BRConfiguration.h"

#include "TestSupport.h"

#include <QTemporaryDir>
#include <QXmlAttributes>

#include <initializer_list>
#include <memory>
#include <utility>

using AttributeList = std::initializer_list<std::pair<const char *, const char *>>;

inline QXmlAttributes makeAttributes(AttributeList list)
{
    QXmlAttributes result;
    for (const auto &[name, value] : list)
        result.append(QString::fromUtf8(name), QString(), QString::fromUtf8(name), QString::fromUtf8(value));
    return result;
}

/*
 * A document fed element by element into the recording back-end, with a configuration given
 * as text:
 *
 *   RecordedDocument document("bristel : { receiptdoc : { paperWidth = 40; }; };");
 *   document.method("printFullOrderReceipt");
 *   document.element("total", {{"price", "9.50"}});
 *   EXPECT_EQ(document.driver().calls, ...);
 */
class RecordedDocument
{
public:
    explicit RecordedDocument(const QByteArray &configurationText = QByteArray())
    {
        const QString path = m_dir.filePath(QStringLiteral("bristel.conf"));
        writeFile(path, configurationText);
        m_configuration = std::make_unique<BRConfiguration>(path, QStringLiteral("cfg"));
        m_driver = std::make_unique<RecordingBackEnd>(m_configuration.get());
    }

    RecordingBackEnd &driver() { return *m_driver; }
    const BRConfiguration *configuration() const { return m_configuration.get(); }

    bool element(const char *name, AttributeList list = {})
    {
        const QString qName = QString::fromUtf8(name);
        return m_driver->startElement(QString(), qName, qName, makeAttributes(list));
    }
    bool method(const char *name) { return element("method", {{"name", name}}); }
    // The calls recorded so far, and a fresh start for the next ones.
    QStringList takeCalls() { return std::exchange(m_driver->calls, QStringList()); }

private:
    QTemporaryDir m_dir;
    std::unique_ptr<BRConfiguration> m_configuration;
    std::unique_ptr<RecordingBackEnd> m_driver;
};

#endif
