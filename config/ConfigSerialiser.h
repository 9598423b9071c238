#ifndef BRISTEL_CONFIG_CONFIGSERIALISER_H
#define BRISTEL_CONFIG_CONFIGSERIALISER_H

#include <QString>

class QDomElement;
class QDomNode;
class QTextStream;

namespace libconfig {

/*
 * Writes a configuration tree as text, in one of the three layouts the configuration library
 * knows; the text writer, the XML writer and the inspection listing all go through here, so
 * that the walk of the tree and the order of the attributes are written once.
 *
 *  - Text: the file's own format, one "name: { ... };" block per element, read back by the
 *    text reader;
 *  - Xml: one element per block, attributes one per line inside the start tag, blanks around
 *    the '=' and nothing escaped;
 *  - Listing: each element's tag name, then its attributes as "name = value", without
 *    indentation.
 *
 * The walk keeps its open elements on an explicit stack: configurations may be nested
 * arbitrarily deep.  The indentation belongs to the caller, which keeps one per writer (the
 * writers are not reentrant); it is the same when a write ends as when it began.
 */
class ConfigSerialiser
{
public:
    enum class Layout
    {
        Text,
        Xml,
        Listing
    };

    ConfigSerialiser(Layout layout, QTextStream &stream, QString &indentation);
    ConfigSerialiser(const ConfigSerialiser &) = delete;
    ConfigSerialiser &operator=(const ConfigSerialiser &) = delete;

    // The file-level entries, the attributes of the root element, as "name = "value";" lines
    // without indentation; the text and XML files both begin with them.
    void writeFileEntries(const QDomElement &root);

    // An element and everything below it.  A node that is not an element writes nothing in
    // the file layouts; the listing looks below it for elements.
    void writeTree(const QDomNode &top);

private:
    void openElement(const QDomElement &element);
    void closeElement(const QDomElement &element);
    void writeAttributes(const QDomElement &element);

    Layout m_layout;
    QTextStream &m_stream;
    QString &m_indentation;
};

} // namespace libconfig

#endif
