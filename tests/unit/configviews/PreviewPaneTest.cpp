#include "ConfigViewsSupport.h"
#include "TestSupport.h"

#include "PreviewPane.h"
#include "config/BRConfiguration.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QTreeWidgetItem>

#include <gtest/gtest.h>

#include <memory>

namespace {

// Points the temporary folder of the process at a regular file while it lives, so that no
// temporary file or folder can be made, whoever runs the test (root included).
class NoTemporaryFolder
{
public:
    explicit NoTemporaryFolder(const QString &file)
        : m_saved(qgetenv("TMPDIR")), m_wasSet(qEnvironmentVariableIsSet("TMPDIR"))
    {
        writeFile(file, "a file, not a folder");
        qputenv("TMPDIR", QFile::encodeName(file));
    }
    ~NoTemporaryFolder()
    {
        if (m_wasSet)
            qputenv("TMPDIR", m_saved);
        else
            qunsetenv("TMPDIR");
    }
    NoTemporaryFolder(const NoTemporaryFolder &) = delete;
    NoTemporaryFolder &operator=(const NoTemporaryFolder &) = delete;

private:
    QByteArray m_saved;
    bool m_wasSet;
};

// The tree view of a configuration read from the given text.
std::unique_ptr<QTreeWidget> treeOf(const QTemporaryDir &dir, const QByteArray &text)
{
    const QString path = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, text);
    const BRConfiguration configuration(path, QStringLiteral("cfg"));
    return std::unique_ptr<QTreeWidget>(configuration.newConfigListView());
}

QStringList entriesOf(const QTemporaryDir &dir)
{
    return QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
}

TEST(PreviewPane, ReadsTheTreeInMemoryWithoutATemporaryFile)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::unique_ptr<QTreeWidget> tree = treeOf(dir, "bristel : { escpos : { columns = 32; }; };");
    const NoTemporaryFolder noTemporaryFolder(dir.filePath(QStringLiteral("not-a-folder")));
    ASSERT_FALSE(QTemporaryDir().isValid());

    PreviewPane pane;
    pane.setConfigurationTree(tree.get());
    EXPECT_TRUE(pane.message().isEmpty()) << qPrintable(pane.message());
    EXPECT_FALSE(pane.paper().runs().empty());
    EXPECT_EQ(pane.paper().width(), 384); // 32 columns print on 58 mm paper
    EXPECT_EQ(entriesOf(dir), (QStringList{QStringLiteral("bristel.conf"), QStringLiteral("not-a-folder")}));
}

TEST(PreviewPane, ShowsAnEditOfTheTreeAtTheNextRefresh)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::unique_ptr<QTreeWidget> tree = treeOf(dir, "bristel : { escpos : { columns = 32; }; };");
    const QByteArray saved = readFile(dir.filePath(QStringLiteral("bristel.conf")));
    PreviewPane pane;
    pane.setConfigurationTree(tree.get());
    ASSERT_EQ(pane.paper().width(), 384);

    QTreeWidgetItem *columns =
        itemAt(tree->topLevelItem(0),
               {QStringLiteral("bristel"), QStringLiteral("escpos"), QStringLiteral("columns")});
    ASSERT_NE(columns, nullptr);
    ASSERT_EQ(columns->childCount(), 1);
    columns->child(0)->setText(0, QStringLiteral("48"));
    pane.refresh();
    EXPECT_EQ(pane.paper().width(), 576); // 48 columns print on 80 mm paper
    EXPECT_TRUE(pane.message().isEmpty()) << qPrintable(pane.message());
    // The configuration file is left as it was.
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("bristel.conf"))), saved);
    EXPECT_EQ(entriesOf(dir), QStringList{QStringLiteral("bristel.conf")});
}

} // namespace
