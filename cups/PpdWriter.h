#ifndef BRISTEL_CUPS_PPDWRITER_H
#define BRISTEL_CUPS_PPDWRITER_H

#include <QByteArray>

struct PaperFamily;

/*
 * The PPD file of an ESC/POS receipt printer on one paper family: what CUPS needs to send
 * bristel jobs through the filter, and one option for each printer setting of the settings
 * table (app/PrinterSettingTable) that a print queue carries, so that lpadmin, lpoptions and lp
 * can set every one of them.
 */
class PpdWriter
{
public:
    static QByteArray ppd(const PaperFamily &paper);
};

#endif
