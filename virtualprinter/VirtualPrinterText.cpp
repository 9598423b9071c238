// The commands of the virtual printer that choose the font, the colours and the turn of the
// characters and move the print position along the row.
#include "virtualprinter/VirtualPrinter.h"

#include "devices/escpos/EscPosCommandTable.h"

#include <algorithm>

namespace {

// The parameter bytes after the command's own bytes.
unsigned parameter(const EscPosCommand &command, qsizetype index)
{
    const qsizetype at = qsizetype(command.entry->prefix.size()) + index;
    return at < command.bytes.size() ? static_cast<unsigned char>(command.bytes[at]) : 0;
}

// Printers take both 0/1 and the digits '0'/'1' for a switch.
bool switchedOn(unsigned value)
{
    return value == 1 || value == '1';
}

// Printers set tab stops every eight characters of Font A when they start.
constexpr int defaultTabColumns = 8;

} // namespace

PaperRun VirtualPrinter::styledRun() const
{
    PaperRun run;
    run.emphasis = m_style.emphasis;
    run.underline = m_style.underline;
    run.widthMultiplier = m_style.widthMultiplier;
    run.heightMultiplier = m_style.heightMultiplier;
    run.font = m_style.font;
    run.inverse = m_style.inverse;
    run.turn = m_style.clockwise ? PaperRun::Turn::Clockwise : PaperRun::Turn::None;
    run.rightSpacing = m_style.rightSpacing;
    return run;
}

void VirtualPrinter::selectFont(const EscPosCommand &command)
{
    const unsigned font = parameter(command, 0);
    if (font == 0 || font == '0' || switchedOn(font)) {
        m_style.font = switchedOn(font) ? PaperRun::Font::B : PaperRun::Font::A;
        return;
    }
    // Fonts C to E and the special fonts exist on some models only; Font A stands in.
    m_style.font = PaperRun::Font::A;
    notDrawn(command, QStringLiteral("ESC M %1 (font drawn as Font A)").arg(font));
}

void VirtualPrinter::setInverse(const EscPosCommand &command)
{
    m_style.inverse = parameter(command, 0) & 1;
}

void VirtualPrinter::setUpsideDown(const EscPosCommand &command)
{
    m_upsideDown = parameter(command, 0) & 1;
}

// ESC V 1 and 2 differ only in the spacing of dots the head leaves between turned characters.
void VirtualPrinter::setClockwise(const EscPosCommand &command)
{
    const unsigned mode = parameter(command, 0);
    m_style.clockwise = switchedOn(mode) || mode == 2 || mode == '2';
}

void VirtualPrinter::setRightSpacing(const EscPosCommand &command)
{
    m_style.rightSpacing = int(parameter(command, 0));
}

void VirtualPrinter::resetTabStops()
{
    m_tabStops.clear();
    for (int stop = defaultTabColumns * Paper::cellWidth; stop < m_paper.width();
         stop += defaultTabColumns * Paper::cellWidth)
        m_tabStops.push_back(stop);
}

// The stops are counted in characters of the style in force when they are set; a list
// without values clears them all.
void VirtualPrinter::setTabStops(const EscPosCommand &command)
{
    m_tabStops.clear();
    const int width = characterAdvance();
    const qsizetype count = command.bytes.size() - qsizetype(command.entry->prefix.size());
    for (qsizetype i = 0; i < count; ++i) {
        const unsigned column = parameter(command, i);
        if (column == 0)
            break;
        m_tabStops.push_back(int(column) * width);
    }
}

// HT goes to the next stop; with no stop ahead it does nothing, and a stop beyond the paper
// ends the row's room, so that the next character starts a new row.
void VirtualPrinter::horizontalTab(const EscPosCommand &)
{
    const auto next = std::upper_bound(m_tabStops.begin(), m_tabStops.end(), m_rowWidth);
    if (next != m_tabStops.end())
        moveTo(std::min(*next, m_paper.width()));
}

void VirtualPrinter::absolutePosition(const EscPosCommand &command)
{
    const int x = int(parameter(command, 0) | parameter(command, 1) << 8);
    if (x <= m_paper.width())
        moveTo(x);
}

void VirtualPrinter::relativePosition(const EscPosCommand &command)
{
    const int step = int(qint16(quint16(parameter(command, 0) | parameter(command, 1) << 8)));
    const int x = m_rowWidth + step;
    if (x >= 0 && x <= m_paper.width())
        moveTo(x);
}

// A move sets where the next character goes; the row keeps what it holds.
void VirtualPrinter::moveTo(int x)
{
    if (m_row.empty() && m_rowImages.empty()) {
        m_rowJustification = m_justification;
        m_rowUpsideDown = m_upsideDown;
    }
    m_rowWidth = x;
}

// Upside down, the printer prints the row turned half a turn about its middle: what was at
// the left comes at the right, and the bottom line of the row becomes its top.
void VirtualPrinter::turnRow(int tallest)
{
    const int width = m_paper.width();
    for (PaperRun &run : m_row) {
        run.x = width - run.x - run.width();
        run.top = 2 * m_y + tallest - run.top - run.height();
        run.turn = PaperRun::Turn::UpsideDown;
    }
    for (PaperImage &image : m_rowImages) {
        const int imageHeight = image.dots.height() * image.heightMultiplier;
        image.x = width - image.x - image.dots.width() * image.widthMultiplier;
        image.top = 2 * m_y + tallest - image.top - imageHeight;
        image.dots = image.dots.mirrored(true, true);
    }
}
