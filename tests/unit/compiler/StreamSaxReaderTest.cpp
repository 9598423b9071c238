// The pull-parser driven reader that feeds the content handler.

#include "compiler/StreamSaxReader.h"

#include "TestSupport.h"

#include <QBuffer>
#include <QStringList>
#include <QXmlDefaultHandler>

#include <gtest/gtest.h>

namespace {

class Recorder : public QXmlDefaultHandler
{
public:
    QStringList events;
    QString stopAt;    // qualified name whose start tag answers false
    QString stopAtEnd; // qualified name whose end tag answers false
    bool refuseDocument = false;
    bool recordAll = true;
    int starts = 0;
    int ends = 0;
    bool documentEnded = false;

    bool startDocument() override
    {
        if (recordAll)
            events << QStringLiteral("startDocument");
        return !refuseDocument;
    }
    bool endDocument() override
    {
        documentEnded = true;
        if (recordAll)
            events << QStringLiteral("endDocument");
        return true;
    }
    bool startElement(const QString &uri, const QString &local, const QString &qName,
                      const QXmlAttributes &attributes) override
    {
        ++starts;
        if (recordAll) {
            QString event = QStringLiteral("start(%1|%2|%3)").arg(uri, local, qName);
            for (int i = 0; i < attributes.count(); ++i)
                event += QStringLiteral(" [%1|%2|%3=%4]")
                             .arg(attributes.uri(i), attributes.localName(i), attributes.qName(i),
                                  attributes.value(i));
            events << event;
        }
        return qName != stopAt;
    }
    bool endElement(const QString &uri, const QString &local, const QString &qName) override
    {
        ++ends;
        if (recordAll)
            events << QStringLiteral("end(%1|%2|%3)").arg(uri, local, qName);
        return qName != stopAtEnd;
    }
};

std::string joined(const QStringList &events)
{
    return events.join(QLatin1Char('\n')).toStdString();
}

bool parse(const QByteArray &xml, Recorder &recorder)
{
    QBuffer buffer;
    buffer.setData(xml);
    buffer.open(QIODevice::ReadOnly);
    StreamSaxReader reader;
    reader.setContentHandler(&recorder);
    EXPECT_EQ(reader.contentHandler(), &recorder);
    return reader.parse(&buffer);
}

TEST(StreamSaxReader, CallbackOrder)
{
    Recorder r;
    EXPECT_TRUE(
        parse("<?xml version=\"1.0\"?>\n<!-- note --><doc><method name=\"printReport\"/>text<a><b/></a>"
              "<?pi data?><![CDATA[x]]></doc>\n",
              r));
    EXPECT_EQ(joined(r.events), joined(QStringList({
                                    "startDocument",
                                    "start(|doc|doc)",
                                    "start(|method|method) [|name|name=printReport]",
                                    "end(|method|method)",
                                    "start(|a|a)",
                                    "start(|b|b)",
                                    "end(|b|b)",
                                    "end(|a|a)",
                                    "end(|doc|doc)",
                                    "endDocument",
                                })));
}

TEST(StreamSaxReader, AttributesInDocumentOrder)
{
    Recorder r;
    EXPECT_TRUE(parse("<r z=\"1\" a=\"2\" m=\"&amp;&lt;\" b='q\"uote'/>", r));
    EXPECT_EQ(r.events.value(1).toStdString(),
              std::string("start(|r|r) [|z|z=1] [|a|a=2] [|m|m=&<] [|b|b=q\"uote]"));
}

TEST(StreamSaxReader, NamespacesAndPrefixes)
{
    Recorder r;
    EXPECT_TRUE(parse("<r xmlns=\"urn:d\" xmlns:p=\"urn:p\" k=\"1\"><p:e p:x=\"2\" y=\"3\"/><f/></r>", r));
    EXPECT_EQ(joined(r.events), joined(QStringList({
                                    "startDocument",
                                    "start(urn:d|r|r) [|k|k=1]", // the xmlns declarations are not attributes
                                    "start(urn:p|e|p:e) [urn:p|x|p:x=2] [|y|y=3]",
                                    "end(urn:p|e|p:e)",
                                    "start(urn:d|f|f)",
                                    "end(urn:d|f|f)",
                                    "end(urn:d|r|r)",
                                    "endDocument",
                                })));
}

TEST(StreamSaxReader, EntitiesOfTheInternalSubsetExpand)
{
    Recorder r;
    EXPECT_TRUE(parse("<!DOCTYPE d [<!ENTITY co \"ACME &amp; Co\">]><d name=\"&co;\"/>", r));
    EXPECT_EQ(r.events.value(1).toStdString(), std::string("start(|d|d) [|name|name=ACME & Co]"));
}

TEST(StreamSaxReader, FalseFromStartElementStops)
{
    Recorder r;
    r.stopAt = QStringLiteral("stop");
    EXPECT_FALSE(parse("<d><a/><stop/><after/></d>", r));
    EXPECT_EQ(joined(r.events), joined(QStringList({"startDocument", "start(|d|d)", "start(|a|a)",
                                                    "end(|a|a)", "start(|stop|stop)"})));
    EXPECT_FALSE(r.documentEnded);
}

TEST(StreamSaxReader, TheAttributesOfARefusedElementStayForTheCaller)
{
    Recorder r;
    r.stopAt = QStringLiteral("method");
    QBuffer buffer;
    buffer.setData("<d><a name=\"first\"/><method name=\"printMenu\" kind=\"x\"/><b name=\"after\"/></d>");
    buffer.open(QIODevice::ReadOnly);
    StreamSaxReader reader;
    reader.setContentHandler(&r);
    EXPECT_FALSE(reader.parse(&buffer));
    EXPECT_EQ(reader.refusedAttributes().count(), 2);
    EXPECT_EQ(reader.refusedAttributes().value(QStringLiteral("name")), QStringLiteral("printMenu"));

    // A parse that ends otherwise refused nothing, and forgets what an earlier parse refused.
    QBuffer whole;
    whole.setData("<d><method name=\"printSold\"/></d>");
    whole.open(QIODevice::ReadOnly);
    r.stopAt.clear();
    EXPECT_TRUE(reader.parse(&whole));
    EXPECT_EQ(reader.refusedAttributes().count(), 0);
}

TEST(StreamSaxReader, FalseFromEndElementStops)
{
    Recorder r;
    r.stopAtEnd = QStringLiteral("a");
    EXPECT_FALSE(parse("<d><a/><after/></d>", r));
    EXPECT_EQ(joined(r.events),
              joined(QStringList({"startDocument", "start(|d|d)", "start(|a|a)", "end(|a|a)"})));
}

TEST(StreamSaxReader, FalseFromStartDocumentStops)
{
    Recorder r;
    r.refuseDocument = true;
    EXPECT_FALSE(parse("<d/>", r));
    EXPECT_EQ(joined(r.events), joined(QStringList({"startDocument"})));
}

TEST(StreamSaxReader, MalformedInputKeepsEarlierCallbacks)
{
    Recorder r;
    EXPECT_FALSE(parse("<d><a x=\"1\"/><b></d><c/>", r));
    EXPECT_EQ(joined(r.events), joined(QStringList({"startDocument", "start(|d|d)", "start(|a|a) [|x|x=1]",
                                                    "end(|a|a)", "start(|b|b)"})));
    EXPECT_FALSE(r.documentEnded);
}

TEST(StreamSaxReader, TruncatedAndEmptyInputs)
{
    for (const char *xml : {"", "   ", "<d>", "<d><a/>", "not xml", "<d/><e/>", "<d a=1/>", "<p:d/>"}) {
        Recorder r;
        EXPECT_FALSE(parse(xml, r)) << xml;
        EXPECT_FALSE(r.documentEnded) << xml;
    }
}

TEST(StreamSaxReader, UnopenedDeviceEndsWithoutEndDocument)
{
    Recorder r;
    QBuffer closed;
    StreamSaxReader reader;
    reader.setContentHandler(&r);
    EXPECT_FALSE(reader.parse(&closed));
    EXPECT_FALSE(r.documentEnded);
}

TEST(StreamSaxReader, WithoutHandlerNothingHappens)
{
    QBuffer buffer;
    buffer.setData("<d/>");
    buffer.open(QIODevice::ReadOnly);
    StreamSaxReader reader;
    EXPECT_FALSE(reader.parse(&buffer));
}

TEST(StreamSaxReader, MillionLevelsDeep)
{
    const int depth = 1000000;
    QByteArray xml;
    xml.reserve(depth * 7 + 16);
    for (int i = 0; i < depth; ++i)
        xml += "<a>";
    xml += "<leaf k=\"v\"/>";
    for (int i = 0; i < depth; ++i)
        xml += "</a>";
    Recorder r;
    r.recordAll = false;
    EXPECT_TRUE(parse(xml, r));
    EXPECT_EQ(r.starts, depth + 1);
    EXPECT_EQ(r.ends, depth + 1);
    EXPECT_TRUE(r.documentEnded);
}

QByteArray entityBomb(const char *use)
{
    QByteArray xml = "<!DOCTYPE bomb [\n<!ENTITY l0 \"lollollollollollollollollollol\">\n";
    for (int i = 1; i <= 10; ++i) {
        xml += "<!ENTITY l" + QByteArray::number(i) + " \"";
        for (int j = 0; j < 10; ++j)
            xml += "&l" + QByteArray::number(i - 1) + ";";
        xml += "\">\n";
    }
    return xml + "]>\n" + use;
}

TEST(StreamSaxReader, EntityExpansionBombEndsQuickly)
{
    for (const char *use : {"<bomb>&l10;</bomb>", "<bomb a=\"&l10;\"/>"}) {
        Recorder r;
        const QByteArray bomb = entityBomb(use);
        // The peak starts afresh, whatever an earlier test of this process used.
        ASSERT_TRUE(resetPeakResident());
        const long before = peakResidentKiB();
        ASSERT_GT(before, 0);
        parse(bomb, r);
        // Fully expanded this is 30 GB of text; the reader must refuse long before.
        EXPECT_LT(peakResidentKiB() - before, 256 * 1024) << use;
        EXPECT_FALSE(r.documentEnded) << use;
    }
}

} // namespace

namespace {

// Keeps the names it is handed, to read them after the reader is gone.
class NameKeeper : public QXmlDefaultHandler
{
public:
    QStringList names;
    bool startElement(const QString &, const QString &local, const QString &qName,
                      const QXmlAttributes &attributes) override
    {
        names << local << qName;
        for (int i = 0; i < attributes.count(); ++i)
            names << attributes.localName(i) << attributes.qName(i) << attributes.value(i);
        return true;
    }
};

TEST(StreamSaxReader, NamesKeptByTheHandlerOutliveTheReader)
{
    NameKeeper keeper;
    {
        QBuffer buffer;
        buffer.setData(
            "<doc><receipe number=\"2\" name=\"Acqua\"/><receipe number=\"3\" name=\"Vino\"/></doc>");
        buffer.open(QIODevice::ReadOnly);
        StreamSaxReader reader;
        reader.setContentHandler(&keeper);
        ASSERT_TRUE(reader.parse(&buffer));
    }
    EXPECT_EQ(keeper.names.join(QLatin1Char(',')),
              QStringLiteral("doc,doc,receipe,receipe,number,number,2,name,name,Acqua,"
                             "receipe,receipe,number,number,3,name,name,Vino"));
}

// Keeps a copy of the attributes of every "keep" element, and the text of every value as it
// arrived.
class AttributeKeeper : public QXmlDefaultHandler
{
public:
    QList<QXmlAttributes> kept;
    QStringList arrived;
    bool startElement(const QString &, const QString &, const QString &qName,
                      const QXmlAttributes &attributes) override
    {
        if (qName == QLatin1String("keep"))
            kept << attributes;
        for (int i = 0; i < attributes.count(); ++i)
            arrived << attributes.qName(i) + QLatin1Char('=') + attributes.value(i);
        return true;
    }
};

TEST(StreamSaxReader, ValuesKeptByTheHandlerAreNotOverwrittenByLaterElements)
{
    // Values grow, shrink and empty from element to element at the same positions, with and
    // without the handler holding on to them.
    AttributeKeeper keeper;
    QBuffer buffer;
    buffer.setData("<doc><keep a=\"first\" b=\"a rather long second value\"/>"
                   "<drop a=\"x\" b=\"\"/><keep a=\"\" b=\"short\" c=\"third\"/>"
                   "<drop a=\"a value longer than any before it\" b=\"y\" c=\"z\"/>"
                   "<drop a=\"p\"/></doc>");
    buffer.open(QIODevice::ReadOnly);
    StreamSaxReader reader;
    reader.setContentHandler(&keeper);
    ASSERT_TRUE(reader.parse(&buffer));

    EXPECT_EQ(joined(keeper.arrived), "a=first\nb=a rather long second value\na=x\nb=\na=\nb=short\n"
                                      "c=third\na=a value longer than any before it\nb=y\nc=z\na=p");
    ASSERT_EQ(keeper.kept.size(), 2);
    EXPECT_EQ(keeper.kept[0].count(), 2);
    EXPECT_EQ(keeper.kept[0].value(QLatin1String("a")), QStringLiteral("first"));
    EXPECT_EQ(keeper.kept[0].value(QLatin1String("b")), QStringLiteral("a rather long second value"));
    EXPECT_EQ(keeper.kept[1].count(), 3);
    EXPECT_EQ(keeper.kept[1].value(QLatin1String("a")), QString());
    EXPECT_EQ(keeper.kept[1].value(QLatin1String("b")), QStringLiteral("short"));
    EXPECT_EQ(keeper.kept[1].value(QLatin1String("c")), QStringLiteral("third"));
}

TEST(StreamSaxReader, ManyDifferentNamesAreAllReported)
{
    // More distinct names than the shared name table holds: the rest arrive as copies.
    QByteArray xml = "<doc>";
    for (int i = 0; i < 300; ++i)
        xml += "<e" + QByteArray::number(i) + " a" + QByteArray::number(i) + "=\"v\"/>";
    xml += "</doc>";
    NameKeeper keeper;
    QBuffer buffer;
    buffer.setData(xml);
    buffer.open(QIODevice::ReadOnly);
    StreamSaxReader reader;
    reader.setContentHandler(&keeper);
    ASSERT_TRUE(reader.parse(&buffer));
    ASSERT_EQ(keeper.names.size(), 2 + 300 * 5);
    EXPECT_EQ(keeper.names.at(2 + 299 * 5), QStringLiteral("e299"));
    EXPECT_EQ(keeper.names.at(2 + 299 * 5 + 3), QStringLiteral("a299"));
}

} // namespace

namespace {

// Where the start tag that stopped the parse begins, as line:column.
QString stoppingTagAt(const QByteArray &xml)
{
    Recorder recorder;
    recorder.recordAll = false;
    recorder.stopAt = QStringLiteral("q");
    QBuffer buffer;
    buffer.setData(xml);
    buffer.open(QIODevice::ReadOnly);
    StreamSaxReader reader;
    reader.setContentHandler(&recorder);
    EXPECT_FALSE(reader.parse(&buffer));
    return QStringLiteral("%1:%2").arg(reader.elementLineNumber()).arg(reader.elementColumnNumber());
}

TEST(StreamSaxReader, TheStartTagThatStoppedTheParseIsFoundAtItsLessThanSign)
{
    // After blanks, text, an empty element, an end tag, a comment, CDATA and a processing
    // instruction: the reader has taken the "<" after text only.
    EXPECT_EQ(stoppingTagAt("<d>\n  <q/>\n</d>"), QStringLiteral("2:3"));
    EXPECT_EQ(stoppingTagAt("<d>text &amp; more<q/></d>"), QStringLiteral("1:19"));
    EXPECT_EQ(stoppingTagAt("<d><a/><q/></d>"), QStringLiteral("1:8"));
    EXPECT_EQ(stoppingTagAt("<d><a></a><q/></d>"), QStringLiteral("1:11"));
    EXPECT_EQ(stoppingTagAt("<d><!-- c --><q/></d>"), QStringLiteral("1:14"));
    EXPECT_EQ(stoppingTagAt("<d><![CDATA[x]]><q/></d>"), QStringLiteral("1:17"));
    EXPECT_EQ(stoppingTagAt("<d><?pi x?><q/></d>"), QStringLiteral("1:12"));
    EXPECT_EQ(stoppingTagAt("<d>\n<a\n b=\"1\"/>\n\t<q\n x=\"2\"/></d>"), QStringLiteral("4:2"));
}

TEST(StreamSaxReader, NoStartTagIsNamedWhenSomethingElseStoppedTheParse)
{
    Recorder recorder;
    recorder.stopAtEnd = QStringLiteral("a");
    QBuffer buffer;
    buffer.setData("<d>\n<a/></d>");
    buffer.open(QIODevice::ReadOnly);
    StreamSaxReader reader;
    reader.setContentHandler(&recorder);
    EXPECT_FALSE(reader.parse(&buffer));
    EXPECT_EQ(reader.elementLineNumber(), 0);
    EXPECT_EQ(reader.elementColumnNumber(), 0);
}

} // namespace
