#include "config/BRConfiguration.h"

#include <QDir>

class BRConfigurationPrivate
{
};

BRConfiguration::BRConfiguration() : d(std::make_unique<BRConfigurationPrivate>())
{
    readFile(userFilePath(), QStringLiteral("cfg"));
}

BRConfiguration::BRConfiguration(const QString &fileName, const QString &fileType)
    : d(std::make_unique<BRConfigurationPrivate>())
{
    readFile(fileName, fileType);
}

BRConfiguration::~BRConfiguration() = default;

QString BRConfiguration::userFilePath()
{
    return QDir::homePath() + QLatin1String("/.bristel/conf/bristel.conf");
}

QString BRConfiguration::getStrValue(const QString &key) const
{
    // Keys and values pass through the 8-bit form the configuration file is read in.
    const QString value = lookup(QString::fromLatin1(key.toLatin1()));
    return QString::fromLatin1(value.toLatin1());
}
