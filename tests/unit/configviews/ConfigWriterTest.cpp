#include "ConfigViewsSupport.h"
#include "TestSupport.h"

#include <QDomDocument>
#include <QDomElement>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <gtest/gtest.h>

#include <pthread.h>

namespace {

using libconfig::Config;

QByteArray writtenText(Config &config, const QString &dir)
{
    const QString out = QDir(dir).filePath(QStringLiteral("out.conf"));
    config.buildConfigFile(out);
    return readFile(out);
}

QByteArray writtenXml(Config &config, const QString &dir)
{
    const QString out = QDir(dir).filePath(QStringLiteral("out.xml"));
    config.buildConfigXmlFile(out);
    return readFile(out);
}

TEST(ConfigTextWriter, WritesOneNestedBlockInTheDocumentedLayout)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"),
                             "bristel : { receiptdoc : { paperWidth = 40; }; };");
    const QByteArray expected = "bristel: \n"
                                "{\n"
                                "    receiptdoc: \n"
                                "    {\n"
                                "        paperWidth = \"40\";\n"
                                "    };\n"
                                "\n"
                                "};\n"
                                "\n";
    const QByteArray written = writtenText(*config, dir.path());
    EXPECT_EQ(written, expected) << visible(written).toStdString();
}

TEST(ConfigTextWriter, WritesFileLevelEntriesFirstWithoutIndentationAndAttributesSortedByName)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"),
                             "zeta = 9; alpha = \"a b\";\n"
                             "a : { zk = 1; ak = 2; mk = 3; b : { x = ; }; c : { y = 4; }; };");
    const QByteArray expected = "alpha = \"a b\";\n"
                                "zeta = \"9\";\n"
                                "a: \n"
                                "{\n"
                                "    ak = \"2\";\n"
                                "    mk = \"3\";\n"
                                "    zk = \"1\";\n"
                                "    b: \n"
                                "    {\n"
                                "        x = \"\";\n"
                                "    };\n"
                                "\n"
                                "    c: \n"
                                "    {\n"
                                "        y = \"4\";\n"
                                "    };\n"
                                "\n"
                                "};\n"
                                "\n";
    const QByteArray written = writtenText(*config, dir.path());
    EXPECT_EQ(written, expected) << visible(written).toStdString();
}

TEST(ConfigTextWriter, EmptyPathWritesTheStoredFileName)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "a:{k=v;};");
    config->buildConfigFile();
    EXPECT_EQ(readFile(config->fileName()), QByteArray("a: \n{\n    k = \"v\";\n};\n\n"));
}

TEST(ConfigTextWriter, TruncatesTheFileItWritesTo)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "a:{k=v;};");
    const QString out = dir.filePath(QStringLiteral("out.conf"));
    writeFile(out, QByteArray(500, 'x'));
    config->buildConfigFile(out);
    EXPECT_EQ(readFile(out), QByteArray("a: \n{\n    k = \"v\";\n};\n\n"));
}

TEST(ConfigTextWriter, AnUnopenableFileIsIgnoredSilently)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "a:{k=v;};");
    const QString out = dir.filePath(QStringLiteral("missing/out.conf"));
    const QByteArray printed = captureStdout([&] {
        config->buildConfigFile(out);
        config->buildConfigXmlFile(out);
    });
    EXPECT_TRUE(printed.isEmpty());
    EXPECT_FALSE(QFile::exists(out));
}

TEST(ConfigTextWriter, AnEmptyConfigurationWritesAnEmptyFile)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "");
    const QString out = dir.filePath(QStringLiteral("out.conf"));
    writeFile(out, "old");
    config->buildConfigFile(out);
    EXPECT_TRUE(QFile::exists(out));
    EXPECT_EQ(readFile(out), QByteArray());
}

TEST(ConfigTextWriter, OnlyTheFirstTopLevelBlockIsWritten)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "a : { k = 1; }; b : { k = 2; };");
    ASSERT_EQ(config->document()->documentElement().childNodes().count(), 2);
    config->buildConfigFile();
    EXPECT_EQ(readFile(config->fileName()), QByteArray("a: \n{\n    k = \"1\";\n};\n\n"));

    Config reread(config->fileName(), QStringLiteral("cfg"));
    EXPECT_EQ(reread.lookup(QStringLiteral("a.k")), QStringLiteral("1"));
    EXPECT_EQ(reread.document()->documentElement().childNodes().count(), 1);
}

TEST(ConfigTextWriter, AQuoteInsideAValueIsWrittenAsItStandsAndLostOnReading)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "a : { k = x; };");
    config->document()->documentElement().firstChildElement().setAttribute(QStringLiteral("k"),
                                                                           QStringLiteral("say \"hi\""));
    config->buildConfigFile();
    EXPECT_EQ(readFile(config->fileName()), QByteArray("a: \n{\n    k = \"say \"hi\"\";\n};\n\n"));

    Config reread(config->fileName(), QStringLiteral("cfg"));
    EXPECT_EQ(reread.lookup(QStringLiteral("a.k")), QStringLiteral("say hi"));
}

TEST(ConfigTextWriter, LatinOneBytesOfValuesAreWrittenBackUnchanged)
{
    QTemporaryDir dir;
    const QByteArray text = "a: \n{\n    k = \"Caff\xe8 \xa7 1\";\n};\n\n";
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), text);
    EXPECT_EQ(config->lookup(QStringLiteral("a.k")), QStringLiteral("Caff\u00e8 \u00a7 1"));
    EXPECT_EQ(writtenText(*config, dir.path()), text);
}

TEST(ConfigTextWriter, BlockLayoutOnAGivenStream)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "a : { k = 1; b : { j = 2; }; };");
    QString text;
    QTextStream stream(&text);
    const QDomElement b = config->document()->documentElement().firstChildElement().firstChildElement();
    ASSERT_EQ(b.tagName(), QStringLiteral("b"));
    config->buildConfigFile(b, stream);
    stream.flush();
    EXPECT_EQ(text, QStringLiteral("b: \n{\n    j = \"2\";\n};\n\n"));
}

TEST(ConfigXmlWriter, WritesAttributesOnePerLineInsideTheStartTag)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"),
                             "bristel : { receiptdoc : { style = plain; paperWidth = 40; }; db : { }; "
                             "logger : { level = WARNING; sub : { k = v; }; }; };");
    const QByteArray expected = "\n"
                                "<bristel>\n"
                                "\n"
                                "    <receiptdoc\n"
                                "        paperWidth = \"40\"\n"
                                "        style = \"plain\">\n"
                                "    </receiptdoc>\n"
                                "\n"
                                "    <logger\n"
                                "        level = \"WARNING\">\n"
                                "\n"
                                "        <sub\n"
                                "            k = \"v\">\n"
                                "        </sub>\n"
                                "    </logger>\n"
                                "</bristel>\n";
    const QByteArray written = writtenXml(*config, dir.path());
    EXPECT_EQ(written, expected) << visible(written).toStdString();
}

TEST(ConfigXmlWriter, FileLevelEntriesAreWrittenInTheTextFormBeforeTheElement)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"), "x = 1; a : { k = 2; };");
    EXPECT_EQ(writtenXml(*config, dir.path()), QByteArray("x = \"1\";\n\n<a\n    k = \"2\">\n</a>\n"));
}

TEST(ConfigXmlWriter, ValuesAreNotEscaped)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.xml"), "<a k=\"1\"/>", QStringLiteral("xml"));
    ASSERT_EQ(config->lookup(QStringLiteral("a.k")), QStringLiteral("1"));
    config->document()->documentElement().firstChildElement().setAttribute(QStringLiteral("k"),
                                                                           QStringLiteral("<b> & \"c\""));
    EXPECT_EQ(writtenXml(*config, dir.path()), QByteArray("\n<a\n    k = \"<b> & \"c\"\">\n</a>\n"));

    // Such a file is no longer well-formed: reading it gives an empty configuration.
    Config reread(dir.filePath(QStringLiteral("out.xml")), QStringLiteral("xml"));
    EXPECT_EQ(reread.lookup(QStringLiteral("a.k")), QString());
}

TEST(ConfigXmlWriter, WritesUtf8AndSkipsNodesOtherThanElements)
{
    QTemporaryDir dir;
    auto config =
        configFrom(dir.path(), QStringLiteral("in.xml"),
                   "<a k=\"caff\xc3\xa8\"><!-- note -->text<b j=\"2\"/></a>", QStringLiteral("xml"));
    EXPECT_EQ(writtenXml(*config, dir.path()),
              QByteArray("\n<a\n    k = \"caff\xc3\xa8\">\n\n    <b\n        j = \"2\">\n    </b>\n</a>\n"));
}

TEST(ConfigTreePrinter, PrintsElementsAndAttributesWithoutIndentation)
{
    QTemporaryDir dir;
    auto config = configFrom(dir.path(), QStringLiteral("in.conf"),
                             "x = 1; a : { k = v w; b : { z = 2; y = 1; }; }; c : { q = 1; };");
    const QByteArray printed = captureStdout([&] { config->printConfigTree(); });
    const QByteArray expected = "Tree \n" + config->fileName().toLocal8Bit() +
                                "\n"
                                "x = 1\n"
                                "a\n"
                                "k = v w\n"
                                "b\n"
                                "y = 1\n"
                                "z = 2\n"
                                "c\n"
                                "q = 1\n";
    EXPECT_EQ(printed, expected) << visible(printed).toStdString();
}

TEST(ConfigTreePrinter, AnEmptyConfigurationPrintsOnlyTheTitle)
{
    Config config;
    EXPECT_EQ(captureStdout([&] { config.printConfigTree(); }), QByteArray("Tree \n"));
}

// A configuration nested depth blocks deep, built directly in the DOM.
void nest(Config &config, const QString &path, int depth)
{
    config.constructor(path, QStringLiteral("none"));
    QDomDocument &document = *config.document();
    QDomElement parent = document.createElement(path);
    document.appendChild(parent);
    for (int i = 0; i < depth; ++i) {
        QDomElement block = document.createElement(QStringLiteral("b"));
        block.setAttribute(QStringLiteral("level"), QString::number(i));
        parent.appendChild(block);
        parent = block;
    }
}

struct DeepWrite
{
    Config *config;
    QString textPath;
    QString xmlPath;
};

void *writeDeep(void *argument)
{
    auto *job = static_cast<DeepWrite *>(argument);
    job->config->buildConfigFile(job->textPath);
    job->config->buildConfigXmlFile(job->xmlPath);
    captureStdout([&] { job->config->printConfigTree(); });
    return nullptr;
}

TEST(ConfigWriters, DeepNestingNeedsNoCallStackAndLeavesTheIndentationEmpty)
{
    QTemporaryDir dir;
    Config deep;
    nest(deep, dir.filePath(QStringLiteral("deep.conf")), 6000);

    // A thread with a small stack: a writer recursing once per block would overflow it.
    DeepWrite job{&deep, QStringLiteral("/dev/null"), QStringLiteral("/dev/null")};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 128 * 1024);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, writeDeep, &job), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);

    // Every block entered was left again: the next file starts at column 0.
    Config small;
    nest(small, dir.filePath(QStringLiteral("small.conf")), 2);
    EXPECT_EQ(
        writtenText(small, dir.path()),
        QByteArray("b: \n{\n    level = \"0\";\n    b: \n    {\n        level = \"1\";\n    };\n\n};\n\n"));
    EXPECT_EQ(writtenXml(small, dir.path()),
              QByteArray("\n<b\n    level = \"0\">\n\n    <b\n        level = \"1\">\n    </b>\n</b>\n"));
}

TEST(ConfigWriters, ADeepConfigurationReadsBackIdentically)
{
    QTemporaryDir dir;
    Config deep;
    nest(deep, dir.filePath(QStringLiteral("deep.conf")), 300);
    const QString out = dir.filePath(QStringLiteral("out.conf"));
    deep.buildConfigFile(out);
    Config reread(out, QStringLiteral("cfg"));
    EXPECT_EQ(treeContent(reread), treeContent(deep));
    QString key = QStringLiteral("b");
    for (int i = 1; i < 300; ++i)
        key += QStringLiteral(".b");
    EXPECT_EQ(reread.lookup(key + QStringLiteral(".level")), QStringLiteral("299"));
}

} // namespace
