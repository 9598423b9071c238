#include "cups/PrinterSettingTable.h"

#include "devices/escpos/EscPosSettings.h"

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

QList<PrinterSettingChoice> codePages(const PaperFamily &)
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

QList<PrinterSettingChoice> codePageNumbers(const PaperFamily &)
{
    return QList<PrinterSettingChoice>{fromConfiguration()} + numbers(0, 255, QString());
}

// The paper's own width first; every other width a 12-dot font fits on one of the rolls.
QList<PrinterSettingChoice> columns(const PaperFamily &paper)
{
    QList<PrinterSettingChoice> choices{
        {QString::number(paper.columns), QStringLiteral("%1 characters").arg(paper.columns)}};
    for (const PrinterSettingChoice &choice : numbers(1, 64, QStringLiteral("characters"))) {
        if (choice.value != choices.first().value)
            choices.append(choice);
    }
    return choices;
}

QList<PrinterSettingChoice> cuts(const PaperFamily &)
{
    return {{QStringLiteral("Partial"), QStringLiteral("Partial cut")},
            {QStringLiteral("Full"), QStringLiteral("Full cut")},
            {QStringLiteral("None"), QStringLiteral("No cut")}};
}

QList<PrinterSettingChoice> cutFeeds(const PaperFamily &)
{
    return QList<PrinterSettingChoice>{fromConfiguration()} + numbers(0, 255, QStringLiteral("motion units"));
}

QList<PrinterSettingChoice> drawerPins(const PaperFamily &)
{
    return {{QStringLiteral("2"), QStringLiteral("Pin 2")}, {QStringLiteral("5"), QStringLiteral("Pin 5")}};
}

QList<PrinterSettingChoice> pulseLengths(const PaperFamily &)
{
    return QList<PrinterSettingChoice>{fromConfiguration()} + numbers(0, 510, QStringLiteral("ms"));
}

// A printer whose firmware draws no QR code or barcode gets pictures of them instead.
QList<PrinterSettingChoice> codeModes(const PaperFamily &)
{
    return {fromConfiguration(),
            {QStringLiteral("Native"), QStringLiteral("Drawn by the printer")},
            {QStringLiteral("Raster"), QStringLiteral("Sent as pictures")}};
}

} // namespace

const std::vector<PrinterSetting> &printerSettings()
{
    static const std::vector<PrinterSetting> table{
        {"BristelCodePage", "bristel.escpos.codePage", "codepage", "Character table", "bristel-code-page",
         &EscPosSettings::setCodePage, codePages},
        {"BristelCodePageNumber", "bristel.escpos.codePageNumber", "codepage-number",
         "Number of the character table", nullptr, &EscPosSettings::setCodePageNumber, codePageNumbers},
        {"BristelColumns", "bristel.escpos.columns", "columns", "Characters per line", "bristel-columns",
         &EscPosSettings::setColumns, columns},
        {"BristelCut", "bristel.escpos.cut", "cut", "Cut after each job", "bristel-cut",
         &EscPosSettings::setCut, cuts},
        {"BristelCutFeed", "bristel.escpos.cutFeed", "cut-feed", "Feed before the cut", "bristel-cut-feed",
         &EscPosSettings::setCutFeed, cutFeeds},
        {"BristelDrawerPin", "bristel.escpos.drawerPin", "drawer-pin", "Cash drawer connector",
         "bristel-drawer-pin", &EscPosSettings::setDrawerPin, drawerPins},
        {"BristelDrawerOnTime", "bristel.escpos.drawerOnTime", "drawer-on", "Cash drawer pulse",
         "bristel-drawer-pulse", &EscPosSettings::setDrawerOnMs, pulseLengths},
        {"BristelDrawerOffTime", "bristel.escpos.drawerOffTime", "drawer-off",
         "Cash drawer rest after the pulse", nullptr, &EscPosSettings::setDrawerOffMs, pulseLengths},
        {"BristelCodes", "bristel.escpos.codes", "codes", "QR codes and barcodes", nullptr,
         &EscPosSettings::setCodes, codeModes},
    };
    return table;
}
