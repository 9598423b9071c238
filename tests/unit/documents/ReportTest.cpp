// The daily report of takings.

#include "DocumentBytes.h"
#include "DocumentFixture.h"

#include "TestSupport.h"

namespace {

QByteArray reportProfile(int paperWidth)
{
    return "bristel : { reportdoc : { paperWidth = " + QByteArray::number(paperWidth) + "; }; };";
}

class ReportTest : public DocumentTest
{
protected:
    void workedExample()
    {
        element("date", {{"begindate", "01/03/2008"}, {"enddate", "31/03/2008"}});
        element("receiptssummary", {{"number", "12"},
                                    {"firstserial", "101"},
                                    {"lastserial", "112"},
                                    {"notPaid", "0.00"},
                                    {"cash", "120.00"},
                                    {"creditCard", "30.00"},
                                    {"bancomat", "0.00"},
                                    {"other", "0.00"},
                                    {"total", "150.00"}});
        element("taxrate_item",
                {{"taxrate", "10"}, {"taxable", "136.36"}, {"tax", "13.64"}, {"amount", "150.00"}});
        element(
            "cancelledsummary",
            {{"number", "1"}, {"totals", "12.50"}, {"serial", "105"}, {"amount", "12.50"}, {"rate", "10"}});
    }
};

TEST_F(ReportTest, WorkedExampleAtFortyColumns)
{
    configure(reportProfile(40));
    start("printReport");
    workedExample();
    const QByteArray expected = textLines({
        "",
        "SUMMARIES",
        "",
        "BeginDate: 01/03/2008",
        "EndDate: 31/03/2008",
        "",
        "RECEIPTS SUMMARY",
        "",
        "Number...................12",
        "Serials..................101 - 112",
        "Amount not paid: 0.00",
        "Cash: 120.00",
        "Credit Card: 30.00",
        "Bancomat: 0.00",
        "Other: 0.00",
        "TOTAL....................150.00",
        "",
        "========================================",
        "TAXRATE    TAXABLE        TAX     AMOUNT",
        "    10%     136.36      13.64     150.00 ",
        "",
        "CANCELLED DOC SUMMARY",
        "",
        "Number...................1",
        "TOTAL....................12.50",
        "",
        "SERIAL    TOTAL      TAXRATE   ",
        "105       12.50      10        ",
    });
    EXPECT_EQ(finish(), expected) << visible(output()).toStdString();
}

TEST_F(ReportTest, DateAndSummaryTitlesMakeTheirDeviceCalls)
{
    configure(reportProfile(40));
    start("printReport");
    driver().trace.clear();
    element("date", {{"begindate", "01/03/2008"}, {"enddate", "31/03/2008"}});
    element("prefiscalssummary", {{"number", "3"}, {"total", "45.00"}});
    // The print() halves of a line leave no trace; println shows the rest of the line.
    EXPECT_EQ(driver().trace, QStringList({
                                  "setBold",
                                  "setCenterJustify",
                                  "println(0):",
                                  "println(0):SUMMARIES",
                                  "println(0):",
                                  "setCharSize",
                                  "println(0):01/03/2008",
                                  "println(0):31/03/2008",
                                  "setBold",
                                  "setCenterJustify",
                                  "println(0):",
                                  "println(0):PREFISCAL SUMMARY",
                                  "setCharSize",
                                  "println(0):",
                                  "println(0):3",
                                  "println(0):45.00",
                              }));
}

TEST_F(ReportTest, CancelledListLeavesBoldOn)
{
    start("printReport");
    driver().trace.clear();
    element("cancelledsummary", {{"number", "0"}, {"totals", "0.00"}});
    EXPECT_EQ(driver().trace, QStringList({
                                  "setBold",
                                  "setCenterJustify",
                                  "println(0):",
                                  "println(0):CANCELLED DOC SUMMARY",
                                  "setCharSize",
                                  "println(0):",
                                  "println(0):0",
                                  "println(0):0.00",
                                  "setBold",
                                  "println(0):",
                                  "println(0):TAXRATE   ",
                              }));
}

TEST_F(ReportTest, PrefiscalSummary)
{
    start("printReport");
    element("prefiscalssummary", {{"number", "3"}, {"total", "45.00"}});
    // No report profile: paperWidth 32, labels 17 wide.
    EXPECT_EQ(finish(),
              textLines({"", "PREFISCAL SUMMARY", "", "Number...........3", "TOTAL............45.00"}));
}

TEST_F(ReportTest, InvoicesSummaryOpensWithASeparator)
{
    configure(reportProfile(40));
    start("printReport");
    element("invoicessummary", {{"number", "4"},
                                {"firstserial", "21"},
                                {"lastserial", "24"},
                                {"taxable", "90.91"},
                                {"tax", "9.09"},
                                {"total", "100.00"},
                                {"cash", "100.00"}});
    EXPECT_EQ(finish(), textLines({
                            "========================================",
                            "",
                            "",
                            "INVOICES SUMMARY",
                            "",
                            "Number...................4",
                            "Serials..................21 - 24",
                            "Taxable..................90.91",
                            "Tax......................9.09",
                            "TOTAL....................100.00",
                        }));
}

TEST_F(ReportTest, DefaultPaperWidthGivesSeventeenColumnLabels)
{
    start("printReport");
    element("prefiscalssummary", {{"number", "12"}});
    EXPECT_EQ(finish(), textLines({"", "PREFISCAL SUMMARY", "", "Number...........12", "TOTAL............"}));
}

TEST_F(ReportTest, NarrowPaperPrintsLabelsWithoutDots)
{
    configure(reportProfile(16));
    start("printReport");
    element("receiptssummary",
            {{"number", "2"}, {"firstserial", "1"}, {"lastserial", "2"}, {"total", "9.00"}});
    EXPECT_EQ(finish(), textLines({
                            "",
                            "RECEIPTS SUMMARY",
                            "",
                            "Number2",
                            "Serials1 - 2",
                            "Amount not paid: ",
                            "Cash: ",
                            "Credit Card: ",
                            "Bancomat: ",
                            "Other: ",
                            "TOTAL9.00",
                            "",
                            "================",
                            "TAXRATE    TAXABLE        TAX     AMOUNT",
                        }));
}

TEST_F(ReportTest, PaperNarrowerThanTheValueColumnIsClampedToNoDots)
{
    configure(reportProfile(10));
    start("printReport");
    element("prefiscalssummary", {{"number", "2"}, {"total", "9.00"}});
    EXPECT_EQ(finish(), textLines({"", "PREFISCAL SUMMARY", "", "Number2", "TOTAL9.00"}));
}

TEST_F(ReportTest, OneColumnLabelsAtSixteenColumns)
{
    configure(reportProfile(16));
    start("printReport");
    element("prefiscalssummary", {{"number", "2"}, {"total", ""}});
    EXPECT_EQ(finish(), textLines({"", "PREFISCAL SUMMARY", "", "Number2", "TOTAL"}));
}

TEST_F(ReportTest, CancelledSummaryWithTwoAttributesPrintsHeadingOnly)
{
    configure(reportProfile(40));
    start("printReport");
    element("cancelledsummary", {{"number", "0"}, {"totals", "0.00"}});
    EXPECT_EQ(finish(), textLines({
                            "",
                            "CANCELLED DOC SUMMARY",
                            "",
                            "Number...................0",
                            "TOTAL....................0.00",
                            "",
                            "SERIAL    TOTAL      TAXRATE   ",
                        }));
}

TEST_F(ReportTest, IncompleteLastTripleIsPaddedWithEmptyFields)
{
    configure(reportProfile(40));
    start("printReport");
    driver().trace.clear();
    element("cancelledsummary", {{"number", "2"},
                                 {"totals", "20.00"},
                                 {"s1", "105"},
                                 {"t1", "12.50"},
                                 {"r1", "10"},
                                 {"s2", "106"},
                                 {"t2", "7.50"}});
    const QByteArray bytes = output();
    EXPECT_TRUE(bytes.endsWith(textLines({
        "SERIAL    TOTAL      TAXRATE   ",
        "105       12.50      10        ",
        "106       7.50                 ",
    }))) << visible(bytes).toStdString();

    // A single attribute past the pair: serial only, total and rate empty.
    driver().trace.clear();
    element("cancelledsummary", {{"number", "1"}, {"totals", "5.00"}, {"s1", "107"}});
    EXPECT_TRUE(
        output().endsWith(textLine("107" + repeated(' ', 7) + repeated(' ', 11) + repeated(' ', 10))));
}

TEST_F(ReportTest, CancelledListReadsPositionsNotNames)
{
    configure(reportProfile(40));
    start("printReport");
    // The first two positions are skipped whatever their names; "total" is not read at all.
    element("cancelledsummary",
            {{"total", "99.00"}, {"number", "1"}, {"serial", "A1"}, {"x", "3.00"}, {"y", "4"}});
    EXPECT_EQ(finish(), textLines({
                            "",
                            "CANCELLED DOC SUMMARY",
                            "",
                            "Number...................1",
                            "TOTAL....................",
                            "",
                            "SERIAL    TOTAL      TAXRATE   ",
                            "A1        3.00       4         ",
                        }));
}

TEST_F(ReportTest, TwentyThousandCancelledAttributesArePrintedQuickly)
{
    start("printReport");
    QXmlAttributes list;
    list.append("number", QString(), "number", "6666");
    list.append("totals", QString(), "totals", "1.00");
    for (int i = 2; i < 20000; ++i) {
        const QString name = QStringLiteral("a%1").arg(i);
        list.append(name, QString(), name, QString::number(i));
    }
    element("cancelledsummary", list);
    const QByteArray bytes = finish();

    // Title block (3 lines), two dotted lines, an empty line, the heading, 6666 rows.
    EXPECT_EQ(bytes.count("\r\n\r"), 3 + 2 + 1 + 1 + 6666);
    EXPECT_TRUE(bytes.endsWith(textLine("19997     19998      19999     ")));
}

TEST_F(ReportTest, LongValuesPushTheRowRight)
{
    start("printReport");
    element(
        "taxrate_item",
        {{"taxrate", "1234567"}, {"taxable", "123456789.00"}, {"tax", "1.00"}, {"amount", "123456789.00"}});
    EXPECT_EQ(finish(), textLine("1234567% 123456789.00       1.00 123456789.00 "));
}

TEST_F(ReportTest, TaxRowBeforeAnyHeadingAndMissingAttributes)
{
    start("printReport");
    element("taxrate_item");
    EXPECT_EQ(finish(), textLine(repeated(' ', 6) + "% " + repeated(' ', 10) + " " + repeated(' ', 10) + " " +
                                 repeated(' ', 10) + " "));
}

TEST_F(ReportTest, ReceiptsSummaryDoesNotReadTotals)
{
    configure(reportProfile(40));
    start("printReport");
    element("receiptssummary", {{"totals", "150.00"}});
    const QByteArray bytes = finish();
    EXPECT_FALSE(bytes.contains("150.00"));
    EXPECT_TRUE(bytes.contains(textLine("TOTAL....................")));
    EXPECT_TRUE(bytes.contains(textLine("Serials.................. - ")));
}

TEST_F(ReportTest, SectionsAndUnknownElements)
{
    configure("bristel : { reportdoc : { paperWidth = 20; printCompany = true; }; };");
    start("printReport");
    element("company", {{"name", "Trattoria"}});
    element("summary", {{"number", "1"}});
    element("Date", {{"begindate", "01/03/2008"}});
    element("receipe", {{"number", "1"}});
    EXPECT_EQ(finish(), textLine("Trattoria") + ruleLine(20));
}

TEST_F(ReportTest, LabelsPassThroughTheTranslator)
{
    const CompiledTranslation translation({{"Number", "Numero"},
                                           {"SERIAL", "SERIE"},
                                           {"TAXRATE", "ALIQ"},
                                           {"TOTAL", "TOTALE"},
                                           {"CANCELLED DOC SUMMARY", "DOCUMENTI ANNULLATI"},
                                           {"BeginDate: ", "Dal: "}});
    ASSERT_TRUE(translation.installed());
    configure(reportProfile(40));
    start("printReport");
    element("date", {{"begindate", "01/03/2008"}});
    element("cancelledsummary",
            {{"number", "1"}, {"totals", "5.00"}, {"s", "9"}, {"t", "5.00"}, {"r", "22"}});
    EXPECT_EQ(finish(), textLines({
                            "",
                            "SUMMARIES",
                            "",
                            "Dal: 01/03/2008",
                            "EndDate: ",
                            "",
                            "DOCUMENTI ANNULLATI",
                            "",
                            "Numero...................1",
                            "TOTALE...................5.00",
                            "",
                            "SERIE     TOTALE     ALIQ      ",
                            "9         5.00       22        ",
                        }));
}

} // namespace
