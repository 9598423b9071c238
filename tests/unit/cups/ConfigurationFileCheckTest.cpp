#include "cups/ConfigurationFileCheck.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

QString writeFile(const QTemporaryDir &dir, const QString &name)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write("bristel : { escpos : { cutFeed = 12; }; };\n");
    return path;
}

} // namespace

TEST(ConfigurationFileCheckTest, AFileThatIsThereIsReadable)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const ConfigurationFileCheck check(writeFile(dir, QStringLiteral("bristel.conf")));
    EXPECT_EQ(check.state(), ConfigurationFileCheck::State::Readable);
    EXPECT_TRUE(check.reason().isEmpty());
}

TEST(ConfigurationFileCheckTest, NoFileIsMissing)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const ConfigurationFileCheck check(dir.filePath(QStringLiteral("bristel.conf")));
    EXPECT_EQ(check.state(), ConfigurationFileCheck::State::Missing);
}

TEST(ConfigurationFileCheckTest, AFolderIsUnreadableAndSaysSo)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("bristel.conf")));
    const ConfigurationFileCheck check(dir.filePath(QStringLiteral("bristel.conf")));
    EXPECT_EQ(check.state(), ConfigurationFileCheck::State::Unreadable);
    EXPECT_TRUE(check.reason().contains(QStringLiteral("folder"))) << qPrintable(check.reason());
}

TEST(ConfigurationFileCheckTest, ALinkToNothingIsUnreadableNotMissing)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString link = dir.filePath(QStringLiteral("bristel.conf"));
    ASSERT_TRUE(QFile::link(dir.filePath(QStringLiteral("gone.conf")), link));
    const ConfigurationFileCheck check(link);
    EXPECT_EQ(check.state(), ConfigurationFileCheck::State::Unreadable);
    EXPECT_FALSE(check.reason().isEmpty());
}

TEST(ConfigurationFileCheckTest, AFileClosedToTheReaderIsUnreadableWithTheSystemsReason)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = writeFile(dir, QStringLiteral("bristel.conf"));
    ASSERT_TRUE(QFile::setPermissions(path, QFileDevice::Permissions()));
    const ConfigurationFileCheck check(path);
    // Root reads a file whatever its mode says; the check opens the file rather than judging
    // by the mode, so root finds it readable and everyone else is refused.
    if (::geteuid() == 0) {
        EXPECT_EQ(check.state(), ConfigurationFileCheck::State::Readable);
    } else {
        EXPECT_EQ(check.state(), ConfigurationFileCheck::State::Unreadable);
        EXPECT_TRUE(check.reason().contains(QStringLiteral("ermission"))) << qPrintable(check.reason());
    }
}
