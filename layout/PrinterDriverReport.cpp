// The daily report of takings.

#include "layout/PrinterDriver.h"

#include "layout/DocumentText.h"
#include "layout/PrinterDriver_p.h"

#include <QObject>

using documenttext::attribute;

namespace {

using documenttext::Blank;

// The attribute at a position of the list; past the end it reads as empty.
QString attributeAt(const QXmlAttributes &attributes, int index)
{
    return index < attributes.length() ? attributes.value(index) : QString();
}

// The bold, centred heading of a summary between two empty lines.
void printTitleBlock(PrinterDriverPrivate &driver, const QString &title)
{
    driver.setBold();
    driver.setCenterJustify();
    driver.println(QString());
    driver.println(title);
    driver.setCharSize();
    driver.println(QString());
}

// The label filled with dots up to the value column; a label too wide for it stays whole.
QString dottedLabel(const PrinterDriverPrivate &driver, const QString &label)
{
    return label.leftJustified(qMax(0, driver.profile.paperWidth - 15), QLatin1Char('.'));
}

void printDottedLine(PrinterDriverPrivate &driver, const QString &label, const QString &value)
{
    driver.print(0, dottedLabel(driver, label));
    driver.println(value);
}

// First and last serial number of the documents issued in the period.
void printSerialRange(PrinterDriverPrivate &driver, const QXmlAttributes &attributes)
{
    driver.print(0, dottedLabel(driver, QObject::tr("Serials")));
    driver.print(0, attribute(attributes, "firstserial"));
    driver.print(0, QStringLiteral(" - "));
    driver.println(attribute(attributes, "lastserial"));
}

// Takings by kind of payment, each label followed directly by its amount.
void printPaymentLines(PrinterDriverPrivate &driver, const QXmlAttributes &attributes)
{
    driver.println(QObject::tr("Amount not paid: ") + attribute(attributes, "notPaid"));
    driver.println(QObject::tr("Cash: ") + attribute(attributes, "cash"));
    driver.println(QObject::tr("Credit Card: ") + attribute(attributes, "creditCard"));
    driver.println(QObject::tr("Bancomat: ") + attribute(attributes, "bancomat"));
    driver.println(QObject::tr("Other: ") + attribute(attributes, "other"));
}

// The heading of the tax table; "TAXRATE" overflows its column by one, over the rows' "% ".
void printTaxTableHeading(PrinterDriverPrivate &driver)
{
    driver.println(QObject::tr("TAXRATE").rightJustified(6, Blank) + Blank +
                   QObject::tr("TAXABLE").rightJustified(10, Blank) + Blank +
                   QObject::tr("TAX").rightJustified(10, Blank) + Blank +
                   QObject::tr("AMOUNT").rightJustified(10, Blank));
}

void printTaxRateRow(PrinterDriverPrivate &driver, const QXmlAttributes &attributes)
{
    driver.println(attribute(attributes, "taxrate").rightJustified(6, Blank) + QLatin1String("% ") +
                   attribute(attributes, "taxable").rightJustified(10, Blank) + Blank +
                   attribute(attributes, "tax").rightJustified(10, Blank) + Blank +
                   attribute(attributes, "amount").rightJustified(10, Blank) + Blank);
}

void printCancelledRow(PrinterDriverPrivate &driver, const QString &serial, const QString &total,
                       const QString &taxRate)
{
    driver.print(0, serial.leftJustified(10, Blank));
    driver.print(0, total.leftJustified(11, Blank));
    driver.println(taxRate.leftJustified(10, Blank));
}

// The cancelled documents follow "number" and "totals" as unnamed triples of serial, total
// and tax rate; a last, incomplete triple prints its missing fields empty.
void printCancelledDocuments(PrinterDriverPrivate &driver, const QXmlAttributes &attributes)
{
    printCancelledRow(driver, QObject::tr("SERIAL"), QObject::tr("TOTAL"), QObject::tr("TAXRATE"));
    for (int i = 2; i < attributes.length(); i += 3) {
        printCancelledRow(driver, attributeAt(attributes, i), attributeAt(attributes, i + 1),
                          attributeAt(attributes, i + 2));
    }
}

} // namespace

void PrinterDriver::printReport(const QString &name, const QXmlAttributes &attributes)
{
    if (printSections(name, attributes))
        return;

    if (name == QLatin1String("date")) {
        setBold();
        setCenterJustify();
        println(QString());
        println(QObject::tr("SUMMARIES"));
        println(QString());
        setCharSize();
        print(0, QObject::tr("BeginDate: "));
        println(attribute(attributes, "begindate"));
        print(0, QObject::tr("EndDate: "));
        println(attribute(attributes, "enddate"));
    } else if (name == QLatin1String("prefiscalssummary")) {
        printTitleBlock(*d, QObject::tr("PREFISCAL SUMMARY"));
        printDottedLine(*d, QObject::tr("Number"), attribute(attributes, "number"));
        printDottedLine(*d, QObject::tr("TOTAL"), attribute(attributes, "total"));
    } else if (name == QLatin1String("receiptssummary")) {
        printTitleBlock(*d, QObject::tr("RECEIPTS SUMMARY"));
        printDottedLine(*d, QObject::tr("Number"), attribute(attributes, "number"));
        printSerialRange(*d, attributes);
        printPaymentLines(*d, attributes);
        printDottedLine(*d, QObject::tr("TOTAL"), attribute(attributes, "total"));
        println(QString());
        printSeparatorLine();
        printTaxTableHeading(*d);
    } else if (name == QLatin1String("taxrate_item")) {
        printTaxRateRow(*d, attributes);
    } else if (name == QLatin1String("invoicessummary")) {
        printSeparatorLine();
        println(QString());
        printTitleBlock(*d, QObject::tr("INVOICES SUMMARY"));
        printDottedLine(*d, QObject::tr("Number"), attribute(attributes, "number"));
        printSerialRange(*d, attributes);
        printDottedLine(*d, QObject::tr("Taxable"), attribute(attributes, "taxable"));
        printDottedLine(*d, QObject::tr("Tax"), attribute(attributes, "tax"));
        printDottedLine(*d, QObject::tr("TOTAL"), attribute(attributes, "total"));
    } else if (name == QLatin1String("cancelledsummary")) {
        printTitleBlock(*d, QObject::tr("CANCELLED DOC SUMMARY"));
        printDottedLine(*d, QObject::tr("Number"), attribute(attributes, "number"));
        // The cancelled documents' total comes as "totals", unlike the other summaries.
        printDottedLine(*d, QObject::tr("TOTAL"), attribute(attributes, "totals"));
        setBold(); // left on to the end of the block
        println(QString());
        printCancelledDocuments(*d, attributes);
    }
}
