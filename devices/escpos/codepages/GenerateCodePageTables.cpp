// Writes the receipt printers' character tables as C++ source, each read from the C library's
// iconv converter for it: no table is typed by hand.
//   GenerateCodePageTables <output.cpp>

#include <array>
#include <cstdio>
#include <iconv.h>

namespace {

struct Page
{
    const char *name;
    const char *iconvName;
    int epsonNumber;
};

// Epson's ESC t numbers, as the TM series documents them.
constexpr Page pages[] = {
    {"PC437", "CP437", 0},  {"PC850", "CP850", 2},  {"PC852", "CP852", 18},
    {"PC858", "CP858", 19}, {"PC860", "CP860", 3},  {"PC863", "CP863", 4},
    {"PC865", "CP865", 5},  {"PC866", "CP866", 17}, {"WPC1252", "CP1252", 16},
};

// The characters the 128 upper bytes print; 0 where the table has none.  The bytes go through
// in as few calls as possible: a table is single-byte, so every byte converted gives one
// character, and a byte iconv refuses is stepped over.
bool decodeUpperBytes(iconv_t converter, std::array<char32_t, 128> *characters)
{
    std::array<char, 128> bytes;
    for (int i = 0; i < 128; ++i)
        bytes[i] = static_cast<char>(0x80 + i);
    size_t next = 0;
    while (next < bytes.size()) {
        char *inPointer = bytes.data() + next;
        size_t inLeft = bytes.size() - next;
        char *outPointer = reinterpret_cast<char *>(characters->data() + next);
        size_t outLeft = inLeft * sizeof(char32_t);
        iconv(converter, nullptr, nullptr, nullptr, nullptr);
        const bool stopped =
            iconv(converter, &inPointer, &inLeft, &outPointer, &outLeft) == static_cast<size_t>(-1);
        const size_t converted = size_t(inPointer - (bytes.data() + next));
        if (size_t(outPointer - reinterpret_cast<char *>(characters->data() + next)) !=
            converted * sizeof(char32_t))
            return false; // not a single-byte table after all
        next += converted;
        if (stopped)
            (*characters)[next++] = 0; // unassigned in this table
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <output.cpp>\n", argv[0]);
        return 2;
    }
    FILE *out = std::fopen(argv[1], "w");
    if (!out) {
        std::perror(argv[1]);
        return 1;
    }
    std::fprintf(out, "// Written by GenerateCodePageTables from the C library's iconv converters.\n\n"
                      "#include \"devices/escpos/codepages/CodePageTables.h\"\n\n"
                      "const CodePageTable codePageTables[] = {\n");
    for (const Page &page : pages) {
        const iconv_t converter = iconv_open("UCS-4LE", page.iconvName);
        std::array<char32_t, 128> characters{};
        if (converter == reinterpret_cast<iconv_t>(-1) || !decodeUpperBytes(converter, &characters)) {
            std::fprintf(stderr, "GenerateCodePageTables: the C library cannot convert %s\n", page.iconvName);
            return 1;
        }
        iconv_close(converter);
        std::fprintf(out, "    {\"%s\", %d, {", page.name, page.epsonNumber);
        for (int i = 0; i < 128; ++i)
            std::fprintf(out, "%s0x%04x", i % 8 ? ", " : (i ? ",\n        " : "\n        "),
                         unsigned(characters[i]));
        std::fprintf(out, "}},\n");
    }
    std::fprintf(out, "};\n\nconst int codePageTableCount = %d;\n", int(sizeof(pages) / sizeof(pages[0])));
    return std::fclose(out) == 0 ? 0 : 1;
}
