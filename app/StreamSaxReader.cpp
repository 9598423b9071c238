#include "app/StreamSaxReader.h"

#include <QXmlAttributes>
#include <QXmlContentHandler>
#include <QXmlStreamReader>

namespace {

// Element and attribute names repeat throughout a document: the same few strings are handed
// out again instead of being copied for every element.
class NameCache
{
public:
    QString intern(QStringView name)
    {
        for (const QString &known : m_names) {
            if (known.size() == name.size() && known == name)
                return known;
        }
        QString copy = name.toString();
        if (m_names.size() < Capacity)
            m_names.append(copy);
        return copy;
    }

private:
    static constexpr qsizetype Capacity = 64;
    QList<QString> m_names;
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
