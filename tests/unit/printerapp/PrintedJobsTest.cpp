#include "printerapp/PrintedJobs.h"

#include <gtest/gtest.h>

namespace {

// Printers by their ids.
constexpr int Kitchen = 1;
constexpr int Bar = 2;

PrintedJobs::Limits smallLimits()
{
    PrintedJobs::Limits limits;
    limits.jobsPerPrinter = 3;
    limits.bytesPerJob = 100;
    limits.bytesPerPicture = 20;
    return limits;
}

// Draws a "picture" that tells which bytes it was drawn from, and counts its calls.
struct CountingDrawer
{
    int calls = 0;
    PrintedJobs::Drawer drawer()
    {
        return [this](const QByteArray &bytes) {
            ++calls;
            return "picture of " + bytes;
        };
    }
};

TEST(PrintedJobs, KeepsTheBytesOfEachJobOfEachPrinter)
{
    PrintedJobs jobs;
    jobs.add(Kitchen, 1, "\x1b@pasta");
    jobs.add(Bar, 1, "\x1b@wine");
    EXPECT_EQ(jobs.bytes(Kitchen, 1), QByteArray("\x1b@pasta"));
    EXPECT_EQ(jobs.bytes(Bar, 1), QByteArray("\x1b@wine"));
    EXPECT_EQ(jobs.kept(Kitchen, 1), PrintedJobs::Kept::Bytes);
    EXPECT_EQ(jobs.kept(Kitchen, 2), PrintedJobs::Kept::Nothing);
    EXPECT_TRUE(jobs.bytes(Kitchen, 2).isNull());
}

TEST(PrintedJobs, GathersTheBytesOfAJobPrintedPageByPage)
{
    PrintedJobs jobs;
    jobs.add(Kitchen, 4, "page 1;");
    jobs.add(Kitchen, 4, "page 2;");
    EXPECT_EQ(jobs.bytes(Kitchen, 4), QByteArray("page 1;page 2;"));
}

TEST(PrintedJobs, KeepsOnlyTheLastJobsOfAPrinter)
{
    PrintedJobs jobs(smallLimits());
    for (int id = 1; id <= 5; ++id)
        jobs.add(Kitchen, id, "receipt " + QByteArray::number(id));
    jobs.add(Bar, 1, "wine");
    EXPECT_EQ(jobs.kept(Kitchen, 1), PrintedJobs::Kept::Nothing);
    EXPECT_EQ(jobs.kept(Kitchen, 2), PrintedJobs::Kept::Nothing);
    for (int id = 3; id <= 5; ++id)
        EXPECT_EQ(jobs.bytes(Kitchen, id), "receipt " + QByteArray::number(id));
    EXPECT_EQ(jobs.kept(Bar, 1), PrintedJobs::Kept::Bytes) << "another printer's jobs count apart";
}

TEST(PrintedJobs, LetsGoOfAJobThatGrowsTooLarge)
{
    PrintedJobs jobs(smallLimits());
    jobs.add(Kitchen, 1, QByteArray(60, 'x'));
    jobs.add(Kitchen, 1, QByteArray(60, 'y'));
    EXPECT_EQ(jobs.kept(Kitchen, 1), PrintedJobs::Kept::TooLarge);
    EXPECT_TRUE(jobs.bytes(Kitchen, 1).isNull());
    jobs.add(Kitchen, 1, "z");
    EXPECT_EQ(jobs.kept(Kitchen, 1), PrintedJobs::Kept::TooLarge) << "a later page must not start it again";
    jobs.add(Kitchen, 2, QByteArray(101, 'x'));
    EXPECT_EQ(jobs.kept(Kitchen, 2), PrintedJobs::Kept::TooLarge);
    jobs.add(Kitchen, 3, QByteArray(100, 'x'));
    EXPECT_EQ(jobs.kept(Kitchen, 3), PrintedJobs::Kept::Bytes) << "the limit itself is allowed";
}

TEST(PrintedJobs, KeepsNoMoreThanTheLimitsAllowEvenForAHugeJob)
{
    PrintedJobs jobs;
    const QByteArray page(1024 * 1024, '\xff');
    for (int i = 0; i < 50; ++i)
        jobs.add(Kitchen, 1, page);
    EXPECT_EQ(jobs.kept(Kitchen, 1), PrintedJobs::Kept::TooLarge);
    EXPECT_TRUE(jobs.bytes(Kitchen, 1).isNull());
}

TEST(PrintedJobs, DrawsAPictureOnceAndKeepsIt)
{
    PrintedJobs jobs(smallLimits());
    CountingDrawer drawer;
    jobs.add(Kitchen, 1, "pasta");
    EXPECT_EQ(jobs.picture(Kitchen, 1, drawer.drawer()), QByteArray("picture of pasta"));
    EXPECT_EQ(jobs.picture(Kitchen, 1, drawer.drawer()), QByteArray("picture of pasta"));
    EXPECT_EQ(drawer.calls, 1);
}

TEST(PrintedJobs, DrawsAgainOnceTheJobSentMore)
{
    PrintedJobs jobs(smallLimits());
    CountingDrawer drawer;
    jobs.add(Kitchen, 1, "p1");
    EXPECT_EQ(jobs.picture(Kitchen, 1, drawer.drawer()), QByteArray("picture of p1"));
    jobs.add(Kitchen, 1, "p2");
    EXPECT_EQ(jobs.picture(Kitchen, 1, drawer.drawer()), QByteArray("picture of p1p2"));
    EXPECT_EQ(drawer.calls, 2);
}

TEST(PrintedJobs, DrawsALargePictureEachTimeRatherThanKeepIt)
{
    PrintedJobs jobs(smallLimits());
    CountingDrawer drawer;
    jobs.add(Kitchen, 1, "a long receipt");
    EXPECT_EQ(jobs.picture(Kitchen, 1, drawer.drawer()), QByteArray("picture of a long receipt"));
    EXPECT_EQ(jobs.picture(Kitchen, 1, drawer.drawer()), QByteArray("picture of a long receipt"));
    EXPECT_EQ(drawer.calls, 2);
}

TEST(PrintedJobs, DrawsNothingForAJobWithoutBytes)
{
    PrintedJobs jobs(smallLimits());
    CountingDrawer drawer;
    jobs.add(Kitchen, 1, QByteArray(101, 'x'));
    EXPECT_TRUE(jobs.picture(Kitchen, 1, drawer.drawer()).isNull());
    EXPECT_TRUE(jobs.picture(Kitchen, 2, drawer.drawer()).isNull());
    EXPECT_EQ(drawer.calls, 0);
}

TEST(PrintedJobs, DoesNotKeepAFailedPicture)
{
    PrintedJobs jobs;
    int calls = 0;
    const PrintedJobs::Drawer failing = [&calls](const QByteArray &) {
        ++calls;
        return QByteArray();
    };
    jobs.add(Kitchen, 1, "pasta");
    EXPECT_TRUE(jobs.picture(Kitchen, 1, failing).isNull());
    EXPECT_TRUE(jobs.picture(Kitchen, 1, failing).isNull());
    EXPECT_EQ(calls, 2);
}

TEST(PrintedJobs, ForgetsADeletedPrintersJobs)
{
    PrintedJobs jobs;
    jobs.add(Kitchen, 1, "pasta");
    jobs.add(Bar, 1, "wine");
    jobs.forget(Kitchen);
    EXPECT_EQ(jobs.kept(Kitchen, 1), PrintedJobs::Kept::Nothing);
    EXPECT_EQ(jobs.kept(Bar, 1), PrintedJobs::Kept::Bytes);
}

} // namespace
