// The status queries against a receipt printer on the network: a fake one, driven by the
// test, that answers DLE EOT as a real printer in each state would.
#include "ApplicationEnvironment.h"
#include "TestSupport.h"
#include "printerapp/PrinterStatus.h"
#include "printerapp/StatusAnswerParser.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

[[maybe_unused]] ::testing::Environment *const environment =
    ::testing::AddGlobalTestEnvironment(new testsupport::ApplicationEnvironment<QCoreApplication>);

// Long enough for a loaded machine: a printer that answers ends the wait at once.
constexpr int AnswerWaitMs = 30000;
// How long a printer that never answers is given before its status counts as unknown; the
// silent-printer test necessarily waits this long.
constexpr int SilenceMs = 500;

// Connects, sends the four queries and reads the answers, as the application does.
PrinterStatus queryStatus(quint16 port, int waitMs)
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    if (!socket.waitForConnected(AnswerWaitMs))
        return PrinterStatus::unreachable();
    socket.write(PrinterStatus::allQueryBytes());
    socket.waitForBytesWritten(AnswerWaitMs);
    StatusAnswerParser parser;
    while (!parser.isComplete() && socket.waitForReadyRead(waitMs))
        parser.feed(socket.readAll());
    if (!parser.isComplete() && socket.state() != QAbstractSocket::ConnectedState)
        return PrinterStatus::unreachable();
    return parser.status();
}

class StatusPrinter : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_folder.isValid());
        m_process.setProgram(QStringLiteral(PYTHON3_EXECUTABLE));
        m_process.setArguments({QStringLiteral(STATUS_PRINTER_SCRIPT), m_folder.path()});
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start();
        ASSERT_TRUE(m_process.waitForStarted(AnswerWaitMs)) << qPrintable(m_process.errorString());
        while (!m_process.canReadLine() && m_process.waitForReadyRead(AnswerWaitMs)) {
        }
        const QList<QByteArray> ports = m_process.readLine().trimmed().split(' ');
        ASSERT_EQ(ports.size(), 2) << "the fake printer did not start";
        m_printerPort = quint16(ports[0].toUInt());
        m_control.connectToHost(QStringLiteral("127.0.0.1"), quint16(ports[1].toUInt()));
        ASSERT_TRUE(m_control.waitForConnected(AnswerWaitMs));
    }

    void TearDown() override
    {
        m_control.close();
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished(AnswerWaitMs))
            m_process.kill();
        m_process.waitForFinished(AnswerWaitMs);
    }

    // Changes the printer's state; returns once the printer has taken it.
    void setState(const char *state)
    {
        m_control.write(QByteArray("state ") + state + '\n');
        while (!m_control.canReadLine() && m_control.waitForReadyRead(AnswerWaitMs)) {
        }
        ASSERT_EQ(m_control.readLine(), QByteArray("ok\n")) << state;
    }

    PrinterStatus status(int waitMs = AnswerWaitMs) const { return queryStatus(m_printerPort, waitMs); }
    QByteArray received() const { return readFile(m_folder.filePath(QStringLiteral("received.bin"))); }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QTcpSocket m_control;
    quint16 m_printerPort = 0;
};

TEST_F(StatusPrinter, AReadyPrinterPrints)
{
    const PrinterStatus ready = status();
    EXPECT_EQ(ready.operatorMessage(), QStringLiteral("Ready"));
    EXPECT_TRUE(ready.canPrint());
    // The printer got exactly the four queries.
    EXPECT_EQ(received(), PrinterStatus::allQueryBytes());
}

TEST_F(StatusPrinter, FollowsThePrinterThroughItsStates)
{
    setState("near-end");
    EXPECT_EQ(status().reasons(), QStringList{QStringLiteral("media-low")});
    EXPECT_TRUE(status().canPrint());

    setState("paper-out");
    EXPECT_EQ(status().operatorMessage(), QStringLiteral("Out of paper"));
    EXPECT_EQ(status().reasons(), QStringList{QStringLiteral("media-empty")});
    EXPECT_FALSE(status().canPrint());

    setState("cover-open");
    EXPECT_EQ(status().operatorMessage(), QStringLiteral("Cover open"));
    EXPECT_FALSE(status().canPrint());

    setState("ready");
    EXPECT_EQ(status().operatorMessage(), QStringLiteral("Ready"));
}

TEST_F(StatusPrinter, APrinterSwitchedOffIsOfflineUntilItComesBack)
{
    setState("off");
    const PrinterStatus off = status();
    EXPECT_TRUE(off.isUnreachable());
    EXPECT_EQ(off.reasons(), QStringList{QStringLiteral("offline-report")});
    EXPECT_FALSE(off.canPrint());

    setState("ready");
    EXPECT_TRUE(status().canPrint());
}

TEST_F(StatusPrinter, APrinterThatNeverAnswersStillPrints)
{
    setState("silent");
    const PrinterStatus silent = status(SilenceMs);
    EXPECT_EQ(silent.operatorMessage(), QStringLiteral("Status unknown"));
    EXPECT_TRUE(silent.canPrint());
    // It heard the queries all the same.
    EXPECT_EQ(received(), PrinterStatus::allQueryBytes());
}

} // namespace
