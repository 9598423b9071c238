#ifndef BRISTEL_JOB_JOBCONFIGURATION_H
#define BRISTEL_JOB_JOBCONFIGURATION_H

#include "devices/escpos/EscPosSettings.h"

#include <QStringList>
#include <QTranslator>

#include <functional>
#include <memory>

class BRConfiguration;
class QCommandLineOption;
class QCommandLineParser;

/*
 * The configuration of a program that renders jobs for the receipt printer (bristel-render,
 * bristel-preview, the CUPS filter): the document profiles, the translation of the labels,
 * which stays installed while this object lives, and the printer's settings.
 */
class JobConfiguration
{
public:
    JobConfiguration();
    ~JobConfiguration();
    JobConfiguration(const JobConfiguration &) = delete;
    JobConfiguration &operator=(const JobConfiguration &) = delete;

    enum class Missing
    {
        IsAnError,    // a file the user named must be there
        MeansDefaults // a default file may be missing: every setting takes its default
    };

    // Reads fileName; false, with the reason in *error, when it is needed and cannot be read.
    bool load(const QString &fileName, Missing missing, QString *error);
    // What a command-line program reads: the file named with configOption, which must be
    // readable, or, when none was named, the user's own file, whose absence means the defaults.
    // Every problem, and the reason when the job cannot go on (false), goes to report.
    bool loadForCommandLine(const QCommandLineParser &parser, const QCommandLineOption &configOption,
                            const std::function<void(const QString &)> &report);

    const BRConfiguration &configuration() const { return *m_configuration; }
    // The file read; empty when a missing default file left every setting at its default.
    QString fileName() const { return m_fileName; }
    // The printer's settings the file gives; unusable values are described in problems(), one
    // a line, each naming the file.
    const EscPosSettings &settings() const { return m_settings; }
    QStringList problems() const { return m_problems; }

private:
    std::unique_ptr<BRConfiguration> m_configuration;
    QTranslator m_translator;
    QString m_fileName;
    EscPosSettings m_settings;
    QStringList m_problems;
};

#endif
