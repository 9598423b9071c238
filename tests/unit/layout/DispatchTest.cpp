// The dispatcher: the method element, the thirteen print methods and the output file.

#include "RecordedDocument.h"

#include "config/SyncSingleton.h"
#include "devices/commandfile/CompanyPrinterDriver.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>

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

// Each profile kind has a paper width of its own, which tells which kind was loaded.
const QByteArray AllProfiles = "bristel : {\n"
                               " doc : { paperWidth = 10; };\n prefiscaldoc : { paperWidth = 11; };\n"
                               " fiscaldoc : { paperWidth = 12; };\n receiptdoc : { paperWidth = 13; };\n"
                               " invoicedoc : { paperWidth = 14; };\n deliverydoc : { paperWidth = 15; };\n"
                               " reportdoc : { paperWidth = 16; };\n solddoc : { paperWidth = 17; };\n};";

// A method, the paper width of the profile it loads, and an element of its own vocabulary
// with what it asks of the back-end: the print method that receives the element shows.
struct Row
{
    const char *method;
    int paperWidth;
    const char *element;
    QList<std::pair<const char *, const char *>> attributes;
    QStringList calls;
};

const Row Table[] = {
    {"printPartialOrder",
     10,
     "otherreceipe",
     {{"number", "2"}, {"name", "Acqua"}},
     {"setCharSize(1)", "println:2 Acqua  "}},
    {"printFullOrder",
     11,
     "variant",
     {{"quantity", "1"}, {"number", "2"}, {"name", "Olio"}},
     {"println:2 + Olio...."}},
    {"printFullOrderReceipt",
     13,
     "notPaid",
     {{"price", "5"}},
     {"println:", "println:    Amount not paid: 5"}},
    {"printFullOrderInvoice",
     14,
     "totals",
     {{"total", "11"}},
     {"setBold", "println:", "println: Taxable......", "println: TaxRate......", "println: Tax..........",
      "println: TOTAL........11", "setCharSize"}},
    {"printFullOrderDelivery",
     15,
     "otherreceipe",
     {{"number", "2"}, {"name", "Acqua"}},
     {"setCharSize(1)", "println:2 Acqua       "}},
    {"printFullOrderFiscal",
     12,
     "receipe",
     {{"department", "1"}, {"number", "3"}, {"name", "Acqua"}, {"price", "1.50"}},
     {"sale:1|3|Acqua|1.50"}},
    {"printAbstractOrder", 10, "receipe", {{"number", "1"}, {"name", "Acqua"}}, {}},
    {"printAbstractOrderReceipt",
     13,
     "notPaid",
     {{"price", "5"}},
     {"println:", "println:   Corrispettivo non pagato: 5"}},
    {"printAbstractOrderInvoice",
     14,
     "receipe_type",
     {{"number", "3"}, {"name", "Primi"}, {"price", "24"}},
     {"setBold", "println:Num Description  Price", "setCharSize", "println:3 x Primi......24"}},
    {"printAbstractOrderFiscal",
     12,
     "receipe_type",
     {{"department", "2"}, {"name", "Primi"}, {"price", "24"}},
     {"sale:2|1|Primi|24"}},
    {"printReport",
     16,
     "date",
     {{"begindate", "a"}, {"enddate", "b"}},
     {"setBold", "setCenterJustify", "println:", "println:SUMMARIES", "println:", "setCharSize",
      "print(0):BeginDate: ", "println:a", "print(0):EndDate: ", "println:b"}},
    {"printSold",
     17,
     "receipe",
     {{"quantity", "3"}, {"description", "Pizza"}, {"amount", "15"}},
     {"setBold", "println:3 x Pizza.........15", "setCharSize"}},
    {"printStatementOfAccount",
     16,
     "statement_list",
     {},
     {"setBold", "println:Date           DescriptionAmount", "reset"}},
};

static_assert(std::size(Table) == 13);

bool isFiscal(const QString &method)
{
    return method.endsWith(QLatin1String("Fiscal"));
}

bool setsDuplicate(const QString &method)
{
    return method.endsWith(QLatin1String("Invoice"));
}

TEST(Dispatch, EveryMethodLoadsItsProfileAndReceivesLaterElements)
{
    for (const Row &row : Table) {
        RecordedDocument document(AllProfiles);
        const QString name = QString::fromLatin1(row.method);
        const QByteArray out = captureStdout([&] {
            EXPECT_TRUE(document.method(row.method));
            // The method element itself goes to no print method: it only opens the section.
            EXPECT_EQ(document.takeCalls(),
                      QStringList({isFiscal(name) ? "startSection fiscal" : "startSection"}))
                << row.method;
            QXmlAttributes attributes;
            for (const auto &[key, value] : row.attributes)
                attributes.append(QString::fromLatin1(key), QString(), QString::fromLatin1(key),
                                  QString::fromLatin1(value));
            const QString element = QString::fromLatin1(row.element);
            EXPECT_TRUE(document.driver().startElement(QString(), element, element, attributes));
        });
        EXPECT_EQ(out, QByteArray()) << row.method;
        EXPECT_EQ(document.driver().profileAtStart.paperWidth, row.paperWidth) << row.method;
        EXPECT_EQ(document.driver().fiscal(), isFiscal(name)) << row.method;
        EXPECT_EQ(document.takeCalls(), row.calls) << row.method;
    }
}

TEST(Dispatch, DuplicateFlagFollowsTheTable)
{
    for (const Row &row : Table) {
        const QString name = QString::fromLatin1(row.method);
        // From a driver whose flag is off, and from one whose invoice turned it on.
        RecordedDocument fresh(AllProfiles);
        fresh.method(row.method);
        EXPECT_EQ(fresh.driver().printDuplicate(), setsDuplicate(name)) << row.method;
        RecordedDocument afterInvoice(AllProfiles);
        afterInvoice.method("printFullOrderInvoice");
        ASSERT_TRUE(afterInvoice.driver().printDuplicate());
        afterInvoice.method(row.method);
        EXPECT_EQ(afterInvoice.driver().printDuplicate(), !isFiscal(name)) << row.method;
    }
}

class DispatchTest : public ::testing::Test
{
protected:
    bool element(const char *name, AttributeList list = {}) { return m_document.element(name, list); }
    bool method(const char *name) { return m_document.method(name); }

    RecordedDocument m_document{AllProfiles};
    RecordingBackEnd &m_driver = m_document.driver();
};

TEST_F(DispatchTest, InvoiceThenReceiptKeepsTheDuplicateFlag)
{
    EXPECT_FALSE(m_driver.printDuplicate());
    method("printFullOrderInvoice");
    EXPECT_TRUE(m_driver.printDuplicate());
    method("printFullOrderReceipt");
    EXPECT_TRUE(m_driver.printDuplicate());
    method("printAbstractOrderFiscal");
    EXPECT_FALSE(m_driver.printDuplicate());
}

TEST_F(DispatchTest, ElementsBeforeTheMethodAreIgnored)
{
    EXPECT_TRUE(element("document"));
    EXPECT_TRUE(element("company", {{"name", "ACME"}}));
    EXPECT_TRUE(element("headers", {{"l1", "Welcome"}}));
    EXPECT_TRUE(element("receipe", {{"number", "1"}, {"name", "Acqua"}}));
    EXPECT_TRUE(m_driver.calls.isEmpty());
    EXPECT_FALSE(m_driver.fiscal());
}

TEST_F(DispatchTest, UnknownMethodStopsAndForgetsTheMethod)
{
    method("printFullOrderFiscal");
    method("printReport");
    ASSERT_EQ(m_document.takeCalls(), QStringList({"startSection fiscal", "startSection"}));
    bool result = true;
    EXPECT_TRUE(captureStdout([&] { result = method("printReceipt"); }).isEmpty());
    EXPECT_EQ(m_driver.takeMessages(), QStringList(QStringLiteral("File Format Not Supported")));
    EXPECT_FALSE(result);
    EXPECT_TRUE(m_driver.calls.isEmpty()); // no section opened
    // No profile is loaded either: the report's stays.
    EXPECT_EQ(m_driver.loadedProfile().paperWidth, 16);
    // Later elements (were the parse to go on) reach no print method.
    EXPECT_TRUE(element("date", {{"begindate", "a"}}));
    EXPECT_TRUE(element("headers"));
    EXPECT_TRUE(m_driver.calls.isEmpty());

    // The fiscal method is forgotten as well.
    method("printFullOrderFiscal");
    captureStdout([&] { method("printReceipt"); });
    EXPECT_FALSE(m_driver.fiscal());
}

TEST_F(DispatchTest, MethodNamesMatchExactly)
{
    for (const char *name : {"printreport", "PrintReport", " printReport", "printReport ", "print", ""}) {
        bool result = true;
        EXPECT_TRUE(captureStdout([&] { result = method(name); }).isEmpty());
        EXPECT_EQ(m_driver.takeMessages(), QStringList(QStringLiteral("File Format Not Supported"))) << name;
        EXPECT_FALSE(result);
    }
    EXPECT_TRUE(m_driver.calls.isEmpty());
}

TEST_F(DispatchTest, MissingNameAttributeIsUnknown)
{
    bool result = true;
    EXPECT_TRUE(captureStdout([&] { result = element("method", {{"kind", "printReport"}}); }).isEmpty());
    EXPECT_EQ(m_driver.takeMessages(), QStringList(QStringLiteral("File Format Not Supported")));
    EXPECT_FALSE(result);
}

TEST_F(DispatchTest, OnlyTheQualifiedNameMethodCounts)
{
    // The dispatcher looks at the qualified name only.
    const QByteArray out = captureStdout([&] {
        EXPECT_TRUE(m_driver.startElement(QStringLiteral("urn:x"), QStringLiteral("method"),
                                          QStringLiteral("x:method"),
                                          makeAttributes({{"name", "printReport"}})));
        EXPECT_TRUE(element("Method", {{"name", "printReport"}}));
    });
    EXPECT_TRUE(out.isEmpty());
    EXPECT_TRUE(m_driver.calls.isEmpty());
}

TEST_F(DispatchTest, SecondMethodElementReplacesTheFirst)
{
    method("printFullOrderFiscal");
    method("printReport");
    element("receipe", {{"department", "1"}, {"name", "Acqua"}});
    element("date", {{"begindate", "a"}});
    const QStringList calls = m_document.takeCalls();
    ASSERT_GE(calls.size(), 3);
    EXPECT_EQ(calls.mid(0, 3), QStringList({"startSection fiscal", "startSection", "setBold"}));
    EXPECT_FALSE(calls.join(QLatin1Char('\n')).contains(QLatin1String("sale:")));
    EXPECT_EQ(m_driver.loadedProfile().paperWidth, 16);
    EXPECT_FALSE(m_driver.fiscal());
}

TEST_F(DispatchTest, DocumentCallbacks)
{
    EXPECT_TRUE(m_driver.startDocument());
    EXPECT_TRUE(m_driver.endElement(QString(), QStringLiteral("x"), QStringLiteral("x")));
    EXPECT_TRUE(m_driver.endDocument());
    EXPECT_EQ(m_driver.calls, QStringList({"reset", "endSection"}));
}

TEST_F(DispatchTest, PrintMethodResultIsNotConsulted)
{
    // The summary order prints nothing at all, and the parse goes on all the same.
    method("printAbstractOrder");
    EXPECT_TRUE(element("anything"));
    EXPECT_TRUE(element("receipe", {{"number", "1"}}));
    EXPECT_EQ(m_driver.calls, QStringList({"startSection"}));
}

TEST_F(DispatchTest, OneTimeIsTrueOnce)
{
    EXPECT_TRUE(m_driver.oneTime());
    EXPECT_FALSE(m_driver.oneTime());
    EXPECT_FALSE(m_driver.oneTime());
}

TEST_F(DispatchTest, InitialState)
{
    EXPECT_FALSE(m_driver.fiscal());
    EXPECT_FALSE(m_driver.printDuplicate());
    EXPECT_TRUE(m_driver.elementError().isEmpty());
    EXPECT_FALSE(m_driver.stoppedOnUnknownMethod());
    // This back-end writes its own way: the driver made no stream for it.
    EXPECT_FALSE(m_driver.hasOutputStream());
}

// The command-file back-end on a file of its own: the bytes the dispatch leads to.
QByteArray commandFile(const std::function<void(CompanyPrinterDriver &driver)> &document)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, AllProfiles);
    const BRConfiguration configuration(path, QStringLiteral("cfg"));
    const QString output = dir.filePath(QStringLiteral("out.txt"));
    {
        CompanyPrinterDriver driver(output, &configuration);
        EXPECT_EQ(driver.justification(), QStringLiteral("left"));
        document(driver);
    }
    return readFile(output);
}

bool method(PrinterDriver &driver, const char *name)
{
    return driver.startElement(QString(), QStringLiteral("method"), QStringLiteral("method"),
                               makeAttributes({{"name", name}}));
}

TEST(DispatchBytes, SecondMethodLeavesTheFiscalSectionOpen)
{
    // The fiscal section was opened and nothing closed it: the report is no fiscal document.
    EXPECT_EQ(commandFile([](CompanyPrinterDriver &driver) {
                  method(driver, "printFullOrderFiscal");
                  method(driver, "printReport");
                  driver.endDocument();
              }),
              QByteArray("1020;1\r\n"));
}

TEST(DispatchBytes, TwoFiscalMethodsOpenTwoSections)
{
    EXPECT_EQ(commandFile([](CompanyPrinterDriver &driver) {
                  method(driver, "printFullOrderFiscal");
                  method(driver, "printAbstractOrderFiscal");
                  driver.endDocument();
              }),
              QByteArray("1020;1\r\n1020;1\r\n1030;1;1\r\n"));
}

TEST(DispatchBytes, ElementsBeforeTheMethodWriteNothing)
{
    EXPECT_EQ(commandFile([](CompanyPrinterDriver &driver) {
                  driver.startDocument();
                  for (const char *name : {"document", "company", "receipt", "receipe"})
                      driver.startElement(QString(), QString::fromLatin1(name), QString::fromLatin1(name),
                                          makeAttributes({{"serialnumber", "1"}, {"name", "ACME"}}));
              }),
              QByteArray());
}

TEST(DispatchBytes, DocumentCallbacksWriteNothingOutsideAFiscalDocument)
{
    EXPECT_EQ(commandFile([](CompanyPrinterDriver &driver) {
                  EXPECT_TRUE(driver.startDocument());
                  EXPECT_TRUE(driver.endDocument());
              }),
              QByteArray());
}

TEST(OutputFile, EmptiedOrAppended)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.txt"));
    const BRConfiguration configuration(dir.filePath(QStringLiteral("none")), QStringLiteral("xml"));
    writeFile(path, "previous\n");
    {
        RecordingBackEnd driver(path, true, &configuration);
        method(driver, "printSold");
        driver.startElement(QString(), QStringLiteral("logo"), QStringLiteral("logo"), QXmlAttributes());
        driver.startElement(QString(), QStringLiteral("receipt"), QStringLiteral("receipt"),
                            makeAttributes({{"serialnumber", "7"}}));
    }
    const QByteArray added = "Serial Number: 7\n" + QByteArray(32, '=') + '\n';
    EXPECT_EQ(readFile(path), "previous\n" + added);
    {
        RecordingBackEnd driver(path, false, &configuration);
        // Emptied at construction, before anything is written.
        EXPECT_EQ(readFile(path), QByteArray());
        EXPECT_TRUE(driver.hasOutputStream());
        method(driver, "printSold");
        driver.startElement(QString(), QStringLiteral("receipt"), QStringLiteral("receipt"),
                            makeAttributes({{"serialnumber", "7"}}));
    }
    EXPECT_EQ(readFile(path), added);
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
    std::unique_ptr<CompanyPrinterDriver> driver;
    EXPECT_TRUE(captureStdout([&] {
                    driver = std::make_unique<CompanyPrinterDriver>(path, &configuration);
                }).isEmpty());
    EXPECT_EQ(driver->takeMessages(),
              QStringList(QStringLiteral("PrintManager::printAbstractOrder(...): Unable To Open File")));
    const QByteArray out = captureStdout([&] {
        driver->startDocument();
        EXPECT_TRUE(method(*driver, "printFullOrderFiscal"));
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

TEST(OutputFile, RecordingBackEndWithoutAFileStillRecords)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("missing/out.txt"));
    const BRConfiguration configuration(dir.filePath(QStringLiteral("none")), QStringLiteral("xml"));
    std::unique_ptr<RecordingBackEnd> driver;
    EXPECT_TRUE(captureStdout([&] {
                    driver = std::make_unique<RecordingBackEnd>(path, false, &configuration);
                }).isEmpty());
    EXPECT_EQ(driver->takeMessages(),
              QStringList(QStringLiteral("PrintManager::printAbstractOrder(...): Unable To Open File")));
    EXPECT_FALSE(driver->hasOutputStream());
    method(*driver, "printSold");
    EXPECT_EQ(driver->calls, QStringList({"startSection"}));
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
    // The lines go nowhere: nothing is reported, and nothing lands in or beside the directory.
    const QByteArray out = captureStdout([&] {
        driver->println(QStringLiteral("lost"));
        driver.reset();
    });
    EXPECT_TRUE(out.isEmpty());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList());
}

TEST(OutputFile, DefaultConstructorUsesTheProcessConfiguration)
{
    QTemporaryDir dir;
    RecordingBackEnd driver(dir.filePath(QStringLiteral("out.txt")), false);
    driver.loadValues(QStringLiteral("receipt"));
    // 21 is the width in the home folder's configuration; nothing else names it.
    EXPECT_EQ(driver.loadedProfile().paperWidth, 21);
    EXPECT_EQ(SyncSingleton<BRConfiguration>::instance()->getStrValue(
                  QStringLiteral("bristel.receiptdoc.paperWidth")),
              QStringLiteral("21"));
}

} // namespace
