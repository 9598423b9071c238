// The daily report of takings.

#include "layout/PrinterDriver.h"

#include "layout/DocumentText.h"

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
void printTitleBlock(PrinterDriver &driver, const QString &title)
{
    driver.setBold();
    driver.setCenterJustify();
    driver.println(QString());
    driver.println(title);
    driver.setCharSize();
    driver.println(QString());
}

// The label filled with dots up to the value column; a label too wide for it stays whole.
QString dottedLabel(int paperWidth, const QString &label)
{
    return label.leftJustified(qMax(0, paperWidth - 15), QLatin1Char('.'));
}

void printDottedLine(PrinterDriver &driver, int paperWidth, const QString &label, const QString &value)
{
    driver.print(0, dottedLabel(paperWidth, label));
    driver.println(value);
}

// First and last serial number of the documents issued in the period.
void printSerialRange(PrinterDriver &driver, int paperWidth, const QXmlAttributes &attributes)
{
    driver.print(0, dottedLabel(paperWidth, QObject::tr("Serials")));
    driver.print(0, attribute(attributes, "firstserial"));
    driver.print(0, QStringLiteral(" - "));
    driver.println(attribute(attributes, "lastserial"));
}

// Takings by kind of payment, each label followed directly by its amount.
void printPaymentLines(PrinterDriver &driver, const QXmlAttributes &attributes)
{
    driver.println(QObject::tr("Amount not paid: ") + attribute(attributes, "notPaid"));
    driver.println(QObject::tr("Cash: ") + attribute(attributes, "cash"));
    driver.println(QObject::tr("Credit Card: ") + attribute(attributes, "creditCard"));
    driver.println(QObject::tr("Bancomat: ") + attribute(attributes, "bancomat"));
    driver.println(QObject::tr("Other: ") + attribute(attributes, "other"));
}

// The heading of the tax table; "TAXRATE" overflows its column by one, over the rows' "% ".
void printTaxTableHeading(PrinterDriver &driver)
{
    driver.println(QObject::tr("TAXRATE").rightJustified(6, Blank) + Blank +
                   QObject::tr("TAXABLE").rightJustified(10, Blank) + Blank +
                   QObject::tr("TAX").rightJustified(10, Blank) + Blank +
                   QObject::tr("AMOUNT").rightJustified(10, Blank));
}

void printTaxRateRow(PrinterDriver &driver, const QXmlAttributes &attributes)
{
    driver.println(attribute(attributes, "taxrate").rightJustified(6, Blank) + QLatin1String("% ") +
                   attribute(attributes, "taxable").rightJustified(10, Blank) + Blank +
                   attribute(attributes, "tax").rightJustified(10, Blank) + Blank +
                   attribute(attributes, "amount").rightJustified(10, Blank) + Blank);
}

void printCancelledRow(PrinterDriver &driver, const QString &serial, const QString &total,
                       const QString &taxRate)
{
    driver.print(0, serial.leftJustified(10, Blank));
    driver.print(0, total.leftJustified(11, Blank));
    driver.println(taxRate.leftJustified(10, Blank));
}

// The cancelled documents follow "number" and "totals" as unnamed triples of serial, total
// and tax rate; a last, incomplete triple prints its missing fields empty.
void printCancelledDocuments(PrinterDriver &driver, const QXmlAttributes &attributes)
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
        printTitleBlock(*this, QObject::tr("PREFISCAL SUMMARY"));
        printDottedLine(*this, paperWidth, QObject::tr("Number"), attribute(attributes, "number"));
        printDottedLine(*this, paperWidth, QObject::tr("TOTAL"), attribute(attributes, "total"));
    } else if (name == QLatin1String("receiptssummary")) {
        printTitleBlock(*this, QObject::tr("RECEIPTS SUMMARY"));
        printDottedLine(*this, paperWidth, QObject::tr("Number"), attribute(attributes, "number"));
        printSerialRange(*this, paperWidth, attributes);
        printPaymentLines(*this, attributes);
        printDottedLine(*this, paperWidth, QObject::tr("TOTAL"), attribute(attributes, "total"));
        println(QString());
        printSeparatorLine();
        printTaxTableHeading(*this);
    } else if (name == QLatin1String("taxrate_item")) {
        printTaxRateRow(*this, attributes);
    } else if (name == QLatin1String("invoicessummary")) {
        printSeparatorLine();
        println(QString());
        printTitleBlock(*this, QObject::tr("INVOICES SUMMARY"));
        printDottedLine(*this, paperWidth, QObject::tr("Number"), attribute(attributes, "number"));
        printSerialRange(*this, paperWidth, attributes);
        printDottedLine(*this, paperWidth, QObject::tr("Taxable"), attribute(attributes, "taxable"));
        printDottedLine(*this, paperWidth, QObject::tr("Tax"), attribute(attributes, "tax"));
        printDottedLine(*this, paperWidth, QObject::tr("TOTAL"), attribute(attributes, "total"));
    } else if (name == QLatin1String("cancelledsummary")) {
        printTitleBlock(*this, QObject::tr("CANCELLED DOC SUMMARY"));
        printDottedLine(*this, paperWidth, QObject::tr("Number"), attribute(attributes, "number"));
        // The cancelled documents' total comes as "totals", unlike the other summaries.
        printDottedLine(*this, paperWidth, QObject::tr("TOTAL"), attribute(attributes, "totals"));
        setBold(); // left on to the end of the block
        println(QString());
        printCancelledDocuments(*this, attributes);
    }
}
