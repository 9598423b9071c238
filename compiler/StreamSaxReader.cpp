#include "compiler/StreamSaxReader.h"

#include <QMutex>
#include <QXmlAttributes>
#include <QXmlContentHandler>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <mutex>
#include <vector>

namespace {

// Element and attribute names repeat throughout a document.  The table hands out the same
// few strings again, as raw-data strings over storage of its own: copying those touches no
// reference count, which the hand-over of every attribute otherwise pays several times.  The
// table lives for the whole process, so a handler may keep a name as long as it likes.
class NameTable
{
public:
    static NameTable &instance()
    {
        static NameTable table;
        return table;
    }

    QMutex &mutex() { return m_mutex; }

    // The caller holds mutex().
    QString intern(QStringView name)
    {
        const size_t hash = hashOf(name);
        for (size_t probe = 0; probe < Slots; ++probe) {
            Slot &slot = m_slots[(hash + probe) % Slots];
            if (slot.name.isNull()) {
                if (m_used == Capacity)
                    break;
                ++m_used;
                slot.hash = hash;
                slot.storage = name.toString();
                slot.name = QString::fromRawData(slot.storage.constData(), slot.storage.size());
                return slot.name;
            }
            if (slot.hash == hash && slot.name == name)
                return slot.name;
        }
        return name.toString(); // a run with very many different names: copy the rest
    }

private:
    // Names are short: a plain multiplicative hash is enough, and far cheaper than a seeded one.
    static size_t hashOf(QStringView name)
    {
        size_t hash = size_t(name.size());
        for (const QChar c : name)
            hash = hash * 33 + c.unicode();
        return hash;
    }

    struct Slot
    {
        size_t hash = 0;
        QString storage; // never changed once filled: the raw name below points into it
        QString name;
    };
    static constexpr size_t Slots = 128;
    static constexpr size_t Capacity = 64; // at most half full, so probes stay short
    std::array<Slot, Slots> m_slots;
    size_t m_used = 0;
    QMutex m_mutex;
};

// The names of one parse: from the process-wide table when this thread holds it, as plain
// copies while another parse uses it.
class Names
{
public:
    Names() : m_lock(NameTable::instance().mutex(), std::try_to_lock) {}

    QString intern(QStringView name)
    {
        return m_lock.owns_lock() ? NameTable::instance().intern(name) : name.toString();
    }

private:
    std::unique_lock<QMutex> m_lock;
};

// The local name as a string of its own, or the qualified name's string shared when the name
// carries no prefix.
QString localName(QStringView local, const QString &qualified)
{
    return local.size() == qualified.size() ? qualified : local.toString();
}

// Attribute values, one string per position, reused from element to element.  Once the
// attributes are cleared, a value that no handler kept a copy of is unshared again and is
// overwritten in place: most elements then cost no allocation for their values.
class Values
{
public:
    const QString &set(qsizetype position, QStringView text)
    {
        if (position == qsizetype(m_values.size()))
            m_values.emplace_back();
        QString &value = m_values[size_t(position)];
        if (value.isDetached()) {
            value.resize(text.size());
            std::copy(text.begin(), text.end(), value.data());
        } else {
            value = text.toString(); // a handler still holds the old text
        }
        return value;
    }

private:
    std::vector<QString> m_values;
};

// Refills attributes in place: clearing keeps the list's storage for the next element.
void fillAttributes(QXmlAttributes &attributes, const QXmlStreamAttributes &streamAttributes, Names &names,
                    Values &values)
{
    attributes.clear();
    qsizetype position = 0;
    for (const QXmlStreamAttribute &attribute : streamAttributes) {
        const QString qualified = names.intern(attribute.qualifiedName());
        attributes.append(qualified, attribute.namespaceUri().toString(),
                          localName(attribute.name(), qualified), values.set(position++, attribute.value()));
    }
}

} // namespace

bool StreamSaxReader::parse(QIODevice *input)
{
    m_errorString.clear();
    m_lineNumber = 0;
    m_columnNumber = 0;
    m_refusedAttributes.clear();
    m_elementLineNumber = 0;
    m_elementColumnNumber = 0;
    if (!m_handler)
        return false;
    if (!m_handler->startDocument())
        return false;

    QXmlStreamReader reader(input);
    const auto stoppedAt = [&]() {
        m_lineNumber = reader.lineNumber();
        m_columnNumber = reader.columnNumber() + 1; // the reader counts columns from 0
        return false;
    };
    QXmlAttributes attributes;
    Names names;
    Values values;
    // Each token begins where the one before it ended, so where a tag begins is known only
    // before it is read; but the end of text shows only at the next "<", which the reader has
    // then already taken (CDATA ends on its own "]]>").
    bool afterText = false;
    while (!reader.atEnd()) {
        const qint64 tokenLine = reader.lineNumber();
        const qint64 tokenColumn = reader.columnNumber() + (afterText ? 0 : 1);
        const QXmlStreamReader::TokenType token = reader.readNext();
        afterText = token == QXmlStreamReader::Characters && !reader.isCDATA();
        switch (token) {
        case QXmlStreamReader::StartElement: {
            const QString qualified = names.intern(reader.qualifiedName());
            fillAttributes(attributes, reader.attributes(), names, values);
            if (!m_handler->startElement(reader.namespaceUri().toString(),
                                         localName(reader.name(), qualified), qualified, attributes)) {
                m_refusedAttributes = attributes; // copied only when the parse ends here
                m_elementLineNumber = tokenLine;
                m_elementColumnNumber = tokenColumn;
                return stoppedAt();
            }
            break;
        }
        case QXmlStreamReader::EndElement: {
            const QString qualified = names.intern(reader.qualifiedName());
            if (!m_handler->endElement(reader.namespaceUri().toString(), localName(reader.name(), qualified),
                                       qualified))
                return stoppedAt();
            break;
        }
        case QXmlStreamReader::EndDocument:
            return m_handler->endDocument();
        default:
            break;
        }
    }
    // Not well-formed, or the input ended early.
    m_errorString = reader.errorString();
    return stoppedAt();
}
