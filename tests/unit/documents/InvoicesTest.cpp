// Invoices (detailed and summary) and delivery notes.

#include "DocumentBytes.h"
#include "DocumentFixture.h"

#include "TestSupport.h"

namespace {

const QByteArray InvoiceProfile = "bristel : { invoicedoc : { quantityFieldWidth = 3; priceFieldWidth = 7; "
                                  "totalPriceFieldWidth = 8; paperWidth = 32; printCustomer = true; }; };";

const QByteArray DeliveryProfile = "bristel : { deliverydoc : { quantityFieldWidth = 3; priceFieldWidth = 7; "
                                   "totalPriceFieldWidth = 8; paperWidth = 32; printCustomer = true; }; };";

// Q = 3, P = 7, T = 8, W = 32: the "qdpt" description column is 13 wide, the "qxdpt" one 11.
const QByteArray FullHeading =
    "Num Description" + repeated(' ', 2 + 2) + "Price" + repeated(' ', 2) + "Amount";
// No price title: its 7 columns stay blank, and "Price" stands in the amount column.
const QByteArray AbstractHeading = "Num Description" + repeated(' ', 2 + 7 + 3) + "Price";
const QByteArray PizzaRow = "  1 Pizza" + repeated('.', 8 + 3) + "5.00    5.00";
const QByteArray BeerRow = "  2 Beer" + repeated('.', 9 + 3) + "3.00    6.00";

QByteArray totalsBlock(const QByteArray &taxable, const QByteArray &taxRate, const QByteArray &tax,
                       const QByteArray &total)
{
    // Blank quantity and separator, the label filled with dots over the description (13) and the
    // empty price column (7), then the value right-justified to 8.
    return textLines({
        "",
        "    Taxable" + repeated('.', 6 + 7) + taxable,
        "    TaxRate" + repeated('.', 6 + 7) + taxRate,
        "    Tax" + repeated('.', 10 + 7) + tax,
        "    TOTAL" + repeated('.', 8 + 7) + total,
    });
}

class InvoicesTest : public DocumentTest
{
};

TEST_F(InvoicesTest, FullInvoicePrintsCustomerItemsAndTotals)
{
    configure(InvoiceProfile);
    start("printFullOrderInvoice");
    element("customer", {{"name", "Rossi"}});
    element("receipe", {{"number", "1"}, {"name", "Pizza"}, {"price", "5.00"}, {"totalPrice", "5.00"}});
    element("receipe", {{"number", "2"}, {"name", "Beer"}, {"price", "3.00"}, {"totalPrice", "6.00"}});
    element("totals", {{"taxable", "9.09"}, {"taxrate", "21"}, {"tax", "1.91"}, {"total", "11.00"}});

    const QByteArray expected = textLine("CUSTOMER") + textLine("Rossi", 1) + ruleLine(32) +
                                textLines({
                                    FullHeading,
                                    PizzaRow,
                                    BeerRow,
                                }) +
                                totalsBlock("    9.09", "      21", "    1.91", "   11.00");
    EXPECT_EQ(finish(), expected) << visible(output()).toStdString();
}

TEST_F(InvoicesTest, TotalsAreFramedByBoldAndNormalSize)
{
    configure(InvoiceProfile);
    start("printFullOrderInvoice");
    driver().trace.clear();
    element("totals", {{"taxable", "9.09"}, {"taxrate", "21"}, {"tax", "1.91"}, {"total", "11.00"}});
    const QString dots13 = QString(13, QLatin1Char('.'));
    EXPECT_EQ(driver().trace, QStringList({
                                  "setBold",
                                  "println(0):",
                                  "println(0):    Taxable" + dots13 + "    9.09",
                                  "println(0):    TaxRate" + dots13 + "      21",
                                  "println(0):    Tax" + QString(17, QLatin1Char('.')) + "    1.91",
                                  "println(0):    TOTAL" + QString(15, QLatin1Char('.')) + "   11.00",
                                  "setCharSize",
                              }));
}

TEST_F(InvoicesTest, ColumnHeadingIsPrintedInBoldBeforeTheFirstItemOnly)
{
    configure(InvoiceProfile);
    start("printFullOrderInvoice");
    driver().trace.clear();
    element("receipe", {{"number", "1"}, {"name", "Pizza"}, {"price", "5.00"}, {"totalPrice", "5.00"}});
    element("receipe", {{"number", "2"}, {"name", "Beer"}, {"price", "3.00"}, {"totalPrice", "6.00"}});
    EXPECT_EQ(driver().trace, QStringList({
                                  "setBold",
                                  "println(0):" + QString::fromLatin1(FullHeading),
                                  "setCharSize",
                                  "println(0):" + QString::fromLatin1(PizzaRow),
                                  "println(0):" + QString::fromLatin1(BeerRow),
                              }));
}

TEST_F(InvoicesTest, TotalsWithoutAttributesPrintEmptyValues)
{
    configure(InvoiceProfile);
    start("printFullOrderInvoice");
    element("totals");
    EXPECT_EQ(finish(), totalsBlock("        ", "        ", "        ", "        "));
}

TEST_F(InvoicesTest, TotalsBeforeAnyItemHaveNoColumnHeading)
{
    configure(InvoiceProfile);
    start("printFullOrderInvoice");
    element("totals", {{"total", "11.00"}});
    element("receipe", {{"number", "1"}, {"name", "Pizza"}, {"price", "5.00"}, {"totalPrice", "5.00"}});
    EXPECT_EQ(finish(), totalsBlock("        ", "        ", "        ", "   11.00") +
                            textLines({FullHeading, PizzaRow}));
}

TEST_F(InvoicesTest, LongItemNameIsCutToTheDescriptionColumn)
{
    configure(InvoiceProfile);
    start("printFullOrderInvoice");
    element("receipe",
            {{"number", "12"}, {"name", "Pizza Margherita"}, {"price", "6.50"}, {"totalPrice", "78.00"}});
    EXPECT_EQ(finish(), textLines({FullHeading, " 12 Pizza Margher" + repeated('.', 3) + "6.50   78.00"}));
}

TEST_F(InvoicesTest, FullInvoiceIgnoresItemTypesAndUnknownElements)
{
    configure(InvoiceProfile);
    start("printFullOrderInvoice");
    element("receipe_type", {{"number", "3"}, {"name", "Primi"}, {"price", "24.00"}});
    element("total", {{"price", "11.00"}});
    element("Receipe", {{"number", "1"}, {"name", "Pizza"}});
    element("variant", {{"quantity", "1"}, {"name", "Olive"}});
    EXPECT_EQ(finish(), QByteArray());
}

TEST_F(InvoicesTest, FullInvoicePrintsSectionElements)
{
    configure(InvoiceProfile);
    start("printFullOrderInvoice");
    element("invoice", {{"serialnumber", "42"}});
    EXPECT_EQ(finish(), QByteArray(" Invoice Number: 42 \r\n\r") + ruleLine(32));
}

TEST_F(InvoicesTest, AbstractInvoicePrintsItemTypesWithPriceInTheAmountColumn)
{
    configure(InvoiceProfile);
    start("printAbstractOrderInvoice");
    element("customer", {{"name", "Rossi"}});
    element("receipe_type", {{"number", "3"}, {"name", "Primi"}, {"price", "24.00"}});
    element("receipe_type", {{"number", "2"}, {"name", "Secondi piatti"}, {"price", "30.00"}});
    element("totals", {{"taxable", "44.63"}, {"taxrate", "21"}, {"tax", "9.37"}, {"total", "54.00"}});

    const QByteArray expected = textLine("CUSTOMER") + textLine("Rossi", 1) + ruleLine(32) +
                                textLines({
                                    AbstractHeading,
                                    "  3 x Primi" + repeated('.', 6 + 7) + "   24.00",
                                    "  2 x Secondi pia" + repeated('.', 7) + "   30.00",
                                }) +
                                totalsBlock("   44.63", "      21", "    9.37", "   54.00");
    EXPECT_EQ(finish(), expected);
}

TEST_F(InvoicesTest, AbstractInvoiceIgnoresItemsOfTheDetailedInvoice)
{
    configure(InvoiceProfile);
    start("printAbstractOrderInvoice");
    element("receipe", {{"number", "1"}, {"name", "Pizza"}, {"price", "5.00"}, {"totalPrice", "5.00"}});
    EXPECT_EQ(finish(), QByteArray());
    // The heading latch is still free: the ignored item did not print it.
    EXPECT_TRUE(driver().oneTime());
}

TEST_F(InvoicesTest, CustomerBlockFollowsTheProfileSwitch)
{
    configure("bristel : { invoicedoc : { paperWidth = 20; }; };");
    start("printFullOrderInvoice");
    element("customer", {{"name", "Rossi"}});
    EXPECT_EQ(finish(), QByteArray());
}

TEST_F(InvoicesTest, InvoiceMethodsSetTheDuplicateFlag)
{
    configure(InvoiceProfile);
    start("printAbstractOrderInvoice");
    EXPECT_TRUE(driver().printDuplicate());
}

TEST_F(InvoicesTest, LabelsPassThroughTheTranslator)
{
    const CompiledTranslation translation({{"Taxable", "Imponibile"},
                                           {"TaxRate", "Aliquota"},
                                           {"Tax", "Imposta"},
                                           {"TOTAL", "TOTALE"},
                                           {"Num", "Q.ta"},
                                           {"Description", "Descrizione"},
                                           {"Price", "Prezzo"},
                                           {"Amount", "Importo"}});
    ASSERT_TRUE(translation.installed());
    configure(InvoiceProfile);
    start("printFullOrderInvoice");
    element("receipe", {{"number", "1"}, {"name", "Pizza"}, {"price", "5.00"}, {"totalPrice", "5.00"}});
    element("totals", {{"total", "5.00"}});
    EXPECT_EQ(finish(), textLines({
                            "Q.ta Descrizione   Prezzo Importo",
                            PizzaRow,
                            "",
                            "    Imponibile" + repeated('.', 3 + 7) + repeated(' ', 8),
                            "    Aliquota" + repeated('.', 5 + 7) + repeated(' ', 8),
                            "    Imposta" + repeated('.', 6 + 7) + repeated(' ', 8),
                            "    TOTALE" + repeated('.', 7 + 7) + "    5.00",
                        }));
}

TEST_F(InvoicesTest, DeliveryNotePrintsCustomerAndHandsTheRestToThePreparationTicket)
{
    configure(DeliveryProfile);
    start("printFullOrderDelivery");
    element("delivery", {{"serialnumber", "7"}});
    element("customer", {{"name", "Bianchi"}});
    element("receipe", {{"number", "2"}, {"name", "Spaghetti"}, {"price", "8.00"}, {"totalPrice", "16.00"}});
    element("variant", {{"quantity", "1"}, {"number", "2"}, {"name", "Parmigiano"}});
    element("otherreceipe", {{"number", "1"}, {"name", "Tiramisu"}});
    element("totals", {{"taxable", "9.09"}, {"total", "11.00"}});
    element("total", {{"price", "17.00"}});

    // "qd": quantity to 3, one blank, description padded with blanks to 32 - 3 - 3 = 26.
    const QByteArray expected = QByteArray(" Delivery Number: 7 \r\n\r") + ruleLine(32) +
                                textLine("CUSTOMER") + textLine("Bianchi", 1) + ruleLine(32) +
                                textLines({
                                    "  2 Spaghetti" + repeated(' ', 17),
                                    "  2 + Parmigiano" + repeated(' ', 14),
                                    "  1 Tiramisu" + repeated(' ', 18),
                                });
    EXPECT_EQ(finish(), expected);
}

TEST_F(InvoicesTest, DeliveryNoteItemsKeepTheTicketsDeviceCalls)
{
    configure(DeliveryProfile);
    start("printFullOrderDelivery");
    driver().trace.clear();
    element("receipe", {{"number", "2"}, {"name", "Spaghetti"}});
    element("otherreceipe", {{"number", "1"}, {"name", "Tiramisu"}});
    element("totals", {{"total", "11.00"}});
    EXPECT_EQ(driver().trace, QStringList({
                                  "setCharSize",
                                  "println(0):  2 Spaghetti" + QString(17, QLatin1Char(' ')),
                                  "setCharSize(1)",
                                  "println(0):  1 Tiramisu" + QString(18, QLatin1Char(' ')),
                              }));
}

TEST_F(InvoicesTest, DeliveryNoteWithoutCustomerSwitchPrintsNoCustomer)
{
    configure("bristel : { deliverydoc : { quantityFieldWidth = 2; paperWidth = 20; }; };");
    start("printFullOrderDelivery");
    element("customer", {{"name", "Bianchi"}});
    element("receipe", {{"number", "2"}, {"name", "Acqua"}});
    // D = 20 - 2 - 3 = 15.
    EXPECT_EQ(finish(), textLine(" 2 Acqua" + repeated(' ', 10)));
}

} // namespace
