#ifndef BRISTEL_CONFIGEDITOR_PREVIEWPANE_H
#define BRISTEL_CONFIGEDITOR_PREVIEWPANE_H

#include "virtualprinter/Paper.h"

#include <QWidget>

class PaperWidget;
class QComboBox;
class QLabel;
class QScrollArea;
class QTreeWidget;

/*
 * The configuration editor's preview: a chooser of sample jobs (the shipped example documents,
 * or any file) and the paper the job prints on under the configuration being edited.  The
 * editor's tree is read afresh into memory on every refresh and written nowhere: nothing is
 * saved until the user saves, and a preview needs no temporary file.
 */
class PreviewPane : public QWidget
{
    Q_OBJECT

public:
    explicit PreviewPane(QWidget *parent = nullptr);
    ~PreviewPane() override;

    // The tree the configuration is read from, as the editor's tree view holds it; not owned.
    void setConfigurationTree(QTreeWidget *tree);
    // Adds a job to the chooser and shows it.
    void showSample(const QString &path);

    QComboBox *sampleChooser() const { return m_chooser; }
    const Paper &paper() const;
    // What is wrong with the configuration or the job; empty when nothing is.
    QString message() const;

    // The shipped example documents: beside the sources, or installed.
    static QStringList exampleDocuments();

public Q_SLOTS:
    // Renders the chosen job again under the tree's configuration.
    void refresh();

Q_SIGNALS:
    void refreshed();

private:
    void chooseOtherFile();

    QTreeWidget *m_tree = nullptr;
    QComboBox *m_chooser;
    QLabel *m_message;
    QScrollArea *m_scroll;
    PaperWidget *m_paper;
};

#endif
