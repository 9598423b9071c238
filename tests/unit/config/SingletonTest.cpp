// The process-wide configuration object and the singleton template.
//
// The user's home is pointed at a temporary folder before any test runs, so that the tests
// hold whether each runs in its own process or the whole binary runs at once.

#include "config/BRConfiguration.h"
#include "config/SyncSingleton.h"

#include "TestSupport.h"

#include <QDir>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

const QByteArray HomeConfiguration = "bristel : {\n"
                                     "  receiptdoc : { paperWidth = 40; };\n"
                                     "  language : { file = \"/\"; };\n"
                                     "  caf\xe9 : { name = Caff\xe8; };\n"
                                     "};\n";

class HomeEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        ASSERT_TRUE(m_home.isValid());
        qputenv("HOME", QFile::encodeName(m_home.path()));
        writeFile(home() + QLatin1String("/.bristel/conf/bristel.conf"), HomeConfiguration);
    }

    static QString home() { return QString::fromLocal8Bit(qgetenv("HOME")); }

private:
    QTemporaryDir m_home;
};

const auto *const environment = ::testing::AddGlobalTestEnvironment(new HomeEnvironment);

// Points HOME elsewhere for the duration of a test.
class HomeOverride
{
public:
    explicit HomeOverride(const QString &home) : m_saved(qgetenv("HOME"))
    {
        qputenv("HOME", QFile::encodeName(home));
    }
    ~HomeOverride() { qputenv("HOME", m_saved); }

private:
    QByteArray m_saved;
};

TEST(BRConfiguration, ReadsTheUsersFile)
{
    EXPECT_EQ(BRConfiguration::userFilePath(),
              HomeEnvironment::home() + QLatin1String("/.bristel/conf/bristel.conf"));
    BRConfiguration *configuration = nullptr;
    const QByteArray out = captureStdout([&] { configuration = SyncSingleton<BRConfiguration>::instance(); });
    ASSERT_NE(configuration, nullptr);
    EXPECT_TRUE(out.isEmpty());
    EXPECT_EQ(configuration->fileName(), BRConfiguration::userFilePath());
    EXPECT_EQ(configuration->fileType(), QStringLiteral("cfg"));
    EXPECT_EQ(configuration->getStrValue(QStringLiteral("bristel.receiptdoc.paperWidth")),
              QStringLiteral("40"));
    EXPECT_EQ(configuration->getStrValue(QStringLiteral("bristel.language.file")), QStringLiteral("/"));
    EXPECT_EQ(configuration->getStrValue(QStringLiteral("bristel.receiptdoc.paperRows")), QString());
    EXPECT_EQ(configuration->getStrValue(QStringLiteral("bristel.nothing.here")), QString());
}

TEST(BRConfiguration, SameInstanceAndFileReadOnce)
{
    BRConfiguration *first = SyncSingleton<BRConfiguration>::instance();
    // A changed file is seen only by the next run: there is no reload.
    writeFile(BRConfiguration::userFilePath(), "bristel : { receiptdoc : { paperWidth = 99; }; };");
    BRConfiguration *second = SyncSingleton<BRConfiguration>::instance();
    writeFile(BRConfiguration::userFilePath(), HomeConfiguration);
    EXPECT_EQ(first, second);
    EXPECT_EQ(second->getStrValue(QStringLiteral("bristel.receiptdoc.paperWidth")), QStringLiteral("40"));
    EXPECT_EQ(SyncSingleton<BRConfiguration>::instance_pointer.load(), first);
}

TEST(BRConfiguration, Latin1RoundTrip)
{
    const BRConfiguration *configuration = SyncSingleton<BRConfiguration>::instance();
    EXPECT_EQ(configuration->getStrValue(QString::fromLatin1("bristel.caf\xe9.name")),
              QString::fromLatin1("Caff\xe8"));
    // A character the 8-bit form cannot carry is not preserved, so it matches nothing.
    EXPECT_EQ(configuration->getStrValue(QString::fromUtf8("bristel.caf\xe2\x82\xac.name")), QString());
}

TEST(BRConfiguration, ValueOutsideLatin1IsNotPreserved)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("x.xml"));
    // Only the XML form can hold a character beyond Latin-1.
    writeFile(path, "<a><b v=\"caf\xe2\x82\xac\"/></a>");
    const BRConfiguration configuration(path, QStringLiteral("xml"));
    EXPECT_EQ(configuration.lookup(QStringLiteral("a.b.v")), QString::fromUtf8("caf\xe2\x82\xac"));
    const QString value = configuration.getStrValue(QStringLiteral("a.b.v"));
    EXPECT_EQ(value.size(), 4);
    EXPECT_TRUE(value.startsWith(QLatin1String("caf")));
    EXPECT_NE(value, QString::fromUtf8("caf\xe2\x82\xac"));
}

// Distinct instantiations, each reading $HOME at its own first use.
struct MissingHomeConfiguration : BRConfiguration
{
};
struct ThreadedConfiguration : BRConfiguration
{
    ThreadedConfiguration()
    {
        ++constructed;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    static inline std::atomic<int> constructed{0};
};

TEST(BRConfiguration, MissingHomeFileIsReportedOnceToTheCallerAndAnswersEmpty)
{
    QTemporaryDir emptyHome;
    HomeOverride override(emptyHome.path());
    const QString expectedPath = emptyHome.path() + QLatin1String("/.bristel/conf/bristel.conf");
    MissingHomeConfiguration *first = nullptr;
    MissingHomeConfiguration *second = nullptr;
    const QByteArray out = captureStdout([&] {
        first = SyncSingleton<MissingHomeConfiguration>::instance();
        second = SyncSingleton<MissingHomeConfiguration>::instance();
    });
    EXPECT_TRUE(out.isEmpty()) << out.constData(); // the program prints it, not the library
    EXPECT_EQ(first, second);
    EXPECT_EQ(first->readError(), QLatin1String("Error in the method FileReader::open( ") + expectedPath +
                                      QLatin1String(" ): File Not Found"));
    EXPECT_EQ(first->getStrValue(QStringLiteral("bristel.receiptdoc.paperWidth")), QString());
    EXPECT_EQ(first->getStrValue(QStringLiteral("bristel.language.file")), QString());
}

TEST(BRConfiguration, ConcurrentFirstUseCreatesOneInstance)
{
    std::atomic<bool> go{false};
    std::vector<ThreadedConfiguration *> seen(8, nullptr);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < seen.size(); ++i) {
        threads.emplace_back([&, i] {
            while (!go.load())
                std::this_thread::yield();
            seen[i] = SyncSingleton<ThreadedConfiguration>::instance();
        });
    }
    go = true;
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(ThreadedConfiguration::constructed.load(), 1);
    for (ThreadedConfiguration *instance : seen) {
        ASSERT_NE(instance, nullptr);
        EXPECT_EQ(instance, seen.front());
    }
    EXPECT_EQ(seen.front()->getStrValue(QStringLiteral("bristel.receiptdoc.paperWidth")),
              QStringLiteral("40"));
}

struct Counted
{
    Counted()
    {
        ++constructed;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    static inline std::atomic<int> constructed{0};
};

TEST(SyncSingleton, ManyThreadsOneInstance)
{
    std::atomic<int> ready{0};
    std::vector<Counted *> seen(16, nullptr);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < seen.size(); ++i) {
        threads.emplace_back([&, i] {
            ++ready;
            while (ready.load() < int(seen.size()))
                std::this_thread::yield();
            seen[i] = SyncSingleton<Counted>::instance();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(Counted::constructed.load(), 1);
    for (Counted *instance : seen)
        EXPECT_EQ(instance, seen.front());
}

struct Throwing
{
    Throwing()
    {
        if (failNext) {
            failNext = false;
            throw std::runtime_error("construction failed");
        }
    }
    static inline bool failNext = true;
};

TEST(SyncSingleton, FailedConstructionLeavesThePointerNull)
{
    EXPECT_THROW(SyncSingleton<Throwing>::instance(), std::runtime_error);
    EXPECT_EQ(SyncSingleton<Throwing>::instance_pointer.load(), nullptr);
    // The mutex was released: a later use succeeds.
    Throwing *instance = SyncSingleton<Throwing>::instance();
    EXPECT_NE(instance, nullptr);
    EXPECT_EQ(SyncSingleton<Throwing>::instance(), instance);
}

struct Tracked
{
    ~Tracked() { ++destroyed; }
    static inline int destroyed = 0;
};

TEST(SyncSingleton, DestroyerDeletesTheInstanceItHolds)
{
    Tracked::destroyed = 0;
    {
        SyncSingleton<Tracked>::Destroyer<Tracked> destroyer;
        destroyer.setInstance(new Tracked);
    }
    EXPECT_EQ(Tracked::destroyed, 1);
    {
        SyncSingleton<Tracked>::Destroyer<Tracked> empty;
    }
    EXPECT_EQ(Tracked::destroyed, 1);
}

struct Noisy
{
    ~Noisy()
    {
        std::fputs("instance deleted at exit\n", stderr);
        std::fflush(stderr);
    }
};

TEST(SyncSingletonDeathTest, InstanceIsDeletedAtExit)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            SyncSingleton<Noisy>::instance();
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "instance deleted at exit");
}

} // namespace
