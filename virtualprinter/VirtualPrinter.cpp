#include "virtualprinter/VirtualPrinter.h"

#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/EscPosCommandTable.h"

#include <algorithm>
#include <climits>

namespace {

// After ESC @ a printer returns to its first table, PC437.
const EscPosCodePage *defaultCodePage()
{
    return EscPosCodePage::byEpsonNumber(0);
}

QString hexBytes(QByteArrayView bytes, int limit)
{
    QString text;
    for (qsizetype i = 0; i < bytes.size() && i < limit; ++i) {
        if (!text.isEmpty())
            text += QLatin1Char(' ');
        text += QStringLiteral("%1").arg(uint(static_cast<unsigned char>(bytes[i])), 2, 16, QLatin1Char('0'));
    }
    if (bytes.size() > limit)
        text += QStringLiteral(" ...");
    return text.toUpper();
}

} // namespace

VirtualPrinter::VirtualPrinter(const QByteArray &stream, int paperWidth)
    : m_stream(stream), m_tokenizer(m_stream), m_streamSize(m_stream.size()), m_paper(paperWidth),
      m_codePage(defaultCodePage())
{
    resetTabStops();
}

bool VirtualPrinter::printSheet(int length)
{
    EscPosCommand command;
    while (!m_finished && m_y < length) {
        // A long text prints row after row; the sheet may end between two of its characters.
        if (m_textPosition < m_text.size()) {
            placeCharacter(m_text.at(m_textPosition++));
            continue;
        }
        if (decodeMoreText())
            continue;
        if (!m_tokenizer.next(&command)) {
            finish();
            break;
        }
        execute(command);
        limitBlank();
    }
    // The end is known at once, so that a job exactly one sheet long is one sheet.
    if (!m_finished && m_textPosition >= m_text.size() && m_textBytes.isEmpty() &&
        m_tokenizer.position() >= m_streamSize)
        finish();
    m_paper.setLength(std::max(m_paper.length(), m_y));
    return !m_finished;
}

Paper VirtualPrinter::takeSheet()
{
    m_paper.setLength(std::max(m_paper.length(), m_y));
    Paper sheet(m_paper.width());
    std::swap(sheet, m_paper);
    m_y = 0;
    m_contentEnd = 0;
    return sheet;
}

void VirtualPrinter::initialize()
{
    m_codePage = defaultCodePage();
    m_style = Style();
    m_justification = 0;
    m_lineSpacing = defaultLineSpacing;
    m_codes.initialize();
    m_upsideDown = false;
    resetTabStops();
    // The print buffer and the downloaded image go; the NV images stay, as in the printer.
    m_storedGraphic = QImage();
    m_downloadedImage = QImage();
}

void VirtualPrinter::execute(const EscPosCommand &command)
{
    using Kind = EscPosCommand::Kind;
    if (setStyle(command))
        return;
    switch (command.kind) {
    case Kind::Text:
        printText(command.bytes);
        break;
    case Kind::LineFeed:
        printRow(m_lineSpacing);
        break;
    case Kind::Initialize:
        // The printer clears its buffer: what was not yet fed is lost on paper too.
        if (!m_row.empty() || !m_rowImages.empty()) {
            mark(PaperMark::Kind::Note, QStringLiteral("row dropped by ESC @"));
            m_row.clear();
            m_rowImages.clear();
        }
        m_rowWidth = 0;
        initialize();
        break;
    case Kind::CodeTable:
        selectCodeTable(command);
        break;
    case Kind::FeedLines:
        printRow(m_lineSpacing * command.value);
        break;
    case Kind::FeedDots:
        printRow(command.value);
        break;
    case Kind::Cut:
        // GS V 65/66 feeds n dots past the cutter, then cuts; the cut shows where it falls.
        printRow(0);
        m_y += command.feed;
        mark(command.value == 0 ? PaperMark::Kind::FullCut : PaperMark::Kind::PartialCut,
             command.value == 0 ? QStringLiteral("full cut") : QStringLiteral("partial cut"));
        break;
    case Kind::DrawerPulse:
        mark(PaperMark::Kind::DrawerPulse,
             QStringLiteral("drawer pin %1, %2 ms").arg(command.value == 0 ? 2 : 5).arg(command.onTime * 2));
        break;
    case Kind::RasterImage:
        printRaster(command);
        break;
    default:
        if (!printCode(command))
            executeUnsupported(command);
        break;
    }
}

// The commands that change how the next characters look or where rows go; false for others.
bool VirtualPrinter::setStyle(const EscPosCommand &command)
{
    using Kind = EscPosCommand::Kind;
    switch (command.kind) {
    case Kind::CarriageReturn:
        return true; // ignored by printers in their default mode
    case Kind::Emphasis:
    case Kind::DoubleStrike:
        m_style.emphasis = command.value != 0;
        return true;
    case Kind::Underline:
        m_style.underline = std::clamp(command.value, 0, 2);
        return true;
    case Kind::PrintMode:
        m_style.emphasis = command.value & 0x08;
        m_style.heightMultiplier = (command.value & 0x10) ? 2 : 1;
        m_style.widthMultiplier = (command.value & 0x20) ? 2 : 1;
        m_style.underline = (command.value & 0x80) ? 1 : 0;
        m_style.font = (command.value & 0x01) ? PaperRun::Font::B : PaperRun::Font::A;
        return true;
    case Kind::CharacterSize:
        m_style.widthMultiplier = ((command.value >> 4) & 0x07) + 1;
        m_style.heightMultiplier = (command.value & 0x07) + 1;
        return true;
    case Kind::Justification:
        m_justification = command.value;
        return true;
    case Kind::LineSpacing:
        m_lineSpacing = command.value;
        return true;
    case Kind::DefaultLineSpacing:
        m_lineSpacing = defaultLineSpacing;
        return true;
    default:
        return false;
    }
}

void VirtualPrinter::selectCodeTable(const EscPosCommand &command)
{
    if (const EscPosCodePage *page = EscPosCodePage::byEpsonNumber(command.value)) {
        m_codePage = page;
        return;
    }
    countUnsupported(QStringLiteral("ESC t %1 (no such code table)").arg(command.value), command.offset);
    mark(PaperMark::Kind::Unknown, QStringLiteral("unknown code table %1").arg(command.value));
}

// Commands of the set it does not draw, bytes of no command, and a command cut off by the end.
void VirtualPrinter::executeUnsupported(const EscPosCommand &command)
{
    using Kind = EscPosCommand::Kind;
    if (command.kind == Kind::Other) {
        if (const Handler handler = drawingHandler(*command.entry))
            (this->*handler)(command);
        else if (treatmentOf(*command.entry) != Treatment::Silent)
            notDrawn(command, QLatin1String(command.entry->name));
    } else if (command.kind == Kind::Unknown) {
        countUnsupported(
            QStringLiteral("unknown %1 %2")
                .arg(command.bytes.size() == 1 ? QStringLiteral("byte") : QStringLiteral("bytes"),
                     hexBytes(command.bytes, 2)),
            command.offset);
        markUnknown(command.bytes);
    } else if (command.kind == Kind::Truncated) {
        countUnsupported(QStringLiteral("a command cut off by the end of the stream"), command.offset);
        mark(PaperMark::Kind::Unknown, QStringLiteral("cut off: %1").arg(hexBytes(command.bytes, 4)));
    }
}

void VirtualPrinter::printText(QByteArrayView bytes)
{
    m_textBytes = bytes;
    m_text.clear();
    m_textPosition = 0;
}

// A text of megabytes is decoded a piece at a time, not held twice over.
bool VirtualPrinter::decodeMoreText()
{
    constexpr qsizetype piece = 1024;
    if (m_textBytes.isEmpty())
        return false;
    const QByteArrayView next = m_textBytes.first(std::min(piece, m_textBytes.size()));
    m_textBytes = m_textBytes.sliced(next.size());
    m_text = m_codePage->decode(next);
    m_textPosition = 0;
    return true;
}

void VirtualPrinter::placeCharacter(QChar character)
{
    const int advance = characterAdvance();
    if (advance > m_paper.width())
        return;
    // A character that does not fit prints the row and starts the next, as the printer does.
    if (m_rowWidth + advance > m_paper.width())
        printRow(m_lineSpacing);
    if (m_row.empty() && m_rowImages.empty()) {
        m_rowJustification = m_justification;
        m_rowUpsideDown = m_upsideDown;
    }

    PaperRun next = styledRun();
    next.x = m_rowWidth;
    PaperRun *run = m_row.empty() ? nullptr : &m_row.back();
    if (!run || run->x + run->width() != m_rowWidth || run->emphasis != next.emphasis ||
        run->underline != next.underline || run->widthMultiplier != next.widthMultiplier ||
        run->heightMultiplier != next.heightMultiplier || run->font != next.font ||
        run->inverse != next.inverse || run->turn != next.turn || run->rightSpacing != next.rightSpacing) {
        m_row.push_back(next);
        run = &m_row.back();
    }
    run->text += character;
    m_rowWidth += advance;
}

int VirtualPrinter::rowHeight() const
{
    int tallest = 0;
    for (const PaperRun &run : m_row)
        tallest = std::max(tallest, run.height());
    for (const PaperImage &image : m_rowImages)
        tallest = std::max(tallest, image.dots.height() * image.heightMultiplier);
    return tallest;
}

void VirtualPrinter::printRow(int feed)
{
    if (m_row.empty() && m_rowImages.empty()) {
        m_rowWidth = 0;
        m_y += feed;
        return;
    }
    noteSkippedBlank();
    const int tallest = rowHeight();
    // The row ends at the print position or at its rightmost character or image, whichever is
    // further: a position moved back leaves the end where it was.
    int right = m_rowWidth;
    for (const PaperRun &run : m_row)
        right = std::max(right, run.x + run.width());
    for (const PaperImage &image : m_rowImages)
        right = std::max(right, image.x + image.dots.width() * image.widthMultiplier);
    int shift = 0;
    if (m_rowJustification == 1)
        shift = (m_paper.width() - right) / 2;
    else if (m_rowJustification == 2)
        shift = m_paper.width() - right;
    // Everything in a row stands on its bottom line.
    for (PaperRun &run : m_row) {
        run.x += shift;
        run.top = m_y + tallest - run.height();
    }
    for (PaperImage &image : m_rowImages) {
        image.x += shift;
        image.top = m_y + tallest - image.dots.height() * image.heightMultiplier;
    }
    if (m_rowUpsideDown)
        turnRow(tallest);
    for (PaperRun &run : m_row)
        m_paper.addRun(std::move(run));
    for (PaperImage &image : m_rowImages)
        m_paper.addImage(std::move(image));
    m_row.clear();
    m_rowImages.clear();
    m_rowWidth = 0;
    m_contentEnd = m_y + tallest;
    m_y += std::max(feed, tallest);
}

void VirtualPrinter::printRaster(const EscPosCommand &command)
{
    printRow(0);
    noteSkippedBlank();
    const int mode = command.value >= '0' ? command.value - '0' : command.value;
    PaperImage image;
    image.widthMultiplier = (mode & 1) ? 2 : 1;
    image.heightMultiplier = (mode & 2) ? 2 : 1;
    const int fullWidth = command.widthBytes * 8;
    const int width = std::min(fullWidth, m_paper.width() / image.widthMultiplier);
    const int rows = std::min(command.height, maximumImageRows);
    if (width <= 0 || rows <= 0) {
        mark(PaperMark::Kind::Note, QStringLiteral("empty raster image"));
        return;
    }
    image.dots = QImage(width, rows, QImage::Format_Mono);
    image.dots.setColorTable({qRgba(0, 0, 0, 0), qRgb(0, 0, 0)});
    const int copy = std::min<int>((width + 7) / 8, int(image.dots.bytesPerLine()));
    for (int row = 0; row < rows; ++row) {
        uchar *line = image.dots.scanLine(row);
        std::fill(line, line + image.dots.bytesPerLine(), 0);
        const qsizetype from = qsizetype(row) * command.widthBytes;
        std::copy_n(command.bytes.data() + from, copy, reinterpret_cast<char *>(line));
    }
    if (width < fullWidth)
        mark(PaperMark::Kind::Note, QStringLiteral("image cut to the paper"));
    if (rows < command.height)
        mark(PaperMark::Kind::Note, QStringLiteral("image cut to %1 rows").arg(rows));
    placeImageBlock(std::move(image));
}

void VirtualPrinter::limitBlank()
{
    if (m_y - m_contentEnd > maximumBlank) {
        m_skippedBlank += m_y - m_contentEnd - maximumBlank;
        m_y = m_contentEnd + maximumBlank;
    }
}

void VirtualPrinter::noteSkippedBlank()
{
    if (m_skippedBlank == 0)
        return;
    const qint64 millimetres = m_skippedBlank * 1000 / m_paper.dotsPerMetre();
    m_skippedBlank = 0;
    mark(PaperMark::Kind::Note, QStringLiteral("%1 mm more blank paper").arg(millimetres));
}

void VirtualPrinter::mark(PaperMark::Kind kind, const QString &label)
{
    if (kind != PaperMark::Kind::Note)
        noteSkippedBlank();
    m_contentEnd = std::max(m_contentEnd, m_y);
    PaperMark mark;
    mark.kind = kind;
    mark.y = m_y;
    mark.label = label;
    const bool cut = kind == PaperMark::Kind::FullCut || kind == PaperMark::Kind::PartialCut;
    if (!cut && !m_paper.sameMark(mark) && m_paper.marksAt(m_y) >= maximumMarksInPlace - 1) {
        mark.kind = PaperMark::Kind::Note;
        mark.label = QStringLiteral("more marks here");
    }
    if (PaperMark *same = m_paper.sameMark(mark))
        ++same->repeat;
    else
        m_paper.addMark(std::move(mark));
}

// Bytes of other printer languages often come in long stretches: one mark holds a stretch.
void VirtualPrinter::markUnknown(QByteArrayView bytes)
{
    static const QString prefix = QStringLiteral("unknown: ");
    constexpr int shownBytes = 6;
    PaperMark *last = m_paper.lastMark();
    if (last && last->kind == PaperMark::Kind::Unknown && last->y == m_y && last->label.startsWith(prefix)) {
        if (!last->label.endsWith(QLatin1String("...")))
            last->label += QStringLiteral(" ...");
        return;
    }
    mark(PaperMark::Kind::Unknown, prefix + hexBytes(bytes, shownBytes));
}

void VirtualPrinter::notDrawn(const EscPosCommand &command, const QString &name)
{
    countUnsupported(name, command.offset);
    mark(PaperMark::Kind::Unknown, QStringLiteral("not drawn: ") + name);
}

void VirtualPrinter::countUnsupported(const QString &name, qsizetype offset)
{
    const auto found = m_unsupportedByName.constFind(name);
    if (found != m_unsupportedByName.cend()) {
        ++m_unsupported[*found].count;
        return;
    }
    m_unsupportedByName.insert(name, m_unsupported.size());
    m_unsupported.push_back({name, 1, offset});
}

void VirtualPrinter::finish()
{
    // Text after the last line feed stays in a real printer's buffer, unprinted.
    if (!m_row.empty() || !m_rowImages.empty()) {
        mark(PaperMark::Kind::Note, QStringLiteral("not printed: no line feed"));
        printRow(m_lineSpacing);
    }
    noteSkippedBlank();
    m_finished = true;
}
