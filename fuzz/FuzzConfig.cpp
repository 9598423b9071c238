// Reads arbitrary bytes as a configuration file, in the text and in the XML layout, answers a
// few lookups and writes the tree back out.  Properties, for every tree the writers can
// represent (see representable()):
//  - the text writer's output, read back, gives the same tree, and written again, the same
//    bytes;
//  - the same for the XML writer.

#include "FuzzSupport.h"

#include "config/Config.h"

#include <QDomDocument>
#include <QDomElement>
#include <QDomNamedNodeMap>
#include <QRegularExpression>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

const char *const Keys[] = {
    "bristel.receiptdoc.paperWidth",
    "bristel.doc.quantityFieldWidth",
    "bristel.language.file",
    "bristel.fiscaldoc.descriptionWidth",
    "a.b",
    "a.b.c",
    "a.b.c.d.e.f",
    "a",
    "",
    ".",
    "..",
    "a..b",
};

// Visits the elements below and including top in document order, without recursion: a
// configuration may nest blocks tens of thousands deep.  enter(element) is called on the way
// down and returns false to stop the walk; leave() is called when an element's children are
// done.
template <typename Enter, typename Leave> bool walkElements(const QDomElement &top, Enter enter, Leave leave)
{
    if (!enter(top))
        return false;
    std::vector<QDomElement> next{top.firstChildElement()}; // per open element, the child to visit
    while (!next.empty()) {
        const QDomElement element = next.back();
        if (element.isNull()) {
            leave();
            next.pop_back();
            continue;
        }
        next.back() = element.nextSiblingElement();
        if (!enter(element))
            return false;
        next.push_back(element.firstChildElement());
    }
    return true;
}

void describeAttributes(const QDomElement &element, QString &out)
{
    for (const QString &name : libconfig::Config::sortedAttributeNames(element))
        out += QLatin1Char(' ') + name + QLatin1String("=[") + element.attribute(name) + QLatin1Char(']');
}

// The tree as the writers see it, independent of them: the root's attributes (the file-level
// entries), then the first top-level element (the only one written), its attributes sorted
// by name with their values, and its children in order.  The root's own name is the file
// path, so it is left out.
QString treeOf(const libconfig::Config &config)
{
    QString out;
    if (!config.document())
        return out;
    const QDomElement root = config.document()->documentElement();
    describeAttributes(root, out);
    const QDomElement first = root.firstChildElement();
    if (first.isNull())
        return out;
    walkElements(
        first,
        [&out](const QDomElement &element) {
            out += QLatin1Char('<') + element.tagName();
            describeAttributes(element, out);
            out += QLatin1Char('>');
            return true;
        },
        [&out] { out += QLatin1String("</>"); });
    return out;
}

bool isXmlName(const QString &name)
{
    static const QRegularExpression xmlName(QStringLiteral("^[A-Za-z_][A-Za-z0-9._-]*$"));
    return xmlName.match(name).hasMatch();
}

// White space that the text reader strips from a name, as the toolkit counts it for Latin-1.
bool isStrippedSpace(QChar c)
{
    const char16_t u = c.unicode();
    return u == ' ' || (u >= '\t' && u <= '\r') || u == 0x85 || u == 0xA0;
}

// The text layout is Latin-1, and its reader ends a text at a NUL byte.  A name ends at ':'
// (a block) or '=' (an entry), a '}' anywhere closes a block, and outer blanks are stripped; a
// value, written between double quotes, ends at ';' and loses every double quote.
bool isTextName(const QString &name)
{
    if (name.isEmpty() || isStrippedSpace(name.front()) || isStrippedSpace(name.back()))
        return false;
    for (const QChar c : name) {
        if (c.unicode() == 0 || c.unicode() > 0xFF || c == QLatin1Char(':') || c == QLatin1Char('=') ||
            c == QLatin1Char('}'))
            return false;
    }
    return true;
}

bool isTextValue(const QString &value)
{
    for (const QChar c : value) {
        if (c.unicode() == 0 || c.unicode() > 0xFF || c == QLatin1Char(';') || c == QLatin1Char('"'))
            return false;
    }
    return true;
}

// XML writes names and values as they stand: only XML names, and values without '<', '&',
// '"' or control characters (which XML turns into blanks) come back unchanged.
bool isXmlValue(const QString &value)
{
    for (const QChar c : value) {
        if (c < QLatin1Char(' ') || c == QLatin1Char('<') || c == QLatin1Char('&') || c == QLatin1Char('"'))
            return false;
    }
    return true;
}

bool representableEntries(const QDomElement &element, bool xml)
{
    for (const QString &name : libconfig::Config::sortedAttributeNames(element)) {
        const QString value = element.attribute(name);
        if (xml ? !isXmlName(name) || !isXmlValue(value) : !isTextName(name) || !isTextValue(value))
            return false;
    }
    return true;
}

// Whether the writer of the layout can hold the tree below first.  In both layouts a block
// without entries or sub-blocks is not kept by the reader (a block that held only such a
// block stays, empty, and goes on the next reading).
bool representableBlocks(const QDomElement &first, bool xml)
{
    return walkElements(
        first,
        [xml](const QDomElement &element) {
            if (element.firstChildElement().isNull() && element.attributes().isEmpty())
                return false;
            if (xml ? !isXmlName(element.tagName()) : !isTextName(element.tagName()))
                return false;
            return representableEntries(element, xml);
        },
        [] {});
}

// The file-level entries are written before the XML element, where XML has no place for them.
bool representable(const libconfig::Config &config, bool xml)
{
    if (!config.document())
        return false;
    const QDomElement root = config.document()->documentElement();
    if (xml ? !root.attributes().isEmpty() : !representableEntries(root, xml))
        return false;
    const QDomElement first = root.firstChildElement();
    return first.isNull() || representableBlocks(first, xml);
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        std::abort();
    return file.readAll();
}

// Writes config in the given layout, reads that back, writes it again and compares.
void requireFixedPoint(libconfig::Config &config, const char *type)
{
    const bool xml = QLatin1String(type) == QLatin1String("xml");
    if (!representable(config, xml))
        return;
    const QString first = fuzzsupport::pathOf(xml ? "first.xml" : "first.cfg");
    const QString second = fuzzsupport::pathOf(xml ? "second.xml" : "second.cfg");
    xml ? config.buildConfigXmlFile(first) : config.buildConfigFile(first);
    libconfig::Config reread(first, QLatin1String(type));
    for (const char *key : Keys)
        (void)reread.lookup(QLatin1String(key));
    xml ? reread.buildConfigXmlFile(second) : reread.buildConfigFile(second);
    fuzzsupport::require(contents(second) == contents(first),
                         xml ? "the XML writer writes other bytes for the tree it wrote"
                             : "the text writer writes other bytes for the tree it wrote");
    libconfig::Config again(second, QLatin1String(type));
    fuzzsupport::require(treeOf(again) == treeOf(reread),
                         xml ? "the XML writer's output reads back as another tree"
                             : "the text writer's output reads back as another tree");
}

void readAndLookUp(const QString &path, const char *type)
{
    libconfig::Config config(path, QLatin1String(type));
    for (const char *key : Keys)
        (void)config.lookup(QLatin1String(key));
    requireFixedPoint(config, "cfg");
    requireFixedPoint(config, "xml");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzzsupport::setUpProcess(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString path = fuzzsupport::pathOf("cfg");
    fuzzsupport::writeFile(path, reinterpret_cast<const char *>(data), qsizetype(size));
    readAndLookUp(path, "cfg");
    readAndLookUp(path, "xml");
    return 0;
}
