#ifndef BRISTEL_APP_STREAMSAXREADER_H
#define BRISTEL_APP_STREAMSAXREADER_H

class QIODevice;
class QXmlContentHandler;

/*
 * Feeds a SAX content handler from a pull parser.
 *
 * The handler sees startDocument, startElement (namespace URI, local name, qualified name,
 * attributes in document order), endElement and endDocument as a SAX reader would call them.
 * The parse stops when a callback returns false or the input turns out not to be well-formed;
 * endDocument is then not called.  Nothing recurses, so any nesting depth is handled, and the
 * input is read as a stream, so its size does not bound memory.  Element and attribute names
 * come from a small process-wide table whose strings stay valid until the program ends.
 */
class StreamSaxReader
{
public:
    void setContentHandler(QXmlContentHandler *handler) { m_handler = handler; }
    QXmlContentHandler *contentHandler() const { return m_handler; }

    // True when the whole document was parsed and every callback agreed.
    bool parse(QIODevice *input);

private:
    QXmlContentHandler *m_handler = nullptr;
};

#endif
