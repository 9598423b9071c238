#ifndef BRISTEL_CONFIG_CONFIG_H
#define BRISTEL_CONFIG_CONFIG_H

#include "bristel_config_export.h"

#include <QFileDevice>
#include <QString>
#include <QStringList>

#include <memory>

class QDomDocument;
class QDomNode;
class QTextStream;
class QTreeWidget;
class QTreeWidgetItem;

namespace libconfig {

class ConfigPrivate;

/*
 * Reader of the installation's configuration file, either in the brace-and-semicolon
 * text format ("cfg") or as XML ("xml"), into a DOM tree answering dotted-key lookups.
 *
 * The text reader reacts to four bytes only (':', '=', '}' and ';'); everything else,
 * blanks and line ends included, is collected into the pending name.  Blocks become
 * elements, "name = value;" entries become attributes.  The tree's root element is named
 * after the file path.
 *
 * Nothing here prints: a text file that cannot be opened is kept in readError() for the
 * program to report, and the writers keep how they ended in writeStatus().  The state lives
 * behind a private pointer, so that it may grow without changing the exported class.
 */
class BRISTEL_CONFIG_EXPORT Config
{
public:
    Config();
    Config(const QString &fileName, const QString &fileType);
    ~Config();

    Config(const Config &) = delete;
    Config &operator=(const Config &) = delete;

    void readFile(const QString &fileName, const QString &fileType);
    void constructor(const QString &fileName, const QString &fileType);

    // Resolves "block.block.attribute" against the first top-level block; "" when absent.
    QString lookup(const QString &key) const;
    QString lookup(const QDomNode &node, const QString &key) const;

    QString fileName() const;
    QString fileType() const;
    QDomDocument *document() const;

    // The line a program prints when the last text load found no file to open,
    // "Error in the method FileReader::open( <path> ): File Not Found"; empty otherwise.
    QString readError() const;

    /*
     * Writing the tree back (text and XML layouts) and printing it for inspection.
     *
     * The writers write a temporary file in the target's folder and put it in the target's
     * place only once the whole file is written (QSaveFile): a full disk, a read-only folder or
     * a killed process leaves the previous file as it was, byte for byte.  A FIFO or a device
     * is written into directly, and a symbolic link is followed to its target.  Kept: the writers
     * report nothing themselves; writeStatus() tells how the last write ended.
     */
    void buildConfigFile(const QString &path = QString());
    void buildConfigFile(const QDomNode &node, QTextStream &stream);
    void buildConfigXmlFile(const QString &path = QString());
    void buildConfigXmlFile(const QDomNode &node, QTextStream &stream);
    // How the last buildConfigFile, buildConfigXmlFile or loadListView save ended, as
    // QSettings::status() does: NoError, or the first error of that write with its text.
    QFileDevice::FileError writeStatus() const;
    QString writeErrorString() const;

    // The tree for inspection: every element's tag name, then its attributes as
    // "name = value", one per line, depth first and without indentation.  configTreeText()
    // returns it; printConfigTree() writes "Tree " and the tree to standard output, for the
    // tools that ask for exactly that.
    QString configTreeText() const;
    QString configTreeText(const QDomNode &node) const;
    void printConfigTree() const;
    void printConfigTree(const QDomNode &node) const;

    // The attribute names of an element in the order the writers and the tree view list them:
    // sorted by name.  The DOM keeps attributes in a hash, so its own listing order is arbitrary.
    static QStringList sortedAttributeNames(const QDomNode &node);

    // Tree-view editing; defined in the widgets library (bristel_config_widgets).
    QTreeWidget *buildConfigListView() const;
    QTreeWidget *newConfigListView() const;
    void buildConfigListView(const QDomNode &node, QTreeWidget *listView) const;
    void buildConfigListView(const QDomNode &node, QTreeWidgetItem *parentItem) const;
    void loadListView(QTreeWidget *listView);
    void loadListView(QTreeWidgetItem *item, QDomDocument &document);
    void loadListView(QTreeWidgetItem *item, QDomNode &node);

    // The tree view marks each item with what it stands for, under this item data role.
    static constexpr int ListViewKindRole = Qt::UserRole + 1;
    enum ListViewKind
    {
        ElementItem = 1, // an element; its text is the tag name
        AttributeItem,   // an attribute; its text is the name, its one child holds the value
        ValueItem        // the value of an attribute; the only editable kind of item
    };

protected:
    bool openFile();
    bool openFile(const QString &name);
    void closeFile();
    bool jump(char c);
    void loadFile();
    void loadFile(const QString &name, QDomNode &parent);
    void loadXmlFile();

private:
    // A new empty document in place of the old one; the tree view's library rebuilds into it.
    void replaceDocument();
    void setWriteStatus(QFileDevice::FileError status, const QString &text);

    std::unique_ptr<ConfigPrivate> d;
};

} // namespace libconfig

#endif
