#include "config/Config.h"

#include <QDomDocument>
#include <QDomElement>
#include <QFile>

#include <vector>

namespace libconfig {

namespace {

QString strippedText(const QByteArray &buffer)
{
    // The buffer is read as a C string: a NUL byte ends the text, and bytes are Latin-1.
    return QString::fromLatin1(buffer.constData()).trimmed();
}

QString valueText(const QByteArray &buffer)
{
    QString value = strippedText(buffer);
    value.remove(QLatin1Char('"'));
    return value;
}

// Frees a tree from its deepest nodes upwards: the DOM frees children recursively, which a
// configuration nested tens of thousands of blocks deep would turn into a stack overflow.
void dismantle(QDomNode node)
{
    while (!node.isNull()) {
        const QDomNode child = node.lastChild();
        if (!child.isNull()) {
            node = child;
            continue;
        }
        QDomNode parent = node.parentNode();
        if (parent.isNull())
            return;
        parent.removeChild(node);
        node = parent;
    }
}

} // namespace

Config::Config() = default;

Config::Config(const QString &fileName, const QString &fileType)
{
    constructor(fileName, fileType);
}

Config::~Config()
{
    closeFile();
    if (m_document)
        dismantle(*m_document);
}

void Config::readFile(const QString &fileName, const QString &fileType)
{
    constructor(fileName, fileType);
}

void Config::constructor(const QString &fileName, const QString &fileType)
{
    m_fileName = fileName;
    m_fileType = fileType;
    replaceDocument();
    if (m_fileType == QLatin1String("cfg"))
        loadFile();
    else if (m_fileType == QLatin1String("xml"))
        loadXmlFile();
}

void Config::replaceDocument()
{
    if (m_document)
        dismantle(*m_document);
    m_document = std::make_unique<QDomDocument>();
}

bool Config::openFile()
{
    return openFile(m_fileName);
}

bool Config::openFile(const QString &name)
{
    closeFile();
    m_input.reset(std::fopen(QFile::encodeName(name).constData(), "rb"));
    if (!m_input) {
        std::printf("Error in the method FileReader::open( %s ): File Not Found\n",
                    name.toLocal8Bit().constData());
        std::fflush(stdout);
        return false;
    }
    return true;
}

void Config::closeFile()
{
    m_input.reset();
}

int Config::readByte()
{
    // A stream that failed to open, or a directory, yields no byte: that ends the file.
    return m_input ? std::getc(m_input.get()) : EOF;
}

bool Config::jump(char c)
{
    for (int byte = readByte(); byte != EOF; byte = readByte()) {
        if (byte == static_cast<unsigned char>(c))
            return true;
    }
    return false;
}

void Config::loadFile()
{
    openFile();
    QDomElement root = m_document->createElement(m_fileName);
    bool rootAttached = false;
    const auto attachRoot = [&] {
        if (!rootAttached)
            m_document->appendChild(root);
        rootAttached = true;
    };

    QByteArray buffer;
    for (int byte = readByte(); byte != EOF; byte = readByte()) {
        switch (byte) {
        case ':': {
            const QString name = strippedText(buffer);
            jump('{');
            attachRoot();
            loadFile(name, root);
            buffer.clear();
            break;
        }
        case '=': {
            const QString name = strippedText(buffer);
            buffer.clear();
            for (int v = readByte(); v != EOF && v != ';'; v = readByte())
                buffer.append(char(v));
            root.setAttribute(name, valueText(buffer));
            attachRoot();
            buffer.clear();
            break;
        }
        case '}':
            // A stray closing brace at file level ends the reading; the rest is ignored.
            jump(';');
            return;
        default:
            buffer.append(char(byte));
        }
    }
    closeFile();
}

void Config::loadFile(const QString &name, QDomNode &parent)
{
    // Nested blocks are kept on an explicit stack: a file may nest blocks arbitrarily deep.
    struct Block
    {
        QDomElement element;
        QDomNode parent;
        bool attached;
    };
    std::vector<Block> blocks;
    blocks.push_back({m_document->createElement(name), parent, false});
    const auto attach = [](Block &block) {
        if (!block.attached)
            block.parent.appendChild(block.element);
        block.attached = true;
    };

    QByteArray buffer;
    while (!blocks.empty()) {
        const int byte = readByte();
        if (byte == EOF)
            return; // an unclosed block simply ends with the file
        switch (byte) {
        case ':': {
            const QString blockName = strippedText(buffer);
            buffer.clear();
            jump('{');
            attach(blocks.back());
            QDomElement enclosing = blocks.back().element;
            blocks.push_back({m_document->createElement(blockName), enclosing, false});
            break;
        }
        case '=': {
            const QString entryName = strippedText(buffer);
            buffer.clear();
            for (int v = readByte(); v != EOF && v != ';'; v = readByte())
                buffer.append(char(v));
            blocks.back().element.setAttribute(entryName, valueText(buffer));
            attach(blocks.back());
            buffer.clear();
            break;
        }
        case '}':
            jump(';');
            blocks.pop_back();
            buffer.clear();
            break;
        default:
            buffer.append(char(byte));
        }
    }
}

void Config::loadXmlFile()
{
    QFile file(m_fileName);
    if (!file.open(QIODevice::ReadOnly))
        return;
    if (!m_document->setContent(&file))
        return;
    QDomNode first = m_document->firstChild();
    QDomElement root = m_document->createElement(m_fileName);
    root.appendChild(first);
    m_document->appendChild(root);
}

QString Config::lookup(const QString &key) const
{
    if (!m_document)
        return QString();
    return lookup(m_document->documentElement().firstChild(), key);
}

QString Config::lookup(const QDomNode &node, const QString &key) const
{
    if (!node.isElement())
        return QString();
    const QDomElement element = node.toElement();
    if (element.tagName() != key.section(QLatin1Char('.'), 0, 0))
        return QString();
    if (key.section(QLatin1Char('.'), 2, 2).isEmpty()) {
        const QString attribute = key.section(QLatin1Char('.'), 1, 1);
        if (attribute.isEmpty())
            return QString(); // a key of one component names no attribute
        return element.attribute(attribute);
    }
    const QString rest = key.section(QLatin1Char('.'), 1);
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        const QString value = lookup(child, rest);
        if (!value.isEmpty())
            return value;
    }
    return QString();
}

} // namespace libconfig
