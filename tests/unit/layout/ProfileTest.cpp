// Document profiles: key prefixes, integer widths and exact-"true" switches.

#include "RecordedDocument.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class Profiles : public ::testing::Test
{
protected:
    RecordingBackEnd &driver(const QByteArray &configurationText = QByteArray())
    {
        m_document = std::make_unique<RecordedDocument>(configurationText);
        return m_document->driver();
    }

    std::unique_ptr<RecordedDocument> m_document;
};

// The switches of a profile, in the order the configuration lists them, with their key names.
const struct
{
    const char *key;
    bool DocumentProfile::*field;
} Switches[] = {
    {"printGeometry", &DocumentProfile::printGeometry},
    {"printHeader", &DocumentProfile::printHeader},
    {"printLogo", &DocumentProfile::printLogo},
    {"printCompany", &DocumentProfile::printCompany},
    {"printDeliveryAddress", &DocumentProfile::printDeliveryAddress},
    {"printTelephone", &DocumentProfile::printTelephone},
    {"printDate", &DocumentProfile::printDate},
    {"printTime", &DocumentProfile::printTime},
    {"printTable", &DocumentProfile::printTable},
    {"printCustomer", &DocumentProfile::printCustomer},
    {"printBillingAddress", &DocumentProfile::printBillingAddress},
    {"printLicenseNumber", &DocumentProfile::printLicenseNumber},
    {"printFiscalCode", &DocumentProfile::printFiscalCode},
    {"printCredit", &DocumentProfile::printCredit},
    {"printWaiter", &DocumentProfile::printWaiter},
    {"printNote", &DocumentProfile::printNote},
    {"openCashDrawer", &DocumentProfile::openCashDrawer},
};

QList<bool> switchesOf(const DocumentProfile &profile)
{
    QList<bool> result;
    for (const auto &entry : Switches)
        result.append(profile.*(entry.field));
    return result;
}

QList<bool> allSwitches(bool value)
{
    return QList<bool>(std::size(Switches), value);
}

TEST_F(Profiles, PrefixOfEveryKind)
{
    RecordingBackEnd &d = driver();
    const QByteArray out = captureStdout([&] {
        EXPECT_EQ(d.documentPath(QStringLiteral("order")), QStringLiteral("bristel.doc."));
        EXPECT_EQ(d.documentPath(QStringLiteral("prefiscal")), QStringLiteral("bristel.prefiscaldoc."));
        EXPECT_EQ(d.documentPath(QStringLiteral("fiscal")), QStringLiteral("bristel.fiscaldoc."));
        EXPECT_EQ(d.documentPath(QStringLiteral("receipt")), QStringLiteral("bristel.receiptdoc."));
        EXPECT_EQ(d.documentPath(QStringLiteral("invoice")), QStringLiteral("bristel.invoicedoc."));
        EXPECT_EQ(d.documentPath(QStringLiteral("delivery")), QStringLiteral("bristel.deliverydoc."));
        EXPECT_EQ(d.documentPath(QStringLiteral("report")), QStringLiteral("bristel.reportdoc."));
        EXPECT_EQ(d.documentPath(QStringLiteral("sold")), QStringLiteral("bristel.solddoc."));
    });
    EXPECT_TRUE(out.isEmpty());
}

TEST_F(Profiles, KindIsComparedInLowerCase)
{
    RecordingBackEnd &d = driver();
    const QByteArray out = captureStdout([&] {
        EXPECT_EQ(d.documentPath(QStringLiteral("Order")), QStringLiteral("bristel.doc."));
        EXPECT_EQ(d.documentPath(QStringLiteral("Receipt")), QStringLiteral("bristel.receiptdoc."));
        EXPECT_EQ(d.documentPath(QStringLiteral("RECEIPT")), QStringLiteral("bristel.receiptdoc."));
        EXPECT_EQ(d.documentPath(QStringLiteral("SoLd")), QStringLiteral("bristel.solddoc."));
    });
    EXPECT_TRUE(out.isEmpty());
}

TEST_F(Profiles, UnknownKindFallsBackToPrefiscalWithOneLine)
{
    RecordingBackEnd &d = driver();
    QString prefix;
    EXPECT_TRUE(captureStdout([&] { prefix = d.documentPath(QStringLiteral("ticket")); }).isEmpty());
    EXPECT_EQ(d.takeMessages(),
              QStringList(QStringLiteral("Error into PrinterDriver::documentPath:  ticket")));
    EXPECT_EQ(prefix, QStringLiteral("bristel.prefiscaldoc."));
    // The kind is written as it was compared: lower-cased.
    EXPECT_TRUE(captureStdout([&] { prefix = d.documentPath(QStringLiteral("Ticket")); }).isEmpty());
    EXPECT_EQ(d.takeMessages(),
              QStringList(QStringLiteral("Error into PrinterDriver::documentPath:  ticket")));
    EXPECT_TRUE(captureStdout([&] { prefix = d.documentPath(QString()); }).isEmpty());
    EXPECT_EQ(d.takeMessages(), QStringList(QStringLiteral("Error into PrinterDriver::documentPath:  ")));
    EXPECT_EQ(prefix, QStringLiteral("bristel.prefiscaldoc."));
    // No partial or padded match.
    EXPECT_TRUE(captureStdout([&] { d.documentPath(QStringLiteral(" order")); }).isEmpty());
    EXPECT_EQ(d.takeMessages(),
              QStringList(QStringLiteral("Error into PrinterDriver::documentPath:   order")));
    EXPECT_TRUE(captureStdout([&] { d.documentPath(QStringLiteral("orders")); }).isEmpty());
    EXPECT_EQ(d.takeMessages(),
              QStringList(QStringLiteral("Error into PrinterDriver::documentPath:  orders")));
}

TEST_F(Profiles, UnknownKindLoadsThePrefiscalProfile)
{
    RecordingBackEnd &d = driver("bristel : { prefiscaldoc : { paperWidth = 44; printDate = true;"
                                 " printGeometry = true; topMargin = 2; }; };");
    EXPECT_TRUE(captureStdout([&] { d.loadValues(QStringLiteral("ticket")); }).isEmpty());
    EXPECT_EQ(d.takeMessages(),
              QStringList(QStringLiteral("Error into PrinterDriver::documentPath:  ticket")));
    EXPECT_EQ(d.loadedProfile().paperWidth, 44);
    EXPECT_TRUE(d.loadedProfile().printDate);
    // The keys looked up later, such as the top margin, come from the same profile.
    d.printGeometry(QXmlAttributes());
    EXPECT_EQ(d.calls, QStringList({"println:", "println:"}));
}

TEST_F(Profiles, NoConfigurationGivesDefaults)
{
    RecordingBackEnd &d = driver();
    EXPECT_TRUE(captureStdout([&] { d.loadValues(QStringLiteral("receipt")); }).isEmpty());
    const DocumentProfile &p = d.loadedProfile();
    EXPECT_EQ(p.quantityFieldWidth, 0);
    EXPECT_EQ(p.priceFieldWidth, 0);
    EXPECT_EQ(p.totalPriceFieldWidth, 0);
    EXPECT_EQ(p.paperWidth, 32);
    EXPECT_EQ(p.paperRows, 0);
    EXPECT_EQ(switchesOf(p), allSwitches(false));
}

TEST_F(Profiles, EveryFieldIsReadFromItsKey)
{
    RecordingBackEnd &d = driver("bristel : { receiptdoc : {\n"
                                 "  quantityFieldWidth = 3; priceFieldWidth = 7; totalPriceFieldWidth = 9;\n"
                                 "  paperWidth = 42; paperRows = 66; style = bold;\n"
                                 "}; };");
    d.loadValues(QStringLiteral("receipt"));
    const DocumentProfile &p = d.loadedProfile();
    EXPECT_EQ(p.quantityFieldWidth, 3);
    EXPECT_EQ(p.priceFieldWidth, 7);
    EXPECT_EQ(p.totalPriceFieldWidth, 9);
    EXPECT_EQ(p.paperWidth, 42);
    EXPECT_EQ(p.paperRows, 66);
}

TEST_F(Profiles, EachSwitchHasItsOwnKey)
{
    for (std::size_t i = 0; i < std::size(Switches); ++i) {
        RecordingBackEnd &d =
            driver(QByteArray("bristel : { invoicedoc : { ") + Switches[i].key + " = true; }; };");
        d.loadValues(QStringLiteral("invoice"));
        QList<bool> expected = allSwitches(false);
        expected[qsizetype(i)] = true;
        EXPECT_EQ(switchesOf(d.loadedProfile()), expected) << Switches[i].key;
    }
}

TEST_F(Profiles, AllSwitchesOn)
{
    QByteArray block;
    for (const auto &entry : Switches)
        block += QByteArray(entry.key) + " = \"true\";\n";
    RecordingBackEnd &d = driver("bristel : { solddoc : {\n" + block + "}; };");
    d.loadValues(QStringLiteral("sold"));
    EXPECT_EQ(switchesOf(d.loadedProfile()), allSwitches(true));
}

TEST_F(Profiles, OnlyExactTrueSwitchesOn)
{
    for (const char *value : {"True", "TRUE", "yes", "1", "on", "true1", "t rue"}) {
        RecordingBackEnd &d =
            driver(QByteArray("bristel : { invoicedoc : { printLogo = ") + value + "; }; };");
        d.loadValues(QStringLiteral("invoice"));
        EXPECT_FALSE(d.loadedProfile().printLogo) << value;
    }
    RecordingBackEnd &d = driver("bristel : { invoicedoc : { printLogo = true; }; };");
    d.loadValues(QStringLiteral("invoice"));
    EXPECT_TRUE(d.loadedProfile().printLogo);
}

TEST_F(Profiles, PaperWidthZeroOrNotANumberAsksTheBackEnd)
{
    for (const char *value : {"0", "abc", "40abc", "", "00"}) {
        RecordingBackEnd &d =
            driver(QByteArray("bristel : { invoicedoc : { paperWidth = ") + value + "; }; };");
        d.loadValues(QStringLiteral("invoice"));
        EXPECT_EQ(d.loadedProfile().paperWidth, 32) << value;
    }
    RecordingBackEnd &d = driver("bristel : { invoicedoc : { paperWidth = 48; }; };");
    d.loadValues(QStringLiteral("invoice"));
    EXPECT_EQ(d.loadedProfile().paperWidth, 48);
}

TEST_F(Profiles, PaperWidthFallbackIsAVirtualCall)
{
    RecordingBackEnd &d = driver();
    d.paperWidthAnswer = 57;
    d.loadValues(QStringLiteral("report"));
    EXPECT_EQ(d.loadedProfile().paperWidth, 57);
}

TEST_F(Profiles, WidthsKeepTheIntegerConversion)
{
    RecordingBackEnd &d =
        driver("bristel : { deliverydoc : { quantityFieldWidth = -4; priceFieldWidth = 0x10;"
               " totalPriceFieldWidth = 012; paperWidth = -1; paperRows = 7.5; }; };");
    d.loadValues(QStringLiteral("delivery"));
    const DocumentProfile &p = d.loadedProfile();
    EXPECT_EQ(p.quantityFieldWidth, -4);
    EXPECT_EQ(p.priceFieldWidth, 0); // base 10 only
    EXPECT_EQ(p.totalPriceFieldWidth, 12);
    EXPECT_EQ(p.paperWidth, -1); // only 0 is replaced
    EXPECT_EQ(p.paperRows, 0);
}

TEST_F(Profiles, OrderProfileHasNoKindWord)
{
    RecordingBackEnd &d = driver("bristel : { doc : { paperWidth = 24; printTable = true; };"
                                 " orderdoc : { paperWidth = 99; }; };");
    d.loadValues(QStringLiteral("order"));
    EXPECT_EQ(d.loadedProfile().paperWidth, 24);
    EXPECT_TRUE(d.loadedProfile().printTable);
}

TEST_F(Profiles, LoadingAnotherKindOverwritesEveryField)
{
    QByteArray block;
    for (const auto &entry : Switches)
        block += QByteArray(entry.key) + " = true; ";
    RecordingBackEnd &d = driver("bristel : { receiptdoc : { quantityFieldWidth = 3; priceFieldWidth = 7;"
                                 " totalPriceFieldWidth = 9; paperWidth = 42; paperRows = 66; " +
                                 block + "}; };");
    d.loadValues(QStringLiteral("receipt"));
    EXPECT_EQ(switchesOf(d.loadedProfile()), allSwitches(true));
    d.loadValues(QStringLiteral("report"));
    const DocumentProfile &p = d.loadedProfile();
    EXPECT_EQ(p.quantityFieldWidth, 0);
    EXPECT_EQ(p.priceFieldWidth, 0);
    EXPECT_EQ(p.totalPriceFieldWidth, 0);
    EXPECT_EQ(p.paperWidth, 32);
    EXPECT_EQ(p.paperRows, 0);
    EXPECT_EQ(switchesOf(p), allSwitches(false));
}

TEST_F(Profiles, KindsDoNotShareKeys)
{
    RecordingBackEnd &d = driver("bristel : {\n"
                                 " doc : { paperWidth = 10; };\n prefiscaldoc : { paperWidth = 11; };\n"
                                 " fiscaldoc : { paperWidth = 12; };\n receiptdoc : { paperWidth = 13; };\n"
                                 " invoicedoc : { paperWidth = 14; };\n deliverydoc : { paperWidth = 15; };\n"
                                 " reportdoc : { paperWidth = 16; };\n solddoc : { paperWidth = 17; };\n};");
    int expected = 10;
    for (const char *kind :
         {"order", "prefiscal", "fiscal", "receipt", "invoice", "delivery", "report", "sold"}) {
        d.loadValues(QString::fromLatin1(kind));
        EXPECT_EQ(d.loadedProfile().paperWidth, expected++) << kind;
    }
}

} // namespace
