// Which table, column and sequence names the binding family of DatabaseManager accepts.
#include "support/DatabaseManager.h"

#include <gtest/gtest.h>

namespace {

TEST(PlainIdentifier, LettersDigitsAndUnderscoresNotStartingWithADigit)
{
    for (const char *name : {"t", "orders", "Orders", "_x", "t_1", "T2_b_", "x9"})
        EXPECT_TRUE(DatabaseManager::isPlainIdentifier(QString::fromLatin1(name))) << name;
    EXPECT_TRUE(DatabaseManager::isPlainIdentifier(QString(63, QLatin1Char('a'))));
}

TEST(PlainIdentifier, EverythingElseIsRefused)
{
    for (const char *name :
         {"", "1t", "t 1", "t;", "t-1", "public.t", "\"t\"", "t'", "t\n", "t)", "t--", "*"})
        EXPECT_FALSE(DatabaseManager::isPlainIdentifier(QString::fromLatin1(name))) << name;
    EXPECT_FALSE(DatabaseManager::isPlainIdentifier(QString(64, QLatin1Char('a'))));
    EXPECT_FALSE(DatabaseManager::isPlainIdentifier(QStringLiteral("caf\u00e9")));
    EXPECT_FALSE(DatabaseManager::isPlainIdentifier(QStringLiteral("t\u0000")));
    // Letters that fold to ASCII in some locales are not ASCII letters.
    EXPECT_FALSE(DatabaseManager::isPlainIdentifier(QStringLiteral("\u0130d")));
    EXPECT_FALSE(DatabaseManager::isPlainIdentifier(QStringLiteral("\uff54")));
}

TEST(PlainIdentifier, ARefusedNameRunsNothingEvenWithoutAConnection)
{
    DatabaseManager silent(nullptr);
    EXPECT_EQ(silent.fieldValue(QStringLiteral("t;"), QStringLiteral("f"), 1), QString());
    EXPECT_EQ(silent.deleteRow(QStringLiteral("t;"), 1), -1);
    EXPECT_FALSE(silent.rowExists(QStringLiteral("t;"), 1));
    EXPECT_EQ(silent.countRows(QStringLiteral("t;")), -1);
    EXPECT_EQ(silent.maxId(QStringLiteral("t;")), QStringLiteral("Error"));
    EXPECT_EQ(silent.insertRow(QStringLiteral("t;")), QStringLiteral("Error"));
    EXPECT_EQ(silent.addToSequence(QStringLiteral("s;"), 1), QString());
    EXPECT_FALSE(silent.subtractFromSequenceIfEnough(QStringLiteral("s;"), 1));
}

} // namespace
