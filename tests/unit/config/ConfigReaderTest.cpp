// The text and XML readers of the configuration file, and the dotted-key lookup.

#include "config/Config.h"

#include "TestSupport.h"

#include <QDir>
#include <QDomDocument>
#include <QDomElement>
#include <QDomNamedNodeMap>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <memory>

namespace {

class ConfigReader : public ::testing::Test
{
protected:
    QString path(const QString &name = QStringLiteral("bristel.conf")) const { return m_dir.filePath(name); }

    // Loads text as a "cfg" file; stdout is captured into lastStdout.
    libconfig::Config &load(const QByteArray &text, const QString &type = QStringLiteral("cfg"))
    {
        writeFile(path(), text);
        lastStdout = captureStdout([&] { m_config = std::make_unique<libconfig::Config>(path(), type); });
        return *m_config;
    }

    QString lookup(const char *key) const { return m_config->lookup(QString::fromUtf8(key)); }

    // The element of the first top-level block.
    QDomElement firstBlock() const { return m_config->document()->documentElement().firstChildElement(); }

    QTemporaryDir m_dir;
    std::unique_ptr<libconfig::Config> m_config;
    QByteArray lastStdout;
};

TEST_F(ConfigReader, EntryOfABlock)
{
    load("a : { b = 1; };");
    EXPECT_EQ(lookup("a.b"), QStringLiteral("1"));
    EXPECT_EQ(lookup("a.c"), QString());
    EXPECT_EQ(lookup("x.b"), QString());
    EXPECT_TRUE(lastStdout.isEmpty());
}

TEST_F(ConfigReader, NestedBlockKeepsInnerBlank)
{
    load("a : { b : { c = \"x y\"; }; };");
    EXPECT_EQ(lookup("a.b.c"), QStringLiteral("x y"));
    EXPECT_EQ(lookup("a.b"), QString()); // b is a block, not an attribute
}

TEST_F(ConfigReader, TreeShape)
{
    load("bristel : {\n  receiptdoc : {\n    paperWidth = 40;\n    descriptionWidth = \"20\";\n  };\n};\n");
    const QDomElement root = m_config->document()->documentElement();
    EXPECT_EQ(root.tagName(), path()); // the root is named after the file
    EXPECT_EQ(root.childNodes().count(), 1);
    const QDomElement bristel = root.firstChildElement();
    EXPECT_EQ(bristel.tagName(), QStringLiteral("bristel"));
    EXPECT_EQ(bristel.attributes().count(), 0);
    const QDomElement receipt = bristel.firstChildElement();
    EXPECT_EQ(receipt.tagName(), QStringLiteral("receiptdoc"));
    EXPECT_EQ(receipt.attribute(QStringLiteral("paperWidth")), QStringLiteral("40"));
    EXPECT_EQ(receipt.attribute(QStringLiteral("descriptionWidth")), QStringLiteral("20"));
    EXPECT_EQ(lookup("bristel.receiptdoc.paperWidth"), QStringLiteral("40"));
    EXPECT_EQ(lookup("bristel.receiptdoc.descriptionWidth"), QStringLiteral("20"));
}

TEST_F(ConfigReader, ValueIsCutAtSemicolon)
{
    load("a : { v = \"12;34\"; w = 5; };");
    EXPECT_EQ(lookup("a.v"), QStringLiteral("12"));
    // 34" and the rest up to the next '=' became the next entry's name.
    EXPECT_EQ(lookup("a.w"), QString());
    EXPECT_EQ(firstBlock().attribute(QStringLiteral("34\"; w")), QStringLiteral("5"));
}

TEST_F(ConfigReader, QuotesAreDeletedWhereverTheyStand)
{
    load("a : { q = \"abc\"; p = abc; inner = \"x\"y\"z\"; lone = \"; };");
    EXPECT_EQ(lookup("a.q"), QStringLiteral("abc"));
    EXPECT_EQ(lookup("a.p"), QStringLiteral("abc"));
    EXPECT_EQ(lookup("a.inner"), QStringLiteral("xyz"));
    EXPECT_EQ(lookup("a.lone"), QString());
}

TEST_F(ConfigReader, QuotesAreRemovedAfterStripping)
{
    // The blanks inside the quotes survive; those outside are stripped first.
    load("a : { v =   \"  padded  \"  ; };");
    EXPECT_EQ(lookup("a.v"), QStringLiteral("  padded  "));
}

TEST_F(ConfigReader, ValueMaySpanLines)
{
    load("a : { v = first\r\n  second\n; };");
    EXPECT_EQ(lookup("a.v"), QStringLiteral("first\r\n  second"));
}

TEST_F(ConfigReader, StrayTextBecomesPartOfTheName)
{
    load("# settings\nbristel : {\n  // width\n  paperWidth = 40;\n  height = 5;\n};\n");
    // The comment in front of the block is part of the block's name: nothing is found.
    EXPECT_EQ(lookup("bristel.height"), QString());
    const QDomElement block = firstBlock();
    EXPECT_EQ(block.tagName(), QStringLiteral("# settings\nbristel"));
    EXPECT_EQ(block.attribute(QStringLiteral("// width\n  paperWidth")), QStringLiteral("40"));
    EXPECT_EQ(block.attribute(QStringLiteral("height")), QStringLiteral("5"));
}

TEST_F(ConfigReader, CommentInsideBlockSpoilsOnlyTheNextName)
{
    load("a : {\n # note\n k = 1;\n m = 2;\n};");
    EXPECT_EQ(lookup("a.k"), QString());
    EXPECT_EQ(lookup("a.m"), QStringLiteral("2"));
}

TEST_F(ConfigReader, TextBetweenColonAndBraceIsDiscarded)
{
    load("a : junk here { b = 1; };");
    EXPECT_EQ(lookup("a.b"), QStringLiteral("1"));
}

TEST_F(ConfigReader, TextBetweenClosingBraceAndSemicolonIsDiscarded)
{
    load("a : { b : { c = 1; } trailing junk ; d = 2; };");
    EXPECT_EQ(lookup("a.b.c"), QStringLiteral("1"));
    EXPECT_EQ(lookup("a.d"), QStringLiteral("2"));
}

TEST_F(ConfigReader, BlockWithoutSpaces)
{
    load("a:{b:{c=1;};d=2;};");
    EXPECT_EQ(lookup("a.b.c"), QStringLiteral("1"));
    EXPECT_EQ(lookup("a.d"), QStringLiteral("2"));
}

TEST_F(ConfigReader, OnlyTheFirstTopLevelBlockIsSearched)
{
    load("a : { k = 1; }; b : { k = 2; };");
    EXPECT_EQ(lookup("a.k"), QStringLiteral("1"));
    EXPECT_EQ(lookup("b.k"), QString());
    // Both blocks are in the tree all the same.
    EXPECT_EQ(m_config->document()->documentElement().childNodes().count(), 2);
}

TEST_F(ConfigReader, FileLevelEntryIsStoredButUnreachable)
{
    load("x = 1;\na : { k = 2; };");
    const QDomElement root = m_config->document()->documentElement();
    EXPECT_EQ(root.attribute(QStringLiteral("x")), QStringLiteral("1"));
    EXPECT_EQ(lookup("x"), QString());
    EXPECT_EQ(lookup("x.x"), QString());
    EXPECT_EQ(lookup("a.k"), QStringLiteral("2"));
}

TEST_F(ConfigReader, FileWithOnlyEntries)
{
    load("x = 1; y = 2;");
    const QDomElement root = m_config->document()->documentElement();
    EXPECT_EQ(root.attribute(QStringLiteral("y")), QStringLiteral("2"));
    EXPECT_FALSE(root.hasChildNodes());
    EXPECT_EQ(lookup("y"), QString());
}

TEST_F(ConfigReader, EmptyBlockLeavesNoElement)
{
    load("a : { };");
    const QDomElement root = m_config->document()->documentElement();
    EXPECT_FALSE(root.hasChildNodes());
    EXPECT_EQ(lookup("a"), QString());
    EXPECT_EQ(lookup("a.k"), QString());
}

TEST_F(ConfigReader, EmptyBlockBeforeAFilledOneIsSkipped)
{
    // The empty block leaves nothing, so the next block is the first one searched.
    load("a : { }; b : { k = 2; };");
    EXPECT_EQ(lookup("b.k"), QStringLiteral("2"));
}

TEST_F(ConfigReader, NestedEmptyBlockLeavesNoElement)
{
    load("a : { e : { }; k = 1; };");
    EXPECT_EQ(firstBlock().childNodes().count(), 0);
    EXPECT_EQ(lookup("a.k"), QStringLiteral("1"));
}

TEST_F(ConfigReader, EmptyValueCountsAsNotFound)
{
    load("a : { k = ; };");
    EXPECT_TRUE(firstBlock().hasAttribute(QStringLiteral("k")));
    EXPECT_EQ(lookup("a.k"), QString());
}

TEST_F(ConfigReader, EmptyValueLetsTheSearchGoOnToLaterSiblings)
{
    load("a : { b : { k = ; }; b : { k = 2; }; };");
    EXPECT_EQ(lookup("a.b.k"), QStringLiteral("2"));
}

TEST_F(ConfigReader, SameNamedSiblingBlocksFirstNonEmptyWins)
{
    load("a : { b : { k = 1; }; b : { k = 2; }; b : { j = 3; }; };");
    EXPECT_EQ(lookup("a.b.k"), QStringLiteral("1"));
    EXPECT_EQ(lookup("a.b.j"), QStringLiteral("3"));
    EXPECT_EQ(firstBlock().childNodes().count(), 3);
}

TEST_F(ConfigReader, SameNameTwiceKeepsTheLastValue)
{
    load("a : { k = 1; k = 2; };");
    EXPECT_EQ(lookup("a.k"), QStringLiteral("2"));
    EXPECT_EQ(firstBlock().attributes().count(), 1);
}

TEST_F(ConfigReader, KeysOfFourAndMoreComponents)
{
    load("a : { b : { c : { d = 4; e : { f : { g = 6; }; }; }; }; };");
    EXPECT_EQ(lookup("a.b.c.d"), QStringLiteral("4"));
    EXPECT_EQ(lookup("a.b.c.e.f.g"), QStringLiteral("6"));
    EXPECT_EQ(lookup("a.b.c.e.f"), QString());
    EXPECT_EQ(lookup("a.b.x.d"), QString());
    EXPECT_EQ(lookup("a.b.c.d.e"), QString());
}

TEST_F(ConfigReader, KeyOfOneComponentNeverMatches)
{
    load("a : { a = 1; };");
    EXPECT_EQ(lookup("a"), QString());
    EXPECT_EQ(lookup(""), QString());
    EXPECT_EQ(lookup("a."), QString());
    EXPECT_EQ(lookup("a.a"), QStringLiteral("1"));
}

TEST_F(ConfigReader, ComponentsMatchCaseSensitively)
{
    load("bristel : { Doc : { paperWidth = 40; }; };");
    EXPECT_EQ(lookup("bristel.Doc.paperWidth"), QStringLiteral("40"));
    EXPECT_EQ(lookup("bristel.doc.paperWidth"), QString());
    EXPECT_EQ(lookup("Bristel.Doc.paperWidth"), QString());
    EXPECT_EQ(lookup("bristel.Doc.paperwidth"), QString());
}

TEST_F(ConfigReader, EndOfFileInsideBlocksKeepsWhatWasRead)
{
    load("a : { b = 1; c : { d = 2;");
    EXPECT_EQ(lookup("a.b"), QStringLiteral("1"));
    EXPECT_EQ(lookup("a.c.d"), QStringLiteral("2"));
}

TEST_F(ConfigReader, EndOfFileInsideValueKeepsTheValue)
{
    load("a : { b = 12  ");
    EXPECT_EQ(lookup("a.b"), QStringLiteral("12"));
}

TEST_F(ConfigReader, MissingOpeningBraceRunsToTheEnd)
{
    load("a : { k = 1; b : c = 2; };");
    EXPECT_EQ(lookup("a.k"), QStringLiteral("1"));
    EXPECT_EQ(lookup("a.b.c"), QString());
}

TEST_F(ConfigReader, ClosingBraceAtFileLevelEndsTheReading)
{
    load("}; a : { b = 1; };");
    EXPECT_EQ(lookup("a.b"), QString());
    EXPECT_FALSE(m_config->document()->documentElement().hasChildNodes());
}

TEST_F(ConfigReader, ExtraClosingBraceStopsBeforeLaterBlocks)
{
    load("a : { b = 1; }; }; a2 : { c = 3; }; x = 9;");
    EXPECT_EQ(lookup("a.b"), QStringLiteral("1"));
    const QDomElement root = m_config->document()->documentElement();
    EXPECT_EQ(root.childNodes().count(), 1);
    EXPECT_FALSE(root.hasAttribute(QStringLiteral("x")));
}

TEST_F(ConfigReader, BytesAreReadAsLatin1)
{
    load("a : { latin = caf\xe9; utf = caf\xc3\xa9; };");
    EXPECT_EQ(lookup("a.latin"), QString::fromLatin1("caf\xe9"));
    EXPECT_EQ(lookup("a.utf"), QString::fromLatin1("caf\xc3\xa9"));
}

TEST_F(ConfigReader, NulByteEndsTheText)
{
    load(QByteArray("a : { b = 1\0xyz; c = 2; };", 26));
    EXPECT_EQ(lookup("a.b"), QStringLiteral("1"));
    EXPECT_EQ(lookup("a.c"), QStringLiteral("2"));
}

TEST_F(ConfigReader, NulByteInFrontOfAName)
{
    // The name reads as empty: the entry is stored under no usable name.
    load(QByteArray("a : { \0b = 1; c = 2; };", 23));
    EXPECT_EQ(lookup("a.b"), QString());
    EXPECT_EQ(lookup("a.c"), QStringLiteral("2"));
}

// A text with its length in front, so that joined texts cannot be mistaken for one another.
QString counted(const QString &text)
{
    return QString::number(text.size()) + QLatin1Char(':') + text;
}

QString attributesOf(const QDomElement &element)
{
    QString text;
    for (const QString &name : libconfig::Config::sortedAttributeNames(element))
        text += counted(name) + counted(element.attribute(name));
    return text;
}

// What an element holds, blocks that hold nothing left out: the writer writes an empty block,
// but the reader keeps a block only once it has read an entry or a block inside it.
QString contentOf(const QDomElement &element)
{
    if (element.isNull())
        return QString();
    QString children;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        children += contentOf(child);
    const QString attributes = attributesOf(element);
    if (attributes.isEmpty() && children.isEmpty())
        return QString();
    return QLatin1Char('<') + counted(element.tagName()) + attributes + children + QLatin1Char('>');
}

TEST_F(ConfigReader, RandomFilesReadBackAsTheTextWriterWritesThem)
{
    QRandomGenerator random(20240611);
    int roundsWithContent = 0;
    for (int round = 0; round < 200; ++round) {
        QByteArray bytes;
        const int size = random.bounded(1, 600);
        for (int i = 0; i < size; ++i) {
            // Mostly the four syntax bytes and braces, to reach every branch of the reader.
            static const char syntax[] = ":={};\"\0ab \n";
            bytes.append(random.bounded(3) == 0 ? char(random.bounded(256))
                                                : syntax[random.bounded(int(sizeof syntax))]);
        }
        load(bytes);
        const QDomElement root = m_config->document()->documentElement();
        const QDomElement first = root.firstChildElement();
        // The lookup answers what the tree holds.
        for (const QString &name : libconfig::Config::sortedAttributeNames(first)) {
            const QString key = first.tagName() + QLatin1Char('.') + name;
            if (name.isEmpty() || key.count(QLatin1Char('.')) != 1)
                continue; // an empty name, or one with a dot of its own, cannot be looked up
            EXPECT_EQ(m_config->lookup(key), first.attribute(name)) << "round " << round;
        }

        const QString written = path(QStringLiteral("written.conf"));
        m_config->buildConfigFile(written);
        ASSERT_EQ(m_config->writeStatus(), QFileDevice::NoError) << "round " << round;
        const libconfig::Config reread(written, QStringLiteral("cfg"));
        const QDomElement rereadRoot = reread.document()->documentElement();
        EXPECT_EQ(attributesOf(rereadRoot), attributesOf(root)) << "round " << round;
        EXPECT_EQ(contentOf(rereadRoot.firstChildElement()), contentOf(first)) << "round " << round;
        if (!contentOf(first).isEmpty())
            ++roundsWithContent;
        m_config.reset();
    }
    // The generator reaches files with blocks and entries, not only empty trees.
    EXPECT_GT(roundsWithContent, 20);
    load("a : { b = ok; };");
    EXPECT_EQ(lookup("a.b"), QStringLiteral("ok"));
}

TEST_F(ConfigReader, EntriesLongerThanTheFixedBuffer)
{
    const QByteArray longName(5000, 'n');
    const QByteArray longValue(3000, 'v');
    load("a : { " + longName + " = " + longValue + "; k = 1; " + QByteArray(2047, 'm') + " = 2; };");
    EXPECT_EQ(lookup("a.k"), QStringLiteral("1"));
    EXPECT_EQ(m_config->lookup(QStringLiteral("a.") + QString::fromLatin1(longName)),
              QString::fromLatin1(longValue));
    EXPECT_EQ(m_config->lookup(QStringLiteral("a.") + QString(2047, QLatin1Char('m'))), QStringLiteral("2"));
}

TEST_F(ConfigReader, LongBlockNameAndFileLevelText)
{
    const QByteArray longName(4096, 'b');
    load(QByteArray(3000, ' ') + longName + " : { k = 1; };");
    EXPECT_EQ(m_config->lookup(QString::fromLatin1(longName) + QStringLiteral(".k")), QStringLiteral("1"));
}

TEST_F(ConfigReader, TenMebibyteValue)
{
    const QByteArray value(10 * 1024 * 1024, 'x');
    load("a : { big = \"" + value + "\"; k = 1; };");
    EXPECT_EQ(lookup("a.k"), QStringLiteral("1"));
    const QString big = lookup("a.big");
    EXPECT_EQ(big.size(), value.size());
    EXPECT_TRUE(big.startsWith(QLatin1String("xxx")) && big.endsWith(QLatin1String("xxx")));
}

QByteArray nestedBlocks(int depth, bool closed)
{
    QByteArray text;
    text.reserve(depth * 24);
    for (int i = 0; i < depth; ++i)
        text += "x : { v = " + QByteArray::number(i) + "; ";
    if (closed) {
        for (int i = 0; i < depth; ++i)
            text += "}; ";
    }
    return text;
}

TEST_F(ConfigReader, HundredThousandNestedBlocks)
{
    load(nestedBlocks(100000, true) + "after : { k = 1; };");
    EXPECT_EQ(lookup("x.v"), QStringLiteral("0"));
    EXPECT_EQ(lookup("x.x.x.x.v"), QStringLiteral("3"));
    EXPECT_EQ(lookup("x.x.x.y.v"), QString());
    EXPECT_EQ(m_config->document()->documentElement().childNodes().count(), 2);
    m_config.reset(); // the tree is destroyed without running out of stack
}

TEST_F(ConfigReader, HundredThousandUnclosedBlocks)
{
    load(nestedBlocks(100000, false));
    EXPECT_EQ(lookup("x.x.x.x.v"), QStringLiteral("3"));
    // Reading another file frees the deep tree just as well.
    writeFile(path(QStringLiteral("other.conf")), "y : { k = 2; };");
    m_config->readFile(path(QStringLiteral("other.conf")), QStringLiteral("cfg"));
    EXPECT_EQ(lookup("y.k"), QStringLiteral("2"));
    EXPECT_EQ(lookup("x.v"), QString());
}

TEST_F(ConfigReader, ReadFileReplacesTheTree)
{
    load("a : { k = 1; };");
    writeFile(path(QStringLiteral("second.conf")), "b : { k = 2; };");
    m_config->readFile(path(QStringLiteral("second.conf")), QStringLiteral("cfg"));
    EXPECT_EQ(m_config->fileName(), path(QStringLiteral("second.conf")));
    EXPECT_EQ(lookup("b.k"), QStringLiteral("2"));
    EXPECT_EQ(lookup("a.k"), QString());
    EXPECT_EQ(m_config->document()->documentElement().tagName(), path(QStringLiteral("second.conf")));
}

TEST_F(ConfigReader, MissingFileIsKeptAsTheLineForTheProgramAndNotPrinted)
{
    const QString missing = path(QStringLiteral("nowhere/bristel.conf"));
    std::unique_ptr<libconfig::Config> config;
    const QByteArray out =
        captureStdout([&] { config = std::make_unique<libconfig::Config>(missing, QStringLiteral("cfg")); });
    EXPECT_TRUE(out.isEmpty()) << out.constData();
    EXPECT_EQ(config->readError(), QLatin1String("Error in the method FileReader::open( ") + missing +
                                       QLatin1String(" ): File Not Found"));
    EXPECT_EQ(config->lookup(QStringLiteral("a.b")), QString());
    EXPECT_EQ(config->fileName(), missing);
    EXPECT_EQ(config->fileType(), QStringLiteral("cfg"));
    // The lookups themselves print nothing.
    EXPECT_TRUE(captureStdout([&] { config->lookup(QStringLiteral("bristel.doc.paperWidth")); }).isEmpty());

    // A later load that finds its file clears the error.
    writeFile(path(QStringLiteral("there.conf")), "a : { b = 1; };");
    config->readFile(path(QStringLiteral("there.conf")), QStringLiteral("cfg"));
    EXPECT_EQ(config->readError(), QString());
    EXPECT_EQ(config->lookup(QStringLiteral("a.b")), QStringLiteral("1"));
}

TEST_F(ConfigReader, DirectoryAsFileLoadsNothing)
{
    std::unique_ptr<libconfig::Config> config;
    const QByteArray out = captureStdout(
        [&] { config = std::make_unique<libconfig::Config>(m_dir.path(), QStringLiteral("cfg")); });
    // The directory opens (it exists) but yields no byte.
    EXPECT_TRUE(out.isEmpty()) << out.toStdString();
    EXPECT_EQ(config->lookup(QStringLiteral("a.b")), QString());
}

TEST_F(ConfigReader, EmptyFile)
{
    load("");
    EXPECT_TRUE(lastStdout.isEmpty());
    EXPECT_EQ(lookup("a.b"), QString());
}

TEST_F(ConfigReader, UnknownFileTypeLoadsNothing)
{
    for (const char *type : {"CFG", "Xml", "", "conf"}) {
        load("a : { b = 1; };", QString::fromLatin1(type));
        EXPECT_EQ(lookup("a.b"), QString()) << type;
        ASSERT_NE(m_config->document(), nullptr);
        EXPECT_FALSE(m_config->document()->hasChildNodes()) << type;
        EXPECT_TRUE(lastStdout.isEmpty()) << type;
    }
    // Not even a missing file is reported.
    const QByteArray out = captureStdout(
        [&] { libconfig::Config config(path(QStringLiteral("missing")), QStringLiteral("text")); });
    EXPECT_TRUE(out.isEmpty());
}

TEST(ConfigEmpty, DefaultReaderAnswersEmpty)
{
    libconfig::Config config;
    EXPECT_EQ(config.fileName(), QString());
    EXPECT_EQ(config.fileType(), QString());
    EXPECT_EQ(config.document(), nullptr);
    EXPECT_EQ(config.lookup(QStringLiteral("a.b")), QString());
}

TEST_F(ConfigReader, XmlLookups)
{
    load("<bristel version=\"1\"><receiptdoc paperWidth=\"40\" empty=\"\"/><receiptdoc empty=\"5\"/>"
         "<deep><er><est k=\"v\"/></er></deep></bristel>",
         QStringLiteral("xml"));
    EXPECT_TRUE(lastStdout.isEmpty());
    EXPECT_EQ(lookup("bristel.receiptdoc.paperWidth"), QStringLiteral("40"));
    EXPECT_EQ(lookup("bristel.version"), QStringLiteral("1"));
    EXPECT_EQ(lookup("bristel.receiptdoc.empty"), QStringLiteral("5"));
    EXPECT_EQ(lookup("bristel.deep.er.est.k"), QStringLiteral("v"));
    EXPECT_EQ(lookup("bristel.receiptdoc"), QString());
    EXPECT_EQ(lookup("other.receiptdoc.paperWidth"), QString());
    const QDomElement root = m_config->document()->documentElement();
    EXPECT_EQ(root.tagName(), path());
    EXPECT_EQ(root.firstChildElement().tagName(), QStringLiteral("bristel"));
}

TEST_F(ConfigReader, XmlWithWhitespaceAroundTheTopElement)
{
    load("<bristel>\n  <doc paperWidth=\"33\"/>\n</bristel>\n", QStringLiteral("xml"));
    EXPECT_EQ(lookup("bristel.doc.paperWidth"), QStringLiteral("33"));
}

TEST_F(ConfigReader, XmlDeclarationTakesThePlaceOfTheTopElement)
{
    // The declaration is the file's first node: it is what moves under the root, so the
    // top element stays the document's element and its name is not part of any key.
    load("<?xml version=\"1.0\"?>\n<bristel><doc w=\"4\"/></bristel>", QStringLiteral("xml"));
    EXPECT_EQ(lookup("bristel.doc.w"), QString());
    EXPECT_EQ(lookup("doc.w"), QStringLiteral("4"));
}

TEST_F(ConfigReader, UnparsableXmlIsSilent)
{
    load("<bristel><doc paperWidth=\"33\"></bristel>", QStringLiteral("xml"));
    EXPECT_TRUE(lastStdout.isEmpty());
    EXPECT_EQ(lookup("bristel.doc.paperWidth"), QString());
    load("a : { b = 1; };", QStringLiteral("xml"));
    EXPECT_EQ(lookup("a.b"), QString());
    load("", QStringLiteral("xml"));
    EXPECT_EQ(lookup("a.b"), QString());
}

TEST_F(ConfigReader, MissingXmlIsSilent)
{
    std::unique_ptr<libconfig::Config> config;
    const QByteArray out = captureStdout([&] {
        config = std::make_unique<libconfig::Config>(path(QStringLiteral("none.xml")), QStringLiteral("xml"));
    });
    EXPECT_TRUE(out.isEmpty());
    EXPECT_EQ(config->lookup(QStringLiteral("bristel.doc.paperWidth")), QString());
}

TEST_F(ConfigReader, XmlDeeplyNested)
{
    QByteArray text;
    for (int i = 0; i < 5000; ++i)
        text += "<x v=\"" + QByteArray::number(i) + "\">";
    for (int i = 0; i < 5000; ++i)
        text += "</x>";
    load(text, QStringLiteral("xml"));
    EXPECT_EQ(lookup("x.x.x.v"), QStringLiteral("2"));
    m_config.reset();
}

} // namespace
