#ifndef BRISTEL_CONFIG_DOCUMENTPROFILEKIND_H
#define BRISTEL_CONFIG_DOCUMENTPROFILEKIND_H

#include <QLatin1String>

/*
 * The kinds of document that a profile of the configuration lays out, one row each: the word
 * the print methods and the installation's programs name a kind by, the prefix of its
 * profile's keys (bristel.receiptdoc.paperWidth), and what else depends on the kind.  The
 * printer driver's profiles, its test for a fiscal document, the support library's copy
 * numbers and the configuration editor's checks all read this table.
 *
 * The kinds name blocks of the configuration, so the table lives with its reader: the layout
 * engine and the support library both read it.  Constants only, not installed.
 */
struct DocumentProfileKind
{
    const char *kind;      // "receipt"
    const char *keyPrefix; // "bristel.receiptdoc."; the order ticket's keys carry no kind word
    // Its documents are command records for the fiscal printer, not lines of a ticket.
    bool fiscal;
    // Kept: the sold list has no copy number; HLibrary::copyNumber answers for it as for an
    // unknown kind, with its message on standard output, and the installation relies on it.
    bool hasCopyNumber;
};

// In the order the kinds are matched.
inline constexpr DocumentProfileKind documentProfileKinds[] = {
    {"order", "bristel.doc.", false, true},          {"prefiscal", "bristel.prefiscaldoc.", false, true},
    {"fiscal", "bristel.fiscaldoc.", true, true},    {"receipt", "bristel.receiptdoc.", false, true},
    {"invoice", "bristel.invoicedoc.", false, true}, {"delivery", "bristel.deliverydoc.", false, true},
    {"report", "bristel.reportdoc.", false, true},   {"sold", "bristel.solddoc.", false, false},
};

// The row of a kind named exactly (callers lower-case a kind a person wrote); null for none.
template <typename Text> const DocumentProfileKind *findDocumentProfileKind(const Text &kind)
{
    for (const DocumentProfileKind &row : documentProfileKinds) {
        if (kind == QLatin1String(row.kind))
            return &row;
    }
    return nullptr;
}

// An unknown kind prints as a pre-fiscal ticket.
inline const DocumentProfileKind &fallbackDocumentProfileKind()
{
    return *findDocumentProfileKind(QLatin1String("prefiscal"));
}

#endif
