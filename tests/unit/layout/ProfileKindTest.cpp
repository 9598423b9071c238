// The table of profile kinds: each kind's keys, and the print methods whose documents are fiscal.

#include "RecordedDocument.h"
#include "RecordingBackEnd.h"

#include "DocumentMethods.h"
#include "TestSupport.h"
#include "config/BRConfiguration.h"
#include "config/DocumentProfileKind.h"

#include <gtest/gtest.h>

#include <iterator>
#include <memory>

namespace {

class ProfileKinds : public ::testing::Test
{
protected:
    // Each kind's profile names a paper width of its own (20 + its row), so the profile a
    // print method loads tells its kind.
    void SetUp() override
    {
        QByteArray text = "bristel : { ";
        for (int row = 0; row < int(std::size(documentProfileKinds)); ++row) {
            const QByteArray block = QByteArray(documentProfileKinds[row].keyPrefix).split('.').at(1);
            text += block + " : { paperWidth = " + QByteArray::number(20 + row) + "; }; ";
        }
        text += "};";
        const QString path = m_dir.filePath(QStringLiteral("bristel.conf"));
        writeFile(path, text);
        m_configuration = std::make_unique<BRConfiguration>(path, QStringLiteral("cfg"));
        m_driver = std::make_unique<RecordingBackEnd>(m_dir.filePath(QStringLiteral("out.txt")), false,
                                                      m_configuration.get());
    }

    const DocumentProfileKind *loadedKind() const
    {
        const int row = m_driver->loadedProfile().paperWidth - 20;
        return row >= 0 && row < int(std::size(documentProfileKinds)) ? &documentProfileKinds[row] : nullptr;
    }

    QTemporaryDir m_dir;
    std::unique_ptr<BRConfiguration> m_configuration;
    std::unique_ptr<RecordingBackEnd> m_driver;
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
    // The driver keeps the line for the program, which prints it.
    EXPECT_TRUE(out.isEmpty());
    EXPECT_EQ(m_driver->takeMessages(),
              QStringList(QStringLiteral("Error into PrinterDriver::documentPath:  menu")));
}

TEST_F(ProfileKinds, APrintMethodIsFiscalExactlyWhenItsProfileKindIs)
{
    QStringList fiscalMethods;
    for (const char *method : testsupport::documentMethods) {
        m_driver->startDocument();
        ASSERT_TRUE(m_driver->startElement(QString(), QString(), QStringLiteral("method"),
                                           makeAttributes({{"name", method}})));
        const DocumentProfileKind *kind = loadedKind();
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
    EXPECT_FALSE(m_driver->startElement(QString(), QString(), QStringLiteral("method"),
                                        makeAttributes({{"name", "printNothing"}})));
    EXPECT_FALSE(m_driver->fiscal());
    EXPECT_EQ(m_driver->takeMessages(), QStringList(QStringLiteral("File Format Not Supported")));
}

} // namespace
