#include "ConfigViewsSupport.h"
#include "TestSupport.h"

#include "config/BRConfiguration.h"

#include <QDomDocument>
#include <QDomElement>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <memory>

namespace {

using libconfig::Config;

int kindOf(const QTreeWidgetItem *item)
{
    return item->data(0, Config::ListViewKindRole).toInt();
}

TEST(ConfigListView, ShowsElementsAttributesAndValuesInOneColumn)
{
    QTemporaryDir dir;
    auto config = configFrom(
        dir.path(), QStringLiteral("in.conf"),
        "top = 1; bristel : { zz = 2; aa = 3; receiptdoc : { paperWidth = 40; }; doc : { x = y; }; };");
    std::unique_ptr<QTreeWidget> view(config->buildConfigListView());
    ASSERT_EQ(view->columnCount(), 1);
    EXPECT_EQ(view->headerItem()->text(0), QStringLiteral("ConfigurationFile"));
    ASSERT_EQ(view->topLevelItemCount(), 1);

    QTreeWidgetItem *root = view->topLevelItem(0);
    EXPECT_EQ(root->text(0), config->fileName());
    ASSERT_EQ(root->childCount(), 2);
    EXPECT_EQ(root->child(0)->text(0), QStringLiteral("top"));
    EXPECT_EQ(root->child(0)->child(0)->text(0), QStringLiteral("1"));

    QTreeWidgetItem *bristel = root->child(1);
    EXPECT_EQ(bristel->text(0), QStringLiteral("bristel"));
    QStringList texts;
    for (int i = 0; i < bristel->childCount(); ++i)
        texts << bristel->child(i)->text(0);
    // Attributes first, sorted by name as the writers list them, then child elements in order.
    EXPECT_EQ(texts, (QStringList{QStringLiteral("aa"), QStringLiteral("zz"), QStringLiteral("receiptdoc"),
                                  QStringLiteral("doc")}));

    QTreeWidgetItem *paperWidth =
        itemAt(root, {QStringLiteral("bristel"), QStringLiteral("receiptdoc"), QStringLiteral("paperWidth")});
    ASSERT_NE(paperWidth, nullptr);
    ASSERT_EQ(paperWidth->childCount(), 1);
    EXPECT_EQ(paperWidth->child(0)->text(0), QStringLiteral("40"));
    EXPECT_EQ(paperWidth->child(0)->childCount(), 0);

    EXPECT_EQ(kindOf(root), Config::ElementItem);
    EXPECT_EQ(kindOf(bristel), Config::ElementItem);
    EXPECT_EQ(kindOf(paperWidth), Config::AttributeItem);
    EXPECT_EQ(kindOf(paperWidth->child(0)), Config::ValueItem);

    // Created open; only values are editable.
    EXPECT_TRUE(root->isExpanded());
    EXPECT_TRUE(bristel->isExpanded());
    EXPECT_TRUE(paperWidth->isExpanded());
    EXPECT_FALSE(root->flags() & Qt::ItemIsEditable);
    EXPECT_FALSE(paperWidth->flags() & Qt::ItemIsEditable);
    EXPECT_TRUE(paperWidth->child(0)->flags() & Qt::ItemIsEditable);
}

TEST(ConfigListView, NewConfigListViewAndTheConfigurationObjectGiveTheSameView)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, readFile(samplePath()));
    Config config(path, QStringLiteral("cfg"));
    BRConfiguration configuration(path, QStringLiteral("cfg"));

    std::unique_ptr<QTreeWidget> built(config.buildConfigListView());
    std::unique_ptr<QTreeWidget> fresh(config.newConfigListView());
    std::unique_ptr<QTreeWidget> forwarded(configuration.newConfigListView());
    ASSERT_NE(fresh.get(), built.get());
    const auto flatten = [](QTreeWidget *view) {
        QStringList lines;
        for (QTreeWidgetItemIterator it(view); *it; ++it) {
            int depth = 0;
            for (QTreeWidgetItem *p = (*it)->parent(); p; p = p->parent())
                ++depth;
            lines << QString::number(depth) + QLatin1Char(' ') + (*it)->text(0);
        }
        return lines;
    };
    EXPECT_EQ(flatten(built.get()).size(), 77); // root, bristel, 7 blocks, 34 entries with their values
    EXPECT_EQ(flatten(fresh.get()), flatten(built.get()));
    EXPECT_EQ(flatten(forwarded.get()), flatten(built.get()));
}

TEST(ConfigListView, AnEmptyConfigurationGivesAnEmptyView)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "");
    std::unique_ptr<QTreeWidget> view(config->buildConfigListView());
    EXPECT_EQ(view->topLevelItemCount(), 0);
    EXPECT_EQ(view->headerItem()->text(0), QStringLiteral("ConfigurationFile"));
}

TEST(ConfigListView, AnEditedValueIsSavedAndReadBack)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, readFile(samplePath()));
    Config config(path, QStringLiteral("cfg"));
    std::unique_ptr<QTreeWidget> view(config.buildConfigListView());

    QTreeWidgetItem *paperWidth =
        itemAt(view->topLevelItem(0),
               {QStringLiteral("bristel"), QStringLiteral("receiptdoc"), QStringLiteral("paperWidth")});
    ASSERT_NE(paperWidth, nullptr);
    paperWidth->child(0)->setText(0, QStringLiteral("48"));
    config.loadListView(view.get());

    EXPECT_EQ(config.lookup(QStringLiteral("bristel.receiptdoc.paperWidth")), QStringLiteral("48"));
    Config reread(path, QStringLiteral("cfg"));
    EXPECT_EQ(reread.lookup(QStringLiteral("bristel.receiptdoc.paperWidth")), QStringLiteral("48"));
    EXPECT_EQ(reread.lookup(QStringLiteral("bristel.doc.paperWidth")), QStringLiteral("32"));
    EXPECT_TRUE(readFile(path).contains("    receiptdoc: \n    {\n"));
    EXPECT_TRUE(readFile(path).contains("        paperWidth = \"48\";\n"));
}

TEST(ConfigListView, WithoutAViewNothingHappens)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "a : { k = 1; };");
    config->loadListView(static_cast<QTreeWidget *>(nullptr));
    EXPECT_EQ(readFile(config->fileName()), QByteArray("a : { k = 1; };"));
    EXPECT_EQ(config->lookup(QStringLiteral("a.k")), QStringLiteral("1"));
}

TEST(ConfigListView, OtherFileTypesSaveNothing)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("in.ini"));
    writeFile(path, "a : { k = 1; };");
    Config config(path, QStringLiteral("ini"));
    QTreeWidget view;
    auto *root = new QTreeWidgetItem(&view, {path});
    auto *a = new QTreeWidgetItem(root, {QStringLiteral("a")});
    new QTreeWidgetItem(new QTreeWidgetItem(a, {QStringLiteral("k")}), {QStringLiteral("2")});
    config.loadListView(&view);
    EXPECT_EQ(readFile(path), QByteArray("a : { k = 1; };"));
    // The tree is still rebuilt from the view.
    EXPECT_EQ(config.lookup(QStringLiteral("a.k")), QStringLiteral("2"));
}

TEST(ConfigListView, UnmarkedItemsWithOneChildlessChildAreAttributes)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.conf"));
    Config config(path, QStringLiteral("cfg")); // no such file yet: an empty configuration
    QTreeWidget view;
    auto *root = new QTreeWidgetItem(&view, {path});
    new QTreeWidgetItem(new QTreeWidgetItem(root, {QStringLiteral("top")}), {QStringLiteral("t")});
    auto *a = new QTreeWidgetItem(root, {QStringLiteral("a")});
    new QTreeWidgetItem(new QTreeWidgetItem(a, {QStringLiteral("k")}), {QStringLiteral("v")});
    auto *b = new QTreeWidgetItem(a, {QStringLiteral("b")});
    new QTreeWidgetItem(new QTreeWidgetItem(b, {QStringLiteral("j")}), {QStringLiteral("w")});
    new QTreeWidgetItem(new QTreeWidgetItem(b, {QStringLiteral("i")}), {QStringLiteral("u")});

    config.loadListView(&view);
    EXPECT_EQ(readFile(path), QByteArray("top = \"t\";\na: \n{\n    k = \"v\";\n    b: \n    {\n"
                                         "        i = \"u\";\n        j = \"w\";\n    };\n\n};\n\n"));
}

TEST(ConfigListView, MarksDecideForAnElementHoldingOneEmptyElement)
{
    // <a><b/></a> looks like an attribute a = "b" by shape alone; the marks keep it an element.
    QTemporaryDir dir;
    auto config =
        configFrom(dir.path(), QStringLiteral("in.xml"), "<top><a><b/></a></top>", QStringLiteral("xml"));
    const QString before = treeContent(*config);
    ASSERT_TRUE(before.contains(QStringLiteral("<b>")));
    std::unique_ptr<QTreeWidget> view(config->buildConfigListView());
    config->loadListView(view.get());
    EXPECT_EQ(treeContent(*config), before);
    Config reread(config->fileName(), QStringLiteral("xml"));
    EXPECT_EQ(treeContent(reread), before);
}

TEST(ConfigListView, AnAttributeWithoutValueItemIsSavedEmpty)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "a : { k = 1; j = 2; };");
    std::unique_ptr<QTreeWidget> view(config->buildConfigListView());
    QTreeWidgetItem *k = itemAt(view->topLevelItem(0), {QStringLiteral("a"), QStringLiteral("k")});
    ASSERT_NE(k, nullptr);
    delete k->takeChild(0);
    config->loadListView(view.get());
    EXPECT_EQ(readFile(config->fileName()), QByteArray("a: \n{\n    j = \"2\";\n    k = \"\";\n};\n\n"));
}

TEST(ConfigListView, FillersAddAnElementUnderAGivenItemOrView)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "a : { k = 1; b : { j = 2; }; };");
    const QDomElement a = config->document()->documentElement().firstChildElement();
    QTreeWidget view;
    config->buildConfigListView(a, &view);
    auto *holder = new QTreeWidgetItem(&view, {QStringLiteral("holder")});
    config->buildConfigListView(a.firstChildElement(), holder);

    ASSERT_EQ(view.topLevelItemCount(), 2);
    EXPECT_EQ(view.topLevelItem(0)->text(0), QStringLiteral("a"));
    EXPECT_EQ(itemAt(view.topLevelItem(0), {QStringLiteral("b"), QStringLiteral("j")})->child(0)->text(0),
              QStringLiteral("2"));
    ASSERT_EQ(holder->childCount(), 1);
    EXPECT_EQ(holder->child(0)->text(0), QStringLiteral("b"));
    EXPECT_EQ(holder->child(0)->child(0)->text(0), QStringLiteral("j"));
}

TEST(ConfigListView, ADeepConfigurationSurvivesTheView)
{
    QTemporaryDir dir;
    QByteArray text;
    for (int i = 0; i < 500; ++i)
        text += "b : { level = " + QByteArray::number(i) + "; ";
    for (int i = 0; i < 500; ++i)
        text += "}; ";
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), text);
    const QString before = treeContent(*config);
    std::unique_ptr<QTreeWidget> view(config->buildConfigListView());
    config->loadListView(view.get());
    Config reread(config->fileName(), QStringLiteral("cfg"));
    EXPECT_EQ(treeContent(reread), before);
}

} // namespace
