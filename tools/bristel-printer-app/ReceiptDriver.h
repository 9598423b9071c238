#ifndef BRISTEL_PRINTERAPP_RECEIPTDRIVER_H
#define BRISTEL_PRINTERAPP_RECEIPTDRIVER_H

#include <QList>

struct PaperFamily;

// The receipt printers the application drives: a name the operator picks when adding a
// printer, and the head's width and resolution, which raster jobs are printed to.
struct ReceiptDriver
{
    const char *name;
    const char *description;
    int widthDots;
    int dpi;
    // PWG self-describing name of the printable part of the paper, RasterPageLengthMm long.
    const char *mediaName;

    static constexpr int RasterPageLengthMm = 200;

    int printableWidthHundredthsMm() const;
    // The family of the CUPS queues for the same head, whose settings the printer offers.
    const PaperFamily &paperFamily() const;

    static const QList<ReceiptDriver> &all();
    // nullptr for a name no driver has.
    static const ReceiptDriver *find(const char *name);
};

#endif
