#include "support/HLibrary.h"

#include "SupportHome.h"
#include "TestSupport.h"
#include "config/BRConfiguration.h"
#include "config/DocumentProfileKind.h"
#include "config/SyncSingleton.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace {

// The tests below read the prepared configuration: each first checks that the process's home
// folder is the prepared one and holds its configuration file.
class HLibraryTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const QString home = supportHome();
        ASSERT_FALSE(home.isEmpty()) << "the test home folder could not be prepared";
        ASSERT_EQ(QDir::homePath(), home);
        ASSERT_TRUE(QFile::exists(home + QStringLiteral("/.bristel/conf/bristel.conf")));
    }
};

TEST(TruncateDecimal, RoundsHalfUpOnTheThirdDecimal)
{
    EXPECT_EQ(HLibrary::truncateDecimal(2.345), QStringLiteral("2.35"));
    EXPECT_EQ(HLibrary::truncateDecimal(2.3449), QStringLiteral("2.34"));
    EXPECT_EQ(HLibrary::truncateDecimal(2.3451), QStringLiteral("2.35"));
    EXPECT_EQ(HLibrary::truncateDecimal(9.999), QStringLiteral("10.00"));
}

TEST(TruncateDecimal, DropsTheFourthAndLaterDecimalsFirst)
{
    // 2.344999: the thousandths digit is 4 once later decimals are gone, so no rounding up.
    EXPECT_EQ(HLibrary::truncateDecimal(2.344999), QStringLiteral("2.34"));
}

TEST(TruncateDecimal, PadsToTwoDecimals)
{
    EXPECT_EQ(HLibrary::truncateDecimal(3), QStringLiteral("3.00"));
    EXPECT_EQ(HLibrary::truncateDecimal(0), QStringLiteral("0.00"));
    EXPECT_EQ(HLibrary::truncateDecimal(0.1), QStringLiteral("0.10"));
    EXPECT_EQ(HLibrary::truncateDecimal(12.5), QStringLiteral("12.50"));
    EXPECT_EQ(HLibrary::truncateDecimal(0.25), QStringLiteral("0.25"));
}

TEST(TruncateDecimal, BinaryRepresentationOfOnePointZeroZeroFive)
{
    // 1.005 * 1000 lies just below 1005.
    EXPECT_EQ(HLibrary::truncateDecimal(1.005), QStringLiteral("1.00"));
}

TEST(TruncateDecimal, NegativeAmountsAreCutTowardZero)
{
    EXPECT_EQ(HLibrary::truncateDecimal(-2.349), QStringLiteral("-2.34"));
    EXPECT_EQ(HLibrary::truncateDecimal(-2.345), QStringLiteral("-2.34"));
    EXPECT_EQ(HLibrary::truncateDecimal(-3), QStringLiteral("-3.00"));
    EXPECT_EQ(HLibrary::truncateDecimal(-0.5), QStringLiteral("-0.50"));
}

TEST(TruncateDecimal, LargeAmountsKeepTheirDigits)
{
    EXPECT_EQ(HLibrary::truncateDecimal(1234567.891), QStringLiteral("1234567.89"));
    EXPECT_EQ(HLibrary::truncateDecimal(10000000), QStringLiteral("10000000.00"));
}

TEST(HLibraryNames, PathsAndToolNames)
{
    EXPECT_EQ(HLibrary::appData(), QString());
    EXPECT_EQ(HLibrary::programFiles(), QString());
    EXPECT_EQ(HLibrary::toWindowsFormat(QStringLiteral("/a/b c")), QStringLiteral("/a/b c"));
    EXPECT_EQ(HLibrary::fromUtf8(QStringLiteral("caff\u00e8")), QStringLiteral("caff\u00e8"));
    EXPECT_EQ(HLibrary::psql(), QStringLiteral("psql"));
    EXPECT_EQ(HLibrary::dropdb(), QStringLiteral("dropdb"));
    EXPECT_EQ(HLibrary::pg_dump(), QStringLiteral("pg_dump"));
    EXPECT_EQ(HLibrary::pg_restore(), QStringLiteral("pg_restore"));
}

TEST_F(HLibraryTest, DataPathIsTheHomeDirectory)
{
    EXPECT_EQ(HLibrary::dataPath(), supportHome());
}

TEST_F(HLibraryTest, BinaryPathComesFromTheConfiguration)
{
    EXPECT_EQ(HLibrary::pathWithBinaryFile(HLibrary::pg_dump()), QStringLiteral("/opt/bristel/bin/pg_dump"));
}

TEST_F(HLibraryTest, DatabaseSettingsComeFromTheConfiguration)
{
    EXPECT_EQ(HLibrary::dbname(), QStringLiteral("shop"));
    EXPECT_EQ(HLibrary::username(), QStringLiteral("cashier"));
    EXPECT_EQ(HLibrary::password(), QStringLiteral("secret"));
    EXPECT_EQ(HLibrary::hostname(), QStringLiteral("db.example"));
}

TEST_F(HLibraryTest, CopyNumberOfEveryKind)
{
    const QByteArray output = captureStdout([] {
        EXPECT_EQ(HLibrary::copyNumber(QStringLiteral("order")), QStringLiteral("1"));
        EXPECT_EQ(HLibrary::copyNumber(QStringLiteral("prefiscal")), QStringLiteral("2"));
        EXPECT_EQ(HLibrary::copyNumber(QStringLiteral("fiscal")), QStringLiteral("3"));
        EXPECT_EQ(HLibrary::copyNumber(QStringLiteral("RECEIPT")), QStringLiteral("4"));
        EXPECT_EQ(HLibrary::copyNumber(QStringLiteral("Invoice")), QStringLiteral("5"));
        EXPECT_EQ(HLibrary::copyNumber(QStringLiteral("delivery")), QStringLiteral("6"));
        // Configured nowhere: the empty string.
        EXPECT_EQ(HLibrary::copyNumber(QStringLiteral("report")), QString());
    });
    EXPECT_EQ(output, QByteArray());
}

// Every kind of the profile table with a copy number reads it from its own profile; the others
// answer as an unknown kind does.
TEST_F(HLibraryTest, CopyNumberFollowsTheTableOfProfileKinds)
{
    for (const DocumentProfileKind &row : documentProfileKinds) {
        QString number;
        const QByteArray output =
            captureStdout([&] { number = HLibrary::copyNumber(QLatin1String(row.kind)); });
        const char *prefix = row.hasCopyNumber ? row.keyPrefix : fallbackDocumentProfileKind().keyPrefix;
        EXPECT_EQ(number, SyncSingleton<BRConfiguration>::instance()->getStrValue(
                              QString::fromLatin1(prefix) + QLatin1String("copyNumber")))
            << row.kind;
        EXPECT_EQ(output.isEmpty(), row.hasCopyNumber) << row.kind;
    }
}

TEST_F(HLibraryTest, CopyNumberOfAnUnknownKindFallsBackToPrefiscal)
{
    QString sold;
    QString other;
    const QByteArray output = captureStdout([&] {
        sold = HLibrary::copyNumber(QStringLiteral("sold"));
        other = HLibrary::copyNumber(QStringLiteral("MENU"));
    });
    EXPECT_EQ(sold, QStringLiteral("2"));
    EXPECT_EQ(other, QStringLiteral("2"));
    EXPECT_EQ(output, QByteArray("Error into HLibrary::copyNumber::documentPath: sold\n"
                                 "Error into HLibrary::copyNumber::documentPath: menu\n"));
}

TEST(HLibraryFiles, TouchCreatesAndEmpties)
{
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("new.txt"));
    HLibrary::touch(missing);
    EXPECT_TRUE(QFile::exists(missing));
    EXPECT_EQ(QFileInfo(missing).size(), 0);

    const QString full = dir.filePath(QStringLiteral("full.txt"));
    writeFile(full, "some content\n");
    HLibrary::touch(full);
    EXPECT_TRUE(QFile::exists(full));
    EXPECT_EQ(readFile(full), QByteArray());
}

TEST(HLibraryFiles, CoreFileIsTheFirstMatchByName)
{
    QTemporaryDir dir;
    const QString previous = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(dir.path()));
    const QString none = HLibrary::getCoreFile();
    writeFile(dir.filePath(QStringLiteral("notcore")), "x");
    writeFile(dir.filePath(QStringLiteral("core.9")), "x");
    writeFile(dir.filePath(QStringLiteral("core.10")), "x");
    const QString found = HLibrary::getCoreFile();
    QDir::setCurrent(previous);
    EXPECT_EQ(none, QString());
    EXPECT_EQ(found, QStringLiteral("core.10"));
}

TEST(HLibraryRandom, SameSecondGivesTheSameNumber)
{
    // Retry until both calls fall within one second of the clock.
    for (int attempt = 0; attempt < 5; ++attempt) {
        const std::time_t before = std::time(nullptr);
        const QString first = HLibrary::getNewRand();
        const QString second = HLibrary::getNewRand();
        const std::time_t after = std::time(nullptr);
        if (before != after)
            continue;
        EXPECT_EQ(first, second);
        // The generator reseeded with this second draws the same number first.
        std::srand(static_cast<unsigned int>(before));
        EXPECT_EQ(first, QString::number(std::rand()));
        return;
    }
    FAIL() << "the clock kept changing second";
}

} // namespace
