#include "printerapp/SpoolLedger.h"

#include "TestSupport.h"
#include "printerapp/DurableFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

class SpoolLedgerTest : public ::testing::Test
{
protected:
    QString spool() const { return m_folder.path(); }
    QString file(const QString &name) const { return spool() + QLatin1Char('/') + name; }
    void put(const QString &name, const QByteArray &bytes = "\x1b@ticket\n") const
    {
        writeFile(file(name), bytes);
    }
    QStringList files() const { return QDir(spool()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

private:
    QTemporaryDir m_folder;
};

QStringList documentsOf(const QList<SpoolLedger::Job> &jobs)
{
    QStringList names;
    for (const SpoolLedger::Job &job : jobs)
        names << job.document;
    return names;
}

int inodeFlags(const QString &path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    int flags = -1;
    if (fd >= 0) {
        if (::ioctl(fd, FS_IOC_GETFLAGS, &flags) != 0)
            flags = -1;
        ::close(fd);
    }
    return flags;
}

TEST(SpoolLedgerNames, ReadsThePrinterAndJobOfTheServersDocumentNames)
{
    const auto name = SpoolLedger::parseDocumentName(QStringLiteral("p00003j000000042-order_xml.prn"));
    ASSERT_TRUE(name.has_value());
    EXPECT_EQ(name->printerId, 3);
    EXPECT_EQ(name->jobId, 42);
    EXPECT_EQ(name->extension, QStringLiteral("prn"));
    const auto kept = SpoolLedger::parseDocumentName(QStringLiteral("kept-p00001j000000007-logo.png"));
    ASSERT_TRUE(kept.has_value());
    EXPECT_EQ(kept->jobId, 7);
    EXPECT_EQ(kept->extension, QStringLiteral("png"));
    EXPECT_TRUE(SpoolLedger::parseDocumentName(QStringLiteral("p00001j000000001-.prn")).has_value());
}

TEST(SpoolLedgerNames, RefusesNamesThatAreNotDocuments)
{
    for (const char *name : {"p0001j000000001-a.prn", "p00001j00000001-a.prn", "p00001j000000001.prn",
                             "p00001j000000001-a", "p00000j000000001-a.prn", "p00001j000000000-a.prn",
                             "px0001j000000001-a.prn", "notes.txt", "kept-", "p00001j000000001-a.pr n"})
        EXPECT_FALSE(SpoolLedger::parseDocumentName(QString::fromLatin1(name)).has_value()) << name;
}

TEST_F(SpoolLedgerTest, GivesEachPrintersDocumentsInArrivalOrder)
{
    put(QStringLiteral("p00002j000000010-bar.prn"));
    put(QStringLiteral("p00001j000000100-late.png"));
    put(QStringLiteral("p00001j000000011-b.prn"));
    put(QStringLiteral("kept-p00001j000000010-kept.prn"));
    put(QStringLiteral("p00001j000000009-first_xml.prn"));
    SpoolLedger ledger(spool());
    const QList<SpoolLedger::Job> jobs = ledger.leftovers();
    EXPECT_EQ(documentsOf(jobs), (QStringList{QStringLiteral("p00001j000000009-first_xml.prn"),
                                              QStringLiteral("kept-p00001j000000010-kept.prn"),
                                              QStringLiteral("p00001j000000011-b.prn"),
                                              QStringLiteral("p00001j000000100-late.png"),
                                              QStringLiteral("p00002j000000010-bar.prn")}));
    ASSERT_EQ(jobs.size(), 5);
    EXPECT_EQ(jobs.at(3).printerId, 1);
    EXPECT_EQ(jobs.at(3).jobId, 100);
    EXPECT_EQ(jobs.at(4).printerId, 2);
    EXPECT_TRUE(ledger.problems().isEmpty());
}

TEST_F(SpoolLedgerTest, TakesTheServersAttributeFileAlongButNotForAJob)
{
    put(QStringLiteral("p00001j000000001-a_bin.prn"));
    put(QStringLiteral("p00001j000000001-a_bin.ipp"), "attributes");
    put(QStringLiteral("p00001j000000002-done.ipp"), "a finished job's attributes");
    SpoolLedger ledger(spool());
    const QList<SpoolLedger::Job> jobs = ledger.leftovers();
    ASSERT_EQ(jobs.size(), 1);
    EXPECT_EQ(jobs.at(0).attributes, QStringLiteral("p00001j000000001-a_bin.ipp"));
    EXPECT_TRUE(ledger.problems().isEmpty());
}

TEST_F(SpoolLedgerTest, IgnoresAndReportsNamesItDoesNotKnow)
{
    put(QStringLiteral("p0001j1-short.prn"));
    put(QStringLiteral("notes.txt"));
    put(QStringLiteral("p00001j000000003-good.prn"));
    SpoolLedger ledger(spool());
    EXPECT_EQ(documentsOf(ledger.leftovers()), QStringList{QStringLiteral("p00001j000000003-good.prn")});
    const QString problems = ledger.problems().join(QLatin1Char('\n'));
    EXPECT_EQ(ledger.problems().size(), 2) << qPrintable(problems);
    EXPECT_TRUE(problems.contains(QStringLiteral("p0001j1-short.prn"))) << qPrintable(problems);
    EXPECT_TRUE(problems.contains(QStringLiteral("notes.txt"))) << qPrintable(problems);
    // Left alone: they may be someone's.
    EXPECT_TRUE(QFile::exists(file(QStringLiteral("notes.txt"))));
}

TEST_F(SpoolLedgerTest, AStartedJobComesBackStartedAndAConfirmedOneNotAtAll)
{
    put(QStringLiteral("p00001j000000004-started.prn"));
    put(QStringLiteral("p00001j000000005-confirmed.prn"));
    put(QStringLiteral("p00001j000000006-waiting.prn"));
    SpoolLedger ledger(spool());
    QString error;
    ASSERT_TRUE(ledger.markStarted(1, 4, &error)) << qPrintable(error);
    ASSERT_TRUE(ledger.markStarted(1, 5, &error)) << qPrintable(error);
    EXPECT_TRUE(ledger.hasStarted(1, 4));
    EXPECT_FALSE(ledger.hasStarted(1, 6));
    ASSERT_TRUE(ledger.markDone(1, 5, file(QStringLiteral("p00001j000000005-confirmed.prn")), &error))
        << qPrintable(error);

    SpoolLedger restarted(spool());
    const QList<SpoolLedger::Job> jobs = restarted.leftovers();
    ASSERT_EQ(documentsOf(jobs), (QStringList{QStringLiteral("p00001j000000004-started.prn"),
                                              QStringLiteral("p00001j000000006-waiting.prn")}));
    EXPECT_TRUE(jobs.at(0).started);
    EXPECT_FALSE(jobs.at(1).started);
    EXPECT_EQ(files(), (QStringList{QStringLiteral("p00001j000000004-started.prn"),
                                    QStringLiteral("p00001j000000006-waiting.prn"),
                                    SpoolLedger::startedMarkName(1, 4)}));
}

TEST_F(SpoolLedgerTest, ClearsMarksWithoutADocumentAndMarksACrashCutShort)
{
    put(SpoolLedger::startedMarkName(1, 8), QByteArray());
    put(DurableFile::temporaryPrefix() + SpoolLedger::startedMarkName(1, 9), QByteArray());
    put(QStringLiteral("p00001j000000009-half_marked.prn"));
    SpoolLedger ledger(spool());
    const QList<SpoolLedger::Job> jobs = ledger.leftovers();
    ASSERT_EQ(jobs.size(), 1);
    EXPECT_FALSE(jobs.at(0).started);
    EXPECT_EQ(files(), QStringList{QStringLiteral("p00001j000000009-half_marked.prn")});
    EXPECT_TRUE(ledger.problems().isEmpty()) << qPrintable(ledger.problems().join(QLatin1Char('\n')));
}

TEST_F(SpoolLedgerTest, AJobGivenUpAsTheServerStopsIsKeptForTheNextStart)
{
    put(QStringLiteral("p00001j000000003-order.prn"), "order");
    SpoolLedger ledger(spool());
    QString error;
    ASSERT_TRUE(ledger.markStarted(1, 3, &error)) << qPrintable(error);
    ASSERT_TRUE(ledger.keepForRestart(file(QStringLiteral("p00001j000000003-order.prn")), &error))
        << qPrintable(error);
    // What the server then removes under the old name is gone already.
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("p00001j000000003-order.prn"))));
    const QList<SpoolLedger::Job> jobs = ledger.leftovers();
    ASSERT_EQ(jobs.size(), 1);
    EXPECT_EQ(jobs.at(0).document, QStringLiteral("kept-p00001j000000003-order.prn"));
    EXPECT_EQ(jobs.at(0).jobId, 3);
    EXPECT_TRUE(jobs.at(0).started);
    EXPECT_EQ(readFile(ledger.pathOf(jobs.at(0).document)), QByteArray("order"));
}

TEST_F(SpoolLedgerTest, AJobPutBackUnderAnotherNumberLeavesNothingBehind)
{
    put(QStringLiteral("p00001j000000002-a.ipp"), "attributes");
    put(QStringLiteral("p00001j000000002-a.prn"));
    put(QStringLiteral("p00001j000000003-b.prn"));
    SpoolLedger ledger(spool());
    QString error;
    ASSERT_TRUE(ledger.markStarted(1, 2, &error)) << qPrintable(error);
    ASSERT_TRUE(ledger.markStarted(1, 3, &error)) << qPrintable(error);
    SpoolLedger::Job job = ledger.leftovers().at(0);
    // The server moved the document to the job's new name.
    ASSERT_TRUE(QFile::rename(file(job.document), file(QStringLiteral("p00001j000000010-a.prn"))));
    ASSERT_TRUE(ledger.forget(job, &error)) << qPrintable(error);
    EXPECT_EQ(files(),
              (QStringList{QStringLiteral("p00001j000000003-b.prn"), QStringLiteral("p00001j000000010-a.prn"),
                           SpoolLedger::startedMarkName(1, 3)}));
}

TEST_F(SpoolLedgerTest, SetsAsideAJobNoPrinterTakesMarkAndAll)
{
    put(QStringLiteral("p00007j000000001-gone.prn"), "for a printer deleted");
    SpoolLedger ledger(spool());
    QString error;
    ASSERT_TRUE(ledger.markStarted(7, 1, &error)) << qPrintable(error);
    const SpoolLedger::Job job = ledger.leftovers().at(0);
    ASSERT_TRUE(ledger.setAside(job, &error)) << qPrintable(error);
    EXPECT_TRUE(ledger.leftovers().isEmpty());
    EXPECT_TRUE(files().isEmpty());
    EXPECT_EQ(readFile(ledger.setAsideFolder() + QStringLiteral("/p00007j000000001-gone.prn")),
              QByteArray("for a printer deleted"));
    EXPECT_TRUE(
        QFile::exists(ledger.setAsideFolder() + QLatin1Char('/') + SpoolLedger::startedMarkName(7, 1)));
}

TEST_F(SpoolLedgerTest, RemembersWhichJobsAreReprints)
{
    SpoolLedger ledger(spool());
    ledger.noteReprint(1, 12);
    EXPECT_TRUE(ledger.isReprint(1, 12));
    EXPECT_FALSE(ledger.isReprint(2, 12));
    EXPECT_FALSE(ledger.isReprint(1, 13));
}

TEST_F(SpoolLedgerTest, MakesTheFolderWriteSynchronouslyOrSaysWhyNot)
{
    SpoolLedger ledger(spool());
    QString error;
    if (!ledger.makeWritesSynchronous(&error)) {
        // A file system without the attributes (tmpfs): the reason names the folder.
        EXPECT_TRUE(error.contains(spool())) << qPrintable(error);
        return;
    }
    EXPECT_EQ(inodeFlags(spool()) & (FS_SYNC_FL | FS_DIRSYNC_FL), FS_SYNC_FL | FS_DIRSYNC_FL);
    put(QStringLiteral("p00001j000000001-new.prn"));
    EXPECT_TRUE(inodeFlags(file(QStringLiteral("p00001j000000001-new.prn"))) & FS_SYNC_FL);
    EXPECT_TRUE(ledger.makeWritesSynchronous(&error)) << qPrintable(error);
}

TEST_F(SpoolLedgerTest, AFolderThatIsNotThereCannotBeMadeSynchronous)
{
    SpoolLedger ledger(spool() + QStringLiteral("/missing"));
    QString error;
    EXPECT_FALSE(ledger.makeWritesSynchronous(&error));
    EXPECT_TRUE(error.contains(QStringLiteral("missing"))) << qPrintable(error);
}

} // namespace
