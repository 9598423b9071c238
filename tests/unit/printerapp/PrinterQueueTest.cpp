#include "printerapp/PrinterQueue.h"
#include "printerapp/PrinterQueues.h"

#include <gtest/gtest.h>

namespace {

PrinterQueue::Job job(qint64 sequence)
{
    return PrinterQueue::Job{sequence, false};
}

void add(PrinterQueue &queue, qint64 sequence)
{
    QString refusal;
    ASSERT_TRUE(queue.add(job(sequence), &refusal)) << qPrintable(refusal);
}

TEST(PrinterQueue, HandsOutOneJobAtATimeInArrivalOrder)
{
    PrinterQueue queue(QStringLiteral("kitchen"));
    add(queue, 5);
    add(queue, 2); // put back after a restart after a newer one: still goes first
    add(queue, 9);
    const std::optional<PrinterQueue::Job> first = queue.takeNext();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->sequence, 2);
    EXPECT_FALSE(queue.takeNext()) << "a second job handed out while the first prints";
    EXPECT_EQ(queue.printing()->sequence, 2);
    queue.finishPrinting();
    EXPECT_EQ(queue.takeNext()->sequence, 5);
    queue.finishPrinting();
    EXPECT_EQ(queue.takeNext()->sequence, 9);
    queue.finishPrinting();
    EXPECT_FALSE(queue.takeNext());
    EXPECT_TRUE(queue.isEmpty());
}

TEST(PrinterQueue, AJobThatFailedToPrintComesFirstAgainAsAReprint)
{
    PrinterQueue queue(QStringLiteral("kitchen"));
    add(queue, 1);
    add(queue, 2);
    EXPECT_FALSE(queue.takeNext()->reprint);
    queue.returnPrinting();
    const std::optional<PrinterQueue::Job> again = queue.takeNext();
    EXPECT_EQ(again->sequence, 1);
    EXPECT_TRUE(again->reprint);
    EXPECT_EQ(queue.size(), 2);
}

TEST(PrinterQueue, AnOlderJobDoesNotPushAsideTheOnePrinting)
{
    PrinterQueue queue(QStringLiteral("kitchen"));
    add(queue, 4);
    queue.takeNext();
    add(queue, 3);
    queue.finishPrinting();
    EXPECT_EQ(queue.takeNext()->sequence, 3);
}

TEST(PrinterQueue, RefusesJobsOverItsLimitNamingThePrinter)
{
    PrinterQueue queue(QStringLiteral("kitchen"));
    EXPECT_EQ(queue.limit(), 1000);
    for (int i = 1; i <= 1000; ++i)
        add(queue, i);
    QString refusal;
    EXPECT_FALSE(queue.canAccept(&refusal));
    EXPECT_FALSE(queue.add(job(1001), &refusal));
    EXPECT_EQ(
        refusal,
        QStringLiteral("Printer kitchen has 1000 jobs waiting; it takes no more until some have printed."));
    EXPECT_EQ(queue.size(), 1000);
    // The job printing counts until it has printed.
    queue.takeNext();
    EXPECT_FALSE(queue.canAccept(&refusal));
    queue.finishPrinting();
    refusal.clear();
    EXPECT_TRUE(queue.add(job(1001), &refusal));
    EXPECT_TRUE(refusal.isEmpty());
}

TEST(PrinterQueues, OnePrintersQueueNeverAffectsAnother)
{
    PrinterQueues queues(2);
    PrinterQueue &kitchen = queues.queue(QStringLiteral("kitchen"));
    add(kitchen, 1);
    add(kitchen, 3);
    QString refusal;
    EXPECT_FALSE(kitchen.add(job(4), &refusal));
    EXPECT_TRUE(refusal.contains(QStringLiteral("kitchen")));

    PrinterQueue &bar = queues.queue(QStringLiteral("bar"));
    add(bar, 2);
    EXPECT_EQ(kitchen.takeNext()->sequence, 1);
    // The kitchen printing does not hold the bar.
    EXPECT_EQ(bar.takeNext()->sequence, 2);
    EXPECT_EQ(&queues.queue(QStringLiteral("kitchen")), &kitchen);
    EXPECT_EQ(queues.find(QStringLiteral("bar"))->size(), 1);
    queues.remove(QStringLiteral("bar"));
    EXPECT_EQ(queues.find(QStringLiteral("bar")), nullptr);
    EXPECT_EQ(kitchen.size(), 2);
}

} // namespace
