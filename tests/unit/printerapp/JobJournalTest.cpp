#include "printerapp/JobJournal.h"
#include "TestSupport.h"
#include "printerapp/DurableFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString EscPos = QStringLiteral("application/vnd.escpos");

class JobJournalTest : public ::testing::Test
{
protected:
    QString spool() const { return m_folder.filePath(QStringLiteral("spool")); }
    QString file(const QString &name) const { return spool() + QLatin1Char('/') + name; }

    // A journal on the spool folder as a restarted application finds it.
    std::unique_ptr<JobJournal> reopened() const
    {
        auto journal = std::make_unique<JobJournal>(spool());
        QString error;
        EXPECT_TRUE(journal->load(&error)) << qPrintable(error);
        return journal;
    }

    JobRecord accept(JobJournal &journal, const QString &printer, const QByteArray &data) const
    {
        QString error;
        const std::optional<JobRecord> record =
            journal.accept(printer, QStringLiteral("id"), EscPos, data, &error);
        EXPECT_TRUE(record.has_value()) << qPrintable(error);
        return record.value_or(JobRecord{});
    }

    QStringList spoolFiles() const { return QDir(spool()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

private:
    QTemporaryDir m_folder;
};

QList<qint64> sequencesOf(const QList<JobJournal::Entry> &entries)
{
    QList<qint64> sequences;
    for (const JobJournal::Entry &entry : entries)
        sequences << entry.record.sequence;
    return sequences;
}

TEST_F(JobJournalTest, AnAcceptedJobIsOnDiskWithItsRecord)
{
    const auto journal = reopened();
    const JobRecord record = accept(*journal, QStringLiteral("kitchen"), "\x1b@hello");
    EXPECT_EQ(record.sequence, 1);
    EXPECT_EQ(readFile(journal->dataPath(1)), QByteArray("\x1b@hello"));
    EXPECT_EQ(spoolFiles(), (QStringList{JobJournal::dataName(1), JobJournal::recordName(1)}));
    // Nothing of the folder is readable by others: jobs carry customers' names.
    EXPECT_EQ(QFile::permissions(spool()) & (QFileDevice::ReadOther | QFileDevice::ReadGroup), 0);
}

TEST_F(JobJournalTest, AcceptBeforeLoadIsRefused)
{
    JobJournal journal(spool());
    QString error;
    EXPECT_FALSE(journal.accept(QStringLiteral("kitchen"), {}, EscPos, "x", &error));
    EXPECT_FALSE(error.isEmpty());
}

TEST_F(JobJournalTest, ARestartGivesEveryPendingJobOfEveryPrinterInArrivalOrder)
{
    {
        const auto journal = reopened();
        accept(*journal, QStringLiteral("kitchen"), "one");
        accept(*journal, QStringLiteral("bar"), "two");
        accept(*journal, QStringLiteral("kitchen"), "three");
    }
    const auto journal = reopened();
    const QList<JobJournal::Entry> jobs = journal->pendingJobs();
    ASSERT_EQ(jobs.size(), 3);
    EXPECT_EQ(jobs[0].record.printer, QStringLiteral("kitchen"));
    EXPECT_EQ(jobs[1].record.printer, QStringLiteral("bar"));
    EXPECT_EQ(jobs[2].record.format, EscPos);
    EXPECT_EQ(sequencesOf(jobs), (QList<qint64>{1, 2, 3}));
    QString error;
    EXPECT_EQ(journal->data(2, &error), QByteArray("two"));
    EXPECT_TRUE(journal->problems().isEmpty()) << qPrintable(journal->problems().join('\n'));
}

TEST_F(JobJournalTest, AStartedJobComesBackAsAReprintAndADoneOneNotAtAll)
{
    {
        const auto journal = reopened();
        accept(*journal, QStringLiteral("kitchen"), "first");
        accept(*journal, QStringLiteral("kitchen"), "second");
        accept(*journal, QStringLiteral("kitchen"), "third");
        QString error;
        ASSERT_TRUE(journal->markStarted(1, &error)) << qPrintable(error);
        ASSERT_TRUE(journal->markDone(1, &error)) << qPrintable(error);
        EXPECT_FALSE(QFile::exists(journal->dataPath(1)));
        ASSERT_TRUE(journal->markStarted(2, &error)) << qPrintable(error);
    }
    const auto journal = reopened();
    const QList<JobJournal::Entry> jobs = journal->pendingJobs();
    ASSERT_EQ(jobs.size(), 2);
    EXPECT_EQ(jobs[0].record.sequence, 2);
    EXPECT_TRUE(jobs[0].reprint);
    EXPECT_EQ(jobs[1].record.sequence, 3);
    EXPECT_FALSE(jobs[1].reprint);
}

TEST_F(JobJournalTest, ArrivalNumbersKeepGrowingWhenEveryJobHasPrinted)
{
    {
        const auto journal = reopened();
        for (int i = 0; i < 3; ++i) {
            const JobRecord record = accept(*journal, QStringLiteral("kitchen"), "job");
            QString error;
            ASSERT_TRUE(journal->markDone(record.sequence, &error)) << qPrintable(error);
        }
        // Only the latest done record stays, to carry the number.
        EXPECT_EQ(spoolFiles(), QStringList{JobJournal::recordName(3)});
    }
    const auto journal = reopened();
    EXPECT_TRUE(journal->pendingJobs().isEmpty());
    EXPECT_EQ(accept(*journal, QStringLiteral("kitchen"), "next").sequence, 4);
}

TEST_F(JobJournalTest, MarkingAJobNotInTheJournalFails)
{
    const auto journal = reopened();
    QString error;
    EXPECT_FALSE(journal->markStarted(7, &error));
    EXPECT_FALSE(journal->markDone(7, &error));
    EXPECT_FALSE(error.isEmpty());
}

// The crash points of accept(), each leaving what a process killed there leaves on the disk.

TEST_F(JobJournalTest, ACrashWhileWritingTheDataLeavesNoJob)
{
    QDir().mkpath(spool());
    writeFile(file(DurableFile::temporaryPrefix() + JobJournal::dataName(1)), "half of the");
    const auto journal = reopened();
    EXPECT_TRUE(journal->pendingJobs().isEmpty());
    EXPECT_TRUE(spoolFiles().isEmpty()) << qPrintable(spoolFiles().join(' '));
    EXPECT_EQ(journal->problems().size(), 1);
}

TEST_F(JobJournalTest, ACrashBeforeTheRecordLeavesNoJob)
{
    {
        const auto journal = reopened();
        accept(*journal, QStringLiteral("kitchen"), "kept");
    }
    // The data of job 2 renamed into place, its record never begun or only begun.
    writeFile(file(JobJournal::dataName(2)), "whole data");
    writeFile(file(DurableFile::temporaryPrefix() + JobJournal::recordName(2)), "bristel-job-record 1\nseq");
    const auto journal = reopened();
    EXPECT_EQ(sequencesOf(journal->pendingJobs()), QList<qint64>{1});
    EXPECT_EQ(spoolFiles(), (QStringList{JobJournal::dataName(1), JobJournal::recordName(1)}));
    // The number of the job that never was is free again.
    EXPECT_EQ(accept(*journal, QStringLiteral("kitchen"), "new").sequence, 2);
}

TEST_F(JobJournalTest, ATruncatedRecordIsNeverTakenForAJob)
{
    JobRecord record;
    {
        const auto journal = reopened();
        record = accept(*journal, QStringLiteral("kitchen"), "data");
    }
    const QByteArray whole = record.serialized();
    for (qsizetype cut = 0; cut < whole.size(); ++cut) {
        writeFile(file(JobJournal::recordName(1)), whole.left(cut));
        writeFile(file(JobJournal::dataName(1)), "data");
        const auto journal = reopened();
        EXPECT_TRUE(journal->pendingJobs().isEmpty()) << "record cut at " << cut;
        EXPECT_FALSE(journal->problems().isEmpty());
        QDir(spool() + QStringLiteral("/damaged")).removeRecursively();
    }
}

TEST_F(JobJournalTest, DataThatDiffersFromItsRecordIsNeverTakenForAJob)
{
    {
        const auto journal = reopened();
        accept(*journal, QStringLiteral("kitchen"), "the whole ticket");
        accept(*journal, QStringLiteral("kitchen"), "the other ticket");
    }
    writeFile(file(JobJournal::dataName(1)), "the whole");        // cut short
    writeFile(file(JobJournal::dataName(2)), "the OTHER ticket"); // same size, other bytes
    const auto journal = reopened();
    EXPECT_TRUE(journal->pendingJobs().isEmpty());
    EXPECT_TRUE(QFile::exists(spool() + QStringLiteral("/damaged/") + JobJournal::dataName(1)));
    EXPECT_EQ(journal->problems().size(), 4);
}

TEST_F(JobJournalTest, ACrashInsideMarkDoneDoesNotPrintTheJobAgain)
{
    {
        const auto journal = reopened();
        accept(*journal, QStringLiteral("kitchen"), "printed");
        accept(*journal, QStringLiteral("kitchen"), "waiting");
    }
    // The record says done, the data was not removed yet.
    const auto first = reopened();
    JobRecord done = first->pendingJobs().at(0).record;
    done.state = JobRecord::State::Done;
    writeFile(file(JobJournal::recordName(1)), done.serialized());
    const auto journal = reopened();
    EXPECT_EQ(sequencesOf(journal->pendingJobs()), QList<qint64>{2});
    EXPECT_FALSE(QFile::exists(journal->dataPath(1)));
}

TEST_F(JobJournalTest, KeepsTheOrderOfAThousandJobsAcrossARestart)
{
    QList<qint64> accepted;
    {
        const auto journal = reopened();
        for (int i = 0; i < 1000; ++i) {
            const QString printer = i % 3 == 0 ? QStringLiteral("bar") : QStringLiteral("kitchen");
            accepted << accept(*journal, printer, QByteArray::number(i)).sequence;
        }
    }
    const auto journal = reopened();
    const QList<JobJournal::Entry> jobs = journal->pendingJobs();
    EXPECT_EQ(sequencesOf(jobs), accepted);
    ASSERT_EQ(jobs.size(), 1000);
    QString error;
    for (int i : {0, 1, 499, 999})
        EXPECT_EQ(journal->data(jobs[i].record.sequence, &error), QByteArray::number(i));
    EXPECT_EQ(jobs[999].record.printer, QStringLiteral("bar"));
}

TEST_F(JobJournalTest, AFolderThatCannotBeMadeIsAnError)
{
    writeFile(spool(), "a file where the folder should be");
    JobJournal journal(spool() + QStringLiteral("/inside"));
    QString error;
    EXPECT_FALSE(journal.load(&error));
    EXPECT_TRUE(error.contains(QStringLiteral("inside"))) << qPrintable(error);
}

TEST(JobRecord, SurvivesAnyNameAndKeepsItsFields)
{
    JobRecord record;
    record.sequence = 42;
    record.id = QStringLiteral("job=7\nx");
    record.printer = QStringLiteral("Küche 1");
    record.format = QStringLiteral("application/vnd.bristel+xml");
    record.state = JobRecord::State::Started;
    record.dataSize = 9;
    record.dataDigest = JobRecord::digestOf("123456789");
    const std::optional<JobRecord> parsed = JobRecord::parse(record.serialized());
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(parsed->sequence, 42);
    EXPECT_EQ(parsed->id, record.id);
    EXPECT_EQ(parsed->printer, record.printer);
    EXPECT_EQ(parsed->format, record.format);
    EXPECT_EQ(parsed->state, JobRecord::State::Started);
    EXPECT_EQ(parsed->dataSize, 9);
    EXPECT_EQ(parsed->dataDigest, record.dataDigest);
}

} // namespace
