#ifndef BRISTEL_DEVICES_ESCPOS_ESCPOSCODEPAGE_H
#define BRISTEL_DEVICES_ESCPOS_ESCPOSCODEPAGE_H

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>
#include <vector>

struct CodePageTable;

/*
 * One character table of a receipt printer (PC437, PC858, WPC1252, ...).  The mapping is taken
 * from the C library's iconv converter, never typed by hand: the build decodes the 128 upper
 * bytes of every table with it (devices/escpos/codepages/), and the encoder looks characters up in
 * the result.
 *
 * Encoding is also where the printer is kept safe from its text: every C0 and C1 control
 * character and DEL becomes '?', as does a character the table lacks, so no text can ever
 * reach the printer as a command.  Only the line feed passes, as a line feed.
 */
class EscPosCodePage
{
public:
    // The tables the back-end knows, by the names printers' manuals use; null when unknown.
    // Names are matched without regard to case.
    static const EscPosCodePage *byName(QStringView name);
    // The table Epson's ESC t numbering gives this number; null when unknown.
    static const EscPosCodePage *byEpsonNumber(int number);
    static QStringList names();

    QString name() const { return m_name; }
    int epsonNumber() const { return m_epsonNumber; }

    QByteArray encode(QStringView text) const;
    void encode(QStringView text, QByteArray *out) const; // appends
    // What the printer prints for these bytes; control bytes other than the line feed decode
    // as U+FFFD.
    QString decode(QByteArrayView bytes) const;

    explicit EscPosCodePage(const CodePageTable &table);

private:
    struct UpperEntry
    {
        char32_t character;
        unsigned char byte;
    };

    void addCompatibilityForms();

    QString m_name;
    int m_epsonNumber;
    std::array<char32_t, 128> m_upper{}; // byte 0x80 + i prints this character; 0: none
    // The same, sorted by character, for encoding; with the characters that are only another
    // form of a table's character (the Greek mu for the micro sign).
    std::vector<UpperEntry> m_sorted;
};

/*
 * Reads the text of an ESC/POS stream as a printer does: it starts with the default table,
 * PC437, returns to it with every ESC @, and follows every ESC t.  An unknown table is read as
 * the default one, so that a reader shows letters rather than bytes.
 */
class EscPosTextDecoder
{
public:
    EscPosTextDecoder();

    // Takes note of the commands that change the table (a tokenizer's Initialize, CodeTable).
    void initialize();
    void selectTable(int epsonNumber);
    QString decode(QByteArrayView bytes) const { return m_page->decode(bytes); }

private:
    const EscPosCodePage *m_page;
};

#endif
