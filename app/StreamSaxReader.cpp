#include "app/StreamSaxReader.h"

#include <QXmlAttributes>
#include <QXmlContentHandler>
#include <QXmlStreamReader>

#include <array>

namespace {

// Element and attribute names repeat throughout a document: the same few strings are handed
// out again instead of being copied for every element.
class NameCache
{
public:
    QString intern(QStringView name)
    {
        const size_t hash = hashOf(name);
        for (size_t probe = 0; probe < Slots; ++probe) {
            Slot &slot = m_slots[(hash + probe) % Slots];
            if (slot.name.isNull()) {
                if (m_used == Capacity)
                    break;
                ++m_used;
                slot = {hash, name.toString()};
                return slot.name;
            }
            if (slot.hash == hash && slot.name == name)
                return slot.name;
        }
        return name.toString(); // a document with very many different names: copy the rest
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
        QString name;
    };
    static constexpr size_t Slots = 128;
    static constexpr size_t Capacity = 64; // at most half full, so probes stay short
    std::array<Slot, Slots> m_slots;
    size_t m_used = 0;
};

// The local name as a string of its own, or the qualified name's string shared when the name
// carries no prefix.
QString localName(QStringView local, const QString &qualified)
{
    return local.size() == qualified.size() ? qualified : local.toString();
}

// Refills attributes in place: clearing keeps the list's storage for the next element.
void fillAttributes(QXmlAttributes &attributes, const QXmlStreamAttributes &streamAttributes,
                    NameCache &names)
{
    attributes.clear();
    for (const QXmlStreamAttribute &attribute : streamAttributes) {
        const QString qualified = names.intern(attribute.qualifiedName());
        attributes.append(qualified, attribute.namespaceUri().toString(),
                          localName(attribute.name(), qualified), attribute.value().toString());
    }
}

} // namespace

bool StreamSaxReader::parse(QIODevice *input)
{
    if (!m_handler)
        return false;
    if (!m_handler->startDocument())
        return false;

    QXmlStreamReader reader(input);
    QXmlAttributes attributes;
    NameCache names;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            const QString qualified = names.intern(reader.qualifiedName());
            fillAttributes(attributes, reader.attributes(), names);
            if (!m_handler->startElement(reader.namespaceUri().toString(),
                                         localName(reader.name(), qualified), qualified, attributes))
                return false;
            break;
        }
        case QXmlStreamReader::EndElement: {
            const QString qualified = names.intern(reader.qualifiedName());
            if (!m_handler->endElement(reader.namespaceUri().toString(), localName(reader.name(), qualified),
                                       qualified))
                return false;
            break;
        }
        case QXmlStreamReader::EndDocument:
            return m_handler->endDocument();
        default:
            break;
        }
    }
    return false; // not well-formed, or the input ended early
}
