#include "config/Config.h"

#include "config/OutputFile.h"

#include <QDomDocument>
#include <QDomElement>
#include <QDomNamedNodeMap>
#include <QSaveFile>
#include <QStringConverter>
#include <QTextStream>

#include <cstdio>
#include <vector>

namespace libconfig {

namespace {

const QLatin1String indentStep("    ");

// The file-level entries (attributes of the root element), one "name = "value";" line each.
void writeRootEntries(const QDomElement &root, QTextStream &stream)
{
    for (const QString &name : Config::sortedAttributeNames(root))
        stream << name << " = \"" << root.attribute(name) << "\";" << '\n';
}

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

void printLine(const QString &text)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fputc('\n', stdout);
}

} // namespace

void Config::setWriteStatus(QFileDevice::FileError status, const QString &text)
{
    m_writeStatus = status;
    m_writeErrorString = status == QFileDevice::NoError ? QString() : text;
}

/*
 * Kept: the writers no longer call this (they write through OutputFile, which also writes
 * into a FIFO or a device directly); it stays because libbristel-config.so.1 exports it.
 *
 * Puts the written file in the target's place, or, when anything failed on the way, throws
 * the temporary file away and leaves the target untouched.
 *
 * The file is opened unbuffered and its error is looked at here, before the commit: Qt 6.4's
 * QSaveFile::commit() does not notice a write that fails while it flushes its own buffer (a
 * disk that fills up at the end) and would put the short file in the target's place.
 */
void Config::commit(QSaveFile &file, QTextStream &stream)
{
    stream.flush();
    if (stream.status() != QTextStream::Ok || file.error() != QFileDevice::NoError) {
        const bool fileError = file.error() != QFileDevice::NoError;
        setWriteStatus(fileError ? file.error() : QFileDevice::WriteError,
                       fileError ? file.errorString() : QStringLiteral("the text could not be written"));
        file.cancelWriting();
        (void)file.commit(); // refused after the cancel: removes the temporary file
        return;
    }
    if (file.commit())
        setWriteStatus(QFileDevice::NoError, QString());
    else
        setWriteStatus(file.error() == QFileDevice::NoError ? QFileDevice::WriteError : file.error(),
                       file.errorString());
}

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
 * The text writer.  The file-level entries come first, then the first top-level block and
 * only that one: the reader searches no other block, so a second one is dropped here.
 *
 * The file is written in Latin-1, the encoding in which the reader turns its bytes into
 * characters, so that every byte of a value read from the file is written back unchanged.
 */
void Config::buildConfigFile(const QString &path)
{
    OutputFile file(path.isEmpty() ? m_fileName : path);
    if (!file.open(QIODevice::Unbuffered)) {
        setWriteStatus(file.error(), file.errorString());
        return;
    }
    QTextStream stream(file.device());
    stream.setEncoding(QStringConverter::Latin1);

    const QDomElement root = m_document ? m_document->documentElement() : QDomElement();
    writeRootEntries(root, stream);
    const QDomNode first = root.firstChild();
    if (!first.isNull())
        buildConfigFile(first, stream);
    const WriteOutcome outcome = finishWrite(file, stream);
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
 * Open blocks are kept on an explicit stack rather than the call stack: configurations may
 * be nested arbitrarily deep.  Only elements are written; other DOM nodes carry nothing the
 * text format can hold.
 */
void Config::buildConfigFile(const QDomNode &node, QTextStream &stream)
{
    static QString indentation;
    if (!node.isElement())
        return;

    std::vector<QDomNode> nextChild; // per open block, the next child node to write
    const auto openBlock = [&](const QDomElement &element) {
        stream << indentation << element.tagName() << ": " << '\n';
        stream << indentation << "{" << '\n';
        indentation += indentStep;
        for (const QString &name : sortedAttributeNames(element))
            stream << indentation << name << " = \"" << element.attribute(name) << "\";" << '\n';
        nextChild.push_back(element.firstChild());
    };

    openBlock(node.toElement());
    while (!nextChild.empty()) {
        const QDomNode child = nextChild.back();
        if (child.isNull()) {
            nextChild.pop_back();
            indentation.chop(indentStep.size());
            stream << indentation << "};" << '\n' << '\n';
            continue;
        }
        nextChild.back() = child.nextSibling();
        if (child.isElement())
            openBlock(child.toElement());
    }
}

/*
 * The XML writer: the same file-level entries as the text writer, then the first top-level
 * element as XML.  Written in UTF-8, which the DOM parser assumes for a file without an
 * XML declaration.
 */
void Config::buildConfigXmlFile(const QString &path)
{
    OutputFile file(path.isEmpty() ? m_fileName : path);
    if (!file.open(QIODevice::Unbuffered)) {
        setWriteStatus(file.error(), file.errorString());
        return;
    }
    QTextStream stream(file.device());
    stream.setEncoding(QStringConverter::Utf8);

    const QDomElement root = m_document ? m_document->documentElement() : QDomElement();
    writeRootEntries(root, stream);
    const QDomNode first = root.firstChild();
    if (!first.isNull())
        buildConfigXmlFile(first, stream);
    const WriteOutcome outcome = finishWrite(file, stream);
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
 * Values are written as they stand: '<', '&' and quotes are not escaped.  Same static
 * indentation and explicit stack as the text writer; nodes other than elements are skipped.
 */
void Config::buildConfigXmlFile(const QDomNode &node, QTextStream &stream)
{
    static QString indentation;
    if (!node.isElement())
        return;

    struct Open
    {
        QString tagName;
        QDomNode nextChild;
    };
    std::vector<Open> open;
    const auto openElement = [&](const QDomElement &element) {
        stream << '\n' << indentation << "<" << element.tagName();
        indentation += indentStep;
        for (const QString &name : sortedAttributeNames(element))
            stream << '\n' << indentation << name << " = \"" << element.attribute(name) << "\"";
        stream << ">" << '\n';
        open.push_back({element.tagName(), element.firstChild()});
    };

    openElement(node.toElement());
    while (!open.empty()) {
        const QDomNode child = open.back().nextChild;
        if (child.isNull()) {
            indentation.chop(indentStep.size());
            stream << indentation << "</" << open.back().tagName << ">" << '\n';
            open.pop_back();
            continue;
        }
        open.back().nextChild = child.nextSibling();
        if (child.isElement())
            openElement(child.toElement());
    }
}

void Config::printConfigTree() const
{
    std::fputs("Tree \n", stdout);
    if (m_document)
        printConfigTree(m_document->documentElement());
    std::fflush(stdout);
}

// Every element as its tag name, then its attributes as "name = value", depth first and
// without indentation.
void Config::printConfigTree(const QDomNode &node) const
{
    std::vector<QDomNode> pending;
    if (!node.isNull())
        pending.push_back(node);
    while (!pending.empty()) {
        const QDomNode current = pending.back();
        pending.pop_back();
        if (current.isElement()) {
            const QDomElement element = current.toElement();
            printLine(element.tagName());
            for (const QString &name : sortedAttributeNames(element))
                printLine(name + QLatin1String(" = ") + element.attribute(name));
        }
        // Pushed last child first, so that children are printed in document order.
        for (QDomNode child = current.lastChild(); !child.isNull(); child = child.previousSibling())
            pending.push_back(child);
    }
    std::fflush(stdout);
}

} // namespace libconfig
