#include "app/StreamSaxReader.h"

#include <QXmlAttributes>
#include <QXmlContentHandler>
#include <QXmlStreamReader>

namespace {

// The local name as a string of its own, or the qualified name's string shared when the name
// carries no prefix: one allocation fewer for nearly every name of a document.
QString localName(QStringView local, const QString &qualified)
{
    return local.size() == qualified.size() ? qualified : local.toString();
}

// Refills attributes in place: clearing keeps the list's storage for the next element.
void fillAttributes(QXmlAttributes &attributes, const QXmlStreamAttributes &streamAttributes)
{
    attributes.clear();
    for (const QXmlStreamAttribute &attribute : streamAttributes) {
        const QString qualified = attribute.qualifiedName().toString();
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
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            const QString qualified = reader.qualifiedName().toString();
            fillAttributes(attributes, reader.attributes());
            if (!m_handler->startElement(reader.namespaceUri().toString(),
                                         localName(reader.name(), qualified), qualified, attributes))
                return false;
            break;
        }
        case QXmlStreamReader::EndElement: {
            const QString qualified = reader.qualifiedName().toString();
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
