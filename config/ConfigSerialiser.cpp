#include "config/ConfigSerialiser.h"

#include "config/Config.h"

#include <QDomElement>
#include <QTextStream>

#include <vector>

namespace libconfig {

namespace {

const QLatin1String indentStep("    ");

} // namespace

ConfigSerialiser::ConfigSerialiser(Layout layout, QTextStream &stream, QString &indentation)
    : m_layout(layout), m_stream(stream), m_indentation(indentation)
{
}

void ConfigSerialiser::writeFileEntries(const QDomElement &root)
{
    for (const QString &name : Config::sortedAttributeNames(root))
        m_stream << name << " = \"" << root.attribute(name) << "\";" << '\n';
}

void ConfigSerialiser::writeTree(const QDomNode &top)
{
    if (top.isNull() || (!top.isElement() && m_layout != Layout::Listing))
        return;

    struct Open
    {
        QDomNode node;
        QDomNode nextChild;
    };
    std::vector<Open> open;
    const auto enter = [&](const QDomNode &node) {
        if (node.isElement())
            openElement(node.toElement());
        open.push_back({node, node.firstChild()});
    };

    enter(top);
    while (!open.empty()) {
        const QDomNode child = open.back().nextChild;
        if (child.isNull()) {
            if (open.back().node.isElement())
                closeElement(open.back().node.toElement());
            open.pop_back();
            continue;
        }
        open.back().nextChild = child.nextSibling();
        // Only elements carry what the file layouts can hold; the listing also looks below
        // the other nodes.
        if (child.isElement() || m_layout == Layout::Listing)
            enter(child);
    }
}

void ConfigSerialiser::openElement(const QDomElement &element)
{
    switch (m_layout) {
    case Layout::Text:
        m_stream << m_indentation << element.tagName() << ": " << '\n';
        m_stream << m_indentation << "{" << '\n';
        m_indentation += indentStep;
        writeAttributes(element);
        break;
    case Layout::Xml:
        m_stream << '\n' << m_indentation << "<" << element.tagName();
        m_indentation += indentStep;
        writeAttributes(element);
        m_stream << ">" << '\n';
        break;
    case Layout::Listing:
        m_stream << element.tagName() << '\n';
        writeAttributes(element);
        break;
    }
}

void ConfigSerialiser::closeElement(const QDomElement &element)
{
    switch (m_layout) {
    case Layout::Text:
        m_indentation.chop(indentStep.size());
        m_stream << m_indentation << "};" << '\n' << '\n';
        break;
    case Layout::Xml:
        m_indentation.chop(indentStep.size());
        m_stream << m_indentation << "</" << element.tagName() << ">" << '\n';
        break;
    case Layout::Listing:
        break;
    }
}

void ConfigSerialiser::writeAttributes(const QDomElement &element)
{
    for (const QString &name : Config::sortedAttributeNames(element)) {
        const QString value = element.attribute(name);
        switch (m_layout) {
        case Layout::Text:
            m_stream << m_indentation << name << " = \"" << value << "\";" << '\n';
            break;
        case Layout::Xml:
            m_stream << '\n' << m_indentation << name << " = \"" << value << "\"";
            break;
        case Layout::Listing:
            m_stream << name << " = " << value << '\n';
            break;
        }
    }
}

} // namespace libconfig
