#include "ConfigEditorWindow.h"
#include "ConfigViewsSupport.h"
#include "TestSupport.h"

#include <QAction>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QProcess>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace {

using libconfig::Config;

struct ReportedError
{
    int count = 0;
    QString title;
    QString text;
};

QString copyOfSample(const QTemporaryDir &dir, const QString &name = QStringLiteral("bristel.conf"))
{
    const QString path = dir.filePath(name);
    writeFile(path, readFile(samplePath()));
    return path;
}

QTreeWidgetItem *valueItem(const ConfigEditorWindow &window, const QStringList &texts)
{
    QTreeWidgetItem *attribute = itemAt(window.treeView()->topLevelItem(0), texts);
    return attribute && attribute->childCount() == 1 ? attribute->child(0) : nullptr;
}

TEST(ConfigEditor, FileTypeFollowsTheExtension)
{
    EXPECT_EQ(ConfigEditorWindow::fileTypeFor(QStringLiteral("/home/u/.bristel/conf/bristel.conf")),
              QStringLiteral("cfg"));
    EXPECT_EQ(ConfigEditorWindow::fileTypeFor(QStringLiteral("settings.xml")), QStringLiteral("xml"));
    EXPECT_EQ(ConfigEditorWindow::fileTypeFor(QStringLiteral("settings.xml.bak")), QStringLiteral("cfg"));
}

TEST(ConfigEditor, ShowsTheFileInTheTreeView)
{
    QTemporaryDir dir;
    const QString path = copyOfSample(dir);
    ConfigEditorWindow window(path);
    EXPECT_TRUE(window.windowTitle().contains(path));
    EXPECT_EQ(window.fileType(), QStringLiteral("cfg"));
    ASSERT_EQ(window.treeView()->topLevelItemCount(), 1);
    EXPECT_EQ(window.treeView()->headerItem()->text(0), QStringLiteral("ConfigurationFile"));
    QTreeWidgetItem *value =
        valueItem(window, {QStringLiteral("bristel"), QStringLiteral("logger"), QStringLiteral("level")});
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->text(0), QStringLiteral("WARNING"));
    EXPECT_EQ(window.saveAction()->shortcut(), QKeySequence(QKeySequence::Save));
    EXPECT_EQ(window.saveAction()->shortcut(), QKeySequence(QStringLiteral("Ctrl+S")));
}

TEST(ConfigEditor, SavesAnEditedValue)
{
    QTemporaryDir dir;
    const QString path = copyOfSample(dir);
    ConfigEditorWindow window(path);
    EXPECT_FALSE(window.isWindowModified());
    valueItem(window, {QStringLiteral("bristel"), QStringLiteral("logger"), QStringLiteral("level")})
        ->setText(0, QStringLiteral("DEBUG"));
    EXPECT_TRUE(window.isWindowModified());

    ReportedError error;
    window.setErrorReporter([&](QWidget *, const QString &, const QString &) { ++error.count; });
    window.saveAction()->trigger();

    EXPECT_EQ(error.count, 0);
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_TRUE(window.statusBar()->currentMessage().contains(QStringLiteral("Saved")));
    EXPECT_TRUE(window.statusBar()->currentMessage().contains(path));
    Config reread(path, QStringLiteral("cfg"));
    EXPECT_EQ(reread.lookup(QStringLiteral("bristel.logger.level")), QStringLiteral("DEBUG"));
    EXPECT_EQ(reread.lookup(QStringLiteral("bristel.logger.type")), QStringLiteral("APPEND"));
    EXPECT_TRUE(readFile(path).startsWith("bristel: \n{\n    language: \n"));
}

TEST(ConfigEditor, AValueStillBeingTypedIsSaved)
{
    QTemporaryDir dir;
    const QString path = copyOfSample(dir);
    ConfigEditorWindow window(path);
    window.show();
    QTreeWidgetItem *value = valueItem(
        window, {QStringLiteral("bristel"), QStringLiteral("receiptdoc"), QStringLiteral("paperWidth")});
    ASSERT_NE(value, nullptr);
    window.treeView()->setCurrentItem(value);
    window.treeView()->editItem(value);
    auto *editor =
        qobject_cast<QLineEdit *>(window.treeView()->indexWidget(window.treeView()->currentIndex()));
    ASSERT_NE(editor, nullptr);
    editor->setText(QStringLiteral("42"));

    EXPECT_TRUE(window.save());
    Config reread(path, QStringLiteral("cfg"));
    EXPECT_EQ(reread.lookup(QStringLiteral("bristel.receiptdoc.paperWidth")), QStringLiteral("42"));
}

TEST(ConfigEditor, DoubleClickEditsValuesOnly)
{
    QTemporaryDir dir;
    const QString path = copyOfSample(dir);
    ConfigEditorWindow window(path);
    window.resize(500, 600);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    QTreeWidget *tree = window.treeView();

    const auto doubleClick = [&](QTreeWidgetItem *item) {
        tree->scrollToItem(item);
        const QPoint centre = tree->visualItemRect(item).center();
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
        QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
        QApplication::processEvents();
        return tree->indexWidget(tree->indexFromItem(item)) != nullptr;
    };
    QTreeWidgetItem *name = itemAt(
        tree->topLevelItem(0), {QStringLiteral("bristel"), QStringLiteral("db"), QStringLiteral("dbname")});
    ASSERT_NE(name, nullptr);
    EXPECT_FALSE(doubleClick(name));
    EXPECT_FALSE(doubleClick(name->parent()));
    EXPECT_TRUE(doubleClick(name->child(0)));
}

TEST(ConfigEditor, AnXmlFileIsSavedAsXml)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bristel.xml"));
    writeFile(path, "<bristel><logger level=\"INFO\"/></bristel>");
    ConfigEditorWindow window(path);
    EXPECT_EQ(window.fileType(), QStringLiteral("xml"));
    valueItem(window, {QStringLiteral("bristel"), QStringLiteral("logger"), QStringLiteral("level")})
        ->setText(0, QStringLiteral("ERROR"));
    EXPECT_TRUE(window.save());
    EXPECT_EQ(readFile(path),
              QByteArray("\n<bristel>\n\n    <logger\n        level = \"ERROR\">\n    </logger>\n"
                         "</bristel>\n"));
}

TEST(ConfigEditor, AFileThatCannotBeWrittenIsReported)
{
    QTemporaryDir dir;
    const QString path = copyOfSample(dir);
    ConfigEditorWindow window(path);
    ReportedError error;
    window.setErrorReporter([&](QWidget *parent, const QString &title, const QString &text) {
        EXPECT_EQ(parent, &window);
        ++error.count;
        error.title = title;
        error.text = text;
    });
    valueItem(window, {QStringLiteral("bristel"), QStringLiteral("bin"), QStringLiteral("path")})
        ->setText(0, QStringLiteral("/opt/bin"));

    // The file has become a folder since it was opened.
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkpath(path));
    EXPECT_FALSE(window.save());
    EXPECT_EQ(error.count, 1);
    EXPECT_FALSE(error.title.isEmpty());
    EXPECT_TRUE(error.text.contains(path)) << error.text.toStdString();
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_FALSE(window.statusBar()->currentMessage().contains(QStringLiteral("Saved")));
}

TEST(ConfigEditor, AFileInAMissingFolderIsReported)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("gone/bristel.conf"));
    writeFile(path, readFile(samplePath()));
    ConfigEditorWindow window(path);
    ASSERT_TRUE(QDir(dir.filePath(QStringLiteral("gone"))).removeRecursively());
    ReportedError error;
    window.setErrorReporter([&](QWidget *, const QString &, const QString &text) {
        ++error.count;
        error.text = text;
    });
    EXPECT_FALSE(window.save());
    EXPECT_EQ(error.count, 1);
    EXPECT_TRUE(error.text.contains(path));
    EXPECT_FALSE(QFile::exists(path));
}

TEST(ConfigEditor, AMissingFileShowsAnEmptyTree)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("none.conf"));
    captureStdout([&] {
        ConfigEditorWindow window(path);
        EXPECT_EQ(window.treeView()->topLevelItemCount(), 0);
        EXPECT_TRUE(window.statusBar()->currentMessage().contains(path));
    });
}

TEST(ConfigEditorProgram, SavesAPictureOfItsWindowOffscreen)
{
    QTemporaryDir dir;
    const QString path = copyOfSample(dir);
    const QString picture = dir.filePath(QStringLiteral("editor.png"));
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(BRISTEL_BIN_DIR "/bristel-config"),
                  {QStringLiteral("--screenshot"), picture, path});
    ASSERT_TRUE(program.waitForFinished(30000));
    EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
    const QImage image(picture);
    EXPECT_FALSE(image.isNull());
    EXPECT_GT(image.width(), 100);
    // Looking is not editing: the file is untouched.
    EXPECT_EQ(readFile(path), readFile(samplePath()));
}

TEST(ConfigEditorProgram, RejectsMoreThanOneFile)
{
    QProcess program;
    program.start(QStringLiteral(BRISTEL_BIN_DIR "/bristel-config"),
                  {QStringLiteral("a"), QStringLiteral("b")});
    ASSERT_TRUE(program.waitForFinished(30000));
    EXPECT_EQ(program.exitCode(), 2);
    EXPECT_TRUE(program.readAllStandardError().contains("usage: bristel-config"));
}

} // namespace
