// Order tickets: the kitchen's preparation ticket and the priced ticket.

#include "DocumentFixture.h"

#include "TestSupport.h"

namespace {

const QByteArray Rule = QByteArray(32, '=');

class OrdersTest : public DocumentTest
{
protected:
    // Both order profiles: 32 columns, quantity 3, price 7, total 8, date, time, table and waiter on.
    void profiles()
    {
        const QByteArray profile = "{ quantityFieldWidth = 3; priceFieldWidth = 7; totalPriceFieldWidth = 8; "
                                   "paperWidth = 32; printDate = true; printTime = true; printTable = true; "
                                   "printWaiter = true; printCustomer = true; };";
        configure("bristel : { doc : " + profile + " prefiscaldoc : " + profile + " };");
    }

    // The elements of a ticket for table 7 after its method element.
    void ticket()
    {
        element("orderinfo", {{"date", "12/03/2006"}, {"time", "20:15"}, {"table", "7"}, {"waiter", "Anna"}});
        element("receipe",
                {{"number", "2"}, {"name", "Spaghetti"}, {"price", "8.00"}, {"totalPrice", "16.00"}});
        element("variant", {{"quantity", "1"},
                            {"number", "2"},
                            {"name", "Parmigiano"},
                            {"price", "0.50"},
                            {"totalPrice", "1.00"}});
        element("variant", {{"quantity", "-1"},
                            {"number", "2"},
                            {"name", "Pepe"},
                            {"price", "0.00"},
                            {"totalPrice", "0.00"}});
        element("receipe",
                {{"number", "1"}, {"name", "=Coperto"}, {"price", "1.50"}, {"totalPrice", "1.50"}});
        element("total", {{"price", "17.00"}});
    }

    // A preparation row: the quantity right-justified to 3, a blank, the description padded to 26.
    static QByteArray kitchenRow(const QByteArray &quantity, const QByteArray &description)
    {
        return textLine(QByteArray(3 - quantity.size(), ' ') + quantity + ' ' + description +
                        QByteArray(26 - description.size(), ' '));
    }
};

const QByteArray OrderInformation =
    textLines({" Date: 12/03/2006 ", " Time: 20:15 ", " Table: 7 ", " Waiter: Anna ", Rule});

TEST_F(OrdersTest, PricedTicketForTableSeven)
{
    profiles();
    start("printFullOrder");
    ticket();
    EXPECT_EQ(finish(), OrderInformation +
                            textLines({"Num Description    Price  Amount", "  2 Spaghetti.......8.00   16.00",
                                       "  2 + Parmigiano....0.50    1.00", "  2 - Pepe..........0.00    0.00",
                                       "", "    TOTAL...............   17.00"}));
}

TEST_F(OrdersTest, PricedTicketDeviceCalls)
{
    profiles();
    start("printFullOrder");
    ticket();
    const QStringList trace = driver().trace;
    const qsizetype header = trace.indexOf(QStringLiteral("println(0):Num Description    Price  Amount"));
    ASSERT_GT(header, 0);
    EXPECT_EQ(trace.at(header - 1), QStringLiteral("setBold"));
    EXPECT_EQ(trace.at(header + 1), QStringLiteral("setCharSize"));
    EXPECT_EQ(trace.mid(trace.size() - 3),
              QStringList({"println(0):", "setBold", "println(0):    TOTAL...............   17.00"}));
    EXPECT_EQ(trace.count(QStringLiteral("setBold")), 2);
}

TEST_F(OrdersTest, PreparationTicketForTableSeven)
{
    profiles();
    start("printPartialOrder");
    ticket();
    EXPECT_EQ(finish(), OrderInformation + kitchenRow("2", "Spaghetti") + kitchenRow("2", "+ Parmigiano") +
                            kitchenRow("2", "- Pepe") + kitchenRow("1", "=Coperto"));
}

TEST_F(OrdersTest, PreparationRowsAreBlankPaddedToThirtyColumns)
{
    profiles();
    start("printPartialOrder");
    element("receipe", {{"number", "2"}, {"name", "Acqua"}});
    EXPECT_EQ(output(), textLine("  2 Acqua                     "));
}

TEST_F(OrdersTest, OrderInformationNeverPrintsTheKitchenColumnHeading)
{
    profiles();
    start("printPartialOrder");
    element("orderinfo", {{"date", "12/03/2006"}});
    EXPECT_EQ(output(), textLines({" Date: 12/03/2006 ", " Time:  ", " Table:  ", " Waiter:  ", Rule}));
    EXPECT_FALSE(driver().trace.contains(QStringLiteral("setBold")));
}

TEST_F(OrdersTest, PreparationTicketSetsTheCharacterSizeForEachDish)
{
    profiles();
    start("printPartialOrder");
    driver().trace.clear();
    element("receipe", {{"number", "1"}, {"name", "Pasta"}});
    element("otherreceipe", {{"number", "3"}, {"name", "Birra"}});
    element("variant", {{"quantity", "1"}, {"number", "3"}, {"name", "Limone"}});
    element("receipe", {{"number", "1"}, {"name", "Pane"}});
    const auto row = [](const char *quantity, const char *description) {
        return QStringLiteral("println(0):") +
               QString::fromLatin1(kitchenRow(quantity, description)).chopped(3);
    };
    EXPECT_EQ(driver().trace,
              QStringList({"setCharSize", row("1", "Pasta"), "setCharSize(1)", row("3", "Birra"),
                           row("3", "+ Limone"), "setCharSize", row("1", "Pane")}));
}

TEST_F(OrdersTest, PreparationTicketIgnoresTheTotal)
{
    profiles();
    start("printPartialOrder");
    element("total", {{"price", "17.00"}});
    EXPECT_EQ(finish(), QByteArray());
}

TEST_F(OrdersTest, PricedTicketIgnoresOtherDishes)
{
    profiles();
    start("printFullOrder");
    element("otherreceipe", {{"number", "3"}, {"name", "Birra"}, {"price", "3.00"}, {"totalPrice", "9.00"}});
    EXPECT_EQ(finish(), QByteArray());
    EXPECT_FALSE(driver().trace.contains(QStringLiteral("setCharSize(1)")));
}

TEST_F(OrdersTest, PricedTicketWithOnlyEqualsDishesHasNoHeaderNorDishRows)
{
    profiles();
    start("printFullOrder");
    element("receipe", {{"number", "1"}, {"name", "=Coperto"}, {"price", "1.50"}, {"totalPrice", "1.50"}});
    element(
        "variant",
        {{"quantity", "2"}, {"number", "1"}, {"name", "Olive"}, {"price", "1.00"}, {"totalPrice", "2.00"}});
    element("receipe", {{"number", "2"}, {"name", "=Pane"}, {"price", "1.00"}, {"totalPrice", "2.00"}});
    element("total", {{"price", "3.50"}});
    EXPECT_EQ(finish(),
              textLines({"  1 2 Olive.........1.00    2.00", "", "    TOTAL...............    3.50"}));
}

TEST_F(OrdersTest, PricedTicketHeaderComesBeforeTheFirstDishWithoutEqualsSign)
{
    profiles();
    start("printFullOrder");
    element("receipe", {{"number", "1"}, {"name", "=Coperto"}});
    element("receipe", {{"number", "1"}, {"name", "Acqua"}, {"price", "1.50"}, {"totalPrice", "1.50"}});
    element("receipe", {{"number", "2"}, {"name", "Vino"}, {"price", "5.00"}, {"totalPrice", "10.00"}});
    EXPECT_EQ(output(), textLines({"Num Description    Price  Amount", "  1 Acqua...........1.50    1.50",
                                   "  2 Vino............5.00   10.00"}));
}

TEST_F(OrdersTest, DishWithEmptyNameIsPrinted)
{
    profiles();
    start("printFullOrder");
    element("receipe", {{"number", "1"}, {"price", "1.00"}, {"totalPrice", "1.00"}});
    EXPECT_EQ(output(), textLines({"Num Description    Price  Amount", "  1 ................1.00    1.00"}));
}

TEST_F(OrdersTest, EqualsSignCountsOnlyAsTheFirstCharacter)
{
    profiles();
    start("printFullOrder");
    element("receipe", {{"number", "1"}, {"name", " =Pane"}, {"price", "1.00"}, {"totalPrice", "1.00"}});
    EXPECT_EQ(output(), textLines({"Num Description    Price  Amount", "  1  =Pane..........1.00    1.00"}));
}

TEST_F(OrdersTest, VariantBeforeAnyDishIsPrinted)
{
    profiles();
    start("printPartialOrder");
    element("variant", {{"quantity", "0"}, {"number", "1"}, {"name", "Sale"}});
    EXPECT_EQ(output(), kitchenRow("1", "- Sale"));
}

TEST_F(OrdersTest, CustomerBlockOnBothTickets)
{
    profiles();
    start("printPartialOrder");
    element("customer", {{"name", "Mario Rossi"}});
    EXPECT_EQ(output(), textLines({"CUSTOMER", " Mario Rossi ", Rule}));
    element("method", {{"name", "printFullOrder"}});
    element("customer", {{"name", "Anna"}});
    EXPECT_EQ(output(), textLines({"CUSTOMER", " Mario Rossi ", Rule, "CUSTOMER", " Anna ", Rule}));
}

TEST_F(OrdersTest, ElementNamesAreCaseSensitive)
{
    profiles();
    start("printFullOrder");
    element("Receipe", {{"number", "1"}, {"name", "Acqua"}, {"price", "1.50"}, {"totalPrice", "1.50"}});
    element("Variant", {{"quantity", "1"}, {"name", "Limone"}});
    element("Total", {{"price", "1.50"}});
    element("OrderInfo", {{"date", "12/03/2006"}});
    EXPECT_EQ(finish(), QByteArray());
}

TEST_F(OrdersTest, TranslatedLabels)
{
    const CompiledTranslation german({{"Num", "Anz"},
                                      {"Description", "Bezeichnung"},
                                      {"Price", "Preis"},
                                      {"Amount", "Betrag"},
                                      {"TOTAL", "SUMME"}});
    profiles();
    start("printFullOrder");
    element("receipe", {{"number", "1"}, {"name", "Acqua"}, {"price", "1.50"}, {"totalPrice", "1.50"}});
    element("total", {{"price", "1.50"}});
    EXPECT_EQ(finish(), textLines({"Anz Bezeichnung    Preis  Betrag", "  1 Acqua...........1.50    1.50", "",
                                   "    SUMME...............    1.50"}));
}

struct MarkerCase
{
    const char *quantity;
    const char *description;
};

class VariantMarkerTest : public OrdersTest, public ::testing::WithParamInterface<MarkerCase>
{
};

TEST_P(VariantMarkerTest, DescribesTheVariant)
{
    profiles();
    start("printPartialOrder");
    element("variant", {{"quantity", GetParam().quantity}, {"number", "2"}, {"name", "Olive"}});
    EXPECT_EQ(output(), kitchenRow("2", GetParam().description));
}

// A decimal comma does not make a number: "1,0" counts as 0 and removes.
INSTANTIATE_TEST_SUITE_P(Quantities, VariantMarkerTest,
                         ::testing::Values(MarkerCase{"-1", "- Olive"}, MarkerCase{"0", "- Olive"},
                                           MarkerCase{"", "- Olive"}, MarkerCase{"abc", "- Olive"},
                                           MarkerCase{"-1.0", "- Olive"}, MarkerCase{"1", "+ Olive"},
                                           MarkerCase{"1.0", "+ Olive"}, MarkerCase{"2", "2 Olive"},
                                           MarkerCase{"0.5", "0.5 Olive"}, MarkerCase{"-2", "-2 Olive"},
                                           MarkerCase{"1,0", "- Olive"}));

TEST_F(OrdersTest, VariantWithoutQuantityAttributeRemoves)
{
    profiles();
    start("printFullOrder");
    element("variant", {{"number", "2"}, {"name", "Pepe"}, {"price", "0.00"}, {"totalPrice", "0.00"}});
    EXPECT_EQ(output(), textLines({"  2 - Pepe..........0.00    0.00"}));
}

} // namespace
