#ifndef BRISTEL_DEVICES_ESCPOS_ESCPOSCODECOMMAND_H
#define BRISTEL_DEVICES_ESCPOS_ESCPOSCODECOMMAND_H

#include <QByteArrayView>
#include <QString>

struct EscPosCommand;

/*
 * The commands that set up and print QR codes, PDF417 symbols and barcodes, read from a
 * command the tokenizer has already cut out of the stream: GS ( k with its symbol (cn) and
 * function (fn) numbers, and GS h, GS w, GS H, GS f and GS k.  The values are taken as the
 * printer receives them; whether it accepts them is the reader's business, since a printer
 * ignores a setting out of range but keeps the one before.  The data is a view into the
 * command's bytes.
 */
struct EscPosCodeCommand
{
    enum class Kind
    {
        None,                  // not a command of the codes
        QrModel,               // fn 165; value: n1 (49 model 1, 50 model 2, 51 Micro QR)
        QrModuleSize,          // fn 167; value: dots a module
        QrErrorCorrection,     // fn 169; value: 48..51 for L M Q H
        QrStore,               // fn 180; data: the symbol's data
        QrPrint,               // fn 181
        Pdf417Columns,         // fn 065; value: 0 (automatic) or 1..30
        Pdf417Rows,            // fn 066; value: 0 (automatic) or 3..90
        Pdf417ModuleWidth,     // fn 067; value: dots a module, 2..8
        Pdf417RowHeight,       // fn 068; value: module widths a row, 2..8
        Pdf417ErrorCorrection, // fn 069 with m = 48; value: 48..56 for levels 0..8
        Pdf417Options,         // fn 070; value: 0 standard, 1 truncated
        Pdf417Store,           // fn 080; data: the symbol's data
        Pdf417Print,           // fn 081
        SymbolOther,           // any other function of GS ( k (MaxiCode, DataBar, transmitting sizes)
        BarcodeHeight,         // GS h; value: dots
        BarcodeModuleWidth,    // GS w; value: dots a module
        BarcodeHriPosition,    // GS H; value: 0 none, 1 above, 2 below, 3 both (or 48..51)
        BarcodeHriFont,        // GS f; value: 0 font A, 1 font B (or 48, 49)
        Barcode                // GS k; value: m; data: the bars' data, without NUL or length
    };

    // The barcode systems of GS k, in the printer's order (m = 0..6, and m - 65 for 65..73).
    enum class System
    {
        UpcA,
        UpcE,
        Ean13,
        Ean8,
        Code39,
        Itf,
        Codabar,
        Code93,
        Code128,
        Unknown
    };

    Kind kind = Kind::None;
    int value = 0;
    QByteArrayView data;

    static EscPosCodeCommand from(const EscPosCommand &command);
    // The system that GS k's m selects; Unknown for the others (GS1-128, GS1 DataBar, ...).
    static System systemOf(int m);
    // "UPC-A", "UPC-E", "EAN13", "EAN8", "CODE39", "ITF", "CODABAR", "CODE93", "CODE128", as the
    // manuals name them.
    static QString systemName(System system);
    // GS H's value as a word: "none", "above", "below", "both"; empty when out of range.
    static QString hriPositionName(int value);
};

#endif
