#ifndef BRISTEL_JOB_PRINTERSETTINGTABLE_H
#define BRISTEL_JOB_PRINTERSETTINGTABLE_H

#include "devices/escpos/EscPosSettings.h"

#include <QList>
#include <QString>

#include <vector>

class BRConfiguration;

struct PrinterSettingChoice
{
    QString value; // as the queue's option and the setter take it
    QString label; // as a person reads it in the printer's settings
};

/*
 * The receipt printer's settings, one row each, and every name a setting goes by: its key in
 * the configuration's block "bristel.escpos", its option of bristel-render (and of
 * bristel-preview, for the few that change a picture), the name CUPS knows it by (lpadmin -o,
 * lp -o, the PPD's option), the printer application's IPP attribute, how a value is read, and
 * the texts a person reads about it.  The configuration reader, the programs' options, the PPD
 * files (generated from this table at build time), the CUPS filter and the printer
 * application all walk this table, so a setting added here is known to each of them.
 *
 * The table is ordered as the settings take effect, and as the programs' help lists them: the
 * code page comes before its number, which serves printers that number their tables their own
 * way (the name alone sets Epson's number).
 */
struct PrinterSetting
{
    const char *configurationKey;  // bristel.escpos.cutFeed
    const char *commandLineOption; // cut-feed: --cut-feed of bristel-render
    const char *valueName;         // n: the value's name in the programs' help
    // The option's help in bristel-render, and in bristel-preview (nullptr for a setting that
    // program does not offer); translated in the context "main".  Where a help holds "%1",
    // helpValues fills it in.
    const char *help;
    const char *previewHelp;
    QString (*helpValues)();
    bool (EscPosSettings::*set)(const QString &);
    const char *cupsOption; // BristelCutFeed; nullptr for a setting a print queue does not carry
    const char *title;      // the PPD's title of the option
    // The printer application's IPP attribute (bristel-cut: bristel-cut-default and
    // bristel-cut-supported); nullptr for a setting it does not offer.
    const char *ippAttribute;
    // The values the PPD offers for a paper whose lines hold paperColumns characters, the
    // default first; nullptr where there is no PPD option.
    QList<PrinterSettingChoice> (*choices)(int paperColumns);
};

// A choice that leaves the setting to the configuration file: the queue's default for the
// settings that the PPD files did not always carry, so that a queue set up before keeps what
// bristel.conf says.
extern const char printerSettingFromConfiguration[];

const std::vector<PrinterSetting> &printerSettings();

// The settings the configuration's "bristel.escpos" block gives, defaults elsewhere.  A value
// that cannot be used is left at its default and described in *problems (if given), a line
// each, under its key.
EscPosSettings printerSettingsFromConfiguration(const BRConfiguration &configuration,
                                                QString *problems = nullptr);

#endif
