#ifndef BRISTEL_LAYOUT_FISCALTOTALS_H
#define BRISTEL_LAYOUT_FISCALTOTALS_H

#include <QString>

/*
 * The figures of a fiscal receipt's closing element, as the document writes them: the total,
 * the amount paid by each kind of payment and the discount rate.  A missing attribute is an
 * empty text; nothing is converted, so each back-end reads the figures by its own rules.
 */
struct FiscalTotals
{
    QString price;
    QString cash;
    QString creditCard;
    QString cheque;
    QString ticket;
    QString discountRate;
};

#endif
