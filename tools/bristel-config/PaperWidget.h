#ifndef BRISTEL_CONFIGEDITOR_PAPERWIDGET_H
#define BRISTEL_CONFIGEDITOR_PAPERWIDGET_H

#include "preview/PaperPainter.h"
#include "virtualprinter/Paper.h"

#include <QWidget>

/*
 * Shows a sheet of paper dot for dot, one dot a pixel, as PNG previews draw it; put it in a
 * scroll area for long receipts.  Only the part that is exposed is drawn.
 */
class PaperWidget : public QWidget
{
    Q_OBJECT

public:
    explicit PaperWidget(QWidget *parent = nullptr);

    void setPaper(Paper paper);
    const Paper &paper() const { return m_paper; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Paper m_paper;
    PaperPainter m_painter;
};

#endif
