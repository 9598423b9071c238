#include "DatabaseFixture.h"

#include <QSqlQuery>

namespace {

class SequenceTest : public WithSequence<DatabaseTest>
{
};

TEST_F(SequenceTest, SequenceValueReadsLastValue)
{
    EXPECT_EQ(manager().sequenceValue(sequence), QStringLiteral("3"));
    EXPECT_EQ(newLog(), queryLines(QStringLiteral("executeSelectQuery(...)"),
                                   QStringLiteral("select last_value from ") + sequence, 1));
}

TEST_F(SequenceTest, SetSequenceRunsSetval)
{
    manager().setSequence(sequence, 10);
    EXPECT_EQ(manager().sequenceValue(sequence, &second()), QStringLiteral("10"));
    const QString label = QStringLiteral("executeSelectQuery(...)");
    EXPECT_EQ(newLog(),
              queryLines(label, QStringLiteral("SELECT setval('") + sequence + QStringLiteral("', 10)"), 1) +
                  queryLines(label, QStringLiteral("select last_value from ") + sequence, 1));
}

TEST_F(SequenceTest, IncrementAndDecrementReturnTheEarlierValue)
{
    manager().setSequence(sequence, 10);
    EXPECT_EQ(manager().incrementSequence(sequence, 5), QStringLiteral("10"));
    EXPECT_EQ(manager().sequenceValue(sequence), QStringLiteral("15"));
    EXPECT_EQ(manager().decrementSequence(sequence, 4, &second()), QStringLiteral("15"));
    EXPECT_EQ(manager().sequenceValue(sequence), QStringLiteral("11"));
}

TEST_F(SequenceTest, DecrementIfPositiveRefusesToGoBelowZero)
{
    EXPECT_FALSE(manager().decrementSequenceIfPositive(sequence, 5));
    EXPECT_EQ(manager().sequenceValue(sequence), QStringLiteral("3"));
    EXPECT_TRUE(manager().decrementSequenceIfPositive(sequence, 3));
    EXPECT_EQ(manager().sequenceValue(sequence), QStringLiteral("0"));
    EXPECT_FALSE(manager().decrementSequenceIfPositive(sequence, 1));
    EXPECT_EQ(manager().sequenceValue(sequence), QStringLiteral("0"));
}

TEST_F(SequenceTest, DecrementIfPositiveGuardReadsTheDefaultConnection)
{
    // On the second connection the name stands for a temporary sequence at 10, which hides
    // the shared one at 3 from that connection only.
    QSqlQuery query(second());
    ASSERT_TRUE(query.exec(QStringLiteral("create temporary sequence ") + sequence +
                           QStringLiteral(" minvalue 0 start 10")));
    ASSERT_EQ(manager().sequenceValue(sequence, &second()), QStringLiteral("10"));

    // The guard reads 3 through the default connection and refuses, though 10 would allow it.
    EXPECT_FALSE(manager().decrementSequenceIfPositive(sequence, 5, &second()));
    EXPECT_EQ(manager().sequenceValue(sequence, &second()), QStringLiteral("10"));
    EXPECT_EQ(manager().sequenceValue(sequence), QStringLiteral("3"));
    // Past the guard, the decrement reads and writes through the given connection.
    EXPECT_TRUE(manager().decrementSequenceIfPositive(sequence, 2, &second()));
    EXPECT_EQ(manager().sequenceValue(sequence, &second()), QStringLiteral("8"));
    EXPECT_EQ(manager().sequenceValue(sequence), QStringLiteral("3"));

    EXPECT_TRUE(query.exec(QStringLiteral("drop sequence ") + sequence));
}

TEST_F(SequenceTest, DecrementIfPositiveWritesThroughTheGivenConnection)
{
    manager().setSequence(sequence, 8);
    EXPECT_TRUE(manager().decrementSequenceIfPositive(sequence, 2, &second()));
    EXPECT_EQ(manager().sequenceValue(sequence), QStringLiteral("6"));
}

} // namespace
