// Telling a bristel job from a receipt printer's bytes by the start of the file.

#include "job/JobDetection.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace {

TEST(JobDetection, AJobIsXmlNamingItsMethodNearTheTop)
{
    EXPECT_TRUE(isBristelJob("<document>\n<method name=\"printFullOrderReceipt\"/>"));
    EXPECT_TRUE(isBristelJob("<?xml version=\"1.0\"?>\n<job><method name=\"printSold\"></method></job>"));
    EXPECT_TRUE(isBristelJob("\xef\xbb\xbf\r\n\t <ticket><method\nname=\"printPartialOrder\"/>"));
    EXPECT_TRUE(isBristelJob("<a><method>"));
}

TEST(JobDetection, PrinterBytesStartingWithALessThanSignAreNoJob)
{
    EXPECT_FALSE(isBristelJob("<<< TAVOLO 12 >>>\n\x1b"
                              "E\x01"
                              "2 x Pizza\n"));
    EXPECT_FALSE(isBristelJob("<b>Totale</b>\n"));
    // A longer name is another element.
    EXPECT_FALSE(isBristelJob("<document><methods/></document>"));
    EXPECT_FALSE(isBristelJob("\x1b@<document><method name=\"printSold\"/>"));
    EXPECT_FALSE(isBristelJob("Menu <method>\n"));
    EXPECT_FALSE(isBristelJob(""));
    EXPECT_FALSE(isBristelJob("   \n"));
}

TEST(JobDetection, TheMethodMustStartWithinTheFirst4096Bytes)
{
    const QByteArray head = "<document>" + QByteArray(4096 - 10 - 7, ' ');
    EXPECT_TRUE(isBristelJob(head + "<method name=\"printSold\"/>"));
    EXPECT_FALSE(isBristelJob(head + " <method name=\"printSold\"/>"));
}

} // namespace
