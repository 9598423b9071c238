#include "config/Config.h"

#include <QDomDocument>
#include <QDomElement>
#include <QFile>

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace libconfig {

/*
 * The state of a Config, kept out of the installed header so that later versions may add to
 * it without changing the size or layout of the exported class.  Only this file sees it (so
 * that the recorded interface of the library leaves it out): the writers and the tree view
 * reach the state through Config's own functions.
 */
class ConfigPrivate
{
public:
    ConfigPrivate();
    ~ConfigPrivate();
    ConfigPrivate(const ConfigPrivate &) = delete;
    ConfigPrivate &operator=(const ConfigPrivate &) = delete;

    int readByte();
    void readValue(std::string &buffer);

    // A new empty document in place of the old one, which is freed without recursion.
    void replaceDocument();
    void releaseDocument();

    struct FileCloser
    {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };

    QString m_fileName;
    QString m_fileType;
    std::unique_ptr<std::FILE, FileCloser> m_input;
    std::unique_ptr<QDomDocument> m_document;
    QFileDevice::FileError m_writeStatus = QFileDevice::NoError;
    QString m_writeErrorString;
    QString m_readError;
};

namespace {

// White space as the toolkit counts it for Latin-1 text.
bool isSpace(unsigned char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r') || c == 0x85 || c == 0xA0;
}

// The buffer's text stripped of outer white space.  The buffer is read as a C string: a NUL
// byte ends the text, and bytes are Latin-1.
std::string_view strippedBytes(const std::string &buffer)
{
    std::string_view text(buffer.c_str());
    while (!text.empty() && isSpace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

QString strippedText(const std::string &buffer)
{
    const std::string_view text = strippedBytes(buffer);
    return QString::fromLatin1(text.data(), qsizetype(text.size()));
}

// An entry's value: stripped, then every double quote deleted wherever it stands.
QString valueText(const std::string &buffer)
{
    const std::string_view text = strippedBytes(buffer);
    std::string value;
    value.reserve(text.size());
    for (const char c : text) {
        if (c != '"')
            value.push_back(c);
    }
    return QString::fromLatin1(value.data(), qsizetype(value.size()));
}

// Frees a tree without recursion and without walking long parent chains: the DOM frees
// children recursively, which a configuration nested a hundred thousand blocks deep would
// turn into a stack overflow, and detaching a deep node makes the DOM walk up to the
// document.  Children are therefore detached from the top down, each while its parent is
// already detached, and every node is freed once it has no children left.
void dismantle(const QDomNode &top)
{
    std::vector<QDomNode> pending{top};
    while (!pending.empty()) {
        QDomNode node = pending.back();
        pending.pop_back();
        for (QDomNode child = node.lastChild(); !child.isNull(); child = node.lastChild()) {
            node.removeChild(child);
            pending.push_back(child);
        }
    }
}

// The lookup of the key components from `first` on, below node.
QString lookupComponents(const QDomNode &node, const QList<QStringView> &components, qsizetype first)
{
    const auto component = [&components, first](qsizetype index) {
        return first + index < components.size() ? components.at(first + index) : QStringView();
    };
    if (!node.isElement())
        return QString();
    const QDomElement element = node.toElement();
    if (element.tagName() != component(0))
        return QString();
    if (component(2).isEmpty()) {
        // "block.attribute"; a key of one component names no attribute.
        const QStringView attribute = component(1);
        return attribute.isEmpty() ? QString() : element.attribute(attribute.toString());
    }
    // An empty value counts as not found: the search goes on to later siblings.
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        const QString value = lookupComponents(child, components, first + 1);
        if (!value.isEmpty())
            return value;
    }
    return QString();
}

} // namespace

ConfigPrivate::ConfigPrivate() = default;

ConfigPrivate::~ConfigPrivate()
{
    releaseDocument();
}

Config::Config() : d(std::make_unique<ConfigPrivate>()) {}

Config::Config(const QString &fileName, const QString &fileType) : Config()
{
    constructor(fileName, fileType);
}

Config::~Config()
{
    closeFile();
}

QString Config::fileName() const
{
    return d->m_fileName;
}

QString Config::fileType() const
{
    return d->m_fileType;
}

QDomDocument *Config::document() const
{
    return d->m_document.get();
}

void Config::setWriteStatus(QFileDevice::FileError status, const QString &text)
{
    d->m_writeStatus = status;
    d->m_writeErrorString = status == QFileDevice::NoError ? QString() : text;
}

QFileDevice::FileError Config::writeStatus() const
{
    return d->m_writeStatus;
}

QString Config::writeErrorString() const
{
    return d->m_writeErrorString;
}

QString Config::readError() const
{
    return d->m_readError;
}

void Config::readFile(const QString &fileName, const QString &fileType)
{
    constructor(fileName, fileType);
}

void Config::constructor(const QString &fileName, const QString &fileType)
{
    d->m_fileName = fileName;
    d->m_fileType = fileType;
    d->m_readError.clear();
    d->replaceDocument();
    if (d->m_fileType == QLatin1String("cfg"))
        loadFile();
    else if (d->m_fileType == QLatin1String("xml"))
        loadXmlFile();
}

void Config::replaceDocument()
{
    d->replaceDocument();
}

void ConfigPrivate::replaceDocument()
{
    releaseDocument();
    m_document = std::make_unique<QDomDocument>();
}

void ConfigPrivate::releaseDocument()
{
    if (m_document)
        dismantle(*m_document);
    m_document.reset();
}

bool Config::openFile()
{
    return openFile(d->m_fileName);
}

bool Config::openFile(const QString &name)
{
    closeFile();
    d->m_input.reset(std::fopen(QFile::encodeName(name).constData(), "rb"));
    if (!d->m_input) {
        // The program decides where this goes; bristel-compile prints it on standard output.
        d->m_readError = QLatin1String("Error in the method FileReader::open( ") + name +
                         QLatin1String(" ): File Not Found");
        return false;
    }
    return true;
}

void Config::closeFile()
{
    d->m_input.reset();
}

int ConfigPrivate::readByte()
{
    // A stream that failed to open, or a directory, yields no byte: that ends the file.
    return m_input ? getc_unlocked(m_input.get()) : EOF; // the reader is single-threaded
}

bool Config::jump(char c)
{
    for (int byte = d->readByte(); byte != EOF; byte = d->readByte()) {
        if (byte == static_cast<unsigned char>(c))
            return true;
    }
    return false;
}

void Config::loadFile()
{
    openFile(); // a file that did not open reads as empty
    QDomElement root = d->m_document->createElement(d->m_fileName);
    // The root joins the document once the file has given it a block or an entry.  It is
    // attached last: the DOM walks up to the document whenever a node is added below an
    // attached one, which would make loading a deeply nested file quadratic.
    bool rootUsed = false;

    std::string buffer;
    bool closed = false;
    for (int byte = d->readByte(); byte != EOF; byte = d->readByte()) {
        if (byte == ':') {
            const QString name = strippedText(buffer);
            jump('{');
            rootUsed = true;
            loadFile(name, root);
            buffer.clear();
        } else if (byte == '=') {
            const QString name = strippedText(buffer);
            d->readValue(buffer);
            if (!root.isNull())
                root.setAttribute(name, valueText(buffer));
            rootUsed = true;
            buffer.clear();
        } else if (byte == '}') {
            // A stray closing brace at file level ends the reading; the rest is ignored and
            // the stream stays open until the reader is destroyed.
            jump(';');
            closed = true;
            break;
        } else {
            buffer.push_back(char(byte));
        }
    }
    if (rootUsed && !root.isNull())
        d->m_document->appendChild(root);
    if (!closed)
        closeFile();
}

void ConfigPrivate::readValue(std::string &buffer)
{
    buffer.clear();
    for (int byte = readByte(); byte != EOF && byte != ';'; byte = readByte())
        buffer.push_back(char(byte));
}

void Config::loadFile(const QString &name, QDomNode &parent)
{
    // Nested blocks are kept on an explicit stack: a file may nest blocks arbitrarily deep.
    // An element joins its parent when its block ends (or the file does), and only if the
    // block held an entry or a sub-block; building from the leaves upwards keeps every
    // insertion below a detached node, which the DOM handles in constant time.
    struct Block
    {
        QDomElement element; // null when the DOM refuses the name (an empty one)
        QDomNode parent;
        bool used;
    };
    std::vector<Block> blocks;
    blocks.push_back({d->m_document->createElement(name), parent, false});
    const auto close = [&blocks] {
        Block &block = blocks.back();
        if (block.used && !block.element.isNull() && !block.parent.isNull())
            block.parent.appendChild(block.element);
        else if (!block.element.isNull())
            dismantle(block.element); // kept nowhere: freed here, however deep
        blocks.pop_back();
    };

    std::string buffer;
    while (!blocks.empty()) {
        const int byte = d->readByte();
        if (byte == EOF) {
            // An unclosed block simply ends with the file, and so do its enclosing ones.
            while (!blocks.empty())
                close();
            return;
        }
        if (byte == ':') {
            const QString blockName = strippedText(buffer);
            buffer.clear();
            jump('{');
            blocks.back().used = true;
            const QDomElement enclosing = blocks.back().element;
            blocks.push_back({d->m_document->createElement(blockName), enclosing, false});
        } else if (byte == '=') {
            const QString entryName = strippedText(buffer);
            d->readValue(buffer);
            Block &block = blocks.back();
            if (!block.element.isNull())
                block.element.setAttribute(entryName, valueText(buffer));
            block.used = true;
            buffer.clear();
        } else if (byte == '}') {
            jump(';');
            close();
            buffer.clear();
        } else {
            buffer.push_back(char(byte));
        }
    }
}

void Config::loadXmlFile()
{
    QFile file(d->m_fileName);
    if (!file.open(QIODevice::ReadOnly))
        return;
    if (!d->m_document->setContent(&file))
        return;
    QDomNode first = d->m_document->firstChild();
    QDomElement root = d->m_document->createElement(d->m_fileName);
    root.appendChild(first);
    d->m_document->appendChild(root);
}

QString Config::lookup(const QString &key) const
{
    if (!d->m_document)
        return QString();
    return lookup(d->m_document->documentElement().firstChild(), key);
}

QString Config::lookup(const QDomNode &node, const QString &key) const
{
    // The key is split once; each level of the walk looks at the components from `first` on.
    return lookupComponents(node, QStringView(key).split(QLatin1Char('.')), 0);
}

} // namespace libconfig
