#include "job/PrinterSettingTable.h"

#include "config/BRConfiguration.h"
#include "devices/escpos/EscPosCodePage.h"

const char printerSettingFromConfiguration[] = "Configured";

namespace {

PrinterSettingChoice fromConfiguration()
{
    return {QString::fromLatin1(printerSettingFromConfiguration), QStringLiteral("As in bristel.conf")};
}

// Every whole number from first to last: a PPD option is a list of choices, and lpadmin
// takes only a value the list holds.
QList<PrinterSettingChoice> numbers(int first, int last, const QString &unit)
{
    QList<PrinterSettingChoice> choices;
    for (int n = first; n <= last; ++n)
        choices.append({QString::number(n),
                        unit.isEmpty() ? QString::number(n) : QStringLiteral("%1 %2").arg(n).arg(unit)});
    return choices;
}

QList<PrinterSettingChoice> codePages(int)
{
    return {{QStringLiteral("PC858"), QStringLiteral("PC858 (Multilingual with euro sign)")},
            {QStringLiteral("PC437"), QStringLiteral("PC437 (USA)")},
            {QStringLiteral("PC850"), QStringLiteral("PC850 (Multilingual)")},
            {QStringLiteral("PC852"), QStringLiteral("PC852 (Latin 2)")},
            {QStringLiteral("PC860"), QStringLiteral("PC860 (Portuguese)")},
            {QStringLiteral("PC863"), QStringLiteral("PC863 (Canadian French)")},
            {QStringLiteral("PC865"), QStringLiteral("PC865 (Nordic)")},
            {QStringLiteral("PC866"), QStringLiteral("PC866 (Cyrillic)")},
            {QStringLiteral("WPC1252"), QStringLiteral("WPC1252 (Windows Latin 1)")}};
}

QList<PrinterSettingChoice> codePageNumbers(int)
{
    return QList<PrinterSettingChoice>{fromConfiguration()} + numbers(0, 255, QString());
}

// The paper's own width first; every other width a 12-dot font fits on one of the rolls.
QList<PrinterSettingChoice> columns(int paperColumns)
{
    QList<PrinterSettingChoice> choices{
        {QString::number(paperColumns), QStringLiteral("%1 characters").arg(paperColumns)}};
    for (const PrinterSettingChoice &choice : numbers(1, 64, QStringLiteral("characters"))) {
        if (choice.value != choices.first().value)
            choices.append(choice);
    }
    return choices;
}

QList<PrinterSettingChoice> cuts(int)
{
    return {{QStringLiteral("Partial"), QStringLiteral("Partial cut")},
            {QStringLiteral("Full"), QStringLiteral("Full cut")},
            {QStringLiteral("None"), QStringLiteral("No cut")}};
}

QList<PrinterSettingChoice> cutFeeds(int)
{
    return QList<PrinterSettingChoice>{fromConfiguration()} + numbers(0, 255, QStringLiteral("motion units"));
}

QList<PrinterSettingChoice> drawerPins(int)
{
    return {{QStringLiteral("2"), QStringLiteral("Pin 2")}, {QStringLiteral("5"), QStringLiteral("Pin 5")}};
}

QList<PrinterSettingChoice> pulseLengths(int)
{
    return QList<PrinterSettingChoice>{fromConfiguration()} + numbers(0, 510, QStringLiteral("ms"));
}

// A printer whose firmware draws no QR code or barcode gets pictures of them instead.
QList<PrinterSettingChoice> codeModes(int)
{
    return {fromConfiguration(),
            {QStringLiteral("Native"), QStringLiteral("Drawn by the printer")},
            {QStringLiteral("Raster"), QStringLiteral("Sent as pictures")}};
}

// The help of --codepage lists every table the encoder knows.
QString codePageNames()
{
    return EscPosCodePage::names().join(QLatin1String(", "));
}

} // namespace

const std::vector<PrinterSetting> &printerSettings()
{
    static const std::vector<PrinterSetting> table{
        {"bristel.escpos.codePage", "codepage", "name", "The printer's character table: %1.",
         "The printer's character table for XML jobs: %1.", codePageNames, &EscPosSettings::setCodePage,
         "BristelCodePage", "Character table", "bristel-code-page", codePages},
        {"bristel.escpos.codePageNumber", "codepage-number", "n",
         "The number of that table in ESC t, for printers that number their tables their own way.", nullptr,
         nullptr, &EscPosSettings::setCodePageNumber, "BristelCodePageNumber",
         "Number of the character table", nullptr, codePageNumbers},
        {"bristel.escpos.columns", "columns", "n",
         "Characters per line where a profile sets no paper width (32 for 58 mm, 42 or 48 for 80 mm).",
         "Characters per line where a profile sets no paper width.", nullptr, &EscPosSettings::setColumns,
         "BristelColumns", "Characters per line", "bristel-columns", columns},
        {"bristel.escpos.cut", "cut", "kind", "full, partial or none.", nullptr, nullptr,
         &EscPosSettings::setCut, "BristelCut", "Cut after each job", "bristel-cut", cuts},
        {"bristel.escpos.cutFeed", "cut-feed", "n", "Feed past the cutter before cutting, 0 to 255.", nullptr,
         nullptr, &EscPosSettings::setCutFeed, "BristelCutFeed", "Feed before the cut", "bristel-cut-feed",
         cutFeeds},
        {"bristel.escpos.drawerPin", "drawer-pin", "pin", "The cash drawer's pin, 2 or 5.", nullptr, nullptr,
         &EscPosSettings::setDrawerPin, "BristelDrawerPin", "Cash drawer connector", "bristel-drawer-pin",
         drawerPins},
        {"bristel.escpos.drawerOnTime", "drawer-on", "ms", "The drawer pulse's length in ms, 0 to 510.",
         nullptr, nullptr, &EscPosSettings::setDrawerOnMs, "BristelDrawerOnTime", "Cash drawer pulse",
         "bristel-drawer-pulse", pulseLengths},
        {"bristel.escpos.drawerOffTime", "drawer-off", "ms", "The pause after the pulse in ms, 0 to 510.",
         nullptr, nullptr, &EscPosSettings::setDrawerOffMs, "BristelDrawerOffTime",
         "Cash drawer rest after the pulse", nullptr, pulseLengths},
        {"bristel.escpos.codes", "codes", "how",
         "QR codes and barcodes drawn by the printer (native) or printed as pictures (raster).",
         "QR codes and barcodes drawn by the printer (native) or printed as pictures (raster).", nullptr,
         &EscPosSettings::setCodes, "BristelCodes", "QR codes and barcodes", nullptr, codeModes},
        // A file of the machine the job is rendered on: a print queue has no place for it.
        {"bristel.escpos.logo", "logo", "file", "The logo, a PBM image file.", nullptr, nullptr,
         &EscPosSettings::setLogo, nullptr, nullptr, nullptr, nullptr},
    };
    return table;
}

EscPosSettings printerSettingsFromConfiguration(const BRConfiguration &configuration, QString *problems)
{
    EscPosSettings settings;
    for (const PrinterSetting &setting : printerSettings()) {
        const QString key = QLatin1String(setting.configurationKey);
        const QString value = configuration.getStrValue(key);
        if (value.isEmpty())
            continue; // not set: the default stands
        if (!(settings.*setting.set)(value) && problems)
            problems->append(EscPosSettings::unusableValue(key, value, setting.set) + QLatin1Char('\n'));
    }
    return settings;
}
