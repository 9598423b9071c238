#ifndef BRISTEL_COMPILER_STREAMSAXREADER_H
#define BRISTEL_COMPILER_STREAMSAXREADER_H

#include <QString>
#include <QXmlAttributes>

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

    // After a parse that returned false: why the document is not well-formed (empty when a
    // callback stopped the parse), and where in the input the parse stopped (1-based).
    QString errorString() const { return m_errorString; }
    qint64 lineNumber() const { return m_lineNumber; }
    qint64 columnNumber() const { return m_columnNumber; }
    // After a parse that a handler stopped at a start tag: that element's attributes, so that
    // the caller can say what the handler refused (empty otherwise).
    const QXmlAttributes &refusedAttributes() const { return m_refusedAttributes; }
    // After a parse that a start tag's callback stopped: where that tag begins, its "<"
    // (1-based); 0 when the parse stopped elsewhere.
    qint64 elementLineNumber() const { return m_elementLineNumber; }
    qint64 elementColumnNumber() const { return m_elementColumnNumber; }

private:
    QXmlContentHandler *m_handler = nullptr;
    QString m_errorString;
    qint64 m_lineNumber = 0;
    qint64 m_columnNumber = 0;
    QXmlAttributes m_refusedAttributes;
    qint64 m_elementLineNumber = 0;
    qint64 m_elementColumnNumber = 0;
};

#endif
