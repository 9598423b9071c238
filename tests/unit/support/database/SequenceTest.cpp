#include "DatabaseFixture.h"

namespace {

class SequenceTest : public DatabaseTest
{
protected:
    void SetUp() override
    {
        DatabaseTest::SetUp();
        if (HasFatalFailure())
            return;
        sequence = table + QStringLiteral("_seq3");
        run(QStringLiteral("drop sequence if exists ") + sequence);
        run(QStringLiteral("create sequence ") + sequence + QStringLiteral(" minvalue 0 start 3"));
    }
    void TearDown() override
    {
        run(QStringLiteral("drop sequence if exists ") + sequence);
        DatabaseTest::TearDown();
    }

    QString sequence;
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
    EXPECT_TRUE(newLog().startsWith(
        queryLines(QStringLiteral("executeSelectQuery(...)"),
                   QStringLiteral("SELECT setval('") + sequence + QStringLiteral("', 10)"), 1)));
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

TEST_F(SequenceTest, DecrementIfPositiveWritesThroughTheGivenConnection)
{
    manager().setSequence(sequence, 8);
    EXPECT_TRUE(manager().decrementSequenceIfPositive(sequence, 2, &second()));
    EXPECT_EQ(manager().sequenceValue(sequence), QStringLiteral("6"));
}

} // namespace
