// The column layout: rows of the six layout codes, the once-per-run headings and the rule.

#include "DocumentFixture.h"

#include "TestSupport.h"

namespace {

const QChar Blank = QLatin1Char(' ');
const QChar FullStop = QLatin1Char('.');

class LayoutTest : public DocumentTest
{
protected:
    // Loads a receipt profile with the given widths.
    void widths(int quantity, int price, int total, int paper)
    {
        configure(QStringLiteral("bristel : { receiptdoc : { quantityFieldWidth = %1; priceFieldWidth = %2; "
                                 "totalPriceFieldWidth = %3; paperWidth = %4; }; };")
                      .arg(quantity)
                      .arg(price)
                      .arg(total)
                      .arg(paper)
                      .toUtf8());
        start("printFullOrderReceipt");
    }

    QString row(const char *quantity, const char *description, const char *price, const char *total,
                QChar fill, const char *layout)
    {
        return driver().descriptionRow(QString::fromUtf8(quantity), QString::fromUtf8(description),
                                       QString::fromUtf8(price), QString::fromUtf8(total), fill,
                                       QString::fromUtf8(layout));
    }
};

TEST_F(LayoutTest, QuantityDescriptionPriceTotal)
{
    widths(3, 7, 8, 32);
    const QString r = row("2", "Pizza Margherita", "6,50", "13,00", Blank, "qdpt");
    EXPECT_EQ(r, QStringLiteral("  2 Pizza Margher   6,50   13,00"));
    EXPECT_EQ(r.size(), 32);
}

TEST_F(LayoutTest, QuantityTimesDescriptionPriceTotal)
{
    widths(3, 7, 8, 32);
    const QString r = row("2", "Pizza Margherita", "6,50", "13,00", Blank, "qxdpt");
    EXPECT_EQ(r, QStringLiteral("  2 x Pizza Margh   6,50   13,00"));
    EXPECT_EQ(r.size(), 32);
}

TEST_F(LayoutTest, QuantityTimesDescription)
{
    widths(3, 7, 8, 32);
    EXPECT_EQ(row("2", "Acqua", "", "", Blank, "qxd"), QStringLiteral("  2 x Acqua") + QString(21, Blank));
}

TEST_F(LayoutTest, QuantityDescriptionIsTwoColumnsShortAndIgnoresTheFill)
{
    widths(3, 7, 8, 32);
    EXPECT_EQ(row("2", "Acqua", "", "", Blank, "qd"), QStringLiteral("  2 Acqua") + QString(21, Blank));
    const QString dotted = row("2", "Acqua", "1,50", "3,00", FullStop, "qd");
    EXPECT_EQ(dotted, QStringLiteral("  2 Acqua") + QString(21, Blank));
    EXPECT_EQ(dotted.size(), 30);
}

TEST_F(LayoutTest, DoubleLineIsPartedByABareLineFeed)
{
    widths(3, 7, 8, 32);
    EXPECT_EQ(row("2", "Acqua", "1,50", "3,00", Blank, "qxdtDoubleLine"),
              QStringLiteral("2 x 1,50\nAcqua") + QString(19, Blank) + QStringLiteral("    3,00"));
}

TEST_F(LayoutTest, DoubleLinePadsBothColumnsWithTheFill)
{
    widths(3, 7, 8, 32);
    EXPECT_EQ(row("2", "Acqua", "1,50", "3,00", FullStop, "qxdtDoubleLine"),
              QStringLiteral("2 x 1,50\nAcqua") + QString(19, FullStop) + QStringLiteral("....3,00"));
}

TEST_F(LayoutTest, DateAmountTypeIsThreeColumnsShort)
{
    widths(3, 7, 8, 32);
    const QString r = row("12/05/2006", "Cassa", "120,00", "ignored", Blank, "date-amount-type");
    EXPECT_EQ(r, QStringLiteral("12/05/2006     Cassa   120,00"));
    EXPECT_EQ(r.size(), 29);
}

TEST_F(LayoutTest, FullStopFillsOnlyDescriptionAndPrice)
{
    widths(3, 7, 8, 32);
    EXPECT_EQ(row("2", "Acqua", "1,50", "3,00", FullStop, "qdpt"),
              QStringLiteral("  2 Acqua...........1,50    3,00"));
}

TEST_F(LayoutTest, ProfileWithoutWidthsLeavesOnlyTheDescriptionPadded)
{
    widths(0, 0, 0, 32);
    EXPECT_EQ(row("2", "Acqua", "1,50", "3,00", Blank, "qdpt"),
              QStringLiteral("2 Acqua") + QString(26, Blank) + QStringLiteral("1,503,00"));
}

TEST_F(LayoutTest, NegativeWidthsPadNothing)
{
    widths(-5, -2, -1, 32);
    // D = 32 + 5 + 2 + 1 - 1 = 39.
    EXPECT_EQ(row("2", "Acqua", "1,50", "3,00", FullStop, "qdpt"),
              QStringLiteral("2 Acqua") + QString(34, FullStop) + QStringLiteral("1,503,00"));
}

TEST_F(LayoutTest, LongQuantityShiftsTheRowRight)
{
    widths(3, 7, 8, 32);
    const QString r = row("12345", "Pizza Margherita", "6,50", "13,00", Blank, "qdpt");
    EXPECT_EQ(r, QStringLiteral("12345 Pizza Margher   6,50   13,00"));
    EXPECT_EQ(r.size(), 34);
}

TEST_F(LayoutTest, LongPriceIsNeverCut)
{
    widths(3, 4, 4, 32);
    EXPECT_EQ(row("1", "Vino", "123456", "1234567", Blank, "qdpt"),
              QStringLiteral("  1 Vino") + QString(16, Blank) + QStringLiteral("1234561234567"));
}

TEST_F(LayoutTest, ShortDescriptionIsPaddedWithTheFill)
{
    widths(3, 7, 8, 32);
    EXPECT_EQ(row("1", "Pane", "", "", QLatin1Char('-'), "qxdpt"),
              QStringLiteral("  1 x Pane") + QString(14, QLatin1Char('-')) + QString(8, Blank));
}

TEST_F(LayoutTest, DescriptionOfZeroWidthIsDropped)
{
    widths(3, 7, 8, 19); // D = 19 - 3 - 7 - 8 - 1 = 0
    EXPECT_EQ(row("2", "Pizza Margherita", "6,50", "13,00", Blank, "qdpt"),
              QStringLiteral("  2    6,50   13,00"));
}

TEST_F(LayoutTest, DescriptionOfWidthOneKeepsOneCharacter)
{
    widths(3, 7, 8, 20); // D = 1
    EXPECT_EQ(row("2", "Pizza Margherita", "6,50", "13,00", Blank, "qdpt"),
              QStringLiteral("  2 P   6,50   13,00"));
}

TEST_F(LayoutTest, DescriptionOfNegativeWidthIsKeptWhole)
{
    widths(3, 7, 8, 10); // D = -9
    EXPECT_EQ(row("2", "Pizza Margherita", "6,50", "13,00", Blank, "qdpt"),
              QStringLiteral("  2 Pizza Margherita   6,50   13,00"));
}

TEST_F(LayoutTest, QuantityTimesDescriptionWithQuantityWiderThanThePaper)
{
    widths(40, 7, 8, 32); // D = 32 - 40 - 3 = -11
    EXPECT_EQ(row("2", "Acqua", "", "", Blank, "qxd"), QString(39, Blank) + QStringLiteral("2 x Acqua"));
}

TEST_F(LayoutTest, UnknownLayoutCodeGivesAnEmptyRow)
{
    widths(3, 7, 8, 32);
    EXPECT_EQ(row("2", "Acqua", "1,50", "3,00", Blank, "QDPT"), QString());
    EXPECT_EQ(row("2", "Acqua", "1,50", "3,00", Blank, "qdp"), QString());
    EXPECT_EQ(row("2", "Acqua", "1,50", "3,00", Blank, ""), QString());
    driver().println(row("2", "Acqua", "1,50", "3,00", Blank, "QDPT"));
    EXPECT_EQ(output(), QByteArray("\r\n\r"));
}

TEST_F(LayoutTest, SeparatorLineSpansThePaper)
{
    widths(3, 7, 8, 32);
    driver().printSeparatorLine();
    EXPECT_EQ(output(), QByteArray(32, '=') + "\r\n\r");
}

TEST_F(LayoutTest, SeparatorLineFollowsThePaperWidth)
{
    widths(3, 7, 8, 40);
    driver().printSeparatorLine();
    EXPECT_EQ(output(), ruleLine(40));
}

TEST_F(LayoutTest, SeparatorLineOfNegativePaperIsAnEmptyLine)
{
    widths(3, 7, 8, -4);
    driver().printSeparatorLine();
    EXPECT_EQ(output(), QByteArray("\r\n\r"));
}

TEST_F(LayoutTest, ColumnsHeaderIsBoldBlankPaddedAndPrintedOnce)
{
    widths(3, 7, 8, 32);
    driver().trace.clear();
    driver().printColumnsHeader(QStringLiteral("Num"), QStringLiteral("Description"), QStringLiteral("Price"),
                                QStringLiteral("Amount"));
    driver().printColumnsHeader(QStringLiteral("X"), QStringLiteral("Y"), QStringLiteral("Z"),
                                QStringLiteral("W"));
    EXPECT_EQ(driver().trace,
              QStringList({"setBold", "println(0):Num Description    Price  Amount", "setCharSize"}));
    EXPECT_EQ(output(), textLine("Num Description    Price  Amount"));
}

TEST_F(LayoutTest, OneTimeBeforeTheHeaderSuppressesIt)
{
    widths(3, 7, 8, 32);
    EXPECT_TRUE(driver().oneTime());
    driver().printColumnsHeader(QStringLiteral("Num"), QStringLiteral("Description"), QStringLiteral("Price"),
                                QStringLiteral("Amount"));
    EXPECT_EQ(output(), QByteArray());
    EXPECT_FALSE(driver().oneTime());
}

TEST_F(LayoutTest, OneTimeAnswersFalseAfterTheHeader)
{
    widths(3, 7, 8, 32);
    driver().printColumnsHeader(QStringLiteral("Num"), QStringLiteral("Description"), QStringLiteral("Price"),
                                QStringLiteral("Amount"));
    EXPECT_FALSE(driver().oneTime());
}

TEST_F(LayoutTest, HeaderLatchSurvivesASecondMethodElement)
{
    widths(3, 7, 8, 32);
    element("receipe", {{"number", "1"}, {"name", "Acqua"}, {"price", "1,50"}, {"totalPrice", "1,50"}});
    const QByteArray first = output();
    element("method", {{"name", "printFullOrderReceipt"}});
    element("receipe", {{"number", "1"}, {"name", "Pane"}, {"price", "1,00"}, {"totalPrice", "1,00"}});
    EXPECT_EQ(output(), first + textLine("  1 x Pane..........1,00    1,00"));
}

} // namespace
