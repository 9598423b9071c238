#include "ConfigViewsSupport.h"
#include "TestSupport.h"

#include <QTemporaryDir>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <memory>

namespace {

using libconfig::Config;

// Writes config in the given format to name and reads that file back.
std::unique_ptr<Config> writeAndRead(Config &config, const QString &dir, const QString &name,
                                     const QString &type)
{
    const QString path = QDir(dir).filePath(name);
    if (type == QLatin1String("xml"))
        config.buildConfigXmlFile(path);
    else
        config.buildConfigFile(path);
    return std::make_unique<Config>(path, type);
}

TEST(ConfigRoundTrip, SampleTextSurvivesTextTreeTextTree)
{
    QTemporaryDir dir;
    Config original(samplePath(), QStringLiteral("cfg"));
    ASSERT_EQ(original.lookup(QStringLiteral("bristel.receiptdoc.paperWidth")), QStringLiteral("40"));
    ASSERT_EQ(original.lookup(QStringLiteral("bristel.logger.filename")), QStringLiteral("bristel log.txt"));

    auto first = writeAndRead(original, dir.path(), QStringLiteral("first.conf"), QStringLiteral("cfg"));
    EXPECT_EQ(treeContent(*first), treeContent(original));
    auto second = writeAndRead(*first, dir.path(), QStringLiteral("second.conf"), QStringLiteral("cfg"));
    EXPECT_EQ(treeContent(*second), treeContent(original));
    // The writer's layout is a fixed point.
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("second.conf"))),
              readFile(dir.filePath(QStringLiteral("first.conf"))));
    EXPECT_EQ(second->lookup(QStringLiteral("bristel.logger.type")), QStringLiteral("APPEND"));
    EXPECT_EQ(second->lookup(QStringLiteral("bristel.doc.printNote")), QStringLiteral("true"));
}

TEST(ConfigRoundTrip, SampleAsXmlSurvivesXmlTreeXmlTree)
{
    QTemporaryDir dir;
    Config original(samplePath(), QStringLiteral("cfg"));
    auto asXml = writeAndRead(original, dir.path(), QStringLiteral("first.xml"), QStringLiteral("xml"));
    EXPECT_EQ(treeContent(*asXml), treeContent(original));
    EXPECT_EQ(asXml->lookup(QStringLiteral("bristel.fiscaldoc.descriptionWidth")), QStringLiteral("20"));

    auto again = writeAndRead(*asXml, dir.path(), QStringLiteral("second.xml"), QStringLiteral("xml"));
    EXPECT_EQ(treeContent(*again), treeContent(original));
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("second.xml"))),
              readFile(dir.filePath(QStringLiteral("first.xml"))));

    // And back to the text format.
    auto asText = writeAndRead(*again, dir.path(), QStringLiteral("third.conf"), QStringLiteral("cfg"));
    EXPECT_EQ(treeContent(*asText), treeContent(original));
}

TEST(ConfigRoundTrip, HandWrittenXmlSurvives)
{
    QTemporaryDir dir;
    auto original =
        configFrom(dir.path(), QStringLiteral("in.xml"),
                   "<bristel>\n"
                   "  <receiptdoc paperWidth=\"40\" style=\"plain\"><inner a=\"1\"/></receiptdoc>\n"
                   "  <empty/>\n"
                   "  <db dbname=\"bristel\" password=\"p w\"/>\n"
                   "</bristel>\n",
                   QStringLiteral("xml"));
    ASSERT_EQ(original->lookup(QStringLiteral("bristel.db.password")), QStringLiteral("p w"));
    auto first = writeAndRead(*original, dir.path(), QStringLiteral("first.xml"), QStringLiteral("xml"));
    EXPECT_EQ(treeContent(*first), treeContent(*original));
    auto second = writeAndRead(*first, dir.path(), QStringLiteral("second.xml"), QStringLiteral("xml"));
    EXPECT_EQ(treeContent(*second), treeContent(*original));
    EXPECT_TRUE(treeContent(*second).contains(QStringLiteral("<empty>")));
}

TEST(ConfigRoundTrip, HandMadeTreesSurvive)
{
    const QByteArray cases[] = {
        "a : { k = 1; };",
        "top = level; a : { k = 1; };",
        "a : { b : { c : { d : { e = deep; }; }; }; f = after; };",
        "a : { same : { k = 1; }; same : { k = 2; }; other : { x = y z; }; };",
        "a : { empty = ; spaced = \"  inner  blanks \"; path = /usr/share/x; };",
        "a : { name with blanks = v; };",
        "a : { multi = line\none; };",
        "a : { latin = caf\xe9; };",
    };
    for (const QByteArray &text : cases) {
        SCOPED_TRACE(text.toStdString());
        QTemporaryDir dir;
        auto original = configFrom(dir.path(), QStringLiteral("in.conf"), text);
        auto viaText = writeAndRead(*original, dir.path(), QStringLiteral("a.conf"), QStringLiteral("cfg"));
        EXPECT_EQ(treeContent(*viaText), treeContent(*original));
        auto viaTextAgain =
            writeAndRead(*viaText, dir.path(), QStringLiteral("b.conf"), QStringLiteral("cfg"));
        EXPECT_EQ(treeContent(*viaTextAgain), treeContent(*original));
    }
}

TEST(ConfigRoundTrip, ListViewBuildLoadAndSaveKeepsTheContent)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, readFile(samplePath()));
    Config config(path, QStringLiteral("cfg"));
    const QString before = treeContent(config);

    std::unique_ptr<QTreeWidget> view(config.buildConfigListView());
    config.loadListView(view.get());
    EXPECT_EQ(treeContent(config), before);
    Config reread(path, QStringLiteral("cfg"));
    EXPECT_EQ(treeContent(reread), before);

    // A second pass through the view changes no byte.
    const QByteArray written = readFile(path);
    std::unique_ptr<QTreeWidget> again(reread.buildConfigListView());
    reread.loadListView(again.get());
    EXPECT_EQ(readFile(path), written);
}

TEST(ConfigRoundTrip, ListViewOfAnXmlFileSavesXml)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.xml"),
                             "<a k=\"1\"><b j=\"2\"/><c/><b j=\"3\"/></a>", QStringLiteral("xml"));
    const QString before = treeContent(*config);
    std::unique_ptr<QTreeWidget> view(config->buildConfigListView());
    config->loadListView(view.get());
    EXPECT_EQ(readFile(config->fileName()),
              QByteArray("\n<a\n    k = \"1\">\n\n    <b\n        j = \"2\">\n    </b>\n\n    <c>\n    </c>\n"
                         "\n    <b\n        j = \"3\">\n    </b>\n</a>\n"));
    Config reread(config->fileName(), QStringLiteral("xml"));
    EXPECT_EQ(treeContent(reread), before);
}

} // namespace
