// The command-file back-end: every byte of text lines and fiscal records.

#include "config/BRConfiguration.h"
#include "devices/commandfile/CompanyPrinterDriver.h"
#include "layout/FiscalTotals.h"

#include "TestSupport.h"

#include <QTextStream>

#include <gtest/gtest.h>

#include <memory>

namespace {

class Probe : public CompanyPrinterDriver
{
public:
    using CompanyPrinterDriver::CompanyPrinterDriver;
    using CompanyPrinterDriver::printRowFiscal;
    void flush()
    {
        if (QTextStream *stream = outputStream())
            stream->flush();
    }
    QString justificationWord() const { return justification(); }
    // The fiscal rows of PrinterDriver itself, which this back-end overrides.
    void printBaseFiscalRows()
    {
        PrinterDriver::printRowFiscal(QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                                      QStringLiteral("d"));
        FiscalTotals totals;
        totals.cash = QStringLiteral("5");
        PrinterDriver::printRowFiscal(QStringLiteral("totals"), totals);
    }
};

// A subclass that changes print: println must follow it.
class Bracketing : public Probe
{
public:
    using Probe::Probe;
    void print(unsigned int indent, const QString &text) override
    {
        Probe::print(indent, QLatin1Char('[') + text + QLatin1Char(']'));
    }
};

QXmlAttributes attributes(std::initializer_list<std::pair<const char *, const char *>> list)
{
    QXmlAttributes result;
    for (const auto &[name, value] : list)
        result.append(QString::fromUtf8(name), QString(), QString::fromUtf8(name), QString::fromUtf8(value));
    return result;
}

template <class Driver = Probe> class BackendT : public ::testing::Test
{
protected:
    BackendT()
        : m_configuration(m_dir.filePath(QStringLiteral("none.conf")), QStringLiteral("xml")),
          m_driver(std::make_unique<Driver>(path(), &m_configuration))
    {
    }
    QString path() const { return m_dir.filePath(QStringLiteral("out.txt")); }
    QByteArray output()
    {
        m_driver->flush();
        return readFile(path());
    }
    void method(const char *name)
    {
        QXmlAttributes a;
        a.append(QStringLiteral("name"), QString(), QStringLiteral("name"), QString::fromLatin1(name));
        m_driver->startElement(QString(), QStringLiteral("method"), QStringLiteral("method"), a);
    }
    QByteArray totals(std::initializer_list<std::pair<const char *, const char *>> list,
                      const char *element = "totals")
    {
        const qsizetype before = output().size();
        m_driver->printRowFiscal(QString::fromLatin1(element), attributes(list));
        return output().mid(before);
    }

    QTemporaryDir m_dir;
    BRConfiguration m_configuration;
    std::unique_ptr<Driver> m_driver;
};

using Backend = BackendT<>;

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

TEST_F(Backend, PrintWritesIndentAndTextOnly)
{
    m_driver->print(3, s("abc"));
    m_driver->print(0, s("def"));
    m_driver->print(1, QString());
    EXPECT_EQ(output(), QByteArray("   abcdef "));
}

TEST_F(Backend, PrintlnRepeatsTheIndentBeforeTheLineEnd)
{
    m_driver->println(2, s("Totale"));
    EXPECT_EQ(output(), QByteArray("  Totale  \r\n\r"));
}

TEST_F(Backend, PrintlnWithoutIndent)
{
    m_driver->println(s("Totale"));
    m_driver->println(0, s("x"));
    EXPECT_EQ(output(), QByteArray("Totale\r\n\rx\r\n\r"));
}

TEST_F(Backend, PrintlnOfEmptyText)
{
    m_driver->println(QString());
    EXPECT_EQ(output(), QByteArray("\r\n\r"));
    m_driver->println(1, QString());
    EXPECT_EQ(output(), QByteArray("\r\n\r  \r\n\r"));
}

TEST_F(Backend, TextPassesUnchanged)
{
    m_driver->println(s("a;b\nc\"d\""));
    EXPECT_EQ(output(), QByteArray("a;b\nc\"d\"\r\n\r"));
}

using Subclassed = BackendT<Bracketing>;

TEST_F(Subclassed, PrintlnGoesThroughTheVirtualPrint)
{
    m_driver->println(1, s("x"));
    EXPECT_EQ(output(), QByteArray(" [x] [\r\n\r]"));
    m_driver->println(s("y"));
    EXPECT_EQ(output(), QByteArray(" [x] [\r\n\r][y][\r\n\r]"));
}

TEST_F(Backend, PaperWidthAndSilentDeviceCalls)
{
    EXPECT_EQ(m_driver->getPaperWidth(), 32);
    m_driver->setBold();
    m_driver->fullCut();
    m_driver->generatePulse();
    m_driver->printLogo();
    m_driver->initPrinter();
    m_driver->reset();
    EXPECT_EQ(output(), QByteArray());
}

TEST_F(Backend, JustificationWordOnly)
{
    EXPECT_EQ(m_driver->justificationWord(), s("left"));
    m_driver->setCenterJustify();
    EXPECT_EQ(m_driver->justificationWord(), s("center"));
    m_driver->setCharSize();
    EXPECT_EQ(m_driver->justificationWord(), s("left"));
    m_driver->setCenterJustify();
    m_driver->setCharSize(3);
    EXPECT_EQ(m_driver->justificationWord(), s("left"));
    m_driver->setCenterJustify();
    m_driver->println(s("centred"));
    EXPECT_EQ(output(), QByteArray("centred\r\n\r"));
}

TEST_F(Backend, SaleRecordFieldOrder)
{
    m_driver->printRowFiscal(s("DEP"), s("QTY"), s("DESC"), s("PRICE"));
    EXPECT_EQ(output(), QByteArray("1021;1;;DEP;1;;DESC; PRICE;QTY\r\n"));
}

TEST_F(Backend, SaleRecordWithEmptyFields)
{
    m_driver->printRowFiscal(QString(), QString(), QString(), QString());
    EXPECT_EQ(output(), QByteArray("1021;1;;;1;;; ;\r\n"));
}

TEST_F(Backend, SaleRecordFieldsAreNotEscaped)
{
    m_driver->printRowFiscal(s("1"), s("2,5"), s("Vino; rosso\r\n"), s("3,00"));
    EXPECT_EQ(output(), QByteArray("1021;1;;1;1;;Vino; rosso\r\n; 3,00;2,5\r\n"));
}

TEST_F(Backend, FiveStringSaleRecordAddsTheValueRecord)
{
    m_driver->printRowFiscal(s("2"), s("1"), s("Pizza"), s("7,50"), s("10"));
    EXPECT_EQ(output(), QByteArray("1021;1;;2;1;;Pizza; 7,50;1\r\n1025;1;1;;10\r\n"));
}

TEST_F(Backend, SectionRecordsOnlyForFiscalMethods)
{
    for (const char *name :
         {"printPartialOrder", "printFullOrder", "printFullOrderReceipt", "printFullOrderInvoice",
          "printFullOrderDelivery", "printAbstractOrder", "printAbstractOrderReceipt",
          "printAbstractOrderInvoice", "printReport", "printSold", "printStatementOfAccount"}) {
        method(name);
        m_driver->startSection();
        m_driver->endSection();
        m_driver->endDocument();
        EXPECT_EQ(output(), QByteArray()) << name;
    }
    method("printFullOrderFiscal");
    EXPECT_EQ(output(), QByteArray("1020;1\r\n"));
    m_driver->endDocument();
    EXPECT_EQ(output(), QByteArray("1020;1\r\n1030;1;1\r\n"));
    method("printAbstractOrderFiscal");
    m_driver->endSection();
    EXPECT_EQ(output(), QByteArray("1020;1\r\n1030;1;1\r\n1020;1\r\n1030;1;1\r\n"));
}

TEST_F(Backend, SectionRecordsWithoutMethod)
{
    m_driver->startSection();
    m_driver->endSection();
    EXPECT_EQ(output(), QByteArray());
}

TEST_F(Backend, TotalsCashAndCardWithDiscount)
{
    EXPECT_EQ(totals({{"cash", "0,00"}, {"creditCard", "15,00"}}),
              QByteArray("1030;4;1;Carta di Credito;15,00\r\n"));
    EXPECT_EQ(totals({{"cash", "0,00"}, {"creditCard", "15,00"}, {"discountRate", "10"}}),
              QByteArray("1028\r\n1025;1;1;;10\r\n1030;4;1;Carta di Credito;15,00\r\n"));
}

TEST_F(Backend, TotalsEachPaymentKind)
{
    EXPECT_EQ(totals({{"cash", "12,50"}}), QByteArray("1030;1;1;Contanti;12,50\r\n"));
    EXPECT_EQ(totals({{"creditCard", "3"}}), QByteArray("1030;4;1;Carta di Credito;3\r\n"));
    EXPECT_EQ(totals({{"cheque", "4.5"}}), QByteArray("1030;2;1;Assegno;4.5\r\n"));
    EXPECT_EQ(totals({{"ticket", "0,01"}}), QByteArray("1030;5;1;Ticket;0,01\r\n"));
}

TEST_F(Backend, TotalsFirstNonZeroPaymentOnly)
{
    EXPECT_EQ(totals({{"cash", "5"}, {"cheque", "5"}}), QByteArray("1030;1;1;Contanti;5\r\n"));
    EXPECT_EQ(totals({{"ticket", "1"}, {"cheque", "2"}, {"creditCard", "3"}, {"cash", "4"}}),
              QByteArray("1030;1;1;Contanti;4\r\n"));
    EXPECT_EQ(totals({{"ticket", "1"}, {"cheque", "2"}, {"creditCard", "0"}}),
              QByteArray("1030;2;1;Assegno;2\r\n"));
    EXPECT_EQ(totals({{"cash", "abc"}, {"creditCard", ""}, {"cheque", "0,0"}, {"ticket", "7"}}),
              QByteArray("1030;5;1;Ticket;7\r\n"));
}

TEST_F(Backend, TotalsCreditCardBeforeChequeWhenNoCash)
{
    // The order of the kinds, not of the attributes, decides: card, then cheque, then ticket.
    EXPECT_EQ(totals({{"cash", "0,00"}, {"cheque", "2"}, {"creditCard", "3"}}),
              QByteArray("1030;4;1;Carta di Credito;3\r\n"));
    EXPECT_EQ(totals({{"creditCard", "3"}, {"cheque", "2"}, {"ticket", "1"}}),
              QByteArray("1030;4;1;Carta di Credito;3\r\n"));
    EXPECT_EQ(totals({{"ticket", "1"}, {"cheque", "2"}}), QByteArray("1030;2;1;Assegno;2\r\n"));
}

TEST_F(Backend, TotalsNegativeAmountIsNotZero)
{
    EXPECT_EQ(totals({{"cash", "-2,00"}}), QByteArray("1030;1;1;Contanti;-2,00\r\n"));
}

TEST_F(Backend, TotalsWithoutPayment)
{
    EXPECT_EQ(totals({}), QByteArray());
    EXPECT_EQ(totals({{"cash", "0"}, {"creditCard", "0,00"}, {"cheque", "x"}, {"ticket", ""}}), QByteArray());
    EXPECT_EQ(totals({{"discountRate", "5"}}), QByteArray("1028\r\n1025;1;1;;5\r\n"));
}

TEST_F(Backend, DiscountRateIsTakenAsItStands)
{
    // A decimal comma makes the rate zero: no discount records.
    EXPECT_EQ(totals({{"discountRate", "2,5"}, {"cash", "1"}}), QByteArray("1030;1;1;Contanti;1\r\n"));
    EXPECT_EQ(totals({{"discountRate", "2.5"}, {"cash", "1"}}),
              QByteArray("1028\r\n1025;1;1;;2.5\r\n1030;1;1;Contanti;1\r\n"));
    EXPECT_EQ(totals({{"discountRate", "0"}, {"cash", "1"}}), QByteArray("1030;1;1;Contanti;1\r\n"));
    EXPECT_EQ(totals({{"discountRate", "0.00"}, {"cash", "1"}}), QByteArray("1030;1;1;Contanti;1\r\n"));
    EXPECT_EQ(totals({{"discountRate", "abc"}}), QByteArray());
    EXPECT_EQ(totals({{"discountRate", "-3"}}), QByteArray("1028\r\n1025;1;1;;-3\r\n"));
}

TEST_F(Backend, OnlyTheElementTotalsWritesRecords)
{
    for (const char *element : {"total", "Totals", "totals ", "", "receipe"})
        EXPECT_EQ(totals({{"cash", "5"}, {"discountRate", "10"}}, element), QByteArray()) << element;
}

TEST_F(Backend, AttributeNamesMatchExactly)
{
    EXPECT_EQ(totals({{"Cash", "5"}, {"creditcard", "5"}, {"discountrate", "5"}}), QByteArray());
}

TEST_F(Backend, BaseClassFiscalRowsAreEmpty)
{
    // The base's fiscal hooks write nothing; only the back-end's overrides do.
    m_driver->printBaseFiscalRows();
    EXPECT_EQ(output(), QByteArray());
}

TEST_F(Backend, ConstructorEmptiesTheFile)
{
    m_driver->println(s("old"));
    m_driver.reset();
    EXPECT_EQ(readFile(path()), QByteArray("old\r\n\r"));
    m_driver = std::make_unique<Probe>(path(), &m_configuration);
    EXPECT_EQ(readFile(path()), QByteArray());
}

TEST_F(Backend, TextIsWrittenInTheLocaleEncoding)
{
    // The tests run under a UTF-8 locale.
    m_driver->println(QString::fromUtf8("caff\xc3\xa8"));
    EXPECT_EQ(output(), QByteArray("caff\xc3\xa8\r\n\r"));
}

} // namespace
