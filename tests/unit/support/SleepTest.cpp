#include "support/HLibrary_p.h"
#include "support/SleepThread.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <chrono>

namespace {

using namespace std::chrono_literals;

// Short enough to keep the suite quick, long enough for a missing wait to show.
constexpr std::chrono::milliseconds shortInterval = 40ms;

qint64 nanoseconds(std::chrono::milliseconds interval)
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(interval).count();
}

TEST(SleepThread, StartsAtOnceAndItsDestructorWaits)
{
    const auto delay = static_cast<unsigned long>(shortInterval.count());
    QElapsedTimer timer;
    timer.start();
    {
        SleepThread thread(delay);
        EXPECT_EQ(thread.delay(), delay);
        EXPECT_TRUE(thread.isRunning());
    }
    EXPECT_GE(timer.nsecsElapsed(), nanoseconds(shortInterval));
}

TEST(SleepThread, ZeroDelayEnds)
{
    // A thread that never ended would hold the test until its time-out.
    SleepThread thread(0);
    EXPECT_EQ(thread.delay(), 0u);
    EXPECT_TRUE(thread.wait());
    EXPECT_TRUE(thread.isFinished());
}

TEST(HLibrarySleep, HsleepBlocksForWholeSeconds)
{
    EXPECT_EQ(HLibraryPrivate::hsleepInterval(0), 0ms);
    EXPECT_EQ(HLibraryPrivate::hsleepInterval(1), 1000ms);
    EXPECT_EQ(HLibraryPrivate::hsleepInterval(90), 90000ms);
}

TEST(HLibrarySleep, SleepBlocksAtLeastItsInterval)
{
    QElapsedTimer timer;
    timer.start();
    HLibraryPrivate::sleepFor(shortInterval);
    EXPECT_GE(timer.nsecsElapsed(), nanoseconds(shortInterval));
}

} // namespace
