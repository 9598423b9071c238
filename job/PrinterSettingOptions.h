#ifndef BRISTEL_JOB_PRINTERSETTINGOPTIONS_H
#define BRISTEL_JOB_PRINTERSETTINGOPTIONS_H

#include <QCommandLineOption>
#include <QString>

#include <vector>

class QCommandLineParser;
struct EscPosSettings;
struct PrinterSetting;

/*
 * The options of a program that set the receipt printer's settings, one for each row of the
 * settings table that the program offers: their names, value names and help come from the
 * table, and so does the check of a value.  Made once the application's translation can apply
 * to their help.
 */
class PrinterSettingOptions
{
public:
    enum class Program
    {
        Render, // bristel-render: every setting
        Preview // bristel-preview: the settings that change what a picture of a job shows
    };

    explicit PrinterSettingOptions(Program program);

    // Adds the options to parser, in the table's order.
    void addTo(QCommandLineParser &parser) const;

    // A value given on the command line that the setting's setter refused.
    struct Refusal
    {
        const PrinterSetting *setting = nullptr;
        QString option; // "--cut"
        QString value;
    };

    // Sets every setting the parsed command line gives, in the table's order; false at the first
    // value that cannot be used, described in *refusal, with the settings before it set.
    bool applyTo(const QCommandLineParser &parser, EscPosSettings &settings, Refusal *refusal) const;

    // The message of a refusal: the option, the value and the values that would have served.
    static QString describe(const Refusal &refusal);

private:
    struct Option
    {
        const PrinterSetting *setting;
        QCommandLineOption option;
    };
    std::vector<Option> m_options;
};

#endif
