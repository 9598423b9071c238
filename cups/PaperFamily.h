#ifndef BRISTEL_CUPS_PAPERFAMILY_H
#define BRISTEL_CUPS_PAPERFAMILY_H

#include <QString>

#include <vector>

/*
 * A family of receipt printers as a PPD file describes it: the roll's width and what the
 * print head makes of it, as the back-end's table of paper families (EscPosPaperFamily) has
 * them.  The printable width in dots and the dots per inch fix how many characters of the
 * 12-dot font fit on a line, the queue's default width.
 */
struct PaperFamily
{
    QString fileName;  // bristel-escpos-80mm.ppd
    QString title;     // "80 mm"
    int widthMm;       // of the roll
    int dotsPerInch;   // of the print head
    int printableDots; // across the roll
    int columns;       // of the 12-dot font (Font A)
    int columnsFontB;  // of the 9-dot font
};

// 58 mm and 80 mm at 203 dpi, and 80 mm at 180 dpi: one PPD file each.
const std::vector<PaperFamily> &paperFamilies();

#endif
