// Which commands of the set the virtual printer carries out beyond those the tokenizer decodes
// for every reader, and which it passes over because a sheet of paper would not show them.
#include "virtualprinter/VirtualPrinter.h"

#include "devices/escpos/EscPosCommandTable.h"

#include <QSet>

VirtualPrinter::Handler VirtualPrinter::drawingHandler(const EscPosCommandEntry &entry)
{
    static const QHash<QByteArray, Handler> handlers = {
        {"ESC M", &VirtualPrinter::selectFont},
        {"GS B", &VirtualPrinter::setInverse},
        {"ESC {", &VirtualPrinter::setUpsideDown},
        {"ESC V", &VirtualPrinter::setClockwise},
        {"ESC SP", &VirtualPrinter::setRightSpacing},
        {"ESC D", &VirtualPrinter::setTabStops},
        {"HT", &VirtualPrinter::horizontalTab},
        {"ESC $", &VirtualPrinter::absolutePosition},
        {"ESC \\", &VirtualPrinter::relativePosition},
        {"ESC *", &VirtualPrinter::printBitImage},
        {"GS ( L", &VirtualPrinter::graphics},
        {"GS 8 L", &VirtualPrinter::graphics},
        {"GS *", &VirtualPrinter::defineDownloadedImage},
        {"GS /", &VirtualPrinter::printDownloadedImage},
        {"FS q", &VirtualPrinter::defineNvImages},
        {"FS p", &VirtualPrinter::printNvImage},
    };
    return handlers.value(QByteArray(entry.name), nullptr);
}

VirtualPrinter::Treatment VirtualPrinter::treatmentOf(const EscPosCommandEntry &entry)
{
    // Status and identity queries, real-time status, the automatic status back, the paper
    // sensors and panel buttons, the peripheral selected, the maintenance counters, how the
    // printer recovers: a printer answers or remembers them and prints nothing.
    static const QSet<QByteArray> silent = {
        "DLE EOT", "DLE ENQ", "ESC =", "ESC c", "ESC u", "ESC v", "GS ( D", "GS ( E",
        "GS ( H",  "GS I",    "GS a",  "GS g",  "GS j",  "GS r",  "GS z",   "FS ( e",
    };
    if (entry.kind == EscPosCommand::Kind::CarriageReturn)
        return Treatment::Silent; // printers ignore CR in their default mode
    if (entry.kind != EscPosCommand::Kind::Other || drawingHandler(entry))
        return Treatment::Drawn;
    return silent.contains(QByteArray(entry.name)) ? Treatment::Silent : Treatment::Marked;
}
