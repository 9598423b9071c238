#include "log/HLogManager.h"

#include "config/BRConfiguration.h"
#include "config/SyncSingleton.h"
#include "log/Logger.h"

#include "TestSupport.h"

#include <QDir>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

/*
 * The process-wide configuration is read once, from $HOME, on first use.  Every test here
 * points HOME at one temporary folder before anything touches the configuration singleton;
 * its logger keys append to home/logs/manager.log at level INFO unless a test says more.
 */
class HLogManagerTest : public ::testing::Test
{
protected:
    static QString home()
    {
        static QTemporaryDir dir;
        static const bool prepared = [] {
            QDir().mkpath(dir.filePath(QStringLiteral("logs")));
            writeFile(dir.filePath(QStringLiteral(".bristel/conf/bristel.conf")),
                      QStringLiteral("bristel : {\n  logger : {\n    level = debug;\n    basedir = %1;\n"
                                     "    filename = manager.log;\n    type = append;\n  };\n};\n")
                          .arg(dir.filePath(QStringLiteral("logs")))
                          .toUtf8());
            qputenv("HOME", dir.path().toLocal8Bit());
            return true;
        }();
        EXPECT_TRUE(prepared);
        return dir.path();
    }

    void SetUp() override
    {
        ASSERT_FALSE(home().isEmpty());
        Logger::setClock([] { return QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7, 89)); });
    }
    void TearDown() override { Logger::setClock(Logger::Clock()); }

    static QString logPath() { return home() + QStringLiteral("/logs/manager.log"); }
};

TEST_F(HLogManagerTest, DefaultOnAnEmptyManagerIsNullAndLeavesANullEntry)
{
    HLogManager manager;
    EXPECT_FALSE(manager.contains(QStringLiteral("default")));
    EXPECT_EQ(manager.getLog(), nullptr);
    EXPECT_TRUE(manager.contains(QStringLiteral("default")));
    EXPECT_EQ(manager.getLog(QString()), nullptr);
}

TEST_F(HLogManagerTest, UnknownNameIsNullAndInsertsNothing)
{
    HLogManager manager;
    EXPECT_EQ(manager.getLog(QStringLiteral("sql")), nullptr);
    EXPECT_FALSE(manager.contains(QStringLiteral("sql")));
}

TEST_F(HLogManagerTest, EmptyNameRegistersTheDefaultLogger)
{
    HLogManager manager;
    manager.set(QStringLiteral("first"));
    Logger *logger = manager.getLog();
    ASSERT_NE(logger, nullptr);
    EXPECT_EQ(manager.getLog(QStringLiteral("default")), logger);
    EXPECT_EQ(logger->fileName(), logPath());
    EXPECT_TRUE(logger->isOpen());
}

TEST_F(HLogManagerTest, NamedLoggersAreKeptApart)
{
    HLogManager manager;
    manager.set(QStringLiteral("a"), QStringLiteral("sql"));
    manager.set(QStringLiteral("b"), QStringLiteral("print"));
    Logger *sql = manager.getLog(QStringLiteral("sql"));
    Logger *print = manager.getLog(QStringLiteral("print"));
    ASSERT_NE(sql, nullptr);
    ASSERT_NE(print, nullptr);
    EXPECT_NE(sql, print);
    EXPECT_EQ(manager.getLog(), nullptr);
}

TEST_F(HLogManagerTest, ReplacedLoggerStaysUsableUntilTheManagerGoes)
{
    const qint64 before = QFileInfo(logPath()).size();
    {
        HLogManager manager;
        manager.set(QString(), QStringLiteral("x"));
        Logger *first = manager.getLog(QStringLiteral("x"));
        manager.set(QString(), QStringLiteral("x"));
        Logger *second = manager.getLog(QStringLiteral("x"));
        ASSERT_NE(first, nullptr);
        ASSERT_NE(second, nullptr);
        EXPECT_NE(first, second);
        first->info(QStringLiteral("from the first"));
        second->info(QStringLiteral("from the second"));
    }
    const QByteArray added = readFile(logPath()).mid(before);
    EXPECT_EQ(added, QByteArray("[03-04-2026 05:06:07:089] DEBUG: Start Logger\n"
                                "[03-04-2026 05:06:07:089] DEBUG: Start Logger\n"
                                "[03-04-2026 05:06:07:089] INFO: from the first\n"
                                "[03-04-2026 05:06:07:089] INFO: from the second\n"));
}

TEST_F(HLogManagerTest, SingletonLoggerReadsTheUserConfiguration)
{
    const qint64 before = QFileInfo(logPath()).size();
    HLogManager *manager = SyncSingleton<HLogManager>::instance();
    ASSERT_EQ(manager, SyncSingleton<HLogManager>::instance());
    manager->set(QStringLiteral("main"));
    Logger *logger = manager->getLog();
    ASSERT_NE(logger, nullptr);
    EXPECT_EQ(logger->level(), Logger::DEBUG);
    logger->warning(QStringLiteral("written at once"));
    const QByteArray added = readFile(logPath()).mid(before);
    EXPECT_EQ(added, QByteArray("[03-04-2026 05:06:07:089] DEBUG: Start Logger\n"
                                "[03-04-2026 05:06:07:089] WARNING: written at once\n"));
}

TEST_F(HLogManagerTest, LoggerWithoutConfigurationArgumentUsesTheSingleton)
{
    Logger logger(QStringLiteral("ignored name"));
    EXPECT_EQ(logger.fileName(), logPath());
    EXPECT_EQ(logger.fileName(), SyncSingleton<BRConfiguration>::instance()->getStrValue(
                                     QStringLiteral("bristel.logger.basedir")) +
                                     QStringLiteral("/manager.log"));
}

} // namespace
