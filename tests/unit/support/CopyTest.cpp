#include "support/HLibrary.h"

#include "TestSupport.h"

#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

#include <cstdio>
#include <unistd.h>

namespace {

QByteArray numberedLines(int count)
{
    QByteArray text;
    for (int line = 1; line <= count; ++line)
        text += "line " + QByteArray::number(line) + '\n';
    return text;
}

// Replaces the new-sheet prompt and records, at every prompt, how many lines the
// destination already holds (the copy flushes after every line).
class CopyTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        HLibrary::setNewSheetPrompt([this] { promptsAfter.push_back(readFile(destination()).count('\n')); });
    }
    void TearDown() override { HLibrary::setNewSheetPrompt(std::function<void()>()); }

    QString source() const { return dir.filePath(QStringLiteral("source.txt")); }
    QString destination() const { return dir.filePath(QStringLiteral("destination.txt")); }

    QTemporaryDir dir;
    std::vector<qsizetype> promptsAfter;
};

TEST_F(CopyTest, PromptsAfterLinesFiveAndNineForPageLengthFour)
{
    writeFile(source(), numberedLines(10));
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 4, 0));
    EXPECT_EQ(promptsAfter, (std::vector<qsizetype>{5, 9}));
    EXPECT_EQ(readFile(destination()), numberedLines(10));
}

TEST_F(CopyTest, PageLengthZeroNeverPrompts)
{
    writeFile(source(), numberedLines(30));
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 0, 0));
    EXPECT_TRUE(promptsAfter.empty());
    EXPECT_EQ(readFile(destination()), numberedLines(30));
}

TEST_F(CopyTest, PageLengthOnePromptsAfterEveryLineFromTheSecond)
{
    writeFile(source(), numberedLines(4));
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 1, 0));
    EXPECT_EQ(promptsAfter, (std::vector<qsizetype>{2, 3, 4}));
}

TEST_F(CopyTest, TextFormConvertsItsArguments)
{
    writeFile(source(), numberedLines(10));
    EXPECT_TRUE(HLibrary::copy(source(), destination(), QStringLiteral("4"), QStringLiteral("0")));
    EXPECT_EQ(promptsAfter, (std::vector<qsizetype>{5, 9}));
    EXPECT_EQ(readFile(destination()), numberedLines(10));
}

TEST_F(CopyTest, LongLinesArriveInPiecesThatCountAsLines)
{
    // 300 bytes and a line end: pieces of 127, 127 and 47 bytes, then "b\n".
    const QByteArray longLine = QByteArray(300, 'a') + '\n';
    writeFile(source(), longLine + "b\n");
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 2, 0));
    ASSERT_EQ(promptsAfter.size(), 1u);
    EXPECT_EQ(readFile(destination()), longLine + "b\n");
}

TEST_F(CopyTest, LongLinePromptComesAfterItsThirdPiece)
{
    const QByteArray longLine = QByteArray(300, 'a') + '\n';
    writeFile(source(), longLine + "b\n");
    qint64 sizeAtPrompt = -1;
    HLibrary::setNewSheetPrompt([&] { sizeAtPrompt = readFile(destination()).size(); });
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 2, 0));
    EXPECT_EQ(sizeAtPrompt, 301);
}

TEST_F(CopyTest, CopiesBytesAsRead)
{
    const QByteArray bytes("a\r\nb\r\n\r\n\x01\xff last without end");
    writeFile(source(), bytes);
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 0, 0));
    EXPECT_EQ(readFile(destination()), bytes);
}

TEST_F(CopyTest, EmptySourceGivesAnEmptyDestination)
{
    writeFile(source(), QByteArray());
    writeFile(destination(), "old");
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 4, 0));
    EXPECT_EQ(readFile(destination()), QByteArray());
}

TEST_F(CopyTest, UnopenableFilesGiveFalse)
{
    writeFile(source(), numberedLines(2));
    const QByteArray output = captureStdout([&] {
        EXPECT_FALSE(HLibrary::copy(dir.filePath(QStringLiteral("missing")), destination(), 4, 0));
        EXPECT_FALSE(HLibrary::copy(source(), dir.filePath(QStringLiteral("no/such/dir/out")), 4, 0));
        EXPECT_FALSE(HLibrary::copy(dir.filePath(QStringLiteral("missing")), destination(), 4, 0, 0));
        EXPECT_FALSE(HLibrary::copy(source(), dir.filePath(QStringLiteral("no/such/dir/out")), 4, 0, 0));
    });
    EXPECT_EQ(output, QByteArray());
    EXPECT_TRUE(promptsAfter.empty());
}

TEST_F(CopyTest, DelayFollowsEveryLine)
{
    writeFile(source(), numberedLines(3));
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 0, 100));
    EXPECT_GE(timer.elapsed(), 300);
}

TEST_F(CopyTest, PagesOfATenLineFile)
{
    writeFile(source(), numberedLines(10));
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 4, 0, 0));
    EXPECT_EQ(readFile(destination()), QByteArray("line 1\nline 2\nline 3\nline 4\n"));
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 4, 0, 1));
    EXPECT_EQ(readFile(destination()), QByteArray("line 5\nline 6\nline 7\nline 8\n"));
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 4, 0, 2));
    EXPECT_EQ(readFile(destination()), QByteArray("line 9\nline 10\n"));
    EXPECT_FALSE(HLibrary::copy(source(), destination(), 4, 0, 3));
    EXPECT_TRUE(promptsAfter.empty());
}

TEST_F(CopyTest, PageStartingExactlyAtTheEndIsFalse)
{
    writeFile(source(), numberedLines(5));
    EXPECT_FALSE(HLibrary::copy(source(), destination(), 5, 0, 1));
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 5, 0, 0));
    EXPECT_EQ(readFile(destination()), numberedLines(5));
}

TEST_F(CopyTest, PageLengthZeroCopiesTheWholeFile)
{
    writeFile(source(), numberedLines(7));
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 0, 0, 3));
    EXPECT_EQ(readFile(destination()), numberedLines(7));
}

TEST_F(CopyTest, PageOfAnEmptyFileIsFalse)
{
    writeFile(source(), QByteArray());
    EXPECT_FALSE(HLibrary::copy(source(), destination(), 4, 0, 0));
}

// The pause of the tests that count pauses by the time they take.
constexpr int pauseMs = 2000;

TEST_F(CopyTest, PageDelayOnlyBetweenItsLines)
{
    writeFile(source(), numberedLines(10));
    QElapsedTimer timer;
    timer.start();
    // Two lines of page 4: one pause between them, none after the last.  A pause cannot end
    // early, and a second one would take the run past twice the delay; the pause is long
    // enough that a loaded machine's slowness stays well within one delay.
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 2, pauseMs, 4));
    const qint64 elapsed = timer.elapsed();
    EXPECT_EQ(readFile(destination()), QByteArray("line 9\nline 10\n"));
    EXPECT_GE(elapsed, pauseMs);
    EXPECT_LT(elapsed, 2 * pauseMs) << "more than one pause";
}

TEST_F(CopyTest, PageDelayNotAfterTheLastLineOfTheFile)
{
    writeFile(source(), numberedLines(5));
    QElapsedTimer timer;
    timer.start();
    // Page 1 of length 3 holds lines 4 and 5 only: one pause, as above.
    EXPECT_TRUE(HLibrary::copy(source(), destination(), 3, pauseMs, 1));
    const qint64 elapsed = timer.elapsed();
    EXPECT_EQ(readFile(destination()), QByteArray("line 4\nline 5\n"));
    EXPECT_GE(elapsed, pauseMs);
    EXPECT_LT(elapsed, 2 * pauseMs) << "more than one pause";
}

// Without a QApplication the built-in prompt asks on the console: it prints the request
// and blocks until a line arrives on standard input.
TEST_F(CopyTest, ConsolePromptWaitsForALineOnStandardInput)
{
    HLibrary::setNewSheetPrompt(std::function<void()>());
    writeFile(source(), numberedLines(10));

    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    const char answers[] = "\nok\nrest";
    ASSERT_EQ(::write(pipeEnds[1], answers, sizeof answers - 1), static_cast<ssize_t>(sizeof answers - 1));
    close(pipeEnds[1]);
    const int savedStdin = dup(fileno(stdin));
    dup2(pipeEnds[0], fileno(stdin));
    close(pipeEnds[0]);
    clearerr(stdin);

    bool copied = false;
    const QByteArray output = captureStdout([&] { copied = HLibrary::copy(source(), destination(), 4, 0); });
    QByteArray left;
    for (int c = std::getchar(); c != EOF; c = std::getchar())
        left += static_cast<char>(c);
    clearerr(stdin);
    dup2(savedStdin, fileno(stdin));
    close(savedStdin);

    EXPECT_TRUE(copied);
    EXPECT_EQ(output, QByteArray("Insert a new sheet\nInsert a new sheet\n"));
    EXPECT_EQ(left, QByteArray("rest"));
    EXPECT_EQ(readFile(destination()), numberedLines(10));
}

} // namespace
