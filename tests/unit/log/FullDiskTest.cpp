// The logger on a full file system: every call returns, nothing crashes, the program goes on
// with its job, and the lines that fitted stay in the file.
//
// The full file system is the folder in $BRISTEL_FULL_DISK when set (tests/hostile/full-disk.sh
// mounts a small tmpfs there), otherwise /dev/full, where every write fails with ENOSPC.

#include "log/Logger.h"

#include "config/BRConfiguration.h"

#include "TestSupport.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstddef>
#include <malloc.h>
#if defined(__SANITIZE_ADDRESS__)
// The sanitizer runtime's count of bytes in use (GCC ships no header declaring it).
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

const QDateTime fixedTime(QDate(2026, 11, 16), QTime(3, 44, 40, 123));

// Bytes of heap in use (freed blocks excluded, also those a sanitizer holds in quarantine).
long long heapInUse()
{
#if defined(__SANITIZE_ADDRESS__)
    return static_cast<long long>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 info = mallinfo2();
    return static_cast<long long>(info.uordblks + info.hblkhd); // small blocks and mapped ones
#endif
}

class FullDisk : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        Logger::setClock([] { return fixedTime; });
        const QByteArray folder = qgetenv("BRISTEL_FULL_DISK");
        m_onTmpfs = !folder.isEmpty();
        const QString base = m_onTmpfs ? QString::fromLocal8Bit(folder) : QStringLiteral("/dev");
        const QString file = m_onTmpfs ? QStringLiteral("full-disk.log") : QStringLiteral("full");
        const QString text =
            QStringLiteral("bristel : {\n  logger : {\n    level = debug;\n    basedir = %1;\n"
                           "    filename = %2;\n    type = overwrite;\n  };\n};\n")
                .arg(base, file);
        const QString path = m_dir.filePath(QStringLiteral("bristel.conf"));
        writeFile(path, text.toUtf8());
        m_configuration = std::make_unique<BRConfiguration>(path, QStringLiteral("cfg"));
        m_logPath = base + QLatin1Char('/') + file;
    }
    void TearDown() override
    {
        Logger::setClock(Logger::Clock());
        if (m_onTmpfs)
            QFile::remove(m_logPath);
    }

    QTemporaryDir m_dir;
    std::unique_ptr<BRConfiguration> m_configuration;
    QString m_logPath;
    bool m_onTmpfs = false;
};

TEST_F(FullDisk, EveryCallReturnsAndTheJobGoesOn)
{
    const QString message = QStringLiteral("Query called from method numRecords: select count(*) from t");
    QByteArray job;
    {
        Logger logger(QStringLiteral("any"), *m_configuration);
        EXPECT_TRUE(logger.isOpen()) << "the log file on the full file system opens: "
                                     << m_logPath.toStdString();
        // Far more than the small file system holds; /dev/full refuses all of it.
        for (int i = 0; i < 20000; ++i) {
            logger.debug(message);
            job += QByteArray::number(i % 10);
        }
        logger.error(QStringLiteral("still logging"));
    }
    // The program's own work, done while the log could not be written, is whole.
    const QString result = m_dir.filePath(QStringLiteral("result"));
    writeFile(result, job);
    EXPECT_EQ(readFile(result).size(), 20000);

    if (m_onTmpfs) {
        // What fitted is kept: the log begins with its first lines, whole.
        const QByteArray kept = readFile(m_logPath);
        const QByteArray first = "[11-16-2026 03:44:40:123] DEBUG: Start Logger\n"
                                 "[11-16-2026 03:44:40:123] DEBUG: " +
                                 message.toUtf8() + '\n';
        EXPECT_EQ(kept.left(first.size()), first);
        EXPECT_LT(kept.size(), 20000 * (message.size() + 34)) << "the file system was not full";
    }
}

TEST_F(FullDisk, UnwrittenLinesAreNotKeptInMemory)
{
    Logger logger(QStringLiteral("any"), *m_configuration);
    const QString message(1000, QLatin1Char('x'));
    for (int i = 0; i < 2000; ++i) // fills a small file system, warms the allocator
        logger.debug(message);
    const long long before = heapInUse();
    for (int i = 0; i < 50000; ++i) // 50 MB of lines that cannot be written
        logger.debug(message);
    const long long grown = heapInUse() - before;
    EXPECT_LT(grown, 1024 * 1024) << "the heap grew by " << grown << " bytes while the disk was full";
}

} // namespace
