#ifndef BRISTEL_PREVIEW_PAPERPAINTER_H
#define BRISTEL_PREVIEW_PAPERPAINTER_H

#include "preview/BitmapFont.h"
#include "virtualprinter/Paper.h"

#include <QFont>
#include <QHash>
#include <QImage>
#include <QString>

class QPainter;

/*
 * Draws a Paper with a QPainter on any paint device, one dot of paper a unit of the device:
 * the paper in the middle, marks (cuts, the drawer, commands the printer does not know) in
 * the margins beside it.
 *
 * Two styles.  Dots draws every character from a bitmap font (12x24 for Font A, 9x17 for
 * Font B) read from its file, dot
 * for dot as the print head does, so that a picture is the same on every machine; it needs
 * no font engine.  Outline draws characters as text in an outline monospaced font (DejaVu
 * Sans Mono, loaded from its file as an application font, hinting off and no fallback fonts
 * merged in), so that an SVG or PDF keeps the text searchable and sharp at any scale; it
 * needs a QGuiApplication.
 */
class PaperPainter
{
public:
    enum class Style
    {
        Dots,
        Outline
    };

    static constexpr int leftMargin = 24;
    static constexpr int rightMargin = 144;

    // The font files, resources of the library taken from Debian's xfonts-terminus and
    // fonts-dejavu-core when it was built.
    static QString bitmapFontFile(bool bold);
    static QString fontBFile(bool bold);
    static QString labelFontFile();
    static QString outlineFontFile(bool bold);

    explicit PaperPainter(Style style);
    Q_DISABLE_COPY_MOVE(PaperPainter)

    // False when a font could not be loaded; errorString() says which and why.
    bool isValid() const { return m_error.isEmpty(); }
    QString errorString() const { return m_error; }

    static int pictureWidth(const Paper &paper) { return leftMargin + paper.width() + rightMargin; }

    // Draws the part of the sheet from `from` to `to` (dots down the sheet) with `from` at the
    // painter's y = 0.
    void paint(QPainter *painter, const Paper &paper, int from, int to);

private:
    void paintSheet(QPainter *painter, const Paper &paper, int from, int to);
    void paintRun(QPainter *painter, const PaperRun &run, int x, int y);
    void paintOutlineRun(QPainter *painter, const PaperRun &run, int x, int y);
    void paintLabel(QPainter *painter, const QString &text, int x, int y, QRgb colour);
    // A character's place on the paper as the run prints it: spacing, colours and turn.
    const QImage &glyph(char32_t character, const PaperRun &run);

    Style m_style;
    QString m_error;
    // Dots: the fonts are shared by every painter of the process, read once.
    const BitmapFont *m_regular = nullptr;
    const BitmapFont *m_bold = nullptr;
    const BitmapFont *m_regularB = nullptr;
    const BitmapFont *m_boldB = nullptr;
    const BitmapFont *m_label = nullptr;
    QHash<quint64, QImage> m_glyphs;
    // Outline
    QFont m_font;
    QFont m_boldFont;
    QFont m_labelFont;
    int m_baseline = 19;
    qreal m_advance = Paper::cellWidth; // of one character of m_font
};

#endif
