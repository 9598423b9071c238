#include "printerapp/StatusQuery.h"
#include "printerapp/PrinterLink.h"

#include <gtest/gtest.h>

#include <QList>

namespace {

// A printer connection that takes or refuses the questions and then hands back the chunks
// it was given, one per read, and nothing after them.
class ScriptedLink : public PrinterLink
{
public:
    ScriptedLink(bool takesBytes, QList<QByteArray> chunks)
        : m_takesBytes(takesBytes), m_chunks(std::move(chunks))
    {
    }

    bool write(const QByteArray &bytes) override
    {
        m_written += bytes;
        return m_takesBytes;
    }
    QByteArray read() override
    {
        ++m_reads;
        return m_chunks.isEmpty() ? QByteArray() : m_chunks.takeFirst();
    }

    QByteArray written() const { return m_written; }
    int reads() const { return m_reads; }

private:
    bool m_takesBytes;
    QList<QByteArray> m_chunks;
    QByteArray m_written;
    int m_reads = 0;
};

TEST(StatusQuery, AsksTheFourQuestionsAndReadsTheAnswersInChunks)
{
    // Out of paper: the offline cause says paper end, the sensor says end and near end.
    ScriptedLink link(true, {QByteArray("\x1a"), QByteArray("\x32\x12"), QByteArray("\x7e")});
    const PrinterStatus status = StatusQuery::ask(link);
    EXPECT_EQ(link.written(), PrinterStatus::allQueryBytes());
    EXPECT_EQ(status.reasons(), QStringList{QStringLiteral("media-empty")});
    EXPECT_FALSE(status.canPrint());
    EXPECT_EQ(link.reads(), 3);
}

TEST(StatusQuery, ARefusedQuestionMeansOffline)
{
    ScriptedLink link(false, {});
    const PrinterStatus status = StatusQuery::ask(link);
    EXPECT_TRUE(status.isUnreachable());
    EXPECT_EQ(status.operatorMessage(), QStringLiteral("Offline"));
    EXPECT_EQ(link.reads(), 0);
}

TEST(StatusQuery, NoAnswerMeansStatusUnknownAndStillPrints)
{
    ScriptedLink link(true, {});
    const PrinterStatus status = StatusQuery::ask(link);
    EXPECT_TRUE(status.isSilent());
    EXPECT_TRUE(status.canPrint());
    EXPECT_EQ(status.operatorMessage(), QStringLiteral("Status unknown"));
    EXPECT_EQ(link.reads(), 1);
}

TEST(StatusQuery, StopsReadingAfterABoundedNumberOfChunksOfNoise)
{
    QList<QByteArray> noise;
    for (int i = 0; i < 3 * StatusQuery::MaxReads; ++i)
        noise << QByteArray("\x01");
    ScriptedLink link(true, noise);
    StatusQuery::ask(link);
    EXPECT_EQ(link.reads(), StatusQuery::MaxReads);
}

} // namespace
