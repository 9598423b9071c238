#include "printerapp/PrinterPage.h"

#include <gtest/gtest.h>

namespace {

PrinterPage::Job job(int id, const QString &name, PrintedJobs::Kept kept = PrintedJobs::Kept::Bytes)
{
    PrinterPage::Job row;
    row.id = id;
    row.name = name;
    row.state = QStringLiteral("completed");
    row.sent = QDateTime(QDate(2026, 11, 25), QTime(12, 30, 5));
    row.kept = kept;
    return row;
}

TEST(PrinterPage, SaysHowThePrinterIsInWords)
{
    PrinterPage page(QStringLiteral("kitchen"));
    page.setStatus({QStringLiteral("Cover open"), QStringLiteral("Out of paper")});
    EXPECT_TRUE(page.html().contains(
        QStringLiteral("<strong id=\"printer-status\">Cover open, Out of paper</strong>")));
    PrinterPage unasked(QStringLiteral("bar"));
    EXPECT_TRUE(unasked.html().contains(QStringLiteral(">Not asked yet<")));
}

TEST(PrinterPage, ListsEachJobWithItsPicture)
{
    PrinterPage page(QStringLiteral("kitchen"));
    page.addJob(job(12, QStringLiteral("table 7")));
    const QString html = page.html();
    EXPECT_TRUE(
        html.contains(QStringLiteral("<tr id=\"job-12\"><td>12</td><td class=\"job-name\">table 7</td>"
                                     "<td>completed</td><td class=\"job-sent\">2026-11-25 12:30:05</td>")))
        << qPrintable(html);
    EXPECT_TRUE(html.contains(QStringLiteral("src=\"/bristel/printer/picture?name=kitchen&amp;job=12\"")))
        << qPrintable(html);
}

TEST(PrinterPage, ShowsJobsInTheOrderGiven)
{
    PrinterPage page(QStringLiteral("kitchen"));
    page.addJob(job(3, QStringLiteral("third")));
    page.addJob(job(2, QStringLiteral("second")));
    const QString html = page.html();
    EXPECT_LT(html.indexOf(QStringLiteral("third")), html.indexOf(QStringLiteral("second")));
}

TEST(PrinterPage, SaysWhyAJobHasNoPicture)
{
    PrinterPage page(QStringLiteral("kitchen"));
    page.addJob(job(1, QStringLiteral("photo"), PrintedJobs::Kept::TooLarge));
    page.addJob(job(2, QStringLiteral("waiting"), PrintedJobs::Kept::Nothing));
    const QString html = page.html();
    EXPECT_FALSE(html.contains(QStringLiteral("<img")));
    EXPECT_TRUE(html.contains(QStringLiteral("Too large to show")));
    EXPECT_TRUE(html.contains(QStringLiteral("Nothing printed yet")));
}

TEST(PrinterPage, ShowsWhyAJobWaits)
{
    PrinterPage page(QStringLiteral("kitchen"));
    PrinterPage::Job waiting = job(5, QStringLiteral("order"), PrintedJobs::Kept::Bytes);
    waiting.state = QStringLiteral("processing");
    waiting.message = QStringLiteral("Waiting for the printer: Out of paper.");
    page.addJob(waiting);
    EXPECT_TRUE(page.html().contains(
        QStringLiteral("<td>processing<br>Waiting for the printer: Out of paper.</td>")));
}

TEST(PrinterPage, EscapesEveryTextItShows)
{
    PrinterPage page(QStringLiteral("<b>bar</b>"));
    page.setStatus({QStringLiteral("<i>odd</i>")});
    PrinterPage::Job hostile = job(1, QStringLiteral("<script>alert(\"x\")</script>"));
    hostile.state = QStringLiteral("<u>state</u>");
    hostile.message = QStringLiteral("a & b");
    page.addJob(hostile);
    const QString html = page.html();
    EXPECT_FALSE(html.contains(QStringLiteral("<script>")));
    EXPECT_FALSE(html.contains(QStringLiteral("<i>")));
    EXPECT_FALSE(html.contains(QStringLiteral("<u>")));
    EXPECT_FALSE(html.contains(QStringLiteral("<b>")));
    EXPECT_TRUE(html.contains(QStringLiteral("&lt;script&gt;alert(&quot;x&quot;)&lt;/script&gt;")));
    EXPECT_TRUE(html.contains(QStringLiteral("a &amp; b")));
    EXPECT_TRUE(html.contains(QStringLiteral("name=%3Cb%3Ebar%3C%2Fb%3E&amp;job=1"))) << qPrintable(html);
}

TEST(PrinterPage, AddressesNameThePrinterAndTheJob)
{
    EXPECT_EQ(PrinterPage::address(QStringLiteral("kitchen")),
              QStringLiteral("/bristel/printer?name=kitchen"));
    EXPECT_EQ(PrinterPage::address(QStringLiteral("bar & grill")),
              QStringLiteral("/bristel/printer?name=bar%20%26%20grill"));
    EXPECT_EQ(PrinterPage::pictureAddress(QStringLiteral("kitchen"), 7),
              QStringLiteral("/bristel/printer/picture?name=kitchen&job=7"));
}

TEST(PrinterPage, ReadsBackWhatAnAddressAsksFor)
{
    const QString address = PrinterPage::pictureAddress(QStringLiteral("bar & grill"), 42);
    const PrinterPage::Request request = PrinterPage::requestOf(address.section(QLatin1Char('?'), 1));
    EXPECT_EQ(request.printer, QStringLiteral("bar & grill"));
    EXPECT_EQ(request.job, 42);
    EXPECT_EQ(PrinterPage::requestOf(QStringLiteral("name=kitchen")).job, std::nullopt);
    EXPECT_EQ(PrinterPage::requestOf(QStringLiteral("name=kitchen&job=x")).job, std::nullopt);
    EXPECT_EQ(PrinterPage::requestOf(QStringLiteral("name=kitchen&job=-3")).job, std::nullopt);
    EXPECT_TRUE(PrinterPage::requestOf(QString()).printer.isEmpty());
}

} // namespace
