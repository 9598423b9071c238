#include "cups/SiteConfiguration.h"

#include "cups/ConfigurationFileCheck.h"
#include "job/JobConfiguration.h"

#include <QByteArray>

bool loadSiteConfiguration(JobConfiguration *configuration, const QString &usualFile, QString *error)
{
    const QByteArray named = qgetenv("BRISTEL_CONFIG");
    const QString configName = named.isEmpty() ? usualFile : QString::fromLocal8Bit(named);
    const QString source = named.isEmpty() ? QString() : QStringLiteral(" (BRISTEL_CONFIG)");
    const ConfigurationFileCheck check(configName);
    if (check.state() == ConfigurationFileCheck::State::Unreadable) {
        *error = QStringLiteral("%1%2: cannot read the configuration file: %3")
                     .arg(configName, source, check.reason());
        return false;
    }
    if (check.state() == ConfigurationFileCheck::State::Missing && !named.isEmpty()) {
        *error = QStringLiteral("%1%2: the configuration file does not exist").arg(configName, source);
        return false;
    }
    if (!configuration->load(configName, JobConfiguration::Missing::MeansDefaults, error)) {
        *error += source;
        return false;
    }
    return true;
}
