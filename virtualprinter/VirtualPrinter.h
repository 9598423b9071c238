#ifndef BRISTEL_VIRTUALPRINTER_VIRTUALPRINTER_H
#define BRISTEL_VIRTUALPRINTER_VIRTUALPRINTER_H

#include "devices/escpos/EscPosTokenizer.h"
#include "virtualprinter/CodeDrawer.h"
#include "virtualprinter/Paper.h"

#include <QByteArray>
#include <QHash>
#include <QImage>

#include <vector>

class EscPosCodePage;
struct EscPosCommandEntry;

/*
 * A thermal receipt printer at 203 dpi that prints onto a Paper instead of paper: it executes
 * the commands the ESC/POS back-end writes and the common ones other programs send (emphasis,
 * character size, Font B, inverse, turned characters, tabs and print positions, justification,
 * code tables, feeds, cuts, the drawer pulse, bit images, raster images and graphics, defined
 * images), as the printer does.  Characters sit in cells of 12 x 24 dots (Font B: 9 x 17),
 * one motion unit is one dot; the line pitch is 30 dots
 * unless changed, and a row holding taller characters feeds their height instead.  A row
 * longer than the paper goes on on the next row, as the printer's buffer does.
 *
 * A command it does not carry out becomes a mark in the margin, never dropped silently and
 * never a fault, and is counted by kind for the caller to report.  The paper comes out in
 * sheets of bounded length, and the marks at one place are bounded too (the same mark again
 * counts up instead of being added), so that the memory a preview needs grows with one sheet,
 * not with the job.
 */
class VirtualPrinter
{
public:
    static constexpr int defaultLineSpacing = 30;
    // Raster images taller than this are cut: printers take about 2,000 to 4,000 rows.
    static constexpr int maximumImageRows = 4096;
    // Blank paper longer than this (125 mm) is shown this long, with a note of what was left
    // out: no receipt feeds that much on purpose, and a stream of feeds must not make a
    // kilometre of empty pictures.
    static constexpr int maximumBlank = 1000;
    // Different marks at one place beyond this are counted in one last note: no reader can
    // tell apart more flags at one spot, and a stream of commands that feed nothing must not
    // make a margin of millions of them.
    static constexpr int maximumMarksInPlace = 8;

    // A kind of command the printer read but did not carry out (or bytes of no command).
    struct Unsupported
    {
        QString name;              // "GS ( k", "unknown bytes 1B 78", ...
        qint64 count = 0;          // how many times it came
        qsizetype firstOffset = 0; // where it first came in the stream
    };

    // What the printer does with a command of the set.
    enum class Treatment
    {
        Drawn,  // carried out on the paper, or as a mark where a cut or the drawer acts
        Silent, // read and passed over: it changes nothing a sheet shows (a status query,
                // a real-time request, a setting of the sensors or of the status replies)
        Marked  // not carried out: a mark in the margin, counted in unsupported()
    };
    // The treatment of each command; a command that is drawn may still mark modes of it the
    // printer does not draw (an ESC * density, a GS ( L function).
    static Treatment treatmentOf(const EscPosCommandEntry &entry);

    // The printer keeps a shallow copy of the stream (QByteArray is implicitly shared).
    VirtualPrinter(const QByteArray &stream, int paperWidth);
    Q_DISABLE_COPY_MOVE(VirtualPrinter)

    // Prints until the sheet is at least `length` dots long or the stream ends; false once
    // the whole stream has been printed.
    bool printSheet(int length);
    // Prints the whole stream onto one sheet.
    void printAll() { printSheet(INT_MAX); }
    // The sheet printed so far; the next one starts where it ends, the printer's state kept.
    Paper takeSheet();
    bool atEnd() const { return m_finished; }
    // What was not carried out so far, in the order each kind first came.
    const std::vector<Unsupported> &unsupported() const { return m_unsupported; }

private:
    struct Style
    {
        bool emphasis = false;
        int underline = 0;
        int widthMultiplier = 1;
        int heightMultiplier = 1;
        PaperRun::Font font = PaperRun::Font::A;
        bool inverse = false;
        bool clockwise = false;
        int rightSpacing = 0;
    };
    using Handler = void (VirtualPrinter::*)(const EscPosCommand &command);

    void execute(const EscPosCommand &command);
    bool setStyle(const EscPosCommand &command);
    void selectCodeTable(const EscPosCommand &command);
    void executeUnsupported(const EscPosCommand &command);
    // The commands of the set it draws that the tokenizer hands over as Other, by name.
    static Handler drawingHandler(const EscPosCommandEntry &entry);

    // Text and positions (VirtualPrinterText.cpp).
    void selectFont(const EscPosCommand &command);
    void setInverse(const EscPosCommand &command);
    void setUpsideDown(const EscPosCommand &command);
    void setClockwise(const EscPosCommand &command);
    void setRightSpacing(const EscPosCommand &command);
    void setTabStops(const EscPosCommand &command);
    void horizontalTab(const EscPosCommand &command);
    void absolutePosition(const EscPosCommand &command);
    void relativePosition(const EscPosCommand &command);
    void moveTo(int x);
    void resetTabStops();
    // A run of the current style, empty and not yet placed.
    PaperRun styledRun() const;
    int characterAdvance() const { return styledRun().advance(); }
    void turnRow(int tallest);

    // Images in the row and graphics (VirtualPrinterImages.cpp).
    void printBitImage(const EscPosCommand &command);
    void graphics(const EscPosCommand &command);
    void storeGraphic(const EscPosCommand &command, QByteArrayView parameters);
    void printStoredGraphic();
    void defineDownloadedImage(const EscPosCommand &command);
    void printDownloadedImage(const EscPosCommand &command);
    void defineNvImages(const EscPosCommand &command);
    void printNvImage(const EscPosCommand &command);
    void printDefinedImage(const QImage &dots, int mode);
    void printImageBlock(PaperImage image);
    void placeImageBlock(PaperImage image);
    void initialize();
    // Takes the text to place; printSheet places it.
    void printText(QByteArrayView bytes);
    void placeCharacter(QChar character);
    // Prints the buffered row and feeds the paper by `feed` dots past its top (at least the
    // height of its tallest character).
    void printRow(int feed);
    int rowHeight() const;
    void printRaster(const EscPosCommand &command);
    // QR codes, PDF417 symbols and barcodes (VirtualPrinterCodes.cpp); false for other commands.
    bool printCode(const EscPosCommand &command);
    void placeCode(const CodeDrawing &drawing);
    void placeHri(const CodeDrawing &drawing, int centre);
    void mark(PaperMark::Kind kind, const QString &label);
    void limitBlank();
    void noteSkippedBlank();
    void markUnknown(QByteArrayView bytes);
    void notDrawn(const EscPosCommand &command, const QString &name);
    void countUnsupported(const QString &name, qsizetype offset);
    bool decodeMoreText();
    void finish();

    const QByteArray m_stream;
    EscPosTokenizer m_tokenizer; // reads m_stream
    qsizetype m_streamSize;
    Paper m_paper;
    int m_y = 0;
    int m_contentEnd = 0;      // where the last thing printed or marked ends
    qint64 m_skippedBlank = 0; // blank paper left out since then

    const EscPosCodePage *m_codePage;
    Style m_style;
    int m_justification = 0; // 0 left, 1 centre, 2 right
    int m_lineSpacing = defaultLineSpacing;
    CodeDrawer m_codes;

    // The text being placed, character by character, decoded a piece at a time.
    QByteArrayView m_textBytes; // not yet decoded; a view into m_stream
    QString m_text;
    qsizetype m_textPosition = 0;

    // The row being filled, as the printer's buffer holds it until a line feed.
    std::vector<PaperRun> m_row;
    std::vector<PaperImage> m_rowImages; // bit images in the row, placed like characters
    int m_rowWidth = 0;                  // the print position in the row
    int m_rowJustification = 0;
    bool m_upsideDown = false; // ESC {: takes effect at the start of a row
    bool m_rowUpsideDown = false;
    std::vector<int> m_tabStops; // in dots from the row's start, rising

    // Images kept by the printer to print later: the graphic of the print buffer (GS ( L),
    // the downloaded bit image (GS *) and the NV bit images (FS q, numbered from 1).
    QImage m_storedGraphic;
    int m_storedGraphicWidthScale = 1;
    int m_storedGraphicHeightScale = 1;
    QImage m_downloadedImage;
    std::vector<QImage> m_nvImages;
    bool m_finished = false;

    std::vector<Unsupported> m_unsupported;
    QHash<QString, size_t> m_unsupportedByName; // index into m_unsupported
};

#endif
