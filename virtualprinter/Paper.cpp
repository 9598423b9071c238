#include "virtualprinter/Paper.h"

#include "devices/escpos/EscPosPaperFamily.h"

#include <QStringList>

#include <algorithm>
#include <map>

int PaperRun::cellWidth() const
{
    return font == Font::B ? Paper::fontBCellWidth : Paper::cellWidth;
}

int PaperRun::cellHeight() const
{
    return font == Font::B ? Paper::fontBCellHeight : Paper::cellHeight;
}

int PaperRun::advance() const
{
    if (turn == Turn::Clockwise)
        return cellHeight() * heightMultiplier + rightSpacing * widthMultiplier;
    return (cellWidth() + rightSpacing) * widthMultiplier;
}

int PaperRun::height() const
{
    return turn == Turn::Clockwise ? cellWidth() * widthMultiplier : cellHeight() * heightMultiplier;
}

int Paper::dotsPerMetre() const
{
    const EscPosPaperFamily *family = EscPosPaperFamily::byDots(m_width);
    return family ? family->dotsPerMetre : dotsPerMillimetre * 1000;
}

int Paper::dotsPerInch() const
{
    const EscPosPaperFamily *family = EscPosPaperFamily::byDots(m_width);
    return family ? family->dotsPerInch : dotsPerMillimetre * 254 / 10;
}

std::vector<int> Paper::cutPositions() const
{
    std::vector<int> cuts;
    for (const PaperMark &mark : m_marks) {
        if (mark.kind == PaperMark::Kind::FullCut || mark.kind == PaperMark::Kind::PartialCut)
            cuts.push_back(mark.y);
    }
    return cuts;
}

PaperMark *Paper::sameMark(const PaperMark &mark)
{
    for (auto it = m_marks.rbegin(); it != m_marks.rend() && it->y == mark.y; ++it) {
        if (it->kind == mark.kind && it->label == mark.label)
            return &*it;
    }
    return nullptr;
}

int Paper::marksAt(int y) const
{
    int count = 0;
    for (auto it = m_marks.rbegin(); it != m_marks.rend() && it->y == y; ++it)
        ++count;
    return count;
}

namespace {

// Runs of one printed row share the bottom of their cells.
std::map<int, std::vector<const PaperRun *>> runsByRow(const std::vector<PaperRun> &runs)
{
    std::map<int, std::vector<const PaperRun *>> rows;
    for (const PaperRun &run : runs)
        rows[run.top + run.height()].push_back(&run);
    for (auto &[bottom, row] : rows) {
        std::sort(row.begin(), row.end(), [](const PaperRun *a, const PaperRun *b) { return a->x < b->x; });
    }
    return rows;
}

} // namespace

QStringList Paper::rowTexts() const
{
    QStringList texts;
    for (const auto &[bottom, row] : runsByRow(m_runs)) {
        QString text;
        int x = row.front()->x;
        for (const PaperRun *run : row) {
            if (run->x > x)
                text += QString((run->x - x) / cellWidth, QLatin1Char(' '));
            text += run->text;
            x = run->x + run->width();
        }
        texts << text;
    }
    return texts;
}

int Paper::widestRow() const
{
    int widest = 0;
    for (const auto &[bottom, row] : runsByRow(m_runs)) {
        const PaperRun *last = row.back();
        const int right = last->x + last->width();
        widest = std::max(widest, right - row.front()->x);
    }
    return widest;
}
