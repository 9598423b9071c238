#ifndef BRISTEL_DEVICES_ESCPOS_ESCPOSPAPERFAMILY_H
#define BRISTEL_DEVICES_ESCPOS_ESCPOSPAPERFAMILY_H

#include <QString>
#include <QStringView>

#include <vector>

/*
 * A family of receipt printers by its roll and print head: 58 mm and 80 mm at 203 dpi, and the
 * older 80 mm printers at 180 dpi.  The printable width in dots fixes how many characters of
 * each font fit a row: Font A is 12 dots wide, Font B 9.  This is the one table of them: the
 * PPD files, the queue's default columns and the preview's paper are all taken from it.
 */
struct EscPosPaperFamily
{
    static constexpr int fontAWidth = 12;
    static constexpr int fontBWidth = 9;

    QString name;     // as --paper takes it: "58", "80", "80-512"
    int widthMm;      // of the roll
    int dotsPerInch;  // of the print head
    int dotsPerMetre; // the same, as the preview measures paper
    int dots;         // printable, across the roll

    int columnsFontA() const { return dots / fontAWidth; }
    int columnsFontB() const { return dots / fontBWidth; }

    // In order of width.
    static const std::vector<EscPosPaperFamily> &all();
    // Null for a name no family has.
    static const EscPosPaperFamily *byName(QStringView name);
    // The family whose paper is this many dots wide; null for none.
    static const EscPosPaperFamily *byDots(int dots);
    // The narrowest family whose rows hold `columns` characters of Font A; the widest for more.
    static const EscPosPaperFamily &forColumns(int columns);
};

#endif
