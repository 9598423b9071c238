#include "support/HLibrary.h"
#include "support/SleepThread.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace {

TEST(SleepThread, StartsAtOnceAndItsDestructorWaits)
{
    QElapsedTimer timer;
    timer.start();
    {
        SleepThread thread(300);
        EXPECT_EQ(thread.delay(), 300u);
        EXPECT_TRUE(thread.isRunning());
    }
    EXPECT_GE(timer.elapsed(), 300);
}

TEST(SleepThread, ZeroDelayEnds)
{
    // A thread that never ended would hold the test until its time-out.
    SleepThread thread(0);
    EXPECT_EQ(thread.delay(), 0u);
    EXPECT_TRUE(thread.wait());
    EXPECT_TRUE(thread.isFinished());
}

TEST(HLibrarySleep, HsleepBlocksWholeSeconds)
{
    QElapsedTimer timer;
    timer.start();
    HLibrary::hsleep(1);
    EXPECT_GE(timer.elapsed(), 990);
}

} // namespace
