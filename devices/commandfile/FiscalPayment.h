#ifndef BRISTEL_DEVICES_COMMANDFILE_FISCALPAYMENT_H
#define BRISTEL_DEVICES_COMMANDFILE_FISCALPAYMENT_H

#include "layout/FiscalTotals.h"

#include <QLatin1String>
#include <QString>

#include <optional>

/*
 * The payment of a "totals" element as the fiscal printer records it: the first of cash,
 * credit card, cheque and ticket whose amount is not zero, and only that one.  The amounts
 * may use a decimal comma; anything that is not a number counts as zero.
 */
struct FiscalPayment
{
    int kind;           // the fiscal printer's payment number
    QLatin1String word; // a fixed literal of the record format, never translated
    QString amount;     // as the document wrote it

    static std::optional<FiscalPayment> fromTotals(const FiscalTotals &totals)
    {
        const struct
        {
            const QString &amount;
            int kind;
            QLatin1String word;
        } payments[] = {
            {totals.cash, 1, QLatin1String("Contanti")},
            {totals.creditCard, 4, QLatin1String("Carta di Credito")},
            {totals.cheque, 2, QLatin1String("Assegno")},
            {totals.ticket, 5, QLatin1String("Ticket")},
        };
        for (const auto &payment : payments) {
            const QString &amount = payment.amount;
            if (QString(amount).replace(QLatin1Char(','), QLatin1Char('.')).toDouble() != 0)
                return FiscalPayment{payment.kind, payment.word, amount};
        }
        return std::nullopt;
    }
};

#endif
