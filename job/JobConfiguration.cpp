#include "job/JobConfiguration.h"

#include "compiler/Compile.h"
#include "config/BRConfiguration.h"
#include "job/PrinterSettingTable.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

JobConfiguration::JobConfiguration() = default;

JobConfiguration::~JobConfiguration()
{
    QCoreApplication::removeTranslator(&m_translator);
}

bool JobConfiguration::loadForCommandLine(const QCommandLineParser &parser,
                                          const QCommandLineOption &configOption,
                                          const std::function<void(const QString &)> &report)
{
    QString error;
    const bool named = parser.isSet(configOption);
    if (!load(named ? parser.value(configOption) : BRConfiguration::userFilePath(),
              named ? Missing::IsAnError : Missing::MeansDefaults, &error)) {
        report(error);
        return false;
    }
    for (const QString &problem : m_problems)
        report(problem);
    return true;
}

bool JobConfiguration::load(const QString &fileName, Missing missing, QString *error)
{
    const QFileInfo info(fileName);
    const bool readable = info.isFile() && info.isReadable();
    if (!readable && missing == Missing::IsAnError) {
        *error = QStringLiteral("%1: cannot read the configuration file").arg(fileName);
        return false;
    }
    // The reader reports a missing file on standard output, which may be the printer's bytes:
    // an empty file stands in for it.
    m_fileName = readable ? fileName : QString();
    m_configuration = std::make_unique<BRConfiguration>(readable ? fileName : QStringLiteral("/dev/null"),
                                                        QStringLiteral("cfg"));
    if (loadTranslation(m_translator, *m_configuration))
        QCoreApplication::installTranslator(&m_translator);

    QString problems;
    m_settings = printerSettingsFromConfiguration(*m_configuration, &problems);
    m_problems.clear();
    for (const QString &problem : problems.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        m_problems.append(QStringLiteral("%1: %2").arg(fileName, problem));
    return true;
}
