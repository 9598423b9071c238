#include "DocumentFixture.h"

namespace {

class FixtureTest : public DocumentTest
{
};

TEST_F(FixtureTest, FiscalDocumentWithoutItemsIsFramedBySectionRecords)
{
    start("printAbstractOrderFiscal");
    EXPECT_EQ(finish(), QByteArray("1020;1\r\n1030;1;1\r\n"));
}

TEST_F(FixtureTest, TraceKeepsDeviceCalls)
{
    start("printReport");
    driver().setBold();
    driver().println(2, QStringLiteral("Totale"));
    EXPECT_EQ(driver().trace, QStringList({"reset", "setBold", "println(2):Totale"}));
    EXPECT_EQ(finish(), QByteArray("  Totale  \r\n\r"));
}

} // namespace
