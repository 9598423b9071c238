#ifndef BRISTEL_CONFIG_BRCONFIGURATION_H
#define BRISTEL_CONFIG_BRCONFIGURATION_H

#include "Config.h"
#include "bristel_config_export.h"

#include <memory>

class BRConfigurationPrivate;

/*
 * The process-wide configuration: the user's "~/.bristel/conf/bristel.conf", read once
 * in the text format.  Reached through SyncSingleton<BRConfiguration>.
 *
 * A file that cannot be opened is not reported here: readError() holds the line for the
 * program to print.
 */
class BRISTEL_CONFIG_EXPORT BRConfiguration : public libconfig::Config
{
public:
    BRConfiguration();
    // Reads another file; for the configuration tools and for tests.
    BRConfiguration(const QString &fileName, const QString &fileType);
    ~BRConfiguration();

    static QString userFilePath();

    // Never fails: absent keys, unmatched components and empty values all give "".
    QString getStrValue(const QString &key) const;

    // The tree view of this configuration; defined in the widgets library.
    QTreeWidget *newConfigListView() const;

private:
    // Empty today; what a later version adds goes here, leaving the class's size as it is.
    std::unique_ptr<BRConfigurationPrivate> d;
};

#endif
