#ifndef BRISTEL_CUPS_PRINTERSETTINGTABLE_H
#define BRISTEL_CUPS_PRINTERSETTINGTABLE_H

#include "cups/PaperFamily.h"

#include <QList>
#include <QString>

#include <vector>

struct EscPosSettings;

struct PrinterSettingChoice
{
    QString value; // as the queue's option and the setter take it
    QString label; // as a person reads it in the printer's settings
};

/*
 * The receipt printer's settings a print queue carries, in one place: the name CUPS knows
 * each by (lpadmin -o, lp -o, the PPD's option), the configuration key and the option of
 * bristel-render it stands for, how a value is read, and the text the PPD shows for it.  The
 * PPD files are generated from this table at build time, so an option the filter reads is an
 * option of every PPD, and lpadmin can set it.
 *
 * The table is ordered as the settings take effect: the code page comes before its number,
 * which serves printers that number their tables their own way (the name alone sets Epson's
 * number).
 */
struct PrinterSetting
{
    const char *cupsOption;        // BristelCutFeed
    const char *configurationKey;  // bristel.escpos.cutFeed
    const char *commandLineOption; // of bristel-render: cut-feed
    const char *help;              // the PPD's title of the option
    // The printer application's IPP attribute (bristel-cut: bristel-cut-default and
    // bristel-cut-supported); nullptr for a setting it does not offer.
    const char *ippAttribute;
    bool (EscPosSettings::*set)(const QString &);
    // The values the PPD offers for a paper family, the default first.
    QList<PrinterSettingChoice> (*choices)(const PaperFamily &paper);
};

// A choice that leaves the setting to the configuration file: the queue's default for the
// settings that the PPD files did not always carry, so that a queue set up before keeps what
// bristel.conf says.
extern const char printerSettingFromConfiguration[];

const std::vector<PrinterSetting> &printerSettings();

#endif
