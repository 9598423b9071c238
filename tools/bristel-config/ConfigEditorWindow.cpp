#include "ConfigEditorWindow.h"

#include "PreviewPane.h"

#include <QAbstractItemDelegate>
#include <QAction>
#include <QFileDevice>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QSplitter>
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

    auto *splitter = new QSplitter(this);
    m_tree = m_config->buildConfigListView();
    splitter->addWidget(m_tree);
    m_preview = new PreviewPane(splitter);
    splitter->addWidget(m_preview);
    // The paper of 58 mm needs about 580 pixels; the tree keeps the rest, and the share of a
    // narrow window.
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({420, 580});
    // Only value items carry Qt::ItemIsEditable, so only values open an editor.
    m_tree->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    m_tree->setAlternatingRowColors(true);
    setCentralWidget(splitter);
    connect(m_tree, &QTreeWidget::itemChanged, this, &ConfigEditorWindow::itemChanged);
    m_preview->setConfigurationTree(m_tree);

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
    m_preview->refresh();
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

/*
 * The writers replace the file only once the whole new text is written, so a save that fails
 * (a full disk, a read-only folder, a folder in the file's place) leaves the previous file
 * whole; the window then stays modified and the operator is told why.
 */
bool ConfigEditorWindow::save()
{
    commitOpenEditor();
    m_config->loadListView(m_tree);
    if (m_config->writeStatus() != QFileDevice::NoError) {
        statusBar()->showMessage(tr("Not saved"));
        m_reportError(this, tr("Cannot save the configuration"),
                      tr("The configuration could not be saved: %1 cannot be written (%2).")
                          .arg(m_path, m_config->writeErrorString()));
        return false;
    }
    setWindowModified(false);
    statusBar()->showMessage(tr("Saved %1").arg(m_path));
    return true;
}
