// The editor learns from the writers that a save failed, tells the operator, and the file on
// disk stays as it was.
#include "ConfigEditorWindow.h"
#include "ConfigViewsSupport.h"
#include "TestSupport.h"
#include "UnwritablePlaces.h"

#include <QStatusBar>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace {

struct Reported
{
    int count = 0;
    QString title;
    QString text;
};

void watch(ConfigEditorWindow &window, Reported &reported)
{
    window.setErrorReporter([&window, &reported](QWidget *parent, const QString &title, const QString &text) {
        EXPECT_EQ(parent, &window);
        ++reported.count;
        reported.title = title;
        reported.text = text;
    });
}

void editLevel(ConfigEditorWindow &window, const QString &value)
{
    QTreeWidgetItem *level =
        itemAt(window.treeView()->topLevelItem(0),
               {QStringLiteral("bristel"), QStringLiteral("logger"), QStringLiteral("level")});
    ASSERT_NE(level, nullptr);
    ASSERT_EQ(level->childCount(), 1);
    level->child(0)->setText(0, value);
}

void expectReportedAndKept(const ConfigEditorWindow &window, const Reported &reported, const QString &path,
                           const QByteArray &old)
{
    EXPECT_EQ(reported.count, 1);
    EXPECT_EQ(reported.title, QStringLiteral("Cannot save the configuration"));
    EXPECT_TRUE(reported.text.contains(path)) << reported.text.toStdString();
    EXPECT_TRUE(reported.text.contains(window.configuration().writeErrorString()))
        << reported.text.toStdString();
    EXPECT_FALSE(window.configuration().writeErrorString().isEmpty());
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_EQ(window.statusBar()->currentMessage(), QStringLiteral("Not saved"));
    EXPECT_EQ(readFile(path), old);
}

TEST(ConfigEditorSave, AReadOnlyFolderIsReportedAndTheFileKept)
{
    const QByteArray old = readFile(samplePath());
    ReadOnlyFolder folder(QStringLiteral("bristel.conf"), old);
    ASSERT_TRUE(folder.isValid());
    ConfigEditorWindow window(folder.filePath());
    Reported reported;
    watch(window, reported);
    editLevel(window, QStringLiteral("DEBUG"));
    {
        ReadOnlyFolder::Visitor visitor;
        ASSERT_TRUE(visitor.isValid());
        EXPECT_FALSE(window.save());
    }
    expectReportedAndKept(window, reported, folder.filePath(), old);
    EXPECT_EQ(folder.entries(), QStringList(QStringLiteral("bristel.conf")));
}

TEST(ConfigEditorSave, AFullDiskIsReportedAndTheFileKeptThenASaveWithRoomSucceeds)
{
    const QByteArray old = readFile(samplePath());
    FullFileSystem full(QStringLiteral("bristel.conf"), old);
    ASSERT_TRUE(full.isValid());
    ConfigEditorWindow window(full.filePath());
    Reported reported;
    watch(window, reported);
    editLevel(window, QStringLiteral("DEBUG"));
    {
        FullFileSystem::Writer writer(full);
        EXPECT_FALSE(window.save());
    }
    expectReportedAndKept(window, reported, full.filePath(), old);
    EXPECT_EQ(full.entries(), QStringList(QStringLiteral("bristel.conf")));

    full.makeRoom();
    {
        FullFileSystem::Writer writer(full);
        EXPECT_TRUE(window.save());
    }
    EXPECT_EQ(reported.count, 1);
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_EQ(libconfig::Config(full.filePath(), QStringLiteral("cfg"))
                  .lookup(QStringLiteral("bristel.logger.level")),
              QStringLiteral("DEBUG"));
}

} // namespace
