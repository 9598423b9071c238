#include "ConfigEditorWindow.h"

#include <QAbstractItemDelegate>
#include <QAction>
#include <QFile>
#include <QFileInfo>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTreeWidget>
#include <QTreeWidgetItem>

ConfigEditorWindow::ConfigEditorWindow(const QString &path, QWidget *parent)
    : QMainWindow(parent), m_path(path), m_fileType(fileTypeFor(path)),
      m_config(std::make_unique<libconfig::Config>(path, m_fileType))
{
    m_reportError = [](QWidget *owner, const QString &title, const QString &text) {
        QMessageBox::critical(owner, title, text);
    };

    m_tree = m_config->buildConfigListView();
    m_tree->setParent(this);
    // Only value items carry Qt::ItemIsEditable, so only values open an editor.
    m_tree->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    m_tree->setAlternatingRowColors(true);
    setCentralWidget(m_tree);
    connect(m_tree, &QTreeWidget::itemChanged, this, &ConfigEditorWindow::itemChanged);

    QMenu *fileMenu = menuBar()->addMenu(tr("&File"));
    m_saveAction = fileMenu->addAction(tr("&Save"), this, &ConfigEditorWindow::save);
    m_saveAction->setShortcut(QKeySequence::Save);
    fileMenu->addSeparator();
    QAction *quit = fileMenu->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);

    setWindowTitle(tr("%1[*] - bristel-config").arg(m_path));
    if (m_tree->topLevelItemCount() == 0)
        statusBar()->showMessage(tr("No configuration read from %1").arg(m_path));
    else
        statusBar()->showMessage(tr("Double-click a value to edit it; Ctrl+S saves."));
}

ConfigEditorWindow::~ConfigEditorWindow() = default;

QString ConfigEditorWindow::fileTypeFor(const QString &path)
{
    return path.endsWith(QLatin1String(".xml")) ? QStringLiteral("xml") : QStringLiteral("cfg");
}

void ConfigEditorWindow::setErrorReporter(ErrorReporter reporter)
{
    m_reportError = std::move(reporter);
}

void ConfigEditorWindow::itemChanged(QTreeWidgetItem *)
{
    setWindowModified(true);
}

// A value still being typed is taken into the tree before saving.
void ConfigEditorWindow::commitOpenEditor()
{
    const QModelIndex index = m_tree->currentIndex();
    if (!index.isValid())
        return;
    if (QWidget *editor = m_tree->indexWidget(index))
        m_tree->itemDelegateForIndex(index)->setModelData(editor, m_tree->model(), index);
}

// The writer itself reports nothing when it cannot open the file, so the file is tried first.
// Opening for appending changes no byte of an existing file.
bool ConfigEditorWindow::canWrite(QString *reason) const
{
    if (QFileInfo(m_path).isDir()) {
        *reason = tr("it is a folder");
        return false;
    }
    QFile file(m_path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        *reason = file.errorString();
        return false;
    }
    return true;
}

bool ConfigEditorWindow::save()
{
    commitOpenEditor();
    QString reason;
    if (!canWrite(&reason)) {
        statusBar()->showMessage(tr("Not saved"));
        m_reportError(
            this, tr("Cannot save the configuration"),
            tr("The configuration could not be saved: %1 cannot be written (%2).").arg(m_path, reason));
        return false;
    }
    m_config->loadListView(m_tree);
    setWindowModified(false);
    statusBar()->showMessage(tr("Saved %1").arg(m_path));
    return true;
}
