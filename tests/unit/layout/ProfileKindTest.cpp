// The table of profile kinds: each kind's keys, and the print methods whose documents are fiscal.

#include "DriverProbe.h"

#include "TestSupport.h"
#include "config/DocumentProfileKind.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

const char *const printMethods[] = {"printPartialOrder",
                                    "printFullOrder",
                                    "printFullOrderReceipt",
                                    "printFullOrderInvoice",
                                    "printFullOrderDelivery",
                                    "printFullOrderFiscal",
                                    "printAbstractOrder",
                                    "printAbstractOrderReceipt",
                                    "printAbstractOrderInvoice",
                                    "printAbstractOrderFiscal",
                                    "printReport",
                                    "printSold",
                                    "printStatementOfAccount"};

class ProfileKinds : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const QString path = m_dir.filePath(QStringLiteral("bristel.conf"));
        writeFile(path, QByteArray());
        m_configuration = std::make_unique<BRConfiguration>(path, QStringLiteral("cfg"));
        m_driver =
            std::make_unique<DriverProbe>(m_dir.filePath(QStringLiteral("out.txt")), m_configuration.get());
    }

    const DocumentProfileKind *kindByPrefix(const QString &prefix) const
    {
        for (const DocumentProfileKind &row : documentProfileKinds) {
            if (prefix == QLatin1String(row.keyPrefix))
                return &row;
        }
        return nullptr;
    }

    QTemporaryDir m_dir;
    std::unique_ptr<BRConfiguration> m_configuration;
    std::unique_ptr<DriverProbe> m_driver;
};

TEST_F(ProfileKinds, EveryKindReadsItsOwnKeys)
{
    const QByteArray out = captureStdout([&] {
        for (const DocumentProfileKind &row : documentProfileKinds) {
            const QString kind = QLatin1String(row.kind);
            EXPECT_EQ(m_driver->documentPath(kind), QLatin1String(row.keyPrefix)) << row.kind;
            EXPECT_EQ(m_driver->documentPath(kind.toUpper()), QLatin1String(row.keyPrefix)) << row.kind;
        }
    });
    EXPECT_TRUE(out.isEmpty());
}

TEST_F(ProfileKinds, AnUnknownKindTakesTheFallbacksKeys)
{
    const QByteArray out = captureStdout([&] {
        EXPECT_EQ(m_driver->documentPath(QStringLiteral("menu")),
                  QLatin1String(fallbackDocumentProfileKind().keyPrefix));
    });
    EXPECT_EQ(out, QByteArray("Error into PrinterDriver::documentPath:  menu\n"));
}

TEST_F(ProfileKinds, APrintMethodIsFiscalExactlyWhenItsProfileKindIs)
{
    QStringList fiscalMethods;
    for (const char *method : printMethods) {
        m_driver->startDocument();
        ASSERT_TRUE(m_driver->startElement(QString(), QString(), QStringLiteral("method"),
                                           makeAttributes({{"name", method}})));
        const DocumentProfileKind *kind = kindByPrefix(m_driver->prefix());
        ASSERT_TRUE(kind) << method;
        EXPECT_EQ(m_driver->fiscal(), kind->fiscal) << method;
        if (m_driver->fiscal())
            fiscalMethods << QLatin1String(method);
    }
    EXPECT_EQ(fiscalMethods, QStringList({QStringLiteral("printFullOrderFiscal"),
                                          QStringLiteral("printAbstractOrderFiscal")}));
}

TEST_F(ProfileKinds, NoDocumentIsFiscalBeforeAMethodIsChosenOrAfterAnUnknownOne)
{
    EXPECT_FALSE(m_driver->fiscal());
    ASSERT_TRUE(m_driver->startElement(QString(), QString(), QStringLiteral("method"),
                                       makeAttributes({{"name", "printFullOrderFiscal"}})));
    EXPECT_TRUE(m_driver->fiscal());
    const QByteArray out = captureStdout([&] {
        EXPECT_FALSE(m_driver->startElement(QString(), QString(), QStringLiteral("method"),
                                            makeAttributes({{"name", "printNothing"}})));
    });
    EXPECT_FALSE(m_driver->fiscal());
}

} // namespace
