// A failed comparison of two strings shows their text, with the line-end bytes visible.

#include "TestSupport.h"

#include <gtest/gtest.h>

TEST(FailureMessage, ShowsAStringAsQuotedText)
{
    EXPECT_EQ(::testing::PrintToString(QStringLiteral("Totale: 9,50 \u20ac\r\n\r")),
              std::string("\"Totale: 9,50 \xe2\x82\xac\\r\\n\\r\""));
    EXPECT_EQ(::testing::PrintToString(QString::fromUtf8("a\tb\\c\"d\x01")),
              std::string("\"a\\tb\\\\c\\\"d\\x01\""));
}

TEST(FailureMessage, ShowsBytesAsQuotedTextWithHighBytesEscaped)
{
    EXPECT_EQ(::testing::PrintToString(QByteArray("1020;1\r\n\xd5", 9)),
              std::string("\"1020;1\\r\\n\\xd5\""));
    EXPECT_EQ(::testing::PrintToString(QByteArray("\0\x7f", 2)), std::string("\"\\x00\\x7f\""));
}

TEST(FailureMessage, AppearsInTheAssertionText)
{
    const ::testing::AssertionResult result = ::testing::internal::EqHelper::Compare(
        "a", "b", QStringLiteral("Coperto\r\n"), QStringLiteral("Coperti\r\n"));
    ASSERT_FALSE(result);
    EXPECT_NE(std::string(result.message()).find("\"Coperto\\r\\n\""), std::string::npos) << result.message();
}
