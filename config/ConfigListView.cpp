#include "config/BRConfiguration.h"
#include "config/Config.h"

#include <QDomDocument>
#include <QDomElement>
#include <QTreeWidget>
#include <QTreeWidgetItem>

#include <utility>
#include <vector>

/*
 * The configuration tree in a QTreeWidget with the one column "ConfigurationFile":
 *
 *     element                      (tag name)
 *         attribute                (name)
 *             value                (value; the only editable item)
 *         ...more attributes, sorted by name as the writers list them...
 *         child element            (and so on, in document order)
 *
 * Every item carries its kind under Config::ListViewKindRole.  When the tree is read back,
 * an item marked as an attribute is one; an item without a mark (added by other code) is
 * taken for an attribute when it has exactly one child and that child has no children, and
 * for an element otherwise.  An attribute's value is the text of its first child, or empty
 * when it has none.  Top-level items are always elements.
 */

namespace libconfig {

namespace {

QTreeWidgetItem *newItem(QTreeWidgetItem *parent, const QString &text, Config::ListViewKind kind)
{
    auto *item = new QTreeWidgetItem(parent, QStringList(text));
    item->setData(0, Config::ListViewKindRole, int(kind));
    return item;
}

void markElement(QTreeWidgetItem *item)
{
    item->setData(0, Config::ListViewKindRole, int(Config::ElementItem));
    item->setExpanded(true);
}

// Fills an element's item with its attributes and, below them, its child elements.  Kept on
// an explicit stack: configurations may be nested arbitrarily deep.
void fillElementItem(const QDomElement &top, QTreeWidgetItem *topItem)
{
    std::vector<std::pair<QDomElement, QTreeWidgetItem *>> pending{{top, topItem}};
    while (!pending.empty()) {
        const auto [element, item] = pending.back();
        pending.pop_back();
        for (const QString &name : Config::sortedAttributeNames(element)) {
            QTreeWidgetItem *attribute = newItem(item, name, Config::AttributeItem);
            QTreeWidgetItem *value = newItem(attribute, element.attribute(name), Config::ValueItem);
            value->setFlags(value->flags() | Qt::ItemIsEditable);
            attribute->setExpanded(true);
        }
        // Items are created here in document order; their contents are filled afterwards.
        std::vector<std::pair<QDomElement, QTreeWidgetItem *>> children;
        for (QDomElement child = element.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            QTreeWidgetItem *childItem = new QTreeWidgetItem(item, QStringList(child.tagName()));
            markElement(childItem);
            children.emplace_back(child, childItem);
        }
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
}

bool isAttributeItem(const QTreeWidgetItem *item)
{
    const QVariant kind = item->data(0, Config::ListViewKindRole);
    if (kind.isValid())
        return kind.toInt() == Config::AttributeItem;
    return item->childCount() == 1 && item->child(0)->childCount() == 0;
}

} // namespace

QTreeWidget *Config::buildConfigListView() const
{
    auto *listView = new QTreeWidget;
    listView->setColumnCount(1);
    listView->setHeaderLabels(QStringList(QStringLiteral("ConfigurationFile")));
    if (const QDomDocument *tree = document())
        buildConfigListView(tree->documentElement(), listView);
    return listView;
}

QTreeWidget *Config::newConfigListView() const
{
    return buildConfigListView();
}

void Config::buildConfigListView(const QDomNode &node, QTreeWidget *listView) const
{
    if (!listView || !node.isElement())
        return;
    auto *item = new QTreeWidgetItem(listView, QStringList(node.toElement().tagName()));
    markElement(item);
    fillElementItem(node.toElement(), item);
}

void Config::buildConfigListView(const QDomNode &node, QTreeWidgetItem *parentItem) const
{
    if (!parentItem || !node.isElement())
        return;
    auto *item = new QTreeWidgetItem(parentItem, QStringList(node.toElement().tagName()));
    markElement(item);
    fillElementItem(node.toElement(), item);
}

/*
 * Rebuilds the document from the view and saves it in the file's own format.  The old
 * document is discarded first, so after this call lookups answer from the edited tree.
 */
void Config::loadListView(QTreeWidget *listView)
{
    if (!listView)
        return;
    replaceDocument();
    for (int i = 0; i < listView->topLevelItemCount(); ++i)
        loadListView(listView->topLevelItem(i), *document());

    if (fileType() == QLatin1String("cfg"))
        buildConfigFile();
    else if (fileType() == QLatin1String("xml"))
        buildConfigXmlFile();
}

void Config::loadListView(QTreeWidgetItem *item, QDomDocument &document)
{
    if (!item)
        return;
    QDomElement element = document.createElement(item->text(0));
    document.appendChild(element);
    QDomNode node = element;
    for (int i = 0; i < item->childCount(); ++i)
        loadListView(item->child(i), node);
}

// Adds what item stands for to node: an attribute, or a child element with everything below.
void Config::loadListView(QTreeWidgetItem *item, QDomNode &node)
{
    if (!item || node.isNull())
        return;
    QDomDocument document = node.ownerDocument();
    std::vector<std::pair<QTreeWidgetItem *, QDomElement>> pending{{item, node.toElement()}};
    while (!pending.empty()) {
        auto [current, parent] = pending.back();
        pending.pop_back();
        if (isAttributeItem(current)) {
            const QString value = current->childCount() > 0 ? current->child(0)->text(0) : QString();
            parent.setAttribute(current->text(0), value);
            continue;
        }
        QDomElement element = document.createElement(current->text(0));
        parent.appendChild(element);
        for (int i = current->childCount() - 1; i >= 0; --i)
            pending.emplace_back(current->child(i), element);
    }
}

} // namespace libconfig

QTreeWidget *BRConfiguration::newConfigListView() const
{
    return libconfig::Config::newConfigListView();
}
