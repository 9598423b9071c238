#include "devices/escpos/EscPosCommandTable.h"

#include <algorithm>
#include <array>

using namespace std::string_view_literals;

namespace {

using Kind = EscPosCommand::Kind;
using P = EscPosParameters;

constexpr qsizetype cutOff = -1;

// clang-format off
// One line a command: prefix, name, how its parameters are counted, the count, what it does.
const std::vector<EscPosCommandEntry> table = {
    {"\x09"sv,     "HT",      P::Fixed,            0, Kind::Other},
    {"\x0a"sv,     "LF",      P::Fixed,            0, Kind::LineFeed},
    {"\x0c"sv,     "FF",      P::Fixed,            0, Kind::Other},
    {"\x0d"sv,     "CR",      P::Fixed,            0, Kind::CarriageReturn},
    {"\x18"sv,     "CAN",     P::Fixed,            0, Kind::Other},
    // Real-time commands, which the printer acts on as they arrive.
    {"\x10\x04"sv, "DLE EOT", P::RealTimeStatus,   0, Kind::Other},
    {"\x10\x05"sv, "DLE ENQ", P::Fixed,            1, Kind::Other},
    {"\x10\x14"sv, "DLE DC4", P::RealTimeRequest,  0, Kind::Other},
    {"\x1b\x0c"sv, "ESC FF",  P::Fixed,            0, Kind::Other},
    {"\x1b "sv,    "ESC SP",  P::Fixed,            1, Kind::Other},
    {"\x1b!"sv,    "ESC !",   P::Fixed,            1, Kind::PrintMode},
    {"\x1b$"sv,    "ESC $",   P::Fixed,            2, Kind::Other},
    {"\x1b%"sv,    "ESC %",   P::Fixed,            1, Kind::Other},
    {"\x1b&"sv,    "ESC &",   P::UserCharacters,   0, Kind::Other},
    {"\x1b(A"sv,   "ESC ( A", P::CountedLowHigh,   0, Kind::Other},
    {"\x1b(Y"sv,   "ESC ( Y", P::CountedLowHigh,   0, Kind::Other},
    {"\x1b("sv,    "ESC (",   P::CountedLowHigh,   1, Kind::Other},
    {"\x1b*"sv,    "ESC *",   P::BitImage,         0, Kind::Other},
    {"\x1b-"sv,    "ESC -",   P::Fixed,            1, Kind::Underline},
    {"\x1b" "2"sv, "ESC 2",   P::Fixed,            0, Kind::DefaultLineSpacing},
    {"\x1b" "3"sv, "ESC 3",   P::Fixed,            1, Kind::LineSpacing},
    {"\x1b<"sv,    "ESC <",   P::Fixed,            0, Kind::Other},
    {"\x1b="sv,    "ESC =",   P::Fixed,            1, Kind::Other},
    {"\x1b?"sv,    "ESC ?",   P::Fixed,            1, Kind::Other},
    {"\x1b@"sv,    "ESC @",   P::Fixed,            0, Kind::Initialize},
    {"\x1b" "B"sv, "ESC B",   P::AscendingList,   16, Kind::Other},
    {"\x1b" "D"sv, "ESC D",   P::AscendingList,   32, Kind::Other},
    {"\x1b" "E"sv, "ESC E",   P::Fixed,            1, Kind::Emphasis},
    {"\x1bG"sv,    "ESC G",   P::Fixed,            1, Kind::DoubleStrike},
    {"\x1bJ"sv,    "ESC J",   P::Fixed,            1, Kind::FeedDots},
    {"\x1bL"sv,    "ESC L",   P::Fixed,            0, Kind::Other},
    {"\x1bM"sv,    "ESC M",   P::Fixed,            1, Kind::Other},
    {"\x1bR"sv,    "ESC R",   P::Fixed,            1, Kind::Other},
    {"\x1bS"sv,    "ESC S",   P::Fixed,            0, Kind::Other},
    {"\x1bT"sv,    "ESC T",   P::Fixed,            1, Kind::Other},
    {"\x1bU"sv,    "ESC U",   P::Fixed,            1, Kind::Other},
    {"\x1bV"sv,    "ESC V",   P::Fixed,            1, Kind::Other},
    {"\x1bW"sv,    "ESC W",   P::Fixed,            8, Kind::Other},
    {"\x1b\\"sv,   "ESC \\",  P::Fixed,            2, Kind::Other},
    {"\x1b" "a"sv, "ESC a",   P::Fixed,            1, Kind::Justification},
    {"\x1b" "c"sv, "ESC c",   P::Fixed,            2, Kind::Other},
    {"\x1b" "d"sv, "ESC d",   P::Fixed,            1, Kind::FeedLines},
    {"\x1b" "e"sv, "ESC e",   P::Fixed,            1, Kind::Other},
    {"\x1bi"sv,    "ESC i",   P::Fixed,            0, Kind::Cut},
    {"\x1bm"sv,    "ESC m",   P::Fixed,            0, Kind::Cut},
    {"\x1bp"sv,    "ESC p",   P::Fixed,            3, Kind::DrawerPulse},
    {"\x1br"sv,    "ESC r",   P::Fixed,            1, Kind::Other},
    {"\x1bt"sv,    "ESC t",   P::Fixed,            1, Kind::CodeTable},
    {"\x1bu"sv,    "ESC u",   P::Fixed,            1, Kind::Other},
    {"\x1bv"sv,    "ESC v",   P::Fixed,            0, Kind::Other},
    {"\x1b{"sv,    "ESC {",   P::Fixed,            1, Kind::Other},
    {"\x1d!"sv,    "GS !",    P::Fixed,            1, Kind::CharacterSize},
    {"\x1d$"sv,    "GS $",    P::Fixed,            2, Kind::Other},
    {"\x1d(A"sv,   "GS ( A",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(C"sv,   "GS ( C",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(D"sv,   "GS ( D",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(E"sv,   "GS ( E",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(H"sv,   "GS ( H",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(K"sv,   "GS ( K",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(L"sv,   "GS ( L",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(M"sv,   "GS ( M",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(N"sv,   "GS ( N",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(P"sv,   "GS ( P",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(Q"sv,   "GS ( Q",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(k"sv,   "GS ( k",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1d(z"sv,   "GS ( z",  P::CountedLowHigh,   0, Kind::Other},
    // Every other function letter of GS ( is counted the same way.
    {"\x1d("sv,    "GS (",    P::CountedLowHigh,   1, Kind::Other},
    {"\x1d*"sv,    "GS *",    P::DownloadedImage,  0, Kind::Other},
    {"\x1d/"sv,    "GS /",    P::Fixed,            1, Kind::Other},
    {"\x1d:"sv,    "GS :",    P::Fixed,            0, Kind::Other},
    {"\x1d" "8L"sv, "GS 8 L", P::CountedFourBytes, 0, Kind::Other},
    {"\x1d" "B"sv, "GS B",    P::Fixed,            1, Kind::Other},
    {"\x1d" "C"sv, "GS C",    P::Counter,          0, Kind::Other},
    {"\x1d" "D"sv, "GS D",    P::WindowsBitmap,    0, Kind::Other},
    {"\x1d" "E"sv, "GS E",    P::Fixed,            1, Kind::Other},
    {"\x1dH"sv,    "GS H",    P::Fixed,            1, Kind::Other},
    {"\x1dI"sv,    "GS I",    P::Fixed,            1, Kind::Other},
    {"\x1dL"sv,    "GS L",    P::Fixed,            2, Kind::Other},
    {"\x1dP"sv,    "GS P",    P::Fixed,            2, Kind::Other},
    {"\x1dQ0"sv,   "GS Q 0",  P::VariableImage,    0, Kind::Other},
    {"\x1dT"sv,    "GS T",    P::Fixed,            1, Kind::Other},
    {"\x1dV"sv,    "GS V",    P::Cut,              0, Kind::Cut},
    {"\x1dW"sv,    "GS W",    P::Fixed,            2, Kind::Other},
    {"\x1d\\"sv,   "GS \\",   P::Fixed,            2, Kind::Other},
    {"\x1d^"sv,    "GS ^",    P::Fixed,            3, Kind::Other},
    {"\x1d" "a"sv, "GS a",    P::Fixed,            1, Kind::Other},
    {"\x1d" "b"sv, "GS b",    P::Fixed,            1, Kind::Other},
    {"\x1d" "c"sv, "GS c",    P::Fixed,            0, Kind::Other},
    {"\x1d" "f"sv, "GS f",    P::Fixed,            1, Kind::Other},
    {"\x1dg"sv,    "GS g",    P::Fixed,            4, Kind::Other},
    {"\x1dh"sv,    "GS h",    P::Fixed,            1, Kind::Other},
    {"\x1dj"sv,    "GS j",    P::Fixed,            1, Kind::Other},
    {"\x1dk"sv,    "GS k",    P::BarcodeData,      0, Kind::Other},
    {"\x1dr"sv,    "GS r",    P::Fixed,            1, Kind::Other},
    {"\x1dv0"sv,   "GS v 0",  P::RasterImage,      0, Kind::RasterImage},
    {"\x1dw"sv,    "GS w",    P::Fixed,            1, Kind::Other},
    {"\x1dz"sv,    "GS z",    P::Fixed,            3, Kind::Other},
    // Kanji commands.
    {"\x1c!"sv,    "FS !",    P::Fixed,            1, Kind::Other},
    {"\x1c&"sv,    "FS &",    P::Fixed,            0, Kind::Other},
    {"\x1c(A"sv,   "FS ( A",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1c(C"sv,   "FS ( C",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1c(E"sv,   "FS ( E",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1c(L"sv,   "FS ( L",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1c(e"sv,   "FS ( e",  P::CountedLowHigh,   0, Kind::Other},
    {"\x1c("sv,    "FS (",    P::CountedLowHigh,   1, Kind::Other},
    {"\x1c-"sv,    "FS -",    P::Fixed,            1, Kind::Other},
    {"\x1c."sv,    "FS .",    P::Fixed,            0, Kind::Other},
    // c1 c2 and the 72 bytes of a 24 x 24 dot character.
    {"\x1c" "2"sv, "FS 2",    P::Fixed,           74, Kind::Other},
    {"\x1c?"sv,    "FS ?",    P::Fixed,            2, Kind::Other},
    {"\x1c" "C"sv, "FS C",    P::Fixed,            1, Kind::Other},
    {"\x1cS"sv,    "FS S",    P::Fixed,            2, Kind::Other},
    {"\x1cW"sv,    "FS W",    P::Fixed,            1, Kind::Other},
    {"\x1cg"sv,    "FS g",    P::NvMemory,         0, Kind::Other},
    {"\x1cp"sv,    "FS p",    P::Fixed,            2, Kind::Other},
    {"\x1cq"sv,    "FS q",    P::NvImages,         0, Kind::Other},
};
// clang-format on

// The commands by their first byte, the longest prefix first.
using Index = std::array<std::vector<const EscPosCommandEntry *>, 256>;

Index buildIndex()
{
    Index index;
    for (const EscPosCommandEntry &entry : table)
        index[static_cast<unsigned char>(entry.prefix.front())].push_back(&entry);
    for (auto &entries : index) {
        std::stable_sort(entries.begin(), entries.end(),
                         [](const EscPosCommandEntry *a, const EscPosCommandEntry *b) {
                             return a->prefix.size() > b->prefix.size();
                         });
    }
    return index;
}

const Index &index()
{
    static const Index built = buildIndex();
    return built;
}

// The parameter bytes, read without ever looking past the end of the stream.
class Parameters
{
public:
    explicit Parameters(QByteArrayView bytes) : m_bytes(bytes) {}

    bool has(qsizetype count) const { return m_bytes.size() >= count; }
    unsigned at(qsizetype index) const { return static_cast<unsigned char>(m_bytes[index]); }
    unsigned word(qsizetype index) const { return at(index) | at(index + 1) << 8; }
    // `length` when the stream holds that many bytes, else cutOff.
    qsizetype upTo(qsizetype length) const { return has(length) ? length : cutOff; }

private:
    QByteArrayView m_bytes;
};

qsizetype countedLength(const Parameters &p, int leading, int countBytes)
{
    if (!p.has(leading + countBytes))
        return cutOff;
    qsizetype data = 0;
    for (int i = countBytes - 1; i >= 0; --i)
        data = data * 256 + p.at(leading + i);
    return p.upTo(leading + countBytes + data);
}

// A printer ends the list at NUL, at a value not above the one before (which it then reads
// as ordinary data) or after the most values it takes.
qsizetype ascendingListLength(const Parameters &p, int most)
{
    unsigned previous = 0;
    for (qsizetype i = 0;; ++i) {
        if (!p.has(i + 1))
            return cutOff;
        const unsigned value = p.at(i);
        if (value == 0)
            return i + 1;
        if (i == most || (i > 0 && value <= previous))
            return i;
        previous = value;
    }
}

// The NUL-ended forms take printable characters only; any other byte ends the data and is
// read as ordinary data.
qsizetype barcodeLength(const Parameters &p)
{
    if (!p.has(1))
        return cutOff;
    const unsigned m = p.at(0);
    if (m >= 65 && m <= 79)
        return p.has(2) ? p.upTo(2 + p.at(1)) : cutOff;
    if (m > 6)
        return 1;
    for (qsizetype i = 1;; ++i) {
        if (!p.has(i + 1))
            return cutOff;
        const unsigned byte = p.at(i);
        if (byte == 0)
            return i + 1;
        if (byte < 0x20 || byte > 0x7e)
            return i;
    }
}

qsizetype bitImageLength(const Parameters &p)
{
    if (!p.has(3))
        return cutOff;
    const unsigned m = p.at(0);
    const qsizetype columns = p.word(1);
    if (m == 0 || m == 1)
        return p.upTo(3 + columns);
    if (m == 32 || m == 33)
        return p.upTo(3 + 3 * columns);
    return 3;
}

// m xL xH yL yH, then x * y * `bytesPerUnit` bytes.
qsizetype imageLength(const Parameters &p, qsizetype bytesPerUnit)
{
    if (!p.has(5))
        return cutOff;
    return p.upTo(5 + qsizetype(p.word(1)) * p.word(3) * bytesPerUnit);
}

qsizetype cutLength(const Parameters &p)
{
    if (!p.has(1))
        return cutOff;
    switch (p.at(0)) {
    case 65:
    case 66:
    case 97:
    case 98:
    case 103:
    case 104:
        return p.upTo(2);
    default:
        return 1;
    }
}

qsizetype realTimeStatusLength(const Parameters &p)
{
    if (!p.has(1))
        return cutOff;
    return p.at(0) == 7 || p.at(0) == 8 ? p.upTo(2) : 1;
}

qsizetype realTimeRequestLength(const Parameters &p)
{
    if (!p.has(1))
        return cutOff;
    switch (p.at(0)) {
    case 1: // pulse: m t
    case 2: // power off: a b
        return p.upTo(3);
    case 3: // buzzer: a n r t1 t2
        return p.upTo(6);
    case 7: // status: m
        return p.upTo(2);
    case 8: // clear the buffers: d1 ... d7
        return p.upTo(8);
    default:
        return 1;
    }
}

qsizetype userCharactersLength(const Parameters &p)
{
    if (!p.has(3))
        return cutOff;
    const qsizetype rows = p.at(0);
    const unsigned first = p.at(1);
    const unsigned last = p.at(2);
    qsizetype length = 3;
    for (unsigned character = first; character <= last; ++character) {
        if (!p.has(length + 1))
            return cutOff;
        length += 1 + rows * p.at(length);
    }
    return p.upTo(length);
}

qsizetype downloadedImageLength(const Parameters &p)
{
    if (!p.has(2))
        return cutOff;
    return p.upTo(2 + qsizetype(p.at(0)) * p.at(1) * 8);
}

qsizetype nvImagesLength(const Parameters &p)
{
    if (!p.has(1))
        return cutOff;
    const unsigned images = p.at(0);
    qsizetype length = 1;
    for (unsigned i = 0; i < images; ++i) {
        if (!p.has(length + 4))
            return cutOff;
        length += 4 + qsizetype(p.word(length)) * p.word(length + 2) * 8;
    }
    return p.upTo(length);
}

// The function byte is written as a digit in the manuals; the number itself is taken too.
bool isFunction(unsigned byte, unsigned digit)
{
    return byte == digit || byte == digit - '0';
}

qsizetype nvMemoryLength(const Parameters &p)
{
    if (!p.has(1))
        return cutOff;
    if (isFunction(p.at(0), '1'))
        return countedLength(p, 6, 2);
    return isFunction(p.at(0), '2') ? p.upTo(8) : 1;
}

// The bitmap's own header ("BM" and its size) says how long it is.
qsizetype windowsBitmapLength(const Parameters &p)
{
    if (!p.has(2))
        return cutOff;
    const unsigned function = p.at(1);
    const qsizetype header = function == 'C' ? 7 : function == 'S' ? 5 : 2;
    if (!p.has(header + 6))
        return header == 2 ? 2 : cutOff;
    if (p.at(header) != 'B' || p.at(header + 1) != 'M')
        return header;
    const qsizetype size = p.word(header + 2) | qsizetype(p.word(header + 4)) << 16;
    return size < 14 ? header : p.upTo(header + size);
}

// GS C ; sa ; sb ; sn ; sr ; sc ; spells five numbers out in digits, each ended by ';'.
qsizetype counterLength(const Parameters &p)
{
    if (!p.has(1))
        return cutOff;
    const unsigned function = p.at(0);
    if (isFunction(function, '0') || isFunction(function, '2'))
        return p.upTo(3);
    if (isFunction(function, '1'))
        return p.upTo(7);
    if (function != ';')
        return 1;
    constexpr qsizetype longest = 1 + 5 * 6;
    int separators = 0;
    for (qsizetype i = 1; i < longest; ++i) {
        if (!p.has(i + 1))
            return cutOff;
        if (p.at(i) == ';' && ++separators == 5)
            return i + 1;
    }
    return 1;
}

} // namespace

namespace escposcommands {

const std::vector<EscPosCommandEntry> &all()
{
    return table;
}

Match commandAt(QByteArrayView bytes)
{
    Match match;
    if (bytes.isEmpty())
        return match;
    const std::string_view available(bytes.data(), size_t(bytes.size()));
    for (const EscPosCommandEntry *entry : index()[static_cast<unsigned char>(bytes.front())]) {
        if (available.substr(0, entry->prefix.size()) == entry->prefix)
            return {entry, false};
        if (available.size() < entry->prefix.size() && entry->prefix.substr(0, available.size()) == available)
            match.cutOff = true;
    }
    return match;
}

qsizetype parameterLength(const EscPosCommandEntry &entry, QByteArrayView parameters)
{
    const Parameters p(parameters);
    switch (entry.parameters) {
    case P::Fixed:
        return p.upTo(entry.count);
    case P::CountedLowHigh:
        return countedLength(p, entry.count, 2);
    case P::CountedFourBytes:
        return countedLength(p, 0, 4);
    case P::AscendingList:
        return ascendingListLength(p, entry.count);
    case P::BarcodeData:
        return barcodeLength(p);
    case P::BitImage:
        return bitImageLength(p);
    case P::RasterImage:
        return imageLength(p, 1);
    case P::Cut:
        return cutLength(p);
    case P::RealTimeStatus:
        return realTimeStatusLength(p);
    case P::RealTimeRequest:
        return realTimeRequestLength(p);
    case P::UserCharacters:
        return userCharactersLength(p);
    case P::DownloadedImage:
        return downloadedImageLength(p);
    case P::VariableImage:
        return imageLength(p, 1);
    case P::NvImages:
        return nvImagesLength(p);
    case P::NvMemory:
        return nvMemoryLength(p);
    case P::WindowsBitmap:
        return windowsBitmapLength(p);
    case P::Counter:
        return counterLength(p);
    }
    return 0;
}

} // namespace escposcommands
