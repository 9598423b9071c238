// Saving a configuration never destroys it: the writers replace the file only once the new
// text is whole, and otherwise leave the previous bytes and say why.
#include "ConfigViewsSupport.h"
#include "TestSupport.h"
#include "UnwritablePlaces.h"

#include <QDir>
#include <QDomDocument>
#include <QDomElement>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using libconfig::Config;

QString dataPath(const QString &name)
{
    return QStringLiteral(CONFIGVIEWS_DATA "/") + name;
}

// The writers' output for the sample files, kept from the writers as they were before saves
// went through a temporary file: a successful save must still give exactly these bytes.
struct Expected
{
    QString input;
    QString type;
    QString saved;
};

const Expected expectedSaves[] = {
    {QStringLiteral("bristel.conf"), QStringLiteral("cfg"), QStringLiteral("bristel.conf.saved")},
    {QStringLiteral("bristel.conf"), QStringLiteral("xml"), QStringLiteral("bristel.conf.saved.xml")},
    {QStringLiteral("awkward.conf"), QStringLiteral("cfg"), QStringLiteral("awkward.conf.saved")},
    {QStringLiteral("awkward.conf"), QStringLiteral("xml"), QStringLiteral("awkward.conf.saved.xml")},
};

void save(Config &config, const QString &type, const QString &path = QString())
{
    if (type == QLatin1String("xml"))
        config.buildConfigXmlFile(path);
    else
        config.buildConfigFile(path);
}

// A configuration read from the sample, with the changes an operator would have saved.
std::unique_ptr<Config> editedSample(const QString &dir)
{
    auto config = configFrom(dir, QStringLiteral("source.conf"), readFile(samplePath()));
    config->document()->documentElement().firstChildElement().setAttribute(QStringLiteral("edited"),
                                                                           QStringLiteral("changed"));
    return config;
}

TEST(ConfigSave, ASuccessfulSaveGivesTheWritersBytesExactly)
{
    for (const Expected &expected : expectedSaves) {
        SCOPED_TRACE((expected.input + QLatin1Char(' ') + expected.type).toStdString());
        QTemporaryDir dir;
        Config config(dataPath(expected.input), QStringLiteral("cfg"));
        const QByteArray want = readFile(dataPath(expected.saved));
        ASSERT_FALSE(want.isEmpty());

        // A new file, and an existing longer file replaced.
        const QString fresh = dir.filePath(QStringLiteral("fresh"));
        save(config, expected.type, fresh);
        EXPECT_EQ(config.writeStatus(), QFileDevice::NoError);
        EXPECT_EQ(config.writeErrorString(), QString());
        EXPECT_EQ(readFile(fresh), want) << visible(readFile(fresh)).toStdString();

        const QString existing = dir.filePath(QStringLiteral("existing"));
        writeFile(existing, QByteArray(100000, 'z'));
        save(config, expected.type, existing);
        EXPECT_EQ(readFile(existing), want);
        EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 2)
            << "a temporary file is left";
    }
}

TEST(ConfigSave, TheStoredFileNameIsTheDefaultTarget)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, readFile(dataPath(QStringLiteral("bristel.conf"))));
    Config config(path, QStringLiteral("cfg"));
    config.buildConfigFile();
    EXPECT_EQ(config.writeStatus(), QFileDevice::NoError);
    EXPECT_EQ(readFile(path), readFile(dataPath(QStringLiteral("bristel.conf.saved"))));
}

TEST(ConfigSave, AReadOnlyFolderKeepsTheOldBytes)
{
    const QByteArray old = readFile(samplePath());
    for (const QString &type : {QStringLiteral("cfg"), QStringLiteral("xml")}) {
        SCOPED_TRACE(type.toStdString());
        QTemporaryDir work;
        auto config = editedSample(work.path());
        ReadOnlyFolder folder(QStringLiteral("bristel.conf"), old);
        ASSERT_TRUE(folder.isValid());
        {
            ReadOnlyFolder::Visitor visitor;
            ASSERT_TRUE(visitor.isValid());
            save(*config, type, folder.filePath());
        }
        EXPECT_NE(config->writeStatus(), QFileDevice::NoError);
        EXPECT_FALSE(config->writeErrorString().isEmpty());
        EXPECT_EQ(readFile(folder.filePath()), old);
        EXPECT_EQ(folder.entries(), QStringList(QStringLiteral("bristel.conf")));
    }
}

TEST(ConfigSave, AFullFileSystemKeepsTheOldBytes)
{
    const QByteArray old = readFile(samplePath());
    for (const QString &type : {QStringLiteral("cfg"), QStringLiteral("xml")}) {
        SCOPED_TRACE(type.toStdString());
        QTemporaryDir work;
        auto config = editedSample(work.path());
        FullFileSystem full(QStringLiteral("bristel.conf"), old);
        ASSERT_TRUE(full.isValid());
        RecordProperty("full_file_system", full.kind().toStdString());
        {
            FullFileSystem::Writer writer(full);
            save(*config, type, full.filePath());
        }
        EXPECT_NE(config->writeStatus(), QFileDevice::NoError) << full.kind().toStdString();
        EXPECT_FALSE(config->writeErrorString().isEmpty());
        EXPECT_EQ(readFile(full.filePath()), old);
        EXPECT_EQ(full.entries(), QStringList(QStringLiteral("bristel.conf")));

        // With room again the same save goes through, and the status says so.
        full.makeRoom();
        {
            FullFileSystem::Writer writer(full);
            save(*config, type, full.filePath());
        }
        EXPECT_EQ(config->writeStatus(), QFileDevice::NoError) << config->writeErrorString().toStdString();
        EXPECT_NE(readFile(full.filePath()), old);
        EXPECT_TRUE(readFile(full.filePath()).contains("changed"));
    }
}

// A process ended by the kernel in the middle of writing: the file size limit's signal, left
// at its default action, kills the saving process as soon as it passes the limit.
TEST(ConfigSave, AProcessKilledHalfwayThroughASaveLeavesTheOldBytes)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bristel.conf"));
    const QByteArray old = readFile(samplePath());
    writeFile(path, old);
    auto config = editedSample(dir.path());

    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        rlimit limit{};
        getrlimit(RLIMIT_FSIZE, &limit);
        limit.rlim_cur = static_cast<rlim_t>(old.size() / 2);
        setrlimit(RLIMIT_FSIZE, &limit);
        const rlimit noCore{0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        std::signal(SIGXFSZ, SIG_DFL);
        config->buildConfigFile(path);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the save was not interrupted, status " << status;
    EXPECT_EQ(WTERMSIG(status), SIGXFSZ);
    EXPECT_EQ(readFile(path), old);
}

TEST(ConfigSave, AFolderInTheFilesPlaceIsAnErrorAndStaysAFolder)
{
    QTemporaryDir dir;
    Config config(samplePath(), QStringLiteral("cfg"));
    const QString path = dir.filePath(QStringLiteral("bristel.conf"));
    ASSERT_TRUE(QDir().mkpath(path + QStringLiteral("/inside")));
    config.buildConfigFile(path);
    EXPECT_NE(config.writeStatus(), QFileDevice::NoError);
    EXPECT_TRUE(QFileInfo(path + QStringLiteral("/inside")).isDir());
}

TEST(ConfigSave, TheStatusDescribesTheLastSaveOnly)
{
    QTemporaryDir dir;
    Config config(samplePath(), QStringLiteral("cfg"));
    config.buildConfigFile(dir.filePath(QStringLiteral("missing/folder/bristel.conf")));
    EXPECT_NE(config.writeStatus(), QFileDevice::NoError);
    config.buildConfigXmlFile(dir.filePath(QStringLiteral("bristel.xml")));
    EXPECT_EQ(config.writeStatus(), QFileDevice::NoError);
    EXPECT_EQ(config.writeErrorString(), QString());
}

// The file may hold the database password: a save keeps its permissions.
TEST(ConfigSave, AFileReadableByItsOwnerOnlyStaysSo)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, readFile(samplePath()));
    ASSERT_TRUE(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
    Config config(path, QStringLiteral("cfg"));
    config.buildConfigFile();
    EXPECT_EQ(config.writeStatus(), QFileDevice::NoError);
    // Owner, group and others; the "user" flags repeat the owner's for the running user.
    const QFileDevice::Permissions kept = QFileInfo(path).permissions() & QFileDevice::Permissions(0x7077);
    EXPECT_EQ(kept, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

// An installation that links the file from elsewhere keeps the link; the target is replaced.
TEST(ConfigSave, ALinkedFileIsSavedThroughTheLink)
{
    QTemporaryDir dir;
    const QString target = dir.filePath(QStringLiteral("shared.conf"));
    const QString link = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(target, readFile(samplePath()));
    ASSERT_TRUE(QFile::link(target, link));
    Config config(link, QStringLiteral("cfg"));
    config.buildConfigFile();
    EXPECT_EQ(config.writeStatus(), QFileDevice::NoError);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(readFile(target), readFile(dataPath(QStringLiteral("bristel.conf.saved"))));
}

} // namespace
