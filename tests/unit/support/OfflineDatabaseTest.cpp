#include "support/DatabaseManager.h"

#include "config/SyncSingleton.h"
#include "log/HLogManager.h"

#include "SupportHome.h"
#include "TestSupport.h"

#include <QSqlDatabase>
#include <QSqlQuery>

#include <gtest/gtest.h>

namespace {

// No "default" logger is registered in this process and no connection is open: the helper
// must neither crash nor log, and answer its fallback values.
TEST(OfflineDatabase, MissingDefaultLoggerMeansNoLogging)
{
    ASSERT_FALSE(supportHome().isEmpty());
    DatabaseManager *manager = SyncSingleton<DatabaseManager>::instance();
    EXPECT_EQ(manager->logger(), nullptr);
    // Asking for the default logger left a null entry behind.
    EXPECT_TRUE(SyncSingleton<HLogManager>::instance()->contains(QStringLiteral("default")));

    EXPECT_EQ(manager->getField(QStringLiteral("t"), QStringLiteral("f"), QStringLiteral("1")), QString());
    EXPECT_EQ(manager->existRecord(QStringLiteral("t"), QStringLiteral("1")), false);
    EXPECT_EQ(manager->numRecords(QStringLiteral("t"), QStringLiteral("1=1")), -1);
    EXPECT_EQ(manager->executeSelectQuery(QStringLiteral("select 1")), QString());
    EXPECT_EQ(manager->executeSelectQuery2(QStringLiteral("select 1")), QStringList());
    EXPECT_EQ(manager->executeSelectQuery3(QStringLiteral("select 1"), 1), QStringList());
    EXPECT_EQ(manager->getLastId(QStringLiteral("t")), QStringLiteral("Error"));
    EXPECT_EQ(manager->newRecord(QStringLiteral("t")), QStringLiteral("Error"));
    EXPECT_EQ(manager->safeNewRecord(QStringLiteral("t")), QStringLiteral("Error"));
    EXPECT_EQ(manager->incrementSequence(QStringLiteral("s"), 1), QString());
    EXPECT_FALSE(manager->decrementSequenceIfPositive(QStringLiteral("s"), 1));
    manager->begin();
    manager->commit();
    manager->rollback();
    QSqlQuery query;
    manager->showQueryError(QStringLiteral("label"), query);
    // The helper keeps no connection of its own: asking for the default one registers none.
    EXPECT_EQ(QSqlDatabase::connectionNames(), QStringList());
    EXPECT_EQ(manager->logger(), nullptr);
}

} // namespace
