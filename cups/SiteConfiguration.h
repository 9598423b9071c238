#ifndef BRISTEL_CUPS_SITECONFIGURATION_H
#define BRISTEL_CUPS_SITECONFIGURATION_H

#include <QString>

class JobConfiguration;

/*
 * The configuration a printing service (the CUPS filter, the printer application) renders with:
 * the file BRISTEL_CONFIG names, which must then be there, or else its usual file, which may be
 * missing (every setting has its default). Either file, when it is there, must be readable:
 * printing with defaults instead of the settings the administrator wrote would put the wrong
 * code page, width and cut on every ticket. False with *error set otherwise.
 */
bool loadSiteConfiguration(JobConfiguration *configuration, const QString &usualFile, QString *error);

#endif
