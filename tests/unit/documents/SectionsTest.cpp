// Section headers: which blocks a profile lets through, their lines and the device calls around them.

#include "DocumentFixture.h"

#include "TestSupport.h"

namespace {

const char *const AllSwitches[] = {
    "printGeometry",       "printHeader",        "printLogo",       "printCompany", "printDeliveryAddress",
    "printTelephone",      "printDate",          "printTime",       "printTable",   "printCustomer",
    "printBillingAddress", "printLicenseNumber", "printFiscalCode", "printCredit",  "printWaiter",
    "printNote",           "openCashDrawer",
};

class SectionsTest : public DocumentTest
{
protected:
    // A receipt profile of 32 columns with the named switches on and extra entries.
    void receiptProfile(std::initializer_list<const char *> switchesOn,
                        const QByteArray &extra = QByteArray())
    {
        QByteArray text = "bristel : { receiptdoc : { ";
        for (const char *name : switchesOn)
            text += QByteArray(name) + " = true; ";
        text += extra + " }; };";
        configure(text);
        start("printFullOrderReceipt");
        driver().trace.clear();
    }

    void everySwitchOn(const QByteArray &extra = QByteArray())
    {
        QByteArray text = "bristel : { receiptdoc : { ";
        for (const char *name : AllSwitches)
            text += QByteArray(name) + " = true; ";
        text += extra + " }; };";
        configure(text);
        start("printFullOrderReceipt");
        driver().trace.clear();
    }

    bool section(const char *name, Attributes list = {})
    {
        return driver().printSections(QString::fromUtf8(name), attributes(list));
    }

    void customer(Attributes list) { driver().printCustomerHeader(attributes(list)); }
};

const QByteArray Rule = QByteArray(32, '=');
const QString RuleText = QString(32, QLatin1Char('='));

TEST_F(SectionsTest, ReceiptHeadFromPrinterToOrderInformation)
{
    receiptProfile({"printGeometry", "printHeader", "printCompany", "printDate", "printTime", "printTable"},
                   "topMargin = 2;");
    element("printers",
            {{"name", "Cassa 1"}, {"charsize", "1"}, {"ipaddress", "10.0.0.5"}, {"port", "9100"}});
    element("geometry");
    element("headers", {{"l1", "Welcome"}, {"l2", "Open every day"}});
    element("company", {{"name", "Trattoria"}, {"address", "Via Roma 1"}});
    element("receipt", {{"serialnumber", "000123"}});
    element("orderinfo", {{"date", "12/03/2006"}, {"time", "20:15"}, {"table", "7"}, {"waiter", "Anna"}});

    const QString rule = QStringLiteral("println(0):") + RuleText;
    EXPECT_EQ(driver().trace, QStringList({
                                  "initPrinter",
                                  "println(0):",
                                  "println(0):",
                                  "println(0):Welcome",
                                  "println(0):Open every day",
                                  rule,
                                  "setCenterJustify",
                                  "println(0):Cassa 1",
                                  rule,
                                  "setCharSize",
                                  "setCenterJustify",
                                  "println(0):Trattoria",
                                  "println(0):Via Roma 1",
                                  "setCharSize",
                                  rule,
                                  "println(1):Serial Number: 000123",
                                  rule,
                                  "setCharSize",
                                  "println(1):12/03/2006",
                                  "println(1):20:15",
                                  "println(1):7",
                                  rule,
                              }));
    EXPECT_EQ(output(), textLines({"", "", "Welcome", "Open every day", Rule, "Cassa 1", Rule, "Trattoria",
                                   "Via Roma 1", Rule}) +
                            textLine("Serial Number: 000123", 1) + textLines({Rule}) +
                            textLines({" Date: 12/03/2006 ", " Time: 20:15 ", " Table: 7 ", Rule}));
}

TEST_F(SectionsTest, NineSectionNamesAreClaimed)
{
    receiptProfile({});
    for (const char *name : {"printers", "geometry", "headers", "logo", "company", "receipt", "invoice",
                             "delivery", "orderinfo"})
        EXPECT_TRUE(section(name)) << name;
}

TEST_F(SectionsTest, OtherNamesAreNotSectionsAndPrintNothing)
{
    everySwitchOn();
    for (const char *name : {"Headers", "RECEIPT", "customer", "receipe", "total", "orderInfo", ""})
        EXPECT_FALSE(section(name, {{"serialnumber", "1"}})) << name;
    EXPECT_TRUE(driver().trace.isEmpty());
    EXPECT_EQ(output(), QByteArray());
}

TEST_F(SectionsTest, PrintersStoresTheNameAndInitialisesThePrinter)
{
    receiptProfile({});
    section("printers", {{"name", "Bar"}, {"charsize", "2"}, {"ipaddress", "10.0.0.9"}, {"port", "9101"}});
    EXPECT_EQ(driver().trace, QStringList({"initPrinter"}));
    EXPECT_EQ(output(), QByteArray());
    // The name is what the headers print as the printer's information.
    section("headers");
    EXPECT_EQ(output(), textLines({"Bar", Rule}));
}

TEST_F(SectionsTest, SecondPrintersOverwritesTheNameWithAnEmptyTextToo)
{
    receiptProfile({});
    section("printers", {{"name", "Bar"}, {"charsize", "2"}, {"ipaddress", "10.0.0.9"}, {"port", "9101"}});
    section("printers", {{"name", "Cucina"}});
    EXPECT_EQ(driver().trace, QStringList({"initPrinter", "initPrinter"}));
    section("headers");
    section("printers", {{"charsize", "2"}});
    section("headers");
    EXPECT_EQ(output(), textLines({"Cucina", Rule, "", Rule}));
}

TEST_F(SectionsTest, GeometryPrintsTheTopMarginAsEmptyLines)
{
    receiptProfile({"printGeometry"}, "topMargin = 3;");
    section("geometry", {{"lines", "9"}});
    EXPECT_EQ(output(), textLines({"", "", ""}));
}

TEST_F(SectionsTest, GeometryIsOffWithoutItsSwitch)
{
    receiptProfile({"printHeader"}, "topMargin = 3;");
    section("geometry");
    EXPECT_EQ(output(), QByteArray());
}

TEST_F(SectionsTest, GeometryReadsTheMarginOfTheLoadedProfileOnly)
{
    configure("bristel : { doc : { topMargin = 2; printGeometry = true; }; "
              "receiptdoc : { topMargin = 1; printGeometry = true; }; };");
    start("printPartialOrder");
    element("geometry");
    EXPECT_EQ(output(), textLines({"", ""}));
}

class TopMarginTest : public SectionsTest, public ::testing::WithParamInterface<const char *>
{
};

TEST_P(TopMarginTest, NoEmptyLines)
{
    receiptProfile({"printGeometry"}, GetParam());
    section("geometry");
    EXPECT_EQ(output(), QByteArray());
}

INSTANTIATE_TEST_SUITE_P(UnusableMargins, TopMarginTest,
                         ::testing::Values("topMargin = 0;", "topMargin = -3;", "topMargin = abc;", ""));

TEST_F(SectionsTest, HeadersWithTheSwitchOffStillPrintThePrinterName)
{
    receiptProfile({});
    section("printers", {{"name", "Cassa 1"}});
    driver().trace.clear();
    section("headers", {{"l1", "Welcome"}});
    EXPECT_EQ(driver().trace, QStringList({"setCenterJustify", "println(0):Cassa 1",
                                           QStringLiteral("println(0):") + RuleText}));
    EXPECT_EQ(output(), textLines({"Cassa 1", Rule}));
}

TEST_F(SectionsTest, HeadersPrintEveryValueInDocumentOrderWithAnEmptyOneToo)
{
    receiptProfile({"printHeader"});
    section("headers", {{"z", "Primo"}, {"a", ""}, {"m", "Terzo"}});
    EXPECT_EQ(output(), textLines({"Primo", "", "Terzo", Rule, "", Rule}));
}

TEST_F(SectionsTest, LogoIsPrintedWhateverTheSwitch)
{
    receiptProfile({});
    EXPECT_TRUE(section("logo"));
    EXPECT_EQ(driver().trace, QStringList({"printLogo"}));
    EXPECT_EQ(output(), QByteArray());
}

TEST_F(SectionsTest, CompanyNeedsItsSwitch)
{
    receiptProfile({"printHeader", "printDate"});
    EXPECT_TRUE(section("company", {{"name", "Trattoria"}}));
    EXPECT_TRUE(driver().trace.isEmpty());
    EXPECT_EQ(output(), QByteArray());
}

TEST_F(SectionsTest, DocumentNumbersArePrintedWithEverySwitchOff)
{
    receiptProfile({});
    section("receipt", {{"serialnumber", "000123"}});
    section("invoice", {{"serialnumber", "F-77"}});
    section("delivery", {{"serialnumber", "D-5"}});
    EXPECT_EQ(output(), textLines({" Serial Number: 000123 ", Rule, " Invoice Number: F-77 ", Rule,
                                   " Delivery Number: D-5 ", Rule}));
}

TEST_F(SectionsTest, DocumentNumberWithoutSerialKeepsTheLabel)
{
    receiptProfile({});
    section("receipt");
    section("invoice");
    EXPECT_EQ(output(), textLines({" Serial Number:  ", Rule, " Invoice Number:  ", Rule}));
}

TEST_F(SectionsTest, OrderInformationPrintsTheSixLinesInOrder)
{
    everySwitchOn();
    section("orderinfo", {{"credit", "12,00"},
                          {"note", "senza sale"},
                          {"waiter", "Anna"},
                          {"table", "7"},
                          {"time", "20:15"},
                          {"date", "12/03/2006"}});
    EXPECT_EQ(output(), textLines({" Date: 12/03/2006 ", " Time: 20:15 ", " Table: 7 ", " Waiter: Anna ",
                                   " Note: senza sale ", " Credit: 12,00 ", Rule}));
    EXPECT_EQ(driver().trace.first(), QStringLiteral("setCharSize"));
}

TEST_F(SectionsTest, OrderInformationWithEverySwitchOffIsTheRuleAlone)
{
    receiptProfile({});
    section("orderinfo", {{"date", "12/03/2006"}, {"credit", "12,00"}});
    EXPECT_EQ(driver().trace, QStringList({"setCharSize", QStringLiteral("println(0):") + RuleText}));
    EXPECT_EQ(output(), textLines({Rule}));
}

TEST_F(SectionsTest, MissingOrderValuesPrintTheLabelAlone)
{
    receiptProfile({"printWaiter", "printNote"});
    section("orderinfo");
    EXPECT_EQ(output(), textLines({" Waiter:  ", " Note:  ", Rule}));
}

TEST_F(SectionsTest, EachOrderInformationPrintsItsOwnCredit)
{
    receiptProfile({"printCredit"});
    section("orderinfo", {{"credit", "5"}});
    section("orderinfo");
    section("orderinfo", {{"credit", "7,50"}});
    EXPECT_EQ(output(), textLines({" Credit: 5 ", Rule, " Credit:  ", Rule, " Credit: 7,50 ", Rule}));
}

TEST_F(SectionsTest, CustomerIsOffWithoutItsSwitch)
{
    receiptProfile({"printBillingAddress", "printTelephone"});
    customer({{"name", "Mario Rossi"}, {"billingaddress", "Via Roma 1"}});
    EXPECT_EQ(output(), QByteArray());
}

TEST_F(SectionsTest, CustomerWithEveryLinePutsBillingBeforeDelivery)
{
    everySwitchOn();
    customer({{"fiscalcode", "RSSMRA"},
              {"licensenumber", "L-1"},
              {"telephone", "06 1234567"},
              {"deliveryaddress", "Piazza Navona 2, Roma"},
              {"billingaddress", "Via Roma 1, 00100 Roma, Italia"},
              {"name", "Mario Rossi"}});
    EXPECT_EQ(output(), textLines({"CUSTOMER", " Mario Rossi ", " Via Roma 1 ", " 00100 Roma ", " Italia ",
                                   " Piazza Navona 2 ", " Roma ", " Telephone: 06 1234567 ",
                                   " License Number: L-1 ", " Fiscal Code: RSSMRA ", Rule}));
}

TEST_F(SectionsTest, CustomerWithOnlyItsSwitchIsNameAndRule)
{
    receiptProfile({"printCustomer"});
    customer({{"name", "Mario Rossi"}, {"billingaddress", "Via Roma 1"}, {"telephone", "06"}});
    EXPECT_EQ(output(), textLines({"CUSTOMER", " Mario Rossi ", Rule}));
}

TEST_F(SectionsTest, CustomerWithoutNamePrintsAnIndentOnlyLine)
{
    receiptProfile({"printCustomer"});
    customer({});
    EXPECT_EQ(output(), textLines({"CUSTOMER", "  ", Rule}));
}

TEST_F(SectionsTest, AddressStopsAtTheFirstEmptyPiece)
{
    receiptProfile({"printCustomer", "printBillingAddress"});
    customer({{"name", "M"}, {"billingaddress", "Via Roma 1,,Roma"}});
    EXPECT_EQ(output(), textLines({"CUSTOMER", " M ", " Via Roma 1 ", Rule}));
}

TEST_F(SectionsTest, AddressPieceOfBlanksIsNotEmpty)
{
    receiptProfile({"printCustomer", "printDeliveryAddress"});
    customer({{"name", "M"}, {"deliveryaddress", "Via Roma 1, ,Roma"}});
    EXPECT_EQ(output(), textLines({"CUSTOMER", " M ", " Via Roma 1 ", "  ", " Roma ", Rule}));
}

TEST_F(SectionsTest, EmptyAddressPrintsNothing)
{
    receiptProfile({"printCustomer", "printBillingAddress", "printDeliveryAddress"});
    customer({{"name", "M"}, {"billingaddress", ""}});
    EXPECT_EQ(output(), textLines({"CUSTOMER", " M ", Rule}));
}

TEST_F(SectionsTest, AddressStartingWithACommaPrintsNothing)
{
    receiptProfile({"printCustomer", "printBillingAddress"});
    customer({{"name", "M"}, {"billingaddress", ",Via Roma 1"}});
    EXPECT_EQ(output(), textLines({"CUSTOMER", " M ", Rule}));
}

TEST_F(SectionsTest, SeparatorFollowsThePaperWidth)
{
    receiptProfile({}, "paperWidth = 40;");
    section("receipt", {{"serialnumber", "9"}});
    EXPECT_EQ(output(), textLines({" Serial Number: 9 "}) + ruleLine(40));
}

TEST_F(SectionsTest, LabelsAreTranslated)
{
    const CompiledTranslation german({{"Serial Number: ", "Seriennummer: "},
                                      {"Invoice Number:", "Rechnungsnummer:"},
                                      {"Delivery Number:", "Lieferschein:"},
                                      {"Date:", "Datum:"},
                                      {"Time:", "Zeit:"},
                                      {"Table:", "Tisch:"},
                                      {"Waiter:", "Kellner:"},
                                      {"Note:", "Notiz:"},
                                      {"Credit:", "Guthaben:"},
                                      {"CUSTOMER", "KUNDE"},
                                      {"Telephone:", "Telefon:"},
                                      {"License Number:", "Lizenz:"},
                                      {"Fiscal Code:", "Steuernummer:"}});
    everySwitchOn("paperWidth = 8;");
    section("receipt", {{"serialnumber", "1"}});
    section("invoice", {{"serialnumber", "2"}});
    section("delivery", {{"serialnumber", "3"}});
    section("orderinfo",
            {{"date", "d"}, {"time", "t"}, {"table", "7"}, {"waiter", "w"}, {"note", "n"}, {"credit", "c"}});
    customer({{"name", "M"}, {"telephone", "06"}, {"licensenumber", "L"}, {"fiscalcode", "F"}});
    const QByteArray rule(8, '=');
    EXPECT_EQ(output(), textLines({" Seriennummer: 1 ", rule, " Rechnungsnummer: 2 ", rule,
                                   " Lieferschein: 3 ", rule, " Datum: d ", " Zeit: t ", " Tisch: 7 ",
                                   " Kellner: w ", " Notiz: n ", " Guthaben: c ", rule, "KUNDE", " M ",
                                   " Telefon: 06 ", " Lizenz: L ", " Steuernummer: F ", rule}));
}

TEST_F(SectionsTest, SectionsReachTheDocumentsThroughTheDispatch)
{
    receiptProfile({});
    element("Receipt", {{"serialnumber", "1"}});
    element("receipt", {{"serialnumber", "2"}});
    EXPECT_EQ(finish(), textLines({" Serial Number: 2 ", Rule}));
}

} // namespace
