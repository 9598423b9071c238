// Where a configuration is saved to: a save whose last step fails says so and keeps the old
// file; a FIFO or a device is written into, never replaced by a file.

#include "config/Config.h"

#include "RefusedRename.h"
#include "TestSupport.h"

#include <QDir>
#include <QDomDocument>
#include <QDomElement>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

using libconfig::Config;

const QByteArray Sample = "bristel : {\n    receiptdoc : {\n        paperWidth = \"40\";\n    };\n};\n";

void save(Config &config, const QString &type, const QString &path)
{
    if (type == QLatin1String("xml"))
        config.buildConfigXmlFile(path);
    else
        config.buildConfigFile(path);
}

QStringList entries(const QTemporaryDir &dir)
{
    return QDir(dir.path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

TEST(ConfigSaveTarget, AFailedCommitIsReportedAndKeepsTheOldBytes)
{
    for (const QString &type : {QStringLiteral("cfg"), QStringLiteral("xml")}) {
        SCOPED_TRACE(type.toStdString());
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("bristel.conf"));
        writeFile(path, Sample);
        Config config(path, QStringLiteral("cfg"));
        config.document()->documentElement().firstChildElement().setAttribute(QStringLiteral("edited"),
                                                                              QStringLiteral("changed"));
        {
            RefusedRename refusal;
            save(config, type, path);
            EXPECT_GT(refusal.refused(), 0) << "the save did not get as far as its commit";
        }
        EXPECT_NE(config.writeStatus(), QFileDevice::NoError);
        EXPECT_FALSE(config.writeErrorString().isEmpty());
        EXPECT_EQ(readFile(path), Sample);
        EXPECT_EQ(entries(dir), QStringList(QStringLiteral("bristel.conf")));

        // The same save with the commit allowed goes through, and the status says so.
        save(config, type, path);
        EXPECT_EQ(config.writeStatus(), QFileDevice::NoError) << qPrintable(config.writeErrorString());
        EXPECT_TRUE(readFile(path).contains("changed"));
    }
}

TEST(ConfigSaveTarget, AFifoIsWrittenIntoAndStaysAFifo)
{
    QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(source, Sample);
    Config config(source, QStringLiteral("cfg"));
    const QString path = dir.filePath(QStringLiteral("fifo"));
    const QByteArray native = QFile::encodeName(path);
    ASSERT_EQ(::mkfifo(native.constData(), 0600), 0) << std::strerror(errno);
    const int reader = ::open(native.constData(), O_RDONLY | O_NONBLOCK); // there before the writer
    ASSERT_GE(reader, 0);
    config.buildConfigFile(path);
    EXPECT_EQ(config.writeStatus(), QFileDevice::NoError) << qPrintable(config.writeErrorString());
    QByteArray received(4096, '\0');
    const ssize_t n = ::read(reader, received.data(), size_t(received.size()));
    ::close(reader);
    ASSERT_GT(n, 0);
    received.resize(n);
    EXPECT_TRUE(received.contains("paperWidth = \"40\";")) << received.constData();
    struct stat status;
    ASSERT_EQ(::lstat(native.constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

// Root makes a full device of its own, so that a save that replaced it would replace nothing
// of the machine's; anybody else writes to /dev/full.
TEST(ConfigSaveTarget, AFullDeviceIsReportedAndStaysADevice)
{
    QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(source, Sample);
    Config config(source, QStringLiteral("cfg"));
    QString path = QStringLiteral("/dev/full");
    if (::geteuid() == 0) {
        path = dir.filePath(QStringLiteral("full"));
        ASSERT_EQ(::mknod(QFile::encodeName(path).constData(), S_IFCHR | 0666, makedev(1, 7)), 0)
            << std::strerror(errno);
    }
    for (const QString &type : {QStringLiteral("cfg"), QStringLiteral("xml")}) {
        SCOPED_TRACE(type.toStdString());
        save(config, type, path);
        EXPECT_NE(config.writeStatus(), QFileDevice::NoError);
        EXPECT_FALSE(config.writeErrorString().isEmpty());
        struct stat status;
        ASSERT_EQ(::lstat(QFile::encodeName(path).constData(), &status), 0);
        EXPECT_TRUE(S_ISCHR(status.st_mode));
    }
}

} // namespace
