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

TEST(SleepThread, ZeroDelayEndsAtOnce)
{
    QElapsedTimer timer;
    timer.start();
    {
        SleepThread thread(0);
    }
    EXPECT_LT(timer.elapsed(), 1000);
}

TEST(HLibrarySleep, HsleepBlocksWholeSeconds)
{
    QElapsedTimer timer;
    timer.start();
    HLibrary::hsleep(1);
    EXPECT_GE(timer.elapsed(), 990);
}

} // namespace
