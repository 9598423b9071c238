// Document profiles: key prefixes, integer widths and exact-"true" switches.

#include "DriverProbe.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class Profiles : public ::testing::Test
{
protected:
    DriverProbe &driver(const QByteArray &configurationText = QByteArray())
    {
        const QString path = m_dir.filePath(QStringLiteral("bristel.conf"));
        writeFile(path, configurationText);
        m_configuration = std::make_unique<BRConfiguration>(path, QStringLiteral("cfg"));
        m_driver =
            std::make_unique<DriverProbe>(m_dir.filePath(QStringLiteral("out.txt")), m_configuration.get());
        return *m_driver;
    }

    QTemporaryDir m_dir;
    std::unique_ptr<BRConfiguration> m_configuration;
    std::unique_ptr<DriverProbe> m_driver;
};

QList<bool> allSwitches(bool value)
{
    return QList<bool>(DriverProbe::switchNames().size(), value);
}

TEST_F(Profiles, PrefixOfEveryKind)
{
    DriverProbe &d = driver();
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
    DriverProbe &d = driver();
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
    DriverProbe &d = driver();
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
    DriverProbe &d = driver("bristel : { prefiscaldoc : { paperWidth = 44; printDate = true; }; };");
    EXPECT_TRUE(captureStdout([&] { d.loadValues(QStringLiteral("ticket")); }).isEmpty());
    EXPECT_EQ(d.takeMessages(),
              QStringList(QStringLiteral("Error into PrinterDriver::documentPath:  ticket")));
    EXPECT_EQ(d.prefix(), QStringLiteral("bristel.prefiscaldoc."));
    EXPECT_EQ(d.profile().paperWidth, 44);
    EXPECT_TRUE(d.profile().switches[6]);
}

TEST_F(Profiles, NoConfigurationGivesDefaults)
{
    DriverProbe &d = driver();
    EXPECT_TRUE(captureStdout([&] { d.loadValues(QStringLiteral("receipt")); }).isEmpty());
    const DriverProbe::Profile p = d.profile();
    EXPECT_EQ(d.prefix(), QStringLiteral("bristel.receiptdoc."));
    EXPECT_EQ(p.quantityFieldWidth, 0);
    EXPECT_EQ(p.priceFieldWidth, 0);
    EXPECT_EQ(p.totalPriceFieldWidth, 0);
    EXPECT_EQ(p.paperWidth, 32);
    EXPECT_EQ(p.paperRows, 0);
    EXPECT_EQ(p.switches, allSwitches(false));
}

TEST_F(Profiles, EveryFieldIsReadFromItsKey)
{
    DriverProbe &d = driver("bristel : { receiptdoc : {\n"
                            "  quantityFieldWidth = 3; priceFieldWidth = 7; totalPriceFieldWidth = 9;\n"
                            "  paperWidth = 42; paperRows = 66; style = bold;\n"
                            "}; };");
    d.loadValues(QStringLiteral("receipt"));
    const DriverProbe::Profile p = d.profile();
    EXPECT_EQ(p.quantityFieldWidth, 3);
    EXPECT_EQ(p.priceFieldWidth, 7);
    EXPECT_EQ(p.totalPriceFieldWidth, 9);
    EXPECT_EQ(p.paperWidth, 42);
    EXPECT_EQ(p.paperRows, 66);
}

TEST_F(Profiles, EachSwitchHasItsOwnKey)
{
    const QStringList names = DriverProbe::switchNames();
    for (int i = 0; i < names.size(); ++i) {
        DriverProbe &d = driver("bristel : { invoicedoc : { " + names[i].toLatin1() + " = true; }; };");
        d.loadValues(QStringLiteral("invoice"));
        QList<bool> expected = allSwitches(false);
        expected[i] = true;
        EXPECT_EQ(d.profile().switches, expected) << names[i].toStdString();
    }
}

TEST_F(Profiles, AllSwitchesOn)
{
    QByteArray block;
    for (const QString &name : DriverProbe::switchNames())
        block += name.toLatin1() + " = \"true\";\n";
    DriverProbe &d = driver("bristel : { solddoc : {\n" + block + "}; };");
    d.loadValues(QStringLiteral("sold"));
    EXPECT_EQ(d.profile().switches, allSwitches(true));
}

TEST_F(Profiles, OnlyExactTrueSwitchesOn)
{
    for (const char *value : {"True", "TRUE", "yes", "1", "on", "true1", "t rue"}) {
        DriverProbe &d = driver(QByteArray("bristel : { invoicedoc : { printLogo = ") + value + "; }; };");
        d.loadValues(QStringLiteral("invoice"));
        EXPECT_FALSE(d.profile().switches[2]) << value;
    }
    DriverProbe &d = driver("bristel : { invoicedoc : { printLogo = true; }; };");
    d.loadValues(QStringLiteral("invoice"));
    EXPECT_TRUE(d.profile().switches[2]);
}

TEST_F(Profiles, PaperWidthZeroOrNotANumberAsksTheBackEnd)
{
    for (const char *value : {"0", "abc", "40abc", "", "00"}) {
        DriverProbe &d = driver(QByteArray("bristel : { invoicedoc : { paperWidth = ") + value + "; }; };");
        d.loadValues(QStringLiteral("invoice"));
        EXPECT_EQ(d.profile().paperWidth, 32) << value;
    }
    DriverProbe &d = driver("bristel : { invoicedoc : { paperWidth = 48; }; };");
    d.loadValues(QStringLiteral("invoice"));
    EXPECT_EQ(d.profile().paperWidth, 48);
}

TEST_F(Profiles, PaperWidthFallbackIsAVirtualCall)
{
    DriverProbe &d = driver();
    d.paperWidthAnswer = 57;
    d.loadValues(QStringLiteral("report"));
    EXPECT_EQ(d.profile().paperWidth, 57);
}

TEST_F(Profiles, WidthsKeepTheIntegerConversion)
{
    DriverProbe &d = driver("bristel : { deliverydoc : { quantityFieldWidth = -4; priceFieldWidth = 0x10;"
                            " totalPriceFieldWidth = 012; paperWidth = -1; paperRows = 7.5; }; };");
    d.loadValues(QStringLiteral("delivery"));
    const DriverProbe::Profile p = d.profile();
    EXPECT_EQ(p.quantityFieldWidth, -4);
    EXPECT_EQ(p.priceFieldWidth, 0); // base 10 only
    EXPECT_EQ(p.totalPriceFieldWidth, 12);
    EXPECT_EQ(p.paperWidth, -1); // only 0 is replaced
    EXPECT_EQ(p.paperRows, 0);
}

TEST_F(Profiles, OrderProfileHasNoKindWord)
{
    DriverProbe &d = driver("bristel : { doc : { paperWidth = 24; printTable = true; };"
                            " orderdoc : { paperWidth = 99; }; };");
    d.loadValues(QStringLiteral("order"));
    EXPECT_EQ(d.prefix(), QStringLiteral("bristel.doc."));
    EXPECT_EQ(d.profile().paperWidth, 24);
    EXPECT_TRUE(d.profile().switches[8]);
}

TEST_F(Profiles, LoadingAnotherKindOverwritesEveryField)
{
    QByteArray block;
    for (const QString &name : DriverProbe::switchNames())
        block += name.toLatin1() + " = true; ";
    DriverProbe &d = driver("bristel : { receiptdoc : { quantityFieldWidth = 3; priceFieldWidth = 7;"
                            " totalPriceFieldWidth = 9; paperWidth = 42; paperRows = 66; " +
                            block + "}; };");
    d.loadValues(QStringLiteral("receipt"));
    EXPECT_EQ(d.profile().switches, allSwitches(true));
    d.loadValues(QStringLiteral("report"));
    const DriverProbe::Profile p = d.profile();
    EXPECT_EQ(d.prefix(), QStringLiteral("bristel.reportdoc."));
    EXPECT_EQ(p.quantityFieldWidth, 0);
    EXPECT_EQ(p.priceFieldWidth, 0);
    EXPECT_EQ(p.totalPriceFieldWidth, 0);
    EXPECT_EQ(p.paperWidth, 32);
    EXPECT_EQ(p.paperRows, 0);
    EXPECT_EQ(p.switches, allSwitches(false));
}

TEST_F(Profiles, KindsDoNotShareKeys)
{
    DriverProbe &d = driver("bristel : {\n"
                            " doc : { paperWidth = 10; };\n prefiscaldoc : { paperWidth = 11; };\n"
                            " fiscaldoc : { paperWidth = 12; };\n receiptdoc : { paperWidth = 13; };\n"
                            " invoicedoc : { paperWidth = 14; };\n deliverydoc : { paperWidth = 15; };\n"
                            " reportdoc : { paperWidth = 16; };\n solddoc : { paperWidth = 17; };\n};");
    int expected = 10;
    for (const char *kind :
         {"order", "prefiscal", "fiscal", "receipt", "invoice", "delivery", "report", "sold"}) {
        d.loadValues(QString::fromLatin1(kind));
        EXPECT_EQ(d.profile().paperWidth, expected++) << kind;
    }
}

} // namespace
