#ifndef BRISTEL_TOOLS_CONFIGEDITORWINDOW_H
#define BRISTEL_TOOLS_CONFIGEDITORWINDOW_H

#include "config/Config.h"

#include <QMainWindow>
#include <QString>

#include <functional>
#include <memory>

class PreviewPane;
class QAction;
class QTreeWidget;
class QTreeWidgetItem;

/*
 * The configuration editor: one configuration file in the tree view, values edited in place
 * (double-click a value), written back in the file's own format with Save.  Beside the tree, a
 * preview pane shows a sample job printed under the configuration being edited, drawn again
 * after every edit; the file itself changes only with Save.
 */
class ConfigEditorWindow : public QMainWindow
{
    Q_OBJECT

public:
    // Shows an error to the operator; a message box unless replaced (the tests replace it).
    using ErrorReporter = std::function<void(QWidget *parent, const QString &title, const QString &text)>;

    explicit ConfigEditorWindow(const QString &path, QWidget *parent = nullptr);
    ~ConfigEditorWindow() override;

    // "xml" for a path ending in ".xml", "cfg" for every other.
    static QString fileTypeFor(const QString &path);

    QString filePath() const { return m_path; }
    QString fileType() const { return m_fileType; }
    QTreeWidget *treeView() const { return m_tree; }
    QAction *saveAction() const { return m_saveAction; }
    PreviewPane *previewPane() const { return m_preview; }
    const libconfig::Config &configuration() const { return *m_config; }

    void setErrorReporter(ErrorReporter reporter);

public Q_SLOTS:
    // Writes the tree back to the file; false, after telling the operator, when it cannot
    // (the file is then left as it was).
    bool save();

private:
    void commitOpenEditor();
    void itemChanged(QTreeWidgetItem *item);

    QString m_path;
    QString m_fileType;
    std::unique_ptr<libconfig::Config> m_config;
    QTreeWidget *m_tree = nullptr;
    PreviewPane *m_preview = nullptr;
    QAction *m_saveAction = nullptr;
    ErrorReporter m_reportError;
};

#endif
