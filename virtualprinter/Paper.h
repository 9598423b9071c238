#ifndef BRISTEL_VIRTUALPRINTER_PAPER_H
#define BRISTEL_VIRTUALPRINTER_PAPER_H

#include <QImage>
#include <QString>

#include <vector>

/*
 * What a receipt printer has put on a sheet of paper, in its own unit: the dot (8 a millimetre
 * at 203 dpi).  Y grows down the paper from the sheet's start; every list is in the order the
 * printer printed it, so also by y.  The painters draw it; nothing here knows about bytes.
 */
struct PaperRun
{
    enum class Font
    {
        A, // 12x24 dots
        B  // 9x17 dots
    };
    enum class Turn
    {
        None,
        UpsideDown, // the whole row turned half a turn
        Clockwise   // each character turned a quarter turn clockwise in its place
    };

    int x = 0;   // left edge of the first character cell
    int top = 0; // top edge of the cells
    int widthMultiplier = 1;
    int heightMultiplier = 1;
    bool emphasis = false;
    int underline = 0; // 0 none, 1 or 2 dots thick
    Font font = Font::A;
    bool inverse = false; // white characters on black
    Turn turn = Turn::None;
    int rightSpacing = 0; // dots after each character (before the width multiplier)
    QString text;         // characters of one style, side by side

    // A character's cell before multipliers, as the font has it.
    int cellWidth() const;
    int cellHeight() const;
    // How far one character moves the print position, and the run's size on the paper.  A
    // character turned clockwise lies across the row: its own height runs along the row and its
    // width down the paper, so that double width makes it taller on the paper.
    int advance() const;
    int width() const { return advance() * int(text.size()); }
    int height() const;
};

struct PaperImage
{
    int x = 0;
    int top = 0;
    int widthMultiplier = 1; // each dot printed this many dots wide
    int heightMultiplier = 1;
    QImage dots; // QImage::Format_Mono, index 1 printed
};

struct PaperMark
{
    enum class Kind
    {
        FullCut,
        PartialCut,
        DrawerPulse,
        Unknown, // a command the printer does not know, or one cut off by the end of the stream
        Note     // something worth knowing about how the printer reads the stream
    };

    Kind kind = Kind::Note;
    int y = 0;
    QString label;
    qint64 repeat = 1; // how many times the same thing happened at this place
};

class Paper
{
public:
    static constexpr int dotsPerMillimetre = 8;
    static constexpr int cellWidth = 12; // Font A
    static constexpr int cellHeight = 24;
    static constexpr int fontBCellWidth = 9;
    static constexpr int fontBCellHeight = 17;
    static constexpr int width58mm = 384;
    static constexpr int width80mm = 576;
    // The older 80 mm printers print 512 dots (at 180 dpi): 42 columns of 12-dot characters.
    static constexpr int width80mm512 = 512;

    explicit Paper(int width = width80mm) : m_width(width) {}

    int width() const { return m_width; }
    // The printer's resolution, by the paper family of this width: 203 dpi, 8 dots a
    // millimetre, but 180 dpi on the older 80 mm printers, whose paper is 512 dots wide; 203 dpi
    // for a width no family has.
    int dotsPerMetre() const;
    int dotsPerInch() const;
    // How far the paper has been fed: the length of the sheet.
    int length() const { return m_length; }
    void setLength(int length) { m_length = length; }

    const std::vector<PaperRun> &runs() const { return m_runs; }
    const std::vector<PaperImage> &images() const { return m_images; }
    const std::vector<PaperMark> &marks() const { return m_marks; }

    void addRun(PaperRun run) { m_runs.push_back(std::move(run)); }
    void addImage(PaperImage image) { m_images.push_back(std::move(image)); }
    void addMark(PaperMark mark) { m_marks.push_back(std::move(mark)); }
    PaperMark *lastMark() { return m_marks.empty() ? nullptr : &m_marks.back(); }
    // A mark already on the sheet at the same place, of the same kind and label; null if none.
    // Marks come in order of y, so only the last ones are looked at.
    PaperMark *sameMark(const PaperMark &mark);
    // How many marks lie at y, at the end of the sheet.
    int marksAt(int y) const;

    // Where the sheet is cut, in order: the ends of the pieces a customer tears off.
    std::vector<int> cutPositions() const;
    // The text of each printed row, top to bottom, runs of one row joined with the blanks
    // between them (for tests and for searching).
    QStringList rowTexts() const;
    // The widest printed row's right edge minus its left edge, in dots.
    int widestRow() const;

private:
    int m_width;
    int m_length = 0;
    std::vector<PaperRun> m_runs;
    std::vector<PaperImage> m_images;
    std::vector<PaperMark> m_marks;
};

#endif
