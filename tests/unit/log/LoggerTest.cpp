#include "log/Logger.h"

#include "config/BRConfiguration.h"

#include "TestSupport.h"

#include <QDir>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

const QDateTime fixedTime(QDate(2026, 11, 16), QTime(3, 44, 40, 123));

// A logger configured by its own file, with the clock fixed at fixedTime.
class LoggerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        Logger::setClock([] { return fixedTime; });
    }
    void TearDown() override { Logger::setClock(Logger::Clock()); }

    QString logPath() const { return dir.filePath(QStringLiteral("logs/test.log")); }

    std::unique_ptr<BRConfiguration> configuration(const QString &level, const QString &type)
    {
        QDir().mkpath(dir.filePath(QStringLiteral("logs")));
        return configurationIn(level, type, dir.filePath(QStringLiteral("logs")));
    }

    std::unique_ptr<BRConfiguration> configurationIn(const QString &level, const QString &type,
                                                     const QString &base)
    {
        const QString text = QStringLiteral("bristel : {\n  logger : {\n    level = %1;\n    basedir = %2;\n"
                                            "    filename = test.log;\n    type = %3;\n  };\n};\n")
                                 .arg(level, base, type);
        const QString path = dir.filePath(QStringLiteral("bristel.conf"));
        writeFile(path, text.toUtf8());
        return std::make_unique<BRConfiguration>(path, QStringLiteral("cfg"));
    }

    QTemporaryDir dir;
};

TEST_F(LoggerTest, WritesStartLineInExactFormat)
{
    {
        Logger logger(QStringLiteral("any"),
                      *configuration(QStringLiteral("DEBUG"), QStringLiteral("overwrite")));
        EXPECT_EQ(logger.fileName(), dir.filePath(QStringLiteral("logs")) + QStringLiteral("/test.log"));
        EXPECT_TRUE(logger.isOpen());
        EXPECT_EQ(logger.level(), Logger::DEBUG);
    }
    EXPECT_EQ(readFile(logPath()), QByteArray("[11-16-2026 03:44:40:123] DEBUG: Start Logger\n"));
}

TEST_F(LoggerTest, EveryLevelHasItsText)
{
    Logger logger(QString(), *configuration(QStringLiteral("debug"), QStringLiteral("OVERWRITE")));
    logger.debug(QStringLiteral("d"));
    logger.info(QStringLiteral("i"));
    logger.warning(QStringLiteral("w"));
    logger.error(QStringLiteral("e"));
    logger.fatal(QStringLiteral("f"));
    logger.write(7, QStringLiteral("out of range"));
    // The file is complete after every call, before the logger goes away.
    EXPECT_EQ(readFile(logPath()), QByteArray("[11-16-2026 03:44:40:123] DEBUG: Start Logger\n"
                                              "[11-16-2026 03:44:40:123] DEBUG: d\n"
                                              "[11-16-2026 03:44:40:123] INFO: i\n"
                                              "[11-16-2026 03:44:40:123] WARNING: w\n"
                                              "[11-16-2026 03:44:40:123] ERROR: e\n"
                                              "[11-16-2026 03:44:40:123] FATAL: f\n"
                                              "[11-16-2026 03:44:40:123] : out of range\n"));
}

TEST_F(LoggerTest, TimeStampUsesMonthDayYearAnd24HourClock)
{
    Logger::setClock([] { return QDateTime(QDate(2027, 1, 2), QTime(23, 5, 6, 7)); });
    Logger logger(QString(), *configuration(QStringLiteral("info"), QStringLiteral("overwrite")));
    logger.info(QStringLiteral("late"));
    EXPECT_EQ(readFile(logPath()), QByteArray("[01-02-2027 23:05:06:007] INFO: late\n"));
}

TEST_F(LoggerTest, SystemClockStampMatchesThePattern)
{
    Logger::setClock(Logger::Clock());
    Logger logger(QString(), *configuration(QStringLiteral("DEBUG"), QStringLiteral("overwrite")));
    const QString text = QString::fromUtf8(readFile(logPath()));
    const QRegularExpression pattern(
        QStringLiteral("^\\[\\d\\d-\\d\\d-\\d{4} \\d\\d:\\d\\d:\\d\\d:\\d{3}\\] DEBUG: Start Logger\\n$"));
    EXPECT_TRUE(pattern.match(text).hasMatch()) << text.toStdString();
}

TEST_F(LoggerTest, WarningThresholdDropsLowerLevels)
{
    Logger logger(QString(), *configuration(QStringLiteral("warning"), QStringLiteral("overwrite")));
    EXPECT_EQ(logger.level(), Logger::WARNING);
    logger.debug(QStringLiteral("d"));
    logger.info(QStringLiteral("i"));
    logger.warning(QStringLiteral("w"));
    logger.error(QStringLiteral("e"));
    logger.fatal(QStringLiteral("f"));
    // No "Start Logger" either: it is written at DEBUG.
    EXPECT_EQ(readFile(logPath()), QByteArray("[11-16-2026 03:44:40:123] WARNING: w\n"
                                              "[11-16-2026 03:44:40:123] ERROR: e\n"
                                              "[11-16-2026 03:44:40:123] FATAL: f\n"));
}

TEST_F(LoggerTest, LevelNamesAreCaseInsensitiveAndUnknownMeansDebug)
{
    Logger logger(QString(), *configuration(QStringLiteral("FaTaL"), QStringLiteral("overwrite")));
    EXPECT_EQ(logger.level(), Logger::FATAL);
    logger.setLevel(QStringLiteral("Error"));
    EXPECT_EQ(logger.level(), Logger::ERROR);
    logger.setLevel(QStringLiteral("info"));
    EXPECT_EQ(logger.level(), Logger::INFO);
    logger.setLevel(QStringLiteral("WARNING"));
    EXPECT_EQ(logger.level(), Logger::WARNING);
    logger.setLevel(QStringLiteral("verbose"));
    EXPECT_EQ(logger.level(), Logger::DEBUG);
    logger.setLevel(QStringLiteral("fatal"));
    logger.setLevel(QString());
    EXPECT_EQ(logger.level(), Logger::DEBUG);
}

TEST_F(LoggerTest, UnsetLevelKeyWritesEverything)
{
    Logger logger(QString(), *configuration(QString(), QStringLiteral("overwrite")));
    EXPECT_EQ(logger.level(), Logger::DEBUG);
    EXPECT_EQ(readFile(logPath()), QByteArray("[11-16-2026 03:44:40:123] DEBUG: Start Logger\n"));
}

TEST_F(LoggerTest, AppendKeepsEarlierContent)
{
    writeFile(logPath(), "earlier\n");
    {
        Logger logger(QString(), *configuration(QStringLiteral("INFO"), QStringLiteral("append")));
        logger.info(QStringLiteral("one"));
    }
    {
        Logger logger(QString(), *configuration(QStringLiteral("INFO"), QStringLiteral("Append")));
        logger.error(QStringLiteral("two"));
    }
    EXPECT_EQ(readFile(logPath()), QByteArray("earlier\n"
                                              "[11-16-2026 03:44:40:123] INFO: one\n"
                                              "[11-16-2026 03:44:40:123] ERROR: two\n"));
}

TEST_F(LoggerTest, AppendCreatesAMissingFile)
{
    Logger logger(QString(), *configuration(QStringLiteral("DEBUG"), QStringLiteral("APPEND")));
    EXPECT_EQ(readFile(logPath()), QByteArray("[11-16-2026 03:44:40:123] DEBUG: Start Logger\n"));
}

TEST_F(LoggerTest, OverwriteDiscardsEarlierContent)
{
    writeFile(logPath(), "earlier content that must go\n");
    Logger logger(QString(), *configuration(QStringLiteral("error"), QStringLiteral("Overwrite")));
    EXPECT_EQ(readFile(logPath()), QByteArray());
    logger.error(QStringLiteral("new"));
    EXPECT_EQ(readFile(logPath()), QByteArray("[11-16-2026 03:44:40:123] ERROR: new\n"));
}

TEST_F(LoggerTest, UnknownTypeOpensNothingAndStaysSilent)
{
    writeFile(logPath(), "untouched\n");
    const QByteArray output = captureStdout([&] {
        Logger logger(QString(), *configuration(QStringLiteral("DEBUG"), QStringLiteral("Truncate")));
        EXPECT_FALSE(logger.isOpen());
        logger.fatal(QStringLiteral("lost"));
    });
    EXPECT_EQ(output, QByteArray());
    EXPECT_EQ(readFile(logPath()), QByteArray("untouched\n"));
}

TEST_F(LoggerTest, EmptyTypeCreatesNoFile)
{
    Logger logger(QString(), *configuration(QStringLiteral("DEBUG"), QString()));
    EXPECT_FALSE(logger.isOpen());
    logger.error(QStringLiteral("lost"));
    EXPECT_FALSE(QFile::exists(logPath()));
}

TEST_F(LoggerTest, UnwritablePathPrintsTheErrorLine)
{
    // A regular file where the directory should be: no one, not even root, can open below it.
    const QString blocker = dir.filePath(QStringLiteral("not-a-directory"));
    writeFile(blocker, "x");
    const QByteArray output = captureStdout([&] {
        Logger logger(QString(), *configurationIn(QStringLiteral("DEBUG"), QStringLiteral("aPPend"),
                                                  blocker + QStringLiteral("/sub")));
        EXPECT_FALSE(logger.isOpen());
        logger.error(QStringLiteral("lost"));
    });
    EXPECT_EQ(output, QByteArray("Error in the method Logger::setType(aPPend)\n"));
}

TEST_F(LoggerTest, SetTypeReportsTheTextAsGiven)
{
    const QByteArray output = captureStdout([&] {
        Logger other(QString(), *configurationIn(QStringLiteral("DEBUG"), QStringLiteral("none"),
                                                 QStringLiteral("/proc/no-such-dir")));
        other.setType(QStringLiteral("overWrite"));
    });
    EXPECT_EQ(output, QByteArray("Error in the method Logger::setType(overWrite)\n"));
}

TEST_F(LoggerTest, EmptyDirectoryGivesARootPath)
{
    Logger logger(QString(), *configurationIn(QStringLiteral("DEBUG"), QStringLiteral("none"), QString()));
    EXPECT_EQ(logger.fileName(), QStringLiteral("/test.log"));
    EXPECT_FALSE(logger.isOpen());
}

} // namespace
