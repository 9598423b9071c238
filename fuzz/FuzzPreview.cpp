// Feeds arbitrary bytes to the virtual receipt printer and draws every sheet, as
// bristel-preview --split does, and checks what comes out: everything printed lies on the
// paper, every sheet is of bounded length, and the printer always comes to the end.

#include "FuzzSupport.h"

#include "preview/PaperPainter.h"
#include "virtualprinter/VirtualPrinter.h"

#include <QImage>
#include <QPainter>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzzsupport::setUpProcess(argc, argv);
    return 0;
}

namespace {

// Short sheets, so that inputs of a few KiB already cross sheets.
constexpr int sheetLength = 2000;
// What one command can add past a sheet's end: a raster image of the most rows, doubled, and
// the blank paper shown in full.
constexpr int overshoot = VirtualPrinter::maximumImageRows * 2 + VirtualPrinter::maximumBlank + 8 * 24;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray stream = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    // The first byte picks the paper.
    const int width = size > 0 && (data[0] & 1) ? Paper::width80mm : Paper::width58mm;
    static PaperPainter painter(PaperPainter::Style::Dots);
    fuzzsupport::require(painter.isValid(), "every sheet is drawn");
    static QImage canvas(PaperPainter::pictureWidth(Paper(Paper::width80mm)), 256, QImage::Format_RGB32);

    VirtualPrinter printer(stream, width);
    qint64 sheets = 0;
    bool more = true;
    while (more) {
        more = printer.printSheet(sheetLength);
        const Paper sheet = printer.takeSheet();
        ++sheets;
        // Every sheet but an empty one holds something, so the sheets are bounded by the input.
        fuzzsupport::require(sheets <= qint64(size) + 1, "sheets grow with the input, not beyond");
        fuzzsupport::require(sheet.length() >= 0 && sheet.length() <= sheetLength + overshoot,
                             "sheets stay bounded");
        for (const PaperRun &run : sheet.runs()) {
            fuzzsupport::require(run.x >= 0, "text starts on the paper");
            fuzzsupport::require(run.x + run.width() <= width, "text ends on the paper");
            fuzzsupport::require(run.top >= 0 && run.top < sheet.length(), "text lies on its sheet");
        }
        for (const PaperImage &image : sheet.images()) {
            fuzzsupport::require(image.x >= 0 &&
                                     image.x + image.dots.width() * image.widthMultiplier <= width,
                                 "images lie on the paper");
            fuzzsupport::require(image.dots.height() <= VirtualPrinter::maximumImageRows,
                                 "images stay bounded");
        }
        for (const PaperMark &mark : sheet.marks())
            fuzzsupport::require(mark.y >= 0 && mark.y <= sheet.length(), "marks lie on their sheet");
        // The start and the end of the sheet drawn, as a widget shows a part of it.
        QPainter on(&canvas);
        painter.paint(&on, sheet, 0, canvas.height());
        painter.paint(&on, sheet, std::max(0, sheet.length() - canvas.height()), sheet.length());
    }
    fuzzsupport::require(printer.atEnd(), "the whole stream is read");
    return 0;
}
