#include "preview/PaperPainter.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPen>

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
    BitmapFont label;
    QString error;
};

const BitmapFonts &bitmapFonts()
{
    static BitmapFonts fonts;
    static std::once_flag loaded;
    std::call_once(loaded, [] {
        QString error;
        if (!fonts.regular.load(PaperPainter::bitmapFontFile(false), &error) ||
            !fonts.bold.load(PaperPainter::bitmapFontFile(true), &error) ||
            !fonts.label.load(PaperPainter::labelFontFile(), &error)) {
            fonts.error = error;
            return;
        }
        if (fonts.regular.cellWidth() != Paper::cellWidth ||
            fonts.regular.cellHeight() != Paper::cellHeight || fonts.bold.cellWidth() != Paper::cellWidth ||
            fonts.bold.cellHeight() != Paper::cellHeight)
            fonts.error =
                QStringLiteral("%1: not a font of 12x24 cells").arg(PaperPainter::bitmapFontFile(false));
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
    return bold ? QStringLiteral("/usr/share/fonts/X11/misc/ter-u24b_unicode.pcf.gz")
                : QStringLiteral("/usr/share/fonts/X11/misc/ter-u24n_unicode.pcf.gz");
}

QString PaperPainter::labelFontFile()
{
    return QStringLiteral("/usr/share/fonts/X11/misc/ter-u12n_unicode.pcf.gz");
}

QString PaperPainter::outlineFontFile(bool bold)
{
    return bold ? QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSansMono-Bold.ttf")
                : QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf");
}

PaperPainter::PaperPainter(Style style) : m_style(style)
{
    if (style == Style::Dots) {
        const BitmapFonts &fonts = bitmapFonts();
        m_error = fonts.error;
        m_regular = &fonts.regular;
        m_bold = &fonts.bold;
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
    const qreal advance = QFontMetricsF(m_font).horizontalAdvance(QLatin1Char('M'));
    m_font.setLetterSpacing(QFont::AbsoluteSpacing, Paper::cellWidth - advance);
    m_boldFont = m_font;
    m_boldFont.setBold(true);
    m_labelFont = m_font;
    m_labelFont.setPixelSize(10);
    m_labelFont.setLetterSpacing(QFont::AbsoluteSpacing, 0);
    const QFontMetricsF metrics(m_font);
    m_baseline = qRound((Paper::cellHeight - metrics.height()) / 2 + metrics.ascent());
}

const QImage &PaperPainter::glyph(char32_t character, bool emphasis, int widthMultiplier,
                                  int heightMultiplier)
{
    const quint64 key = quint64(character) | quint64(emphasis) << 32 | quint64(widthMultiplier) << 33 |
                        quint64(heightMultiplier) << 37;
    auto found = m_glyphs.find(key);
    if (found != m_glyphs.end())
        return *found;
    // A widget lives long and may see every size of every table's characters: the cache is
    // bounded, emptied when full (a receipt uses a few dozen glyphs).
    if (m_glyphs.size() >= 4096)
        m_glyphs.clear();
    const BitmapFont &font = emphasis ? *m_bold : *m_regular;
    const unsigned char *cell = font.cell(character);
    QImage image(font.cellWidth() * widthMultiplier, font.cellHeight() * heightMultiplier,
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        const unsigned char *row = cell + (y / heightMultiplier) * font.cellWidth();
        for (int x = 0; x < image.width(); ++x) {
            if (row[x / widthMultiplier])
                line[x] = inkColour;
        }
    }
    return *m_glyphs.insert(key, image);
}

void PaperPainter::paintRun(QPainter *painter, const PaperRun &run, int x, int y)
{
    const int cellWidth = Paper::cellWidth * run.widthMultiplier;
    const int cellHeight = Paper::cellHeight * run.heightMultiplier;
    if (m_style == Style::Dots) {
        int left = x;
        for (const QChar character : run.text) {
            painter->drawImage(
                left, y, glyph(character.unicode(), run.emphasis, run.widthMultiplier, run.heightMultiplier));
            left += cellWidth;
        }
    } else {
        painter->save();
        painter->translate(x, y);
        painter->scale(run.widthMultiplier, run.heightMultiplier);
        painter->setFont(run.emphasis ? m_boldFont : m_font);
        painter->setPen(QColor::fromRgb(inkColour));
        painter->drawText(QPointF(0, m_baseline), run.text);
        painter->restore();
    }
    if (run.underline > 0) {
        const int thickness = run.underline * run.heightMultiplier;
        painter->fillRect(x, y + cellHeight - thickness, cellWidth * int(run.text.size()), thickness,
                          QColor::fromRgb(inkColour));
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

void PaperPainter::paint(QPainter *painter, const Paper &paper, int from, int to)
{
    if (!isValid())
        return;
    const int height = to - from;
    const int paperLeft = leftMargin;
    const int paperRight = leftMargin + paper.width();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, m_style == Style::Outline);
    painter->setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter->fillRect(0, 0, pictureWidth(paper), height, QColor::fromRgb(marginColour));
    painter->fillRect(paperLeft, 0, paper.width(), height, QColor::fromRgb(paperColour));

    for (const PaperImage &image : paper.images()) {
        const int rows = image.dots.height() * image.heightMultiplier;
        if (image.top >= to || image.top + rows <= from)
            continue;
        painter->drawImage(
            QRect(paperLeft + image.x, image.top - from, image.dots.width() * image.widthMultiplier, rows),
            image.dots);
    }
    for (const PaperRun &run : paper.runs()) {
        if (run.top >= to || run.top + run.heightMultiplier * Paper::cellHeight <= from)
            continue;
        paintRun(painter, run, paperLeft + run.x, run.top - from);
    }

    // Marks at one place are stacked downwards so that their flags stay apart.
    struct Label
    {
        int top;
        QString text;
        QRgb colour;
    };
    std::vector<Label> labels;
    int lastY = INT_MIN;
    int stacked = 0;
    for (const PaperMark &mark : paper.marks()) {
        if (mark.y < from || mark.y > to)
            continue;
        const int y = mark.y - from;
        stacked = mark.y == lastY ? stacked + 1 : 0;
        lastY = mark.y;
        const QColor colour = colourOf(mark.kind);
        const bool cut = mark.kind == PaperMark::Kind::FullCut || mark.kind == PaperMark::Kind::PartialCut;
        if (cut) {
            QPen pen(colour);
            pen.setWidth(2);
            pen.setStyle(mark.kind == PaperMark::Kind::FullCut ? Qt::SolidLine : Qt::DashLine);
            painter->setPen(pen);
            painter->drawLine(0, y, pictureWidth(paper), y);
        } else {
            // A small flag in the left margin points at the place; one at the very end of the
            // sheet is drawn just above it.
            const int top = std::clamp(y + stacked * 12, 0, std::max(0, height - 12));
            const QPoint flag[3] = {QPoint(4, top), QPoint(leftMargin - 6, top + 6), QPoint(4, top + 12)};
            painter->setPen(Qt::NoPen);
            painter->setBrush(colour);
            painter->drawPolygon(flag, 3);
        }
        labels.push_back({cut ? y + 3 : y, labelOf(mark), colour.rgba()});
    }

    // Labels go beside their marks, moved down, or up at the end of the sheet, just far enough
    // not to overlap.
    constexpr int labelHeight = 12;
    int free = 0;
    for (Label &label : labels) {
        label.top = std::max(label.top, free);
        free = label.top + labelHeight;
    }
    int limit = height;
    for (auto label = labels.rbegin(); label != labels.rend(); ++label) {
        label->top = std::max(0, std::min(label->top, limit - labelHeight));
        limit = label->top;
    }
    for (const Label &label : labels)
        paintLabel(painter, label.text, paperRight + 6, label.top, label.colour);
    painter->restore();
}
