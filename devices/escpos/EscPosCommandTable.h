#ifndef BRISTEL_DEVICES_ESCPOS_ESCPOSCOMMANDTABLE_H
#define BRISTEL_DEVICES_ESCPOS_ESCPOSCOMMANDTABLE_H

#include "devices/escpos/EscPosTokenizer.h"

#include <QByteArrayView>

#include <string_view>
#include <vector>

/*
 * Every command of the ESC/POS command set (Epson's TM receipt printers and the many printers
 * that copy them), each with the bytes that start it, its name as the manuals write it
 * ("GS ( k") and how its parameters are counted.  A printer swallows a command's parameters
 * whether or not it can carry the command out; so must every reader of a foreign stream, or
 * parameter bytes come out as stray characters.  The tokenizer reads commands by this table,
 * and the listing and the virtual printer name them by it.
 */
enum class EscPosParameters
{
    Fixed,            // `count` bytes
    CountedLowHigh,   // `count` bytes, then pL pH, then pL + 256 pH bytes (GS ( x, ESC ( x, FS ( x)
    CountedFourBytes, // p1 p2 p3 p4, then p1 + 256 p2 + 65536 p3 + 16777216 p4 bytes (GS 8 L)
    AscendingList,    // at most `count` rising values ended by NUL (ESC D, ESC B)
    BarcodeData,      // GS k: m 0..6 and data ended by NUL, or m 65..79, n and n bytes
    BitImage,         // ESC *: m nL nH, then n columns of one byte (8-dot) or three (24-dot)
    RasterImage,      // GS v 0: m xL xH yL yH, then x * y bytes
    Cut,              // GS V: m, and n for the feeding forms 65, 66, 97, 98, 103, 104
    RealTimeStatus,   // DLE EOT: n, and a for n = 7, 8
    RealTimeRequest,  // DLE DC4: fn, then what the function takes
    UserCharacters,   // ESC &: y c1 c2, then for each character x and y * x bytes
    DownloadedImage,  // GS *: x y, then x * y * 8 bytes
    VariableImage,    // GS Q 0: m xL xH yL yH, then x * y bytes
    NvImages,         // FS q: n, then n times xL xH yL yH and x * y * 8 bytes
    NvMemory,         // FS g: fn m a1 a2 a3 a4 nL nH, and n bytes when writing (fn 1)
    WindowsBitmap,    // GS D: m fn a [kc1 kc2] b c, then a BMP file as long as its header says
    Counter           // GS C: the counter's settings, by the byte after C
};

struct EscPosCommandEntry
{
    std::string_view prefix; // the bytes that start the command
    const char *name;        // as the manuals write it: "ESC t", "GS ( k", "DLE DC4"
    EscPosParameters parameters;
    int count;                // see EscPosParameters
    EscPosCommand::Kind kind; // Other for a command the readers only step over
};

namespace escposcommands {

// The whole table, in no particular order.
const std::vector<EscPosCommandEntry> &all();

struct Match
{
    const EscPosCommandEntry *entry = nullptr; // null: no command starts here
    bool cutOff = false;                       // the stream ends inside what may be a command's prefix
};

// The command whose prefix starts `bytes`, the longest one that does.
Match commandAt(QByteArrayView bytes);

// How many parameter bytes follow the prefix in `parameters` (the stream after the prefix);
// -1 when the stream ends before they do.
qsizetype parameterLength(const EscPosCommandEntry &entry, QByteArrayView parameters);

} // namespace escposcommands

#endif
