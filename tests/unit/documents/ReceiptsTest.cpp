// Receipts: the detailed receipt and the summary receipt by dish category.

#include "DocumentFixture.h"

#include "TestSupport.h"

namespace {

const QByteArray Rule = QByteArray(32, '=');

class ReceiptsTest : public DocumentTest
{
protected:
    // A receipt profile of 32 columns (quantity 3, price 7, total 8) with date and table on.
    void profile(const QByteArray &extra = QByteArray())
    {
        configure("bristel : { receiptdoc : { quantityFieldWidth = 3; priceFieldWidth = 7; "
                  "totalPriceFieldWidth = 8; paperWidth = 32; printDate = true; printTable = true; " +
                  extra + " }; };");
    }

    void dish(const char *number, const char *name, const char *price, const char *total)
    {
        element("receipe", {{"number", number}, {"name", name}, {"price", price}, {"totalPrice", total}});
    }

    void category(const char *number, const char *name, const char *price)
    {
        element("receipe_type", {{"number", number}, {"name", name}, {"price", price}});
    }
};

const QByteArray Head =
    textLines({" Serial Number: 000123 ", Rule, " Date: 12/03/2006 ", " Table: 7 ", Rule});

TEST_F(ReceiptsTest, DetailedReceiptWithUnpaidAmount)
{
    profile();
    start("printFullOrderReceipt");
    element("receipt", {{"serialnumber", "000123"}});
    element("orderinfo", {{"date", "12/03/2006"}, {"table", "7"}});
    dish("2", "Spaghetti", "8.00", "16.00");
    element("variant", {{"quantity", "1"}, {"name", "Parmigiano"}});
    dish("1", "Acqua", "1.50", "1.50");
    element("total", {{"price", "17.50"}});
    element("notPaid", {{"price", "5.00"}});
    EXPECT_EQ(finish(),
              Head + textLines({"Num Description    Price  Amount", "  2 x Spaghetti.....8.00   16.00",
                                "  1 x Acqua.........1.50    1.50", "", "    TOTAL...............   17.50",
                                "", "    Amount not paid: 5.00"}));
}

TEST_F(ReceiptsTest, SummaryReceiptWithUnpaidAmount)
{
    profile();
    start("printAbstractOrderReceipt");
    element("receipt", {{"serialnumber", "000123"}});
    element("orderinfo", {{"date", "12/03/2006"}, {"table", "7"}});
    category("3", "Primi", "24.00");
    category("2", "Bevande", "4.00");
    element("total", {{"price", "28.00"}});
    element("notPaid", {{"price", "5.00"}});
    EXPECT_EQ(finish(),
              Head + textLines({"Num Description            Price", "  3 x Primi.............   24.00",
                                "  2 x Bevande...........    4.00", "", "    TOTAL...............   28.00",
                                "", "   Corrispettivo non pagato: 5.00"}));
}

TEST_F(ReceiptsTest, ReceiptsSwitchNeitherBoldNorSize)
{
    profile();
    start("printFullOrderReceipt");
    element("total", {{"price", "1.00"}});
    element("notPaid", {{"price", "1.00"}});
    EXPECT_EQ(driver().trace,
              QStringList({"reset", "println(0):", "println(0):    TOTAL...............    1.00",
                           "println(0):", "println(0):    Amount not paid: 1.00"}));
}

TEST_F(ReceiptsTest, ColumnHeaderIsBoldAndComesOnce)
{
    profile();
    start("printFullOrderReceipt");
    driver().trace.clear();
    dish("1", "Acqua", "1.50", "1.50");
    element("total", {{"price", "1.50"}});
    element("notPaid", {{"price", "1.50"}});
    dish("1", "Vino", "5.00", "5.00");
    EXPECT_EQ(driver().trace, QStringList({"setBold", "println(0):Num Description    Price  Amount",
                                           "setCharSize", "println(0):  1 x Acqua.........1.50    1.50",
                                           "println(0):", "println(0):    TOTAL...............    1.50",
                                           "println(0):", "println(0):    Amount not paid: 1.50",
                                           "println(0):  1 x Vino..........5.00    5.00"}));
}

TEST_F(ReceiptsTest, SummaryHeaderComesOnce)
{
    profile();
    start("printAbstractOrderReceipt");
    category("1", "Primi", "8.00");
    element("total", {{"price", "8.00"}});
    category("1", "Dolci", "4.00");
    EXPECT_EQ(output(), textLines({"Num Description            Price", "  1 x Primi.............    8.00", "",
                                   "    TOTAL...............    8.00", "  1 x Dolci.............    4.00"}));
}

TEST_F(ReceiptsTest, NoDishesNoColumnHeader)
{
    profile();
    start("printFullOrderReceipt");
    element("total", {{"price", "0.00"}});
    EXPECT_EQ(finish(), textLines({"", "    TOTAL...............    0.00"}));
}

TEST_F(ReceiptsTest, NoCategoriesNoColumnHeader)
{
    profile();
    start("printAbstractOrderReceipt");
    element("total", {{"price", "0.00"}});
    EXPECT_EQ(finish(), textLines({"", "    TOTAL...............    0.00"}));
}

TEST_F(ReceiptsTest, DetailedReceiptIgnoresCategories)
{
    profile();
    start("printFullOrderReceipt");
    category("3", "Primi", "24.00");
    EXPECT_EQ(finish(), QByteArray());
}

TEST_F(ReceiptsTest, SummaryReceiptIgnoresDishesVariantsAndTheCustomer)
{
    profile("printCustomer = true;");
    start("printAbstractOrderReceipt");
    dish("1", "Acqua", "1.50", "1.50");
    element("variant", {{"quantity", "1"}, {"name", "Limone"}});
    element("customer", {{"name", "Mario Rossi"}});
    EXPECT_EQ(finish(), QByteArray());
}

TEST_F(ReceiptsTest, DetailedReceiptPrintsTheCustomer)
{
    profile("printCustomer = true; printTelephone = true;");
    start("printFullOrderReceipt");
    element("customer", {{"name", "Mario Rossi"}, {"telephone", "06 1234567"}});
    EXPECT_EQ(finish(), textLines({"CUSTOMER", " Mario Rossi ", " Telephone: 06 1234567 ", Rule}));
}

TEST_F(ReceiptsTest, NotPaidWithoutPriceKeepsTheTrailingBlank)
{
    profile();
    start("printFullOrderReceipt");
    element("notPaid");
    EXPECT_EQ(output(), textLines({"", "    Amount not paid: "}));
    element("method", {{"name", "printAbstractOrderReceipt"}});
    element("notPaid");
    EXPECT_EQ(output(), textLines({"", "    Amount not paid: ", "", "   Corrispettivo non pagato: "}));
}

TEST_F(ReceiptsTest, DishBeginningWithEqualsSignIsPrinted)
{
    profile();
    start("printFullOrderReceipt");
    dish("1", "=Coperto", "1.50", "1.50");
    EXPECT_EQ(output(), textLines({"Num Description    Price  Amount", "  1 x =Coperto......1.50    1.50"}));
}

TEST_F(ReceiptsTest, TotalAndNotPaidMayComeAnywhereAndTwice)
{
    profile();
    start("printAbstractOrderReceipt");
    element("notPaid", {{"price", "1"}});
    element("total", {{"price", "2"}});
    element("total", {{"price", "3"}});
    EXPECT_EQ(finish(),
              textLines({"", "   Corrispettivo non pagato: 1", "", "    TOTAL...............       2", "",
                         "    TOTAL...............       3"}));
}

TEST_F(ReceiptsTest, ElementNamesAreCaseSensitive)
{
    profile();
    start("printFullOrderReceipt");
    element("notpaid", {{"price", "5.00"}});
    element("Total", {{"price", "5.00"}});
    element("RECEIPE", {{"number", "1"}, {"name", "Acqua"}});
    EXPECT_EQ(finish(), QByteArray());
}

TEST_F(ReceiptsTest, MissingAttributesPrintEmptyColumns)
{
    profile();
    start("printFullOrderReceipt");
    element("receipe");
    EXPECT_EQ(output(), textLines({"Num Description    Price  Amount", "    x ..................        "}));
}

TEST_F(ReceiptsTest, LabelsAreTranslatedButTheItalianOneIsNot)
{
    const CompiledTranslation german({{"Num", "Anz"},
                                      {"Description", "Bezeichnung"},
                                      {"Price", "Preis"},
                                      {"Amount", "Betrag"},
                                      {"TOTAL", "SUMME"},
                                      {"    Amount not paid: ", "    Nicht bezahlt: "},
                                      {"   Corrispettivo non pagato: ", "   Nicht bezahlt: "}});
    profile();
    start("printFullOrderReceipt");
    dish("1", "Acqua", "1.50", "1.50");
    element("total", {{"price", "1.50"}});
    element("notPaid", {{"price", "1.50"}});
    element("method", {{"name", "printAbstractOrderReceipt"}});
    element("notPaid", {{"price", "2.00"}});
    EXPECT_EQ(finish(), textLines({"Anz Bezeichnung    Preis  Betrag", "  1 x Acqua.........1.50    1.50", "",
                                   "    SUMME...............    1.50", "", "    Nicht bezahlt: 1.50", "",
                                   "   Corrispettivo non pagato: 2.00"}));
}

TEST_F(ReceiptsTest, SummaryHeaderIsTranslatedWithItsEmptyThirdColumn)
{
    const CompiledTranslation german({{"Num", "Anz"}, {"Description", "Bezeichnung"}, {"Price", "Preis"}});
    profile();
    start("printAbstractOrderReceipt");
    category("1", "Primi", "8.00");
    EXPECT_EQ(output(), textLines({"Anz Bezeichnung            Preis", "  1 x Primi.............    8.00"}));
}

} // namespace
