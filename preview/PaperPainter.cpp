#include "preview/PaperPainter.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <QTransform>

#include <algorithm>
#include <mutex>

namespace {

constexpr QRgb marginColour = 0xffd8d8d8;
constexpr QRgb paperColour = 0xffffffff;
constexpr QRgb inkColour = 0xff000000;
constexpr QRgb cutColour = 0xffc00000;
constexpr QRgb drawerColour = 0xff0050c0;
constexpr QRgb unknownColour = 0xffd07000;
constexpr QRgb noteColour = 0xff606060;

struct BitmapFonts
{
    BitmapFont regular;
    BitmapFont bold;
    BitmapFont regularB;
    BitmapFont boldB;
    BitmapFont label;
    QString error;
};

bool hasCell(const BitmapFont &font, int width, int height)
{
    return font.cellWidth() == width && font.cellHeight() == height;
}

// Font A is Terminus 12x24 as it is; Font B is Terminus 8x16 in a printer's 9x17 cell.
QString checkCells(BitmapFonts *fonts)
{
    if (!hasCell(fonts->regular, Paper::cellWidth, Paper::cellHeight) ||
        !hasCell(fonts->bold, Paper::cellWidth, Paper::cellHeight))
        return QStringLiteral("%1: not a font of 12x24 cells").arg(PaperPainter::bitmapFontFile(false));
    if (!fonts->regularB.padCell(Paper::fontBCellWidth, Paper::fontBCellHeight) ||
        !fonts->boldB.padCell(Paper::fontBCellWidth, Paper::fontBCellHeight))
        return QStringLiteral("%1: does not fit a cell of 9x17").arg(PaperPainter::fontBFile(false));
    return {};
}

const BitmapFonts &bitmapFonts()
{
    static BitmapFonts fonts;
    static std::once_flag loaded;
    std::call_once(loaded, [] {
        QString error;
        if (!fonts.regular.load(PaperPainter::bitmapFontFile(false), &error) ||
            !fonts.bold.load(PaperPainter::bitmapFontFile(true), &error) ||
            !fonts.regularB.load(PaperPainter::fontBFile(false), &error) ||
            !fonts.boldB.load(PaperPainter::fontBFile(true), &error) ||
            !fonts.label.load(PaperPainter::labelFontFile(), &error)) {
            fonts.error = error;
            return;
        }
        fonts.error = checkCells(&fonts);
    });
    return fonts;
}

struct OutlineFonts
{
    QString family;
    QString error;
};

// Application fonts belong to the QGuiApplication; they are added once.
const OutlineFonts &outlineFonts()
{
    static OutlineFonts fonts;
    static std::once_flag loaded;
    std::call_once(loaded, [] {
        for (const bool bold : {false, true}) {
            const int id = QFontDatabase::addApplicationFont(PaperPainter::outlineFontFile(bold));
            const QStringList families = QFontDatabase::applicationFontFamilies(id);
            if (id < 0 || families.isEmpty()) {
                fonts.error =
                    QStringLiteral("%1: cannot load the font").arg(PaperPainter::outlineFontFile(bold));
                return;
            }
            fonts.family = families.constFirst();
        }
    });
    return fonts;
}

QColor colourOf(PaperMark::Kind kind)
{
    switch (kind) {
    case PaperMark::Kind::FullCut:
    case PaperMark::Kind::PartialCut:
        return QColor::fromRgb(cutColour);
    case PaperMark::Kind::DrawerPulse:
        return QColor::fromRgb(drawerColour);
    case PaperMark::Kind::Unknown:
        return QColor::fromRgb(unknownColour);
    case PaperMark::Kind::Note:
        break;
    }
    return QColor::fromRgb(noteColour);
}

// A mark that stands for several of a kind says how many.
QString labelOf(const PaperMark &mark)
{
    if (mark.repeat <= 1)
        return mark.label;
    return QStringLiteral("%1 \u00d7%2").arg(mark.label).arg(mark.repeat);
}

} // namespace

QString PaperPainter::bitmapFontFile(bool bold)
{
    return bold ? QStringLiteral(":/bristel/fonts/ter-u24b_unicode.pcf.gz")
                : QStringLiteral(":/bristel/fonts/ter-u24n_unicode.pcf.gz");
}

QString PaperPainter::fontBFile(bool bold)
{
    return bold ? QStringLiteral(":/bristel/fonts/ter-u16b_unicode.pcf.gz")
                : QStringLiteral(":/bristel/fonts/ter-u16n_unicode.pcf.gz");
}

QString PaperPainter::labelFontFile()
{
    return QStringLiteral(":/bristel/fonts/ter-u12n_unicode.pcf.gz");
}

QString PaperPainter::outlineFontFile(bool bold)
{
    return bold ? QStringLiteral(":/bristel/fonts/DejaVuSansMono-Bold.ttf")
                : QStringLiteral(":/bristel/fonts/DejaVuSansMono.ttf");
}

PaperPainter::PaperPainter(Style style) : m_style(style)
{
    if (style == Style::Dots) {
        const BitmapFonts &fonts = bitmapFonts();
        m_error = fonts.error;
        m_regular = &fonts.regular;
        m_bold = &fonts.bold;
        m_regularB = &fonts.regularB;
        m_boldB = &fonts.boldB;
        m_label = &fonts.label;
        return;
    }
    const OutlineFonts &fonts = outlineFonts();
    m_error = fonts.error;
    if (!m_error.isEmpty())
        return;
    // One character cell is 12 dots wide: the font is sized so that its advance is 12 dots,
    // and the letter spacing takes up what rounding leaves.
    m_font = QFont(fonts.family);
    m_font.setPixelSize(20);
    m_font.setStyleStrategy(QFont::StyleStrategy(QFont::NoFontMerging | QFont::PreferOutline));
    m_font.setHintingPreference(QFont::PreferNoHinting);
    m_font.setKerning(false);
    m_advance = QFontMetricsF(m_font).horizontalAdvance(QLatin1Char('M'));
    m_font.setLetterSpacing(QFont::AbsoluteSpacing, Paper::cellWidth - m_advance);
    m_boldFont = m_font;
    m_boldFont.setBold(true);
    m_labelFont = m_font;
    m_labelFont.setPixelSize(10);
    m_labelFont.setLetterSpacing(QFont::AbsoluteSpacing, 0);
    const QFontMetricsF metrics(m_font);
    m_baseline = qRound((Paper::cellHeight - metrics.height()) / 2 + metrics.ascent());
}

namespace {

// Everything that changes how a character of a run looks, as one key of the glyph cache.
quint64 glyphKey(char32_t character, const PaperRun &run)
{
    return quint64(character & 0x1fffff) | quint64(run.emphasis) << 21 |
           quint64(run.widthMultiplier & 0xf) << 22 | quint64(run.heightMultiplier & 0xf) << 26 |
           quint64(run.font == PaperRun::Font::B) << 30 | quint64(run.inverse) << 31 |
           quint64(run.underline & 3) << 32 | quint64(run.turn) << 34 |
           quint64(run.rightSpacing & 0xff) << 36;
}

// A character's place on the paper, upright: its cell and the spacing after it.
QImage uprightCell(const BitmapFont &font, char32_t character, const PaperRun &run)
{
    // A character turned a quarter has its spacing along the row, below it before the turn.
    const int spacing = run.turn == PaperRun::Turn::Clockwise ? 0 : run.rightSpacing;
    const int width = (font.cellWidth() + spacing) * run.widthMultiplier;
    const int height = font.cellHeight() * run.heightMultiplier;
    const QRgb ink = run.inverse ? paperColour : inkColour;
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(run.inverse ? QColor::fromRgb(inkColour) : QColor(Qt::transparent));
    const unsigned char *cell = font.cell(character);
    for (int y = 0; y < height; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        const unsigned char *row = cell + (y / run.heightMultiplier) * font.cellWidth();
        for (int x = 0; x < font.cellWidth() * run.widthMultiplier; ++x) {
            if (row[x / run.widthMultiplier])
                line[x] = ink;
        }
    }
    // Printers underline neither characters turned a quarter nor white ones on black.
    if (run.underline > 0 && !run.inverse && run.turn != PaperRun::Turn::Clockwise) {
        const int thickness = run.underline * run.heightMultiplier;
        for (int y = height - thickness; y < height; ++y)
            std::fill_n(reinterpret_cast<QRgb *>(image.scanLine(y)), width, inkColour);
    }
    return image;
}

} // namespace

const QImage &PaperPainter::glyph(char32_t character, const PaperRun &run)
{
    const quint64 key = glyphKey(character, run);
    auto found = m_glyphs.find(key);
    if (found != m_glyphs.end())
        return *found;
    // A widget lives long and may see every size of every table's characters: the cache is
    // bounded, emptied when full (a receipt uses a few dozen glyphs).
    if (m_glyphs.size() >= 4096)
        m_glyphs.clear();
    const bool fontB = run.font == PaperRun::Font::B;
    const BitmapFont &font = run.emphasis ? (fontB ? *m_boldB : *m_bold) : (fontB ? *m_regularB : *m_regular);
    QImage image = uprightCell(font, character, run);
    if (run.turn == PaperRun::Turn::UpsideDown)
        image = image.mirrored(true, true);
    else if (run.turn == PaperRun::Turn::Clockwise)
        image = image.transformed(QTransform().rotate(90));
    return *m_glyphs.insert(key, image);
}

void PaperPainter::paintRun(QPainter *painter, const PaperRun &run, int x, int y)
{
    if (m_style == Style::Outline) {
        paintOutlineRun(painter, run, x, y);
        return;
    }
    // A row turned half a turn reads from the right: its first character is the rightmost.
    const bool reversed = run.turn == PaperRun::Turn::UpsideDown;
    const int advance = run.advance();
    for (qsizetype i = 0; i < run.text.size(); ++i) {
        const int left = reversed ? x + int(run.text.size() - 1 - i) * advance : x + int(i) * advance;
        painter->drawImage(left, y, glyph(run.text.at(i).unicode(), run));
    }
}

// Text stays text in an SVG or PDF: each run is drawn through the painter's transformation
// into its place, a character at a time when turned.
void PaperPainter::paintOutlineRun(QPainter *painter, const PaperRun &run, int x, int y)
{
    const bool fontB = run.font == PaperRun::Font::B;
    const qreal scaleX =
        run.widthMultiplier * (fontB ? qreal(Paper::fontBCellWidth) / Paper::cellWidth : 1.0);
    const qreal scaleY =
        run.heightMultiplier * (fontB ? qreal(Paper::fontBCellHeight) / Paper::cellHeight : 1.0);
    const qreal step = qreal(run.cellWidth() + run.rightSpacing) * run.widthMultiplier / scaleX;
    QFont font = run.emphasis ? m_boldFont : m_font;
    font.setLetterSpacing(QFont::AbsoluteSpacing, step - m_advance);
    const bool quarter = run.turn == PaperRun::Turn::Clockwise;
    const int upright = (run.cellWidth() + (quarter ? 0 : run.rightSpacing)) * run.widthMultiplier;
    const int cellHeight = run.cellHeight() * run.heightMultiplier;
    const int pieces = quarter ? int(run.text.size()) : 1;
    for (int i = 0; i < pieces; ++i) {
        const QString text = quarter ? QString(run.text.at(i)) : run.text;
        const int width = upright * int(text.size());
        painter->save();
        painter->translate(quarter ? x + i * run.advance() : x, y);
        if (quarter) {
            painter->translate(cellHeight, 0);
            painter->rotate(90);
        } else if (run.turn == PaperRun::Turn::UpsideDown) {
            painter->translate(width, cellHeight);
            painter->rotate(180);
        }
        if (run.inverse)
            painter->fillRect(0, 0, width, cellHeight, QColor::fromRgb(inkColour));
        else if (run.underline > 0 && !quarter)
            painter->fillRect(0, cellHeight - run.underline * run.heightMultiplier, width,
                              run.underline * run.heightMultiplier, QColor::fromRgb(inkColour));
        painter->scale(scaleX, scaleY);
        painter->setFont(font);
        painter->setPen(QColor::fromRgb(run.inverse ? paperColour : inkColour));
        painter->drawText(QPointF(0, m_baseline), text);
        painter->restore();
    }
}

void PaperPainter::paintLabel(QPainter *painter, const QString &text, int x, int y, QRgb colour)
{
    if (m_style == Style::Outline) {
        painter->setFont(m_labelFont);
        painter->setPen(QColor::fromRgb(colour));
        painter->drawText(QPointF(x, y + 10), text);
        return;
    }
    // The label font's dots, straight into a small picture in the mark's colour.
    const int width = m_label->cellWidth();
    const int height = m_label->cellHeight();
    const int room = (rightMargin - 8) / width;
    const QString shown = text.size() > room ? text.left(room - 1) + QChar(0x2026) : text;
    QImage image(width * int(shown.size()), height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (qsizetype i = 0; i < shown.size(); ++i) {
        const unsigned char *cell = m_label->cell(shown.at(i).unicode());
        for (int row = 0; row < height; ++row) {
            auto *line = reinterpret_cast<QRgb *>(image.scanLine(row));
            for (int column = 0; column < width; ++column) {
                if (cell[row * width + column])
                    line[i * width + column] = colour;
            }
        }
    }
    painter->drawImage(x, y, image);
}

namespace {

// A mark's words in the right margin, in the mark's colour.
struct MarkLabel
{
    int top;
    QString text;
    QRgb colour;
};

constexpr int labelHeight = 12;

bool isCut(const PaperMark &mark)
{
    return mark.kind == PaperMark::Kind::FullCut || mark.kind == PaperMark::Kind::PartialCut;
}

// A cut runs across the whole picture, solid for a full cut, dashed for a partial one.
void paintCutLine(QPainter *painter, const PaperMark &mark, int y, int width)
{
    QPen pen(colourOf(mark.kind));
    pen.setWidth(2);
    pen.setStyle(mark.kind == PaperMark::Kind::FullCut ? Qt::SolidLine : Qt::DashLine);
    painter->setPen(pen);
    painter->drawLine(0, y, width, y);
}

// A small flag in the left margin points at the place.
void paintFlag(QPainter *painter, const QColor &colour, int top)
{
    const QPoint flag[3] = {QPoint(4, top), QPoint(PaperPainter::leftMargin - 6, top + 6),
                            QPoint(4, top + 12)};
    painter->setPen(Qt::NoPen);
    painter->setBrush(colour);
    painter->drawPolygon(flag, 3);
}

// Draws the marks from `from` to `to` and returns their labels, top down.  Marks at one place
// are stacked downwards so that their flags stay apart; a flag at the very end of the sheet is
// drawn just above it.
std::vector<MarkLabel> paintMarks(QPainter *painter, const Paper &paper, int from, int to)
{
    const int height = to - from;
    std::vector<MarkLabel> labels;
    int lastY = INT_MIN;
    int stacked = 0;
    for (const PaperMark &mark : paper.marks()) {
        if (mark.y < from || mark.y > to)
            continue;
        const int y = mark.y - from;
        stacked = mark.y == lastY ? stacked + 1 : 0;
        lastY = mark.y;
        if (isCut(mark))
            paintCutLine(painter, mark, y, PaperPainter::pictureWidth(paper));
        else
            paintFlag(painter, colourOf(mark.kind),
                      std::clamp(y + stacked * 12, 0, std::max(0, height - 12)));
        labels.push_back({isCut(mark) ? y + 3 : y, labelOf(mark), colourOf(mark.kind).rgba()});
    }
    return labels;
}

// Labels go beside their marks, moved down, or up at the end of the sheet, just far enough
// not to overlap.
void spreadLabels(std::vector<MarkLabel> *labels, int height)
{
    int free = 0;
    for (MarkLabel &label : *labels) {
        label.top = std::max(label.top, free);
        free = label.top + labelHeight;
    }
    int limit = height;
    for (auto label = labels->rbegin(); label != labels->rend(); ++label) {
        label->top = std::max(0, std::min(label->top, limit - labelHeight));
        limit = label->top;
    }
}

} // namespace

// The margins, the paper, and what is printed on it: pictures, then text.
void PaperPainter::paintSheet(QPainter *painter, const Paper &paper, int from, int to)
{
    const int height = to - from;
    painter->fillRect(0, 0, pictureWidth(paper), height, QColor::fromRgb(marginColour));
    painter->fillRect(leftMargin, 0, paper.width(), height, QColor::fromRgb(paperColour));
    for (const PaperImage &image : paper.images()) {
        const int rows = image.dots.height() * image.heightMultiplier;
        if (image.top >= to || image.top + rows <= from)
            continue;
        painter->drawImage(
            QRect(leftMargin + image.x, image.top - from, image.dots.width() * image.widthMultiplier, rows),
            image.dots);
    }
    for (const PaperRun &run : paper.runs()) {
        if (run.top >= to || run.top + run.height() <= from)
            continue;
        paintRun(painter, run, leftMargin + run.x, run.top - from);
    }
}

void PaperPainter::paint(QPainter *painter, const Paper &paper, int from, int to)
{
    if (!isValid())
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, m_style == Style::Outline);
    painter->setRenderHint(QPainter::SmoothPixmapTransform, false);
    paintSheet(painter, paper, from, to);
    std::vector<MarkLabel> labels = paintMarks(painter, paper, from, to);
    spreadLabels(&labels, to - from);
    const int paperRight = leftMargin + paper.width();
    for (const MarkLabel &label : labels)
        paintLabel(painter, label.text, paperRight + 6, label.top, label.colour);
    painter->restore();
}
