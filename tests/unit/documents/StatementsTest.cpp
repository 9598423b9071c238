// The sold list and the statement of account.

#include "DocumentBytes.h"
#include "DocumentFixture.h"

#include "TestSupport.h"

namespace {

const QByteArray SoldProfile = "bristel : { solddoc : { quantityFieldWidth = 3; priceFieldWidth = 7; "
                               "totalPriceFieldWidth = 8; paperWidth = 32; }; };";

// "date-amount-type" with P = 7 and W = 40: date 15, description 40 - 15 - 7 - 3 = 15, amount 7.
const QByteArray StatementProfile = "bristel : { reportdoc : { priceFieldWidth = 7; paperWidth = 40; }; };";

const QByteArray StatementHeading = "Date" + repeated(' ', 11) + "Description" + repeated(' ', 4) + " Amount";

class StatementsTest : public DocumentTest
{
};

TEST_F(StatementsTest, SoldListPrintsOneRowPerItem)
{
    configure(SoldProfile);
    start("printSold");
    element("receipe", {{"quantity", "3"}, {"description", "Pizza"}, {"amount", "15.00"}});
    element("receipe", {{"quantity", "1"}, {"description", "Beer"}, {"amount", "3.00"}});
    // "qxdpt": quantity 3, " x ", description 11 filled with dots, empty price 7 dots, amount 8.
    EXPECT_EQ(finish(), textLines({
                            "  3 x Pizza" + repeated('.', 6 + 7) + "   15.00",
                            "  1 x Beer" + repeated('.', 7 + 7) + "    3.00",
                        }));
}

TEST_F(StatementsTest, EverySoldRowIsFramedByBoldAndNormalSize)
{
    configure(SoldProfile);
    start("printSold");
    driver().trace.clear();
    element("receipe", {{"quantity", "3"}, {"description", "Pizza"}, {"amount", "15.00"}});
    element("receipe");
    EXPECT_EQ(driver().trace,
              QStringList({
                  "setBold",
                  "println(0):  3 x Pizza" + QString(13, QLatin1Char('.')) + "   15.00",
                  "setCharSize",
                  "setBold",
                  "println(0):    x " + QString(18, QLatin1Char('.')) + QString(8, QLatin1Char(' ')),
                  "setCharSize",
              }));
}

TEST_F(StatementsTest, SoldListIgnoresOtherElementsAndPrintsSections)
{
    configure("bristel : { solddoc : { paperWidth = 24; printHeader = true; }; };");
    start("printSold");
    element("headers", {{"l1", "Venduto"}});
    element("receipe_type", {{"quantity", "3"}});
    element("total", {{"amount", "3"}});
    element("statement", {{"date", "01/03/2008"}});
    EXPECT_EQ(finish(), textLine("Venduto") + ruleLine(24) + textLine("") + ruleLine(24));
}

TEST_F(StatementsTest, SoldListCutsLongDescriptions)
{
    configure(SoldProfile);
    start("printSold");
    element("receipe", {{"quantity", "12"}, {"description", "Pizza Margherita"}, {"amount", "78.00"}});
    EXPECT_EQ(finish(), textLine(" 12 x Pizza Margh" + repeated('.', 7) + "   78.00"));
}

TEST_F(StatementsTest, StatementWorkedExample)
{
    configure(StatementProfile);
    start("printStatementOfAccount");
    element("statement_list");
    element("statement", {{"date", "01/03/2008"}, {"type", "invoice"}, {"amount", "120.00"}});
    element("statement", {{"date", "15/03/2008"}, {"type", "payment"}, {"amount", "-120.00"}});
    EXPECT_EQ(finish(), textLines({
                            StatementHeading,
                            "01/03/2008:    invoice" + repeated('.', 8) + ".120.00",
                            "15/03/2008:    payment" + repeated('.', 8) + "-120.00",
                        }));
}

TEST_F(StatementsTest, HeadingIsBoldAndClosedByAReset)
{
    configure(StatementProfile);
    start("printStatementOfAccount");
    driver().trace.clear();
    element("statement_list");
    element("statement", {{"date", "01/03/2008"}, {"type", "invoice"}, {"amount", "120.00"}});
    EXPECT_EQ(driver().trace, QStringList({
                                  "setBold",
                                  "println(0):" + QString::fromLatin1(StatementHeading),
                                  "reset",
                                  "println(0):01/03/2008:    invoice........" + QStringLiteral(".120.00"),
                              }));
}

TEST_F(StatementsTest, StatementBeforeTheListHasNoHeading)
{
    configure(StatementProfile);
    start("printStatementOfAccount");
    element("statement", {{"date", "01/03/2008"}, {"type", "invoice"}, {"amount", "120.00"}});
    EXPECT_EQ(finish(), textLine("01/03/2008:    invoice" + repeated('.', 8) + ".120.00"));
}

TEST_F(StatementsTest, EverySecondListPrintsTheHeadingAgain)
{
    configure(StatementProfile);
    start("printStatementOfAccount");
    element("statement_list");
    element("statement_list", {{"date", "x"}});
    EXPECT_EQ(finish(), textLines({StatementHeading, StatementHeading}));
}

TEST_F(StatementsTest, StatementWithoutAttributesStillPrintsTheDateSeparator)
{
    configure(StatementProfile);
    start("printStatementOfAccount");
    element("statement");
    EXPECT_EQ(finish(), textLine(": " + repeated(' ', 13) + repeated('.', 15) + repeated('.', 7)));
}

TEST_F(StatementsTest, DefaultProfileCutsTheTypeAndLeavesTheAmountUnpadded)
{
    // No report profile: P = 0, W = 32, so the description column is 32 - 15 - 0 - 3 = 14.
    start("printStatementOfAccount");
    element("statement", {{"date", "01/03/2008"}, {"type", "credit note for table 7"}, {"amount", "5.00"}});
    EXPECT_EQ(finish(), textLine("01/03/2008:    credit note fo5.00"));
}

TEST_F(StatementsTest, StatementIgnoresOtherElementsAndPrintsSections)
{
    configure("bristel : { reportdoc : { paperWidth = 16; }; };");
    start("printStatementOfAccount");
    element("receipt", {{"serialnumber", "9"}});
    element("receipe", {{"quantity", "1"}});
    element("Statement", {{"date", "01/03/2008"}});
    element("customer", {{"name", "Rossi"}});
    EXPECT_EQ(finish(), textLine("Serial Number: 9", 1) + ruleLine(16));
}

TEST_F(StatementsTest, MovementTypeIsTranslated)
{
    const CompiledTranslation translation(
        {{"invoice", "fattura"}, {"payment", "pagamento"}, {"Date", "Data"}, {"Amount", "Importo"}});
    ASSERT_TRUE(translation.installed());
    configure(StatementProfile);
    start("printStatementOfAccount");
    element("statement_list");
    element("statement", {{"date", "01/03/2008"}, {"type", "invoice"}, {"amount", "120.00"}});
    element("statement", {{"date", "15/03/2008"}, {"type", "payment"}, {"amount", "-120.00"}});
    element("statement", {{"date", "20/03/2008"}, {"type", "refund"}, {"amount", "-5.00"}});
    EXPECT_EQ(finish(), textLines({
                            "Data" + repeated(' ', 11) + "Description" + repeated(' ', 4) + "Importo",
                            "01/03/2008:    fattura" + repeated('.', 8) + ".120.00",
                            "15/03/2008:    pagamento" + repeated('.', 6) + "-120.00",
                            "20/03/2008:    refund" + repeated('.', 9) + "..-5.00",
                        }));
}

TEST_F(StatementsTest, UntranslatedTypePrintsAsTheDocumentGivesIt)
{
    configure(StatementProfile);
    start("printStatementOfAccount");
    driver().trace.clear();
    element("statement", {{"date", "01/03/2008"}, {"type", "caffè"}, {"amount", "1.00"}});
    element("statement", {{"date", "02/03/2008"}, {"type", "€ rimborso"}, {"amount", "2.00"}});
    EXPECT_EQ(driver().trace, QStringList({
                                  QString::fromUtf8("println(0):01/03/2008:    caffè") +
                                      QString(10 + 3, QLatin1Char('.')) + "1.00",
                                  QString::fromUtf8("println(0):02/03/2008:    € rimborso") +
                                      QString(5 + 3, QLatin1Char('.')) + "2.00",
                              }));
}

} // namespace
