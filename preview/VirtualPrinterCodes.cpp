// The QR codes, PDF417 symbols and barcodes on the virtual printer's paper.

#include "preview/VirtualPrinter.h"

#include "backend/EscPosCodeCommand.h"

#include <algorithm>

bool VirtualPrinter::printCode(const EscPosCommand &command)
{
    const EscPosCodeCommand code = EscPosCodeCommand::from(command);
    if (code.kind == EscPosCodeCommand::Kind::None || code.kind == EscPosCodeCommand::Kind::SymbolOther)
        return false;
    CodeDrawing drawing;
    if (!m_codes.execute(code, m_paper.width(), &drawing))
        return true;
    if (!drawing.refusal.isEmpty()) {
        notDrawn(command, drawing.refusal);
        return true;
    }
    // A code starts on a row of its own, as a raster image does.
    printRow(0);
    noteSkippedBlank();
    placeCode(drawing);
    return true;
}

// The symbol at the justification in force, its characters centred above or below it.
void VirtualPrinter::placeCode(const CodeDrawing &drawing)
{
    const int width = drawing.dots.width();
    int x = 0;
    if (m_justification == 1)
        x = (m_paper.width() - width) / 2;
    else if (m_justification == 2)
        x = m_paper.width() - width;
    if (drawing.hriAbove)
        placeHri(drawing.hriText, x + width / 2);
    PaperImage image;
    image.x = x;
    image.top = m_y;
    image.dots = drawing.dots;
    m_y += image.dots.height();
    m_paper.addImage(std::move(image));
    if (drawing.hriBelow)
        placeHri(drawing.hriText, x + width / 2);
    m_contentEnd = m_y;
}

// One row of characters centred on `centre`, kept on the paper.
void VirtualPrinter::placeHri(const QString &text, int centre)
{
    const int columns = std::min<int>(int(text.size()), m_paper.width() / Paper::cellWidth);
    if (columns == 0)
        return;
    PaperRun run;
    run.text = text.left(columns);
    run.x =
        std::clamp(centre - columns * Paper::cellWidth / 2, 0, m_paper.width() - columns * Paper::cellWidth);
    run.top = m_y;
    m_paper.addRun(std::move(run));
    m_y += Paper::cellHeight;
}
