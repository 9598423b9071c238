#include "DocumentBytes.h"

#include "TestSupport.h"

#include <QCoreApplication>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

QByteArray escaped(const char *text)
{
    return QString::fromUtf8(text).toHtmlEscaped().toUtf8();
}

void ensureApplication()
{
    if (QCoreApplication::instance())
        return;
    static int argc = 1;
    static char name[] = "documents_tests";
    static char *argv[] = {name, nullptr};
    new QCoreApplication(argc, argv); // lives until the test program ends
}

} // namespace

CompiledTranslation::CompiledTranslation(
    std::initializer_list<std::pair<const char *, const char *>> messages)
{
    QByteArray ts = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n"
                    "<TS version=\"2.1\" language=\"it_IT\">\n<context>\n    <name>QObject</name>\n";
    for (const auto &[source, translation] : messages) {
        ts += "    <message>\n        <source>" + escaped(source) + "</source>\n        <translation>" +
              escaped(translation) + "</translation>\n    </message>\n";
    }
    ts += "</context>\n</TS>\n";
    const QString tsPath = m_dir.filePath(QStringLiteral("labels.ts"));
    const QString qmPath = m_dir.filePath(QStringLiteral("labels.qm"));
    writeFile(tsPath, ts);

    QProcess lrelease;
    lrelease.start(QStringLiteral(BRISTEL_LRELEASE),
                   {QStringLiteral("-silent"), tsPath, QStringLiteral("-qm"), qmPath});
    if (!lrelease.waitForFinished(60000) || lrelease.exitStatus() != QProcess::NormalExit ||
        lrelease.exitCode() != 0) {
        ADD_FAILURE() << "lrelease (" BRISTEL_LRELEASE ") failed: " << lrelease.errorString().toStdString();
        return;
    }
    ensureApplication();
    if (!m_translator.load(qmPath)) {
        ADD_FAILURE() << "cannot load " << qmPath.toStdString();
        return;
    }
    m_installed = QCoreApplication::installTranslator(&m_translator);
    EXPECT_TRUE(m_installed) << "the translation was not installed";
}

CompiledTranslation::~CompiledTranslation()
{
    if (m_installed)
        QCoreApplication::removeTranslator(&m_translator);
}
