// The closing element of a fiscal receipt, as the back-end receives it: named figures.

#include "RecordedDocument.h"

#include <gtest/gtest.h>

namespace {

TEST(FiscalTotals, EveryFigureReachesTheBackEndByItsName)
{
    for (const char *method : {"printFullOrderFiscal", "printAbstractOrderFiscal"}) {
        RecordedDocument document;
        document.method(method);
        document.takeCalls();
        // In an order of their own, with an attribute no back-end reads.
        document.element("total", {{"discountRate", "10"},
                                   {"ticket", "4"},
                                   {"cheque", "3"},
                                   {"creditCard", "2"},
                                   {"cash", "1"},
                                   {"price", "9.50"},
                                   {"note", "x"}});
        EXPECT_EQ(
            document.takeCalls(),
            QStringList({"totals(total):price=9.50 cash=1 creditCard=2 cheque=3 ticket=4 discountRate=10"}))
            << method;
    }
}

TEST(FiscalTotals, MissingFiguresAreEmpty)
{
    RecordedDocument document;
    document.method("printFullOrderFiscal");
    document.takeCalls();
    document.element("total");
    EXPECT_EQ(document.takeCalls(),
              QStringList({"totals(total):price= cash= creditCard= cheque= ticket= discountRate="}));
}

TEST(FiscalTotals, OnlyTheFiscalReceiptsHandTheirTotalOn)
{
    for (const char *method : {"printFullOrderReceipt", "printFullOrderInvoice", "printAbstractOrder"}) {
        RecordedDocument document;
        document.method(method);
        document.takeCalls();
        document.element("totals", {{"cash", "1"}});
        for (const QString &call : document.takeCalls())
            EXPECT_FALSE(call.startsWith(QLatin1String("totals("))) << method;
    }
}

} // namespace
