#ifndef BRISTEL_DEVICES_ESCPOS_ESCPOSSETTINGS_H
#define BRISTEL_DEVICES_ESCPOS_ESCPOSSETTINGS_H

#include <QString>

struct EscPosPaperFamily;

/*
 * What the ESC/POS back-end needs to know about the printer: its character table, its width,
 * how it cuts and how its cash drawer is wired.  Read from the block "bristel.escpos" of the
 * configuration (printerSettingsFromConfiguration); every field can be overridden afterwards
 * (command line, queue options).
 */
struct EscPosSettings
{
    using Setter = bool (EscPosSettings::*)(const QString &);

    enum class Cut
    {
        Full,
        Partial,
        None
    };
    // How QR codes and barcodes reach the paper: drawn by the printer's firmware, or as a
    // raster image drawn here, for printers without codes (many 58 mm models).
    enum class Codes
    {
        Native,
        Raster
    };

    QString codePage = QStringLiteral("PC858"); // holds the euro sign
    int codePageNumber = 19;                    // n of ESC t n; Epson's number for PC858
    int columns = 32;                           // characters per line when a profile has no paper width
    Cut cut = Cut::Partial;
    int cutFeed = 0;     // n of GS V 65/66 n: extra feed past the cutter, in motion units
    int drawerPin = 2;   // 2 or 5
    int drawerOnMs = 50; // pulse length; the printer counts in steps of 2 ms
    int drawerOffMs = 500;
    QString logo; // a PBM file, printed where the document asks for the logo
    Codes codes = Codes::Native;

    // Each setter takes a value as a person writes it ("PC850", "partial", "5") and returns
    // false, changing nothing, when the value is not one the back-end can use.
    [[nodiscard]] bool setCodePage(const QString &name);
    [[nodiscard]] bool setCodePageNumber(const QString &number);
    [[nodiscard]] bool setColumns(const QString &columns);
    [[nodiscard]] bool setCut(const QString &cut);
    [[nodiscard]] bool setCutFeed(const QString &feed);
    [[nodiscard]] bool setDrawerPin(const QString &pin);
    [[nodiscard]] bool setDrawerOnMs(const QString &milliseconds);
    [[nodiscard]] bool setDrawerOffMs(const QString &milliseconds);
    [[nodiscard]] bool setCodes(const QString &codes); // "native" or "raster"
    // Any file name: whether the file can be read shows when a job prints the logo.
    [[nodiscard]] bool setLogo(const QString &file);

    static QString cutName(Cut cut);

    // The paper family whose rows hold `columns` characters of Font A: its dots, resolution
    // and columns of Font B.
    const EscPosPaperFamily &paperFamily() const;

    // The values a setter takes, as a person is told them: "0 to 255", "2 or 5", every code
    // page's name.
    static QString acceptedValues(Setter set);
    // What to say of a value a setter refused, under the name the person gave it by (an
    // option, a configuration key): the value, and the values that would have served.
    static QString unusableValue(const QString &name, const QString &value, Setter set);
};

#endif
