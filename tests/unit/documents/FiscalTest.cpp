// Fiscal receipts: sale records for the fiscal printer, and the summary order.

#include "DocumentBytes.h"
#include "DocumentFixture.h"

#include "TestSupport.h"

#include <QDomDocument>
#include <QDomElement>
#include <QDomNodeList>

namespace {

const QByteArray Open = record("1020;1");
const QByteArray Close = record("1030;1;1");

QByteArray fiscalProfile(const char *descriptionWidth)
{
    return QByteArray("bristel : { fiscaldoc : { paperWidth = 40; descriptionWidth = ") + descriptionWidth +
           "; }; };";
}

class FiscalTest : public DocumentTest
{
protected:
    // One dish whose name is the given text, department 1, count 1, price 1.00.
    void dish(const char *name)
    {
        element("receipe", {{"department", "1"}, {"number", "1"}, {"name", name}, {"price", "1.00"}});
    }
};

TEST_F(FiscalTest, DetailedReceiptCutsNamesToTheDescriptionWidth)
{
    configure(fiscalProfile("12"));
    start("printFullOrderFiscal");
    element("receipe",
            {{"department", "2"}, {"number", "3"}, {"name", "Spaghetti alla carbonara"}, {"price", "8.00"}});
    element("receipe", {{"department", "1"}, {"number", "1"}, {"name", "Acqua"}, {"price", "1.50"}});
    element("total", {{"cash", "9.50"}});
    EXPECT_EQ(finish(), Open + record("1021;1;;2;1;;Spaghetti al; 8.00;3") +
                            record("1021;1;;1;1;;Acqua; 1.50;1") + Close);
}

class FiscalDefaultWidthTest : public FiscalTest, public ::testing::WithParamInterface<const char *>
{
};

TEST_P(FiscalDefaultWidthTest, MissingEmptyZeroOrNonNumericWidthMeansTheBackEndsPaperWidth)
{
    configure(GetParam());
    start("printFullOrderFiscal");
    // 42 characters: the back-end's 32 cuts it, whatever the profile's paperWidth of 40 says.
    dish("Pizza ai quattro formaggi e funghi porcini");
    EXPECT_EQ(finish(), Open + record("1021;1;;1;1;;Pizza ai quattro formaggi e fung; 1.00;1") + Close);
}

INSTANTIATE_TEST_SUITE_P(
    Widths, FiscalDefaultWidthTest,
    ::testing::Values("bristel : { fiscaldoc : { paperWidth = 40; }; };",
                      "bristel : { fiscaldoc : { paperWidth = 40; descriptionWidth = \"\"; }; };",
                      "bristel : { fiscaldoc : { paperWidth = 40; descriptionWidth = 0; }; };",
                      "bristel : { fiscaldoc : { paperWidth = 40; descriptionWidth = abc; }; };"));

TEST_F(FiscalTest, NamesAsLongAsTheWidthOrShorterAreKeptWhole)
{
    configure(fiscalProfile("5"));
    start("printFullOrderFiscal");
    dish("Acqua");
    dish("Vino");
    dish("Birra rossa");
    dish("");
    EXPECT_EQ(finish(), Open + record("1021;1;;1;1;;Acqua; 1.00;1") + record("1021;1;;1;1;;Vino; 1.00;1") +
                            record("1021;1;;1;1;;Birra; 1.00;1") + record("1021;1;;1;1;;; 1.00;1") + Close);
}

TEST_F(FiscalTest, NegativeDescriptionWidthKeepsTheNameWhole)
{
    configure(fiscalProfile("-3"));
    start("printFullOrderFiscal");
    dish("Pizza ai quattro formaggi e funghi porcini");
    EXPECT_EQ(finish(),
              Open + record("1021;1;;1;1;;Pizza ai quattro formaggi e funghi porcini; 1.00;1") + Close);
}

TEST_F(FiscalTest, DescriptionWidthIsLookedUpForEveryElement)
{
    configure(fiscalProfile("5"));
    start("printFullOrderFiscal");
    dish("Spaghetti");

    // Change the stored value in place: the next dish must see it without a new "method".
    QDomNodeList profiles = configuration()->document()->elementsByTagName("fiscaldoc");
    ASSERT_EQ(profiles.count(), 1);
    profiles.item(0).toElement().setAttribute("descriptionWidth", "7");
    dish("Spaghetti");

    profiles.item(0).toElement().setAttribute("descriptionWidth", "0");
    dish("Spaghetti alla carbonara con guanciale e pecorino");

    EXPECT_EQ(finish(), Open + record("1021;1;;1;1;;Spagh; 1.00;1") + record("1021;1;;1;1;;Spaghet; 1.00;1") +
                            record("1021;1;;1;1;;Spaghetti alla carbonara con gua; 1.00;1") + Close);
}

TEST_F(FiscalTest, MissingAttributesGiveEmptyFields)
{
    start("printFullOrderFiscal");
    element("receipe");
    EXPECT_EQ(finish(), Open + record("1021;1;;;1;;; ;") + Close);
}

TEST_F(FiscalTest, FieldsAreWrittenAsTheDocumentGivesThem)
{
    start("printFullOrderFiscal");
    element("receipe",
            {{"department", "03"}, {"number", "1,5"}, {"name", "Vino; rosso"}, {"price", "12,50"}});
    EXPECT_EQ(finish(), Open + record("1021;1;;03;1;;Vino; rosso; 12,50;1,5") + Close);
}

TEST_F(FiscalTest, HeaderElementsPrintNothing)
{
    configure("bristel : { fiscaldoc : { printHeader = true; printCompany = true; printCustomer = true; "
              "printDate = true; printGeometry = true; topMargin = 2; }; };");
    start("printFullOrderFiscal");
    element("printers", {{"name", "Cassa"}});
    element("geometry");
    element("headers", {{"l1", "Welcome"}});
    element("logo");
    element("company", {{"name", "Trattoria"}});
    element("receipt", {{"serialnumber", "12"}});
    element("invoice", {{"serialnumber", "12"}});
    element("delivery", {{"serialnumber", "12"}});
    element("orderinfo", {{"date", "12/03/2006"}});
    element("customer", {{"name", "Rossi"}});
    element("receipe_type", {{"department", "1"}, {"name", "Primi"}, {"price", "24.00"}});
    element("variant", {{"quantity", "1"}, {"name", "Olive"}});
    EXPECT_EQ(finish(), Open + Close);
    EXPECT_EQ(driver().trace, QStringList({"reset"}));
}

TEST_F(FiscalTest, TotalElementWritesNoPaymentRecord)
{
    start("printFullOrderFiscal");
    element("total", {{"cash", "9.50"}, {"creditCard", "3.00"}, {"discountRate", "10"}});
    element("totals", {{"cash", "9.50"}});
    EXPECT_EQ(finish(), Open + Close);
}

TEST_F(FiscalTest, SummaryReceiptSendsEveryCategoryAsOneItemWithItsNameWhole)
{
    configure(fiscalProfile("5"));
    start("printAbstractOrderFiscal");
    element("receipe_type",
            {{"department", "2"}, {"number", "7"}, {"name", "Primi piatti"}, {"price", "24.00"}});
    element("receipe_type", {{"department", "3"}, {"name", "Dolci"}, {"price", "9.00"}});
    element("total", {{"cash", "33.00"}});
    EXPECT_EQ(finish(), Open + record("1021;1;;2;1;;Primi piatti; 24.00;1") +
                            record("1021;1;;3;1;;Dolci; 9.00;1") + Close);
}

TEST_F(FiscalTest, SummaryReceiptIgnoresDishes)
{
    start("printAbstractOrderFiscal");
    element("receipe", {{"department", "1"}, {"number", "1"}, {"name", "Acqua"}, {"price", "1.50"}});
    element("orderinfo", {{"date", "12/03/2006"}});
    EXPECT_EQ(finish(), Open + Close);
}

TEST_F(FiscalTest, DetailedReceiptIgnoresCategories)
{
    start("printFullOrderFiscal");
    element("receipe_type", {{"department", "2"}, {"name", "Primi"}, {"price", "24.00"}});
    EXPECT_EQ(finish(), Open + Close);
}

TEST_F(FiscalTest, FiscalMethodsClearTheDuplicateFlag)
{
    start("printFullOrderInvoice");
    ASSERT_TRUE(driver().printDuplicate());
    element("method", {{"name", "printAbstractOrderFiscal"}});
    EXPECT_FALSE(driver().printDuplicate());
}

TEST_F(FiscalTest, SummaryOrderPrintsNothing)
{
    configure("bristel : { doc : { printHeader = true; printCompany = true; printCustomer = true; }; };");
    start("printAbstractOrder");
    element("headers", {{"l1", "Welcome"}});
    element("company", {{"name", "Trattoria"}});
    element("receipt", {{"serialnumber", "12"}});
    element("customer", {{"name", "Rossi"}});
    element("receipe", {{"department", "1"}, {"number", "1"}, {"name", "Acqua"}, {"price", "1.50"}});
    element("receipe_type", {{"department", "1"}, {"name", "Primi"}, {"price", "24.00"}});
    element("total", {{"cash", "9.50"}});
    element("totals", {{"cash", "9.50"}});
    EXPECT_EQ(finish(), QByteArray());
    EXPECT_EQ(driver().trace, QStringList({"reset"}));
}

} // namespace
