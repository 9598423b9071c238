#ifndef BRISTEL_PREVIEW_BITMAPFONT_H
#define BRISTEL_PREVIEW_BITMAPFONT_H

#include <QByteArray>
#include <QHash>
#include <QString>

#include <vector>

/*
 * A fixed-cell bitmap font read from an X11 PCF file (gzip-compressed or not), the format the
 * Debian font packages ship.  The glyph bitmaps are read from the file by this class rather
 * than handed to the toolkit's font engine: the engine would pick hinting, anti-aliasing and
 * fallback fonts by the machine's settings, and the preview must put the same dots on the
 * same places on every machine.  Reading the dots ourselves makes the picture a pure function
 * of the font file.
 */
class BitmapFont
{
public:
    // False, with the reason in *error, when the file cannot be read or is not a PCF font.
    bool load(const QString &fileName, QString *error);
    bool loadFromData(const QByteArray &data, QString *error);

    // Places every glyph at the top left of a larger cell (a printer's Font B is 9x17 dots and
    // the font is 8x16): the extra column and row are the gap between characters and rows.
    // Box-drawing glyphs are stretched over it instead, so that their lines still join.
    // False, nothing changed, when the cell is smaller than the font's.
    bool padCell(int width, int height);

    int cellWidth() const { return m_cellWidth; }
    int cellHeight() const { return m_cellHeight; }
    bool isNull() const { return m_cellWidth == 0; }
    bool hasGlyph(char32_t character) const { return m_glyphIndex.contains(character); }

    // The dots of a character's cell, one byte a dot (1 ink), row by row; the font's default
    // character for one it lacks.  Not thread-safe: glyphs are decoded on first use.
    const unsigned char *cell(char32_t character) const;

private:
    struct Glyph
    {
        int leftBearing;
        int rightBearing;
        int ascent;
        int descent;
        quint32 offset; // of its rows in the bitmap data
    };

    // A glyph's dots are taken out of the file's bitmap data when first asked for: a receipt
    // uses a few dozen of the font's thousand glyphs.
    void decode(int glyph) const;
    // Copies a glyph's last column and row of the font into the padding of its cell.
    void stretchIntoPadding(int glyph) const;

    QByteArray m_data; // the uncompressed file
    qint64 m_bitmapStart = 0;
    qint64 m_bitmapSize = 0;
    quint32 m_bitmapFormat = 0;
    int m_fontAscent = 0;
    std::vector<Glyph> m_glyphs;
    mutable std::vector<bool> m_decoded;
    int m_cellWidth = 0;
    int m_cellHeight = 0;
    int m_fontWidth = 0; // the font's own cell, at the top left of the padded one
    int m_fontHeight = 0;
    int m_defaultGlyph = 0;
    QHash<char32_t, int> m_glyphIndex;
    mutable std::vector<unsigned char> m_cells; // glyph count x cell width x cell height
};

#endif
