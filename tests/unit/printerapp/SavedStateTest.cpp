#include "printerapp/SavedState.h"

#include <gtest/gtest.h>

namespace {

const QByteArray State = "NextPrinterID 2\n"
                         "<Printer driver=\"bristel_80mm\" id=\"1\" name=\"kitchen\">\n"
                         "NextJobId 9\n"
                         "Job created=\"1\" id=\"8\" name=\"held\" state=\"4\" username=\"u\"\n"
                         "Job created=\"1\" id=\"7\" name=\"pending\" state=\"3\" username=\"u\"\n"
                         "Job created=\"1\" id=\"6\" name=\"printing\" processing=\"2\" state=\"5\"\n"
                         "Job created=\"1\" id=\"5\" name=\"stopped\" state=\"6\"\n"
                         "Job completed=\"3\" id=\"4\" name=\"canceled\" state=\"7\"\n"
                         "Job completed=\"3\" id=\"3\" name=\"aborted\" state=\"8\"\n"
                         "Job completed=\"3\" id=\"2\" name=\"completed\" state=\"9\"\n"
                         "printer-location Job state=\"3\" by the door\n"
                         "</Printer>\n";

TEST(SavedState, DropsTheUnfinishedJobsAndKeepsTheRest)
{
    EXPECT_EQ(SavedState::withoutUnfinishedJobs(State),
              QByteArray("NextPrinterID 2\n"
                         "<Printer driver=\"bristel_80mm\" id=\"1\" name=\"kitchen\">\n"
                         "NextJobId 9\n"
                         "Job completed=\"3\" id=\"4\" name=\"canceled\" state=\"7\"\n"
                         "Job completed=\"3\" id=\"3\" name=\"aborted\" state=\"8\"\n"
                         "Job completed=\"3\" id=\"2\" name=\"completed\" state=\"9\"\n"
                         "printer-location Job state=\"3\" by the door\n"
                         "</Printer>\n"));
}

TEST(SavedState, AJobLineWithoutAStateIsNotTakenForAFinishedJob)
{
    EXPECT_TRUE(SavedState::isUnfinishedJob("Job id=\"3\" name=\"x\""));
    EXPECT_FALSE(SavedState::isUnfinishedJob("Jobs state=\"3\""));
    EXPECT_EQ(SavedState::withoutUnfinishedJobs("a\nb"), QByteArray("a\nb"));
}

} // namespace
