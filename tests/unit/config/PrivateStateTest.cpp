// The exported configuration classes hold one private pointer each, so that their size stays
// the same whatever later versions keep: a program built against one version runs with the
// next.

#include "config/BRConfiguration.h"
#include "config/Config.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

TEST(PrivateState, TheExportedClassesHoldOnlyTheirPrivatePointers)
{
    EXPECT_EQ(sizeof(libconfig::Config), sizeof(std::unique_ptr<int>));
    EXPECT_EQ(sizeof(BRConfiguration), sizeof(libconfig::Config) + sizeof(std::unique_ptr<int>));
}

TEST(PrivateState, EachObjectKeepsItsOwnState)
{
    libconfig::Config first(QStringLiteral("/nonexistent/first.conf"), QStringLiteral("cfg"));
    libconfig::Config second(QStringLiteral("second.xml"), QStringLiteral("none"));
    EXPECT_EQ(first.fileName(), QStringLiteral("/nonexistent/first.conf"));
    EXPECT_EQ(second.fileName(), QStringLiteral("second.xml"));
    EXPECT_FALSE(first.readError().isEmpty());
    EXPECT_TRUE(second.readError().isEmpty());
    EXPECT_NE(first.document(), second.document());
}

} // namespace
