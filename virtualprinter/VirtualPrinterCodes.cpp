// The QR codes, PDF417 symbols and barcodes on the virtual printer's paper.

#include "virtualprinter/VirtualPrinter.h"

#include "devices/escpos/EscPosCodeCommand.h"

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
        placeHri(drawing, x + width / 2);
    PaperImage image;
    image.x = x;
    image.top = m_y;
    image.dots = drawing.dots;
    m_y += image.dots.height();
    m_paper.addImage(std::move(image));
    if (drawing.hriBelow)
        placeHri(drawing, x + width / 2);
    m_contentEnd = m_y;
}

// One row of the barcode's characters, in the font GS f chose, centred on `centre` and kept on
// the paper.
void VirtualPrinter::placeHri(const CodeDrawing &drawing, int centre)
{
    PaperRun run;
    run.font = drawing.hriFont == 1 ? PaperRun::Font::B : PaperRun::Font::A;
    const int cell = run.cellWidth();
    const int columns = std::min<int>(int(drawing.hriText.size()), m_paper.width() / cell);
    if (columns == 0)
        return;
    run.text = drawing.hriText.left(columns);
    run.x = std::clamp(centre - columns * cell / 2, 0, m_paper.width() - columns * cell);
    run.top = m_y;
    m_y += run.cellHeight();
    m_paper.addRun(std::move(run));
}
