#include "PaperWidget.h"

#include <QPaintEvent>
#include <QPainter>

PaperWidget::PaperWidget(QWidget *parent)
    : QWidget(parent), m_paper(Paper::width58mm), m_painter(PaperPainter::Style::Dots)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    resize(sizeHint());
}

void PaperWidget::setPaper(Paper paper)
{
    m_paper = std::move(paper);
    resize(sizeHint());
    updateGeometry();
    update();
}

QSize PaperWidget::sizeHint() const
{
    return {PaperPainter::pictureWidth(m_paper), std::max(m_paper.length(), Paper::cellHeight)};
}

void PaperWidget::paintEvent(QPaintEvent *event)
{
    const QRect exposed = event->rect();
    QPainter painter(this);
    painter.translate(0, exposed.top());
    // Rows cut at the edge of the exposed part are drawn whole and clipped by the painter.
    painter.setClipRect(QRect(0, 0, width(), exposed.height()));
    m_painter.paint(&painter, m_paper, exposed.top(), exposed.bottom() + 1);
}
