#include "config/Config.h"

#include "config/ConfigSerialiser.h"
#include "config/OutputFile.h"

#include <QDomDocument>
#include <QDomElement>
#include <QDomNamedNodeMap>
#include <QStringConverter>
#include <QTextStream>

#include <cstdio>

namespace libconfig {

namespace {

// How a write ended, for Config::setWriteStatus.
struct WriteOutcome
{
    QFileDevice::FileError status = QFileDevice::NoError;
    QString text;
};

// Puts the written file in the target's place, or, when anything failed on the way, leaves
// the target as it was.
WriteOutcome finishWrite(OutputFile &file, QTextStream &stream)
{
    stream.flush();
    if (stream.status() != QTextStream::Ok && file.device()->error() == QFileDevice::NoError) {
        file.cancel();
        return {QFileDevice::WriteError, QStringLiteral("the text could not be written")};
    }
    if (!file.commit())
        return {file.error(), file.errorString()};
    return {};
}

/*
 * Writes a configuration file: the file-level entries (the attributes of the root element),
 * then the first top-level block and only that one, through writeBlock.  The reader searches
 * no other block, so a second one is dropped here.
 *
 * The file is written through OutputFile: a temporary file that takes the target's place once
 * the whole text is written, or, for a FIFO or a device, the target itself.
 */
template <class BlockWriter>
WriteOutcome writeConfigFile(const QString &path, const QDomDocument *document,
                             QStringConverter::Encoding encoding, BlockWriter writeBlock)
{
    OutputFile file(path);
    if (!file.open(QIODevice::Unbuffered))
        return {file.error(), file.errorString()};
    QTextStream stream(file.device());
    stream.setEncoding(encoding);

    const QDomElement root = document ? document->documentElement() : QDomElement();
    QString noIndentation;
    ConfigSerialiser(ConfigSerialiser::Layout::Text, stream, noIndentation).writeFileEntries(root);
    const QDomNode first = root.firstChild();
    if (!first.isNull())
        writeBlock(first, stream);
    return finishWrite(file, stream);
}

} // namespace

QStringList Config::sortedAttributeNames(const QDomNode &node)
{
    QStringList names;
    const QDomNamedNodeMap attributes = node.attributes();
    names.reserve(attributes.count());
    for (int i = 0; i < attributes.count(); ++i)
        names.append(attributes.item(i).nodeName());
    names.sort();
    return names;
}

/*
 * The text writer.  The file is written in Latin-1, the encoding in which the reader turns
 * its bytes into characters, so that every byte of a value read from the file is written back
 * unchanged.
 */
void Config::buildConfigFile(const QString &path)
{
    const WriteOutcome outcome = writeConfigFile(
        path.isEmpty() ? fileName() : path, document(), QStringConverter::Latin1,
        [this](const QDomNode &first, QTextStream &stream) { buildConfigFile(first, stream); });
    setWriteStatus(outcome.status, outcome.text);
}

/*
 * Writes one block and its sub-blocks:
 *
 *     name:_        (the '_' stands for the blank after the colon)
 *     {
 *         entry = "value";
 *         ...sub-blocks...
 *     };
 *     (empty line)
 *
 * The indentation lives in a function-local static string that grows by four blanks per
 * block entered and shrinks by four when the block is left, so the writer is not reentrant.
 */
void Config::buildConfigFile(const QDomNode &node, QTextStream &stream)
{
    static QString indentation;
    ConfigSerialiser(ConfigSerialiser::Layout::Text, stream, indentation).writeTree(node);
}

/*
 * The XML writer: the same file-level entries as the text writer, then the first top-level
 * element as XML.  Written in UTF-8, which the DOM parser assumes for a file without an
 * XML declaration.
 */
void Config::buildConfigXmlFile(const QString &path)
{
    const WriteOutcome outcome = writeConfigFile(
        path.isEmpty() ? fileName() : path, document(), QStringConverter::Utf8,
        [this](const QDomNode &first, QTextStream &stream) { buildConfigXmlFile(first, stream); });
    setWriteStatus(outcome.status, outcome.text);
}

/*
 * Writes one element and its sub-elements, attributes one per line inside the start tag:
 *
 *     (line end)
 *     <name
 *         attribute = "value">
 *     ...sub-elements...
 *     </name>
 *
 * Values are written as they stand: '<', '&' and quotes are not escaped.  Its own static
 * indentation, as the text writer has.
 */
void Config::buildConfigXmlFile(const QDomNode &node, QTextStream &stream)
{
    static QString indentation;
    ConfigSerialiser(ConfigSerialiser::Layout::Xml, stream, indentation).writeTree(node);
}

QString Config::configTreeText() const
{
    return configTreeText(document() ? document()->documentElement() : QDomElement());
}

QString Config::configTreeText(const QDomNode &node) const
{
    QString text;
    QTextStream stream(&text);
    QString noIndentation;
    ConfigSerialiser(ConfigSerialiser::Layout::Listing, stream, noIndentation).writeTree(node);
    stream.flush();
    return text;
}

// Kept: an inspection aid that prints by its nature; the caller that wants the text elsewhere
// takes configTreeText().
void Config::printConfigTree() const
{
    std::fputs("Tree \n", stdout);
    printConfigTree(document() ? document()->documentElement() : QDomElement());
}

void Config::printConfigTree(const QDomNode &node) const
{
    const QByteArray bytes = configTreeText(node).toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace libconfig
