#include "app/StreamSaxReader.h"

#include <QXmlAttributes>
#include <QXmlContentHandler>
#include <QXmlStreamReader>

namespace {

QXmlAttributes saxAttributes(const QXmlStreamAttributes &streamAttributes)
{
    QXmlAttributes attributes;
    for (const QXmlStreamAttribute &attribute : streamAttributes) {
        attributes.append(attribute.qualifiedName().toString(), attribute.namespaceUri().toString(),
                          attribute.name().toString(), attribute.value().toString());
    }
    return attributes;
}

} // namespace

bool StreamSaxReader::parse(QIODevice *input)
{
    if (!m_handler)
        return false;
    if (!m_handler->startDocument())
        return false;

    QXmlStreamReader reader(input);
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            if (!m_handler->startElement(reader.namespaceUri().toString(), reader.name().toString(),
                                         reader.qualifiedName().toString(),
                                         saxAttributes(reader.attributes())))
                return false;
            break;
        case QXmlStreamReader::EndElement:
            if (!m_handler->endElement(reader.namespaceUri().toString(), reader.name().toString(),
                                       reader.qualifiedName().toString()))
                return false;
            break;
        case QXmlStreamReader::EndDocument:
            return m_handler->endDocument();
        default:
            break;
        }
    }
    return false; // not well-formed, or the input ended early
}
