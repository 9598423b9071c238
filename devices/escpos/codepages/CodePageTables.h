#ifndef BRISTEL_DEVICES_ESCPOS_CODEPAGES_CODEPAGETABLES_H
#define BRISTEL_DEVICES_ESCPOS_CODEPAGES_CODEPAGETABLES_H

// The receipt printers' character tables, written at build time by GenerateCodePageTables from
// the C library's iconv converters: what each of the 128 upper bytes prints (0: nothing).
// Reading them from the converter at run time would load a converter module into every job.

struct CodePageTable
{
    const char *name;
    int epsonNumber; // Epson's ESC t number; other makers number their tables differently
    char32_t upper[128];
};

extern const CodePageTable codePageTables[];
extern const int codePageTableCount;

#endif
