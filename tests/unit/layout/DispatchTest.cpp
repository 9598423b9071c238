// The dispatcher: the method element, the thirteen print methods and the output file.

#include "DriverProbe.h"

#include "config/SyncSingleton.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QTextStream>

#include <gtest/gtest.h>

#include <memory>

namespace {

// Anything reaching for the process-wide configuration reads a file of this test's own.
class HomeEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        qputenv("HOME", QFile::encodeName(m_home.path()));
        writeFile(m_home.path() + QLatin1String("/.bristel/conf/bristel.conf"),
                  "bristel : { receiptdoc : { paperWidth = 21; }; };");
    }

private:
    QTemporaryDir m_home;
};

const auto *const environment = ::testing::AddGlobalTestEnvironment(new HomeEnvironment);

const QByteArray AllProfiles = "bristel : {\n"
                               " doc : { paperWidth = 10; };\n prefiscaldoc : { paperWidth = 11; };\n"
                               " fiscaldoc : { paperWidth = 12; };\n receiptdoc : { paperWidth = 13; };\n"
                               " invoicedoc : { paperWidth = 14; };\n deliverydoc : { paperWidth = 15; };\n"
                               " reportdoc : { paperWidth = 16; };\n solddoc : { paperWidth = 17; };\n};";

class Dispatch : public ::testing::Test
{
protected:
    Dispatch()
    {
        const QString path = m_dir.filePath(QStringLiteral("bristel.conf"));
        writeFile(path, AllProfiles);
        m_configuration = std::make_unique<BRConfiguration>(path, QStringLiteral("cfg"));
        m_driver = std::make_unique<DriverProbe>(outputPath(), m_configuration.get());
    }

    QString outputPath() const { return m_dir.filePath(QStringLiteral("out.txt")); }

    bool element(const char *name, std::initializer_list<std::pair<const char *, const char *>> list = {})
    {
        const QString qName = QString::fromUtf8(name);
        return m_driver->startElement(QString(), qName, qName, makeAttributes(list));
    }
    bool method(const char *name) { return element("method", {{"name", name}}); }

    QByteArray output()
    {
        m_driver->flush();
        return readFile(outputPath());
    }

    QTemporaryDir m_dir;
    std::unique_ptr<BRConfiguration> m_configuration;
    std::unique_ptr<DriverProbe> m_driver;
};

struct Row
{
    const char *method;
    int paperWidth; // identifies the profile kind loaded
    const char *prefix;
};

const Row Table[] = {
    {"printPartialOrder", 10, "bristel.doc."},
    {"printFullOrder", 11, "bristel.prefiscaldoc."},
    {"printFullOrderReceipt", 13, "bristel.receiptdoc."},
    {"printFullOrderInvoice", 14, "bristel.invoicedoc."},
    {"printFullOrderDelivery", 15, "bristel.deliverydoc."},
    {"printFullOrderFiscal", 12, "bristel.fiscaldoc."},
    {"printAbstractOrder", 10, "bristel.doc."},
    {"printAbstractOrderReceipt", 13, "bristel.receiptdoc."},
    {"printAbstractOrderInvoice", 14, "bristel.invoicedoc."},
    {"printAbstractOrderFiscal", 12, "bristel.fiscaldoc."},
    {"printReport", 16, "bristel.reportdoc."},
    {"printSold", 17, "bristel.solddoc."},
    {"printStatementOfAccount", 16, "bristel.reportdoc."},
};

bool setsDuplicate(const QString &method)
{
    return method.endsWith(QLatin1String("Invoice"));
}

bool clearsDuplicate(const QString &method)
{
    return method.endsWith(QLatin1String("Fiscal"));
}

TEST_F(Dispatch, EveryMethodLoadsItsProfileAndReceivesLaterElements)
{
    for (const Row &row : Table) {
        m_driver->calls.clear();
        QByteArray out = captureStdout([&] {
            EXPECT_TRUE(method(row.method));
            EXPECT_TRUE(element("receipe", {{"quantity", "2"}, {"name", "Acqua"}}));
            EXPECT_TRUE(element("total"));
        });
        EXPECT_TRUE(out.isEmpty()) << row.method;
        const QString name = QString::fromLatin1(row.method);
        EXPECT_EQ(m_driver->method(), name);
        EXPECT_EQ(m_driver->prefix(), QString::fromLatin1(row.prefix)) << row.method;
        EXPECT_EQ(m_driver->profile().paperWidth, row.paperWidth) << row.method;
        // The method element itself goes to no print method.
        EXPECT_EQ(m_driver->calls, QStringList({QStringLiteral("startSection"),
                                                name + QLatin1String("(receipe quantity=2 name=Acqua)"),
                                                name + QLatin1String("(total)")}));
    }
}

TEST_F(Dispatch, DuplicateFlagFollowsTheTable)
{
    for (const Row &row : Table) {
        for (const bool before : {false, true}) {
            m_driver->setDuplicate(before);
            method(row.method);
            const QString name = QString::fromLatin1(row.method);
            const bool expected = setsDuplicate(name) ? true : clearsDuplicate(name) ? false : before;
            EXPECT_EQ(m_driver->duplicateFlag(), expected) << row.method << " from " << before;
            EXPECT_EQ(m_driver->printDuplicate(), expected);
        }
    }
}

TEST_F(Dispatch, InvoiceThenReceiptKeepsTheDuplicateFlag)
{
    EXPECT_FALSE(m_driver->printDuplicate());
    method("printFullOrderInvoice");
    EXPECT_TRUE(m_driver->printDuplicate());
    method("printFullOrderReceipt");
    EXPECT_TRUE(m_driver->printDuplicate());
    method("printAbstractOrderFiscal");
    EXPECT_FALSE(m_driver->printDuplicate());
}

TEST_F(Dispatch, ElementsBeforeTheMethodAreIgnored)
{
    EXPECT_TRUE(element("document"));
    EXPECT_TRUE(element("company", {{"name", "ACME"}}));
    EXPECT_TRUE(element("receipe"));
    EXPECT_TRUE(m_driver->calls.isEmpty());
    EXPECT_EQ(m_driver->method(), QString());
    EXPECT_TRUE(output().isEmpty());
}

TEST_F(Dispatch, UnknownMethodStopsAndForgetsTheMethod)
{
    method("printReport");
    m_driver->calls.clear();
    bool result = true;
    EXPECT_TRUE(captureStdout([&] { result = method("printReceipt"); }).isEmpty());
    EXPECT_EQ(m_driver->takeMessages(), QStringList(QStringLiteral("File Format Not Supported")));
    EXPECT_FALSE(result);
    EXPECT_EQ(m_driver->method(), QString());
    EXPECT_TRUE(m_driver->calls.isEmpty()); // no section opened, nothing loaded
    EXPECT_EQ(m_driver->prefix(), QStringLiteral("bristel.reportdoc."));
    // Later elements (were the parse to go on) reach no print method.
    EXPECT_TRUE(element("receipe"));
    EXPECT_TRUE(m_driver->calls.isEmpty());
}

TEST_F(Dispatch, MethodNamesMatchExactly)
{
    for (const char *name : {"printreport", "PrintReport", " printReport", "printReport ", "print", ""}) {
        bool result = true;
        EXPECT_TRUE(captureStdout([&] { result = method(name); }).isEmpty());
        EXPECT_EQ(m_driver->takeMessages(), QStringList(QStringLiteral("File Format Not Supported"))) << name;
        EXPECT_FALSE(result);
    }
}

TEST_F(Dispatch, MissingNameAttributeIsUnknown)
{
    bool result = true;
    EXPECT_TRUE(captureStdout([&] { result = element("method", {{"kind", "printReport"}}); }).isEmpty());
    EXPECT_EQ(m_driver->takeMessages(), QStringList(QStringLiteral("File Format Not Supported")));
    EXPECT_FALSE(result);
}

TEST_F(Dispatch, OnlyTheQualifiedNameMethodCounts)
{
    // The dispatcher looks at the qualified name only.
    EXPECT_TRUE(m_driver->startElement(QStringLiteral("urn:x"), QStringLiteral("method"),
                                       QStringLiteral("x:method"), makeAttributes({{"name", "bogus"}})));
    EXPECT_EQ(m_driver->method(), QString());
    EXPECT_TRUE(element("Method", {{"name", "bogus"}}));
    EXPECT_TRUE(m_driver->calls.isEmpty());
}

TEST_F(Dispatch, SecondMethodElementReplacesTheFirst)
{
    method("printFullOrderFiscal");
    method("printReport");
    element("line");
    EXPECT_EQ(m_driver->calls, QStringList({QStringLiteral("startSection"), QStringLiteral("startSection"),
                                            QStringLiteral("printReport(line)")}));
    EXPECT_EQ(m_driver->profile().paperWidth, 16);
    // The fiscal section was opened and nothing closed it.
    EXPECT_EQ(output(), QByteArray("1020;1\r\n"));
    m_driver->endDocument();
    EXPECT_EQ(output(), QByteArray("1020;1\r\n"));
}

TEST_F(Dispatch, TwoFiscalMethodsOpenTwoSections)
{
    method("printFullOrderFiscal");
    method("printAbstractOrderFiscal");
    m_driver->endDocument();
    EXPECT_EQ(output(), QByteArray("1020;1\r\n1020;1\r\n1030;1;1\r\n"));
}

TEST_F(Dispatch, DocumentCallbacks)
{
    EXPECT_TRUE(m_driver->startDocument());
    EXPECT_TRUE(m_driver->endElement(QString(), QStringLiteral("x"), QStringLiteral("x")));
    EXPECT_TRUE(m_driver->endDocument());
    EXPECT_EQ(m_driver->calls, QStringList({QStringLiteral("reset"), QStringLiteral("endSection")}));
    EXPECT_TRUE(output().isEmpty());
}

TEST_F(Dispatch, PrintMethodResultIsNotConsulted)
{
    method("printAbstractOrder");
    EXPECT_TRUE(element("anything"));
}

TEST_F(Dispatch, OneTimeIsTrueOnce)
{
    EXPECT_TRUE(m_driver->oneTime());
    EXPECT_FALSE(m_driver->oneTime());
    EXPECT_FALSE(m_driver->oneTime());
}

TEST_F(Dispatch, InitialState)
{
    EXPECT_EQ(m_driver->method(), QString());
    EXPECT_FALSE(m_driver->printDuplicate());
    EXPECT_EQ(m_driver->justificationWord(), QStringLiteral("left"));
    EXPECT_TRUE(m_driver->streamOpen());
}

// A driver writing straight through the base, to check the open modes.
class PlainDriver : public PrinterDriver
{
public:
    using PrinterDriver::PrinterDriver;
    int getPaperWidth() override { return 32; }
    void setBold() override {}
    void setCharSize() override {}
    void setCharSize(int) override {}
    void setCenterJustify() override {}
    void fullCut() override {}
    void generatePulse() override {}
    void startSection() override {}
    void endSection() override {}
    void print(unsigned int, const QString &text) override
    {
        if (outputStream)
            *outputStream << text;
    }
    void println(unsigned int indent, const QString &text) override { print(indent, text); }
    void println(const QString &text) override { print(0, text); }
    void printLogo() override {}
    bool printQrCode(const QrCodeElement &, QString *) override { return true; }
    bool printBarcode(const BarcodeElement &, QString *) override { return true; }
    const BRConfiguration *configurationUsed() const { return configuration; }
};

TEST(OutputFile, EmptiedOrAppended)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.txt"));
    const BRConfiguration configuration(dir.filePath(QStringLiteral("none")), QStringLiteral("xml"));
    writeFile(path, "previous\n");
    {
        PlainDriver driver(path, true, &configuration);
        driver.print(0, QStringLiteral("added"));
    }
    EXPECT_EQ(readFile(path), QByteArray("previous\nadded"));
    {
        PlainDriver driver(path, false, &configuration);
        // Emptied at construction, before anything is written.
        EXPECT_EQ(readFile(path), QByteArray());
        driver.print(0, QStringLiteral("fresh"));
    }
    EXPECT_EQ(readFile(path), QByteArray("fresh"));
}

TEST(OutputFile, BufferedTextReachesTheFileAtDestruction)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.txt"));
    const BRConfiguration configuration(dir.filePath(QStringLiteral("none")), QStringLiteral("xml"));
    auto driver = std::make_unique<CompanyPrinterDriver>(path, &configuration);
    driver->println(QString(5000, QLatin1Char('x')));
    driver.reset();
    EXPECT_EQ(readFile(path), QByteArray(5000, 'x') + "\r\n\r");
}

TEST(OutputFile, UnopenablePathGivesOneLineToTheCallerAndWritesNothing)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("missing/out.txt"));
    const BRConfiguration configuration(dir.filePath(QStringLiteral("none")), QStringLiteral("xml"));
    std::unique_ptr<DriverProbe> driver;
    EXPECT_TRUE(
        captureStdout([&] { driver = std::make_unique<DriverProbe>(path, &configuration); }).isEmpty());
    EXPECT_EQ(driver->takeMessages(),
              QStringList(QStringLiteral("PrintManager::printAbstractOrder(...): Unable To Open File")));
    EXPECT_FALSE(driver->streamOpen());
    const QByteArray out = captureStdout([&] {
        driver->startDocument();
        EXPECT_TRUE(driver->startElement(QString(), QStringLiteral("method"), QStringLiteral("method"),
                                         makeAttributes({{"name", "printFullOrderFiscal"}})));
        driver->print(2, QStringLiteral("text"));
        driver->println(2, QStringLiteral("line"));
        driver->println(QStringLiteral("line"));
        driver->printRowFiscal(QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"),
                               QStringLiteral("4"));
        driver->printRowFiscal(QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"),
                               QStringLiteral("4"), QStringLiteral("5"));
        driver->printRowFiscal(QStringLiteral("totals"),
                               makeAttributes({{"cash", "5"}, {"discountRate", "3"}}));
        driver->printSeparatorLine();
        driver->endDocument();
        driver.reset();
    });
    EXPECT_TRUE(out.isEmpty()) << out.toStdString();
    EXPECT_FALSE(QFile::exists(path));
}

TEST(OutputFile, DirectoryAsOutputPath)
{
    QTemporaryDir dir;
    const BRConfiguration configuration(dir.filePath(QStringLiteral("none")), QStringLiteral("xml"));
    std::unique_ptr<CompanyPrinterDriver> driver;
    EXPECT_TRUE(captureStdout([&] {
                    driver = std::make_unique<CompanyPrinterDriver>(dir.path(), &configuration);
                }).isEmpty());
    EXPECT_EQ(driver->takeMessages(),
              QStringList(QStringLiteral("PrintManager::printAbstractOrder(...): Unable To Open File")));
    driver->println(QStringLiteral("lost"));
    driver.reset();
    EXPECT_TRUE(QFileInfo(dir.path()).isDir());
}

TEST(OutputFile, DefaultConstructorUsesTheProcessConfiguration)
{
    QTemporaryDir dir;
    PlainDriver driver(dir.filePath(QStringLiteral("out.txt")), false);
    EXPECT_EQ(driver.configurationUsed(), SyncSingleton<BRConfiguration>::instance());
    driver.loadValues(QStringLiteral("receipt"));
    EXPECT_EQ(driver.configurationUsed()->getStrValue(QStringLiteral("bristel.receiptdoc.paperWidth")),
              QStringLiteral("21"));
}

} // namespace
