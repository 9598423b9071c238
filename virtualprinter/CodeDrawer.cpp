#include "virtualprinter/CodeDrawer.h"

#include "devices/escpos/EscPosCodeCommand.h"

#include <zint.h>

#include <algorithm>
#include <memory>

namespace {

using Kind = EscPosCodeCommand::Kind;
using System = EscPosCodeCommand::System;

struct SymbolDeleter
{
    void operator()(zint_symbol *symbol) const { ZBarcode_Delete(symbol); }
};
using Symbol = std::unique_ptr<zint_symbol, SymbolDeleter>;

// What libzint is asked to encode.
struct SymbolRequest
{
    int symbology = 0;
    int option1 = -1;
    int option2 = 0;
    int option3 = 0;
    QByteArray data;
};

// The symbol libzint encodes from the request; null when the data cannot be encoded.
Symbol encoded(const SymbolRequest &request)
{
    Symbol symbol(ZBarcode_Create());
    if (!symbol)
        return symbol;
    symbol->symbology = request.symbology;
    symbol->option_1 = request.option1;
    symbol->option_2 = request.option2;
    symbol->option_3 = request.option3;
    symbol->input_mode = DATA_MODE;
    const int status =
        ZBarcode_Encode(symbol.get(), reinterpret_cast<const unsigned char *>(request.data.constData()),
                        int(request.data.size()));
    if (status >= ZINT_ERROR)
        symbol.reset();
    return symbol;
}

bool moduleIsSet(const zint_symbol &symbol, int row, int column)
{
    // libzint packs a row's modules eight to a byte, the first in the lowest bit.
    return (symbol.encoded_data[row][column >> 3] >> (column & 7)) & 1;
}

// The symbol's modules as dots: each module moduleWidth dots wide and each row rowHeight
// dots high.
QImage moduleDots(const zint_symbol &symbol, int moduleWidth, int rowHeight)
{
    QImage dots(symbol.width * moduleWidth, symbol.rows * rowHeight, QImage::Format_Mono);
    dots.setColorTable({qRgba(0, 0, 0, 0), qRgb(0, 0, 0)});
    dots.fill(0);
    for (int row = 0; row < symbol.rows; ++row) {
        uchar *first = dots.scanLine(row * rowHeight);
        for (int column = 0; column < symbol.width; ++column) {
            if (!moduleIsSet(symbol, row, column))
                continue;
            for (int x = column * moduleWidth; x < (column + 1) * moduleWidth; ++x)
                first[x >> 3] |= uchar(0x80 >> (x & 7));
        }
        for (int line = 1; line < rowHeight; ++line)
            std::copy_n(first, dots.bytesPerLine(), dots.scanLine(row * rowHeight + line));
    }
    return dots;
}

CodeDrawing refused(const QString &reason)
{
    CodeDrawing drawing;
    drawing.refusal = reason;
    return drawing;
}

// The name the refusals give each system.
QString readableName(System system)
{
    switch (system) {
    case System::Ean13:
        return QStringLiteral("EAN-13");
    case System::Ean8:
        return QStringLiteral("EAN-8");
    default:
        return EscPosCodeCommand::systemName(system);
    }
}

bool allDigits(QByteArrayView data)
{
    return std::all_of(data.begin(), data.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool allIn(QByteArrayView data, QByteArrayView allowed)
{
    return std::all_of(data.begin(), data.end(), [&](char c) { return allowed.contains(c); });
}

// EAN and UPC take their digits without the check digit, or with it, which is then checked.
bool chooseByLength(QByteArrayView data, int withoutCheck, int symbology, int symbologyWithCheck,
                    SymbolRequest *request)
{
    if (!allDigits(data) || (data.size() != withoutCheck && data.size() != withoutCheck + 1))
        return false;
    request->symbology = data.size() == withoutCheck ? symbology : symbologyWithCheck;
    request->data = data.toByteArray();
    return true;
}

// Code 39 as the printer takes it: its start and stop character may be sent or left out,
// and it has no small letters.
bool code39(QByteArrayView data, SymbolRequest *request)
{
    if (data.startsWith('*'))
        data = data.sliced(1);
    if (data.endsWith('*'))
        data.chop(1);
    if (data.isEmpty() || !allIn(data, "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ $%+-./"))
        return false;
    request->symbology = BARCODE_CODE39;
    request->data = data.toByteArray();
    return true;
}

bool isCodabarEnd(char c)
{
    return QByteArrayView("ABCDabcd").contains(c);
}

bool codabar(QByteArrayView data, SymbolRequest *request)
{
    if (data.size() < 3 || !isCodabarEnd(data.front()) || !isCodabarEnd(data.back()) ||
        !allIn(data.sliced(1, data.size() - 2), "0123456789-$:/.+"))
        return false;
    request->symbology = BARCODE_CODABAR;
    request->data = data.toByteArray().toUpper();
    return true;
}

/*
 * Code 128 as the printer takes it: the data starts with a code set ("{A", "{B" or "{C"),
 * "{" starts a control ("{A" "{B" "{C" change the set, "{S" shifts one character between A
 * and B, "{{" is a brace), in set C every byte is two digits (0..99).  The characters are
 * handed to libzint, which may choose other code sets: the symbol reads the same.  The
 * function characters are not drawn.
 */
class Code128Reader
{
public:
    explicit Code128Reader(QByteArrayView data) : m_data(data) {}

    bool read(QByteArray *characters)
    {
        if (m_data.size() < 2 || m_data[0] != '{' || !setCodeSet(m_data[1]))
            return false;
        for (qsizetype i = 2; i < m_data.size(); ++i) {
            const char byte = m_data[i];
            if (byte != '{') {
                if (!take(byte, m_set, characters))
                    return false;
                continue;
            }
            if (++i >= m_data.size())
                return false;
            const char control = m_data[i];
            if (control == '{') {
                if (m_set != 'B')
                    return false;
                characters->append('{');
            } else if (control == 'S') {
                if (m_set == 'C' || ++i >= m_data.size() ||
                    !take(m_data[i], m_set == 'A' ? 'B' : 'A', characters))
                    return false;
            } else if (!setCodeSet(control)) {
                return false;
            }
        }
        return !characters->isEmpty();
    }

private:
    bool setCodeSet(char set)
    {
        if (set != 'A' && set != 'B' && set != 'C')
            return false;
        m_set = set;
        return true;
    }

    static bool take(char byte, char set, QByteArray *characters)
    {
        const auto value = static_cast<unsigned char>(byte);
        if (set == 'C') {
            if (value > 99)
                return false;
            characters->append(char('0' + value / 10)).append(char('0' + value % 10));
            return true;
        }
        const bool inSet = set == 'A' ? value <= 0x5f : value >= 0x20 && value <= 0x7f;
        if (inSet)
            characters->append(byte);
        return inSet;
    }

    QByteArrayView m_data;
    char m_set = 'B';
};

bool code128(QByteArrayView data, SymbolRequest *request)
{
    QByteArray characters;
    if (!Code128Reader(data).read(&characters))
        return false;
    request->symbology = BARCODE_CODE128;
    request->data = characters;
    return true;
}

// What libzint is to encode for the data GS k sends; false when the printer would refuse it.
bool barcodeRequest(System system, QByteArrayView data, SymbolRequest *request)
{
    switch (system) {
    case System::UpcA:
        return chooseByLength(data, 11, BARCODE_UPCA, BARCODE_UPCA_CHK, request);
    case System::UpcE:
        return data.size() != 6 ? chooseByLength(data, 7, BARCODE_UPCE, BARCODE_UPCE_CHK, request)
                                : chooseByLength(data, 6, BARCODE_UPCE, BARCODE_UPCE, request);
    case System::Ean13:
        return chooseByLength(data, 12, BARCODE_EANX, BARCODE_EANX_CHK, request);
    case System::Ean8:
        return chooseByLength(data, 7, BARCODE_EANX, BARCODE_EANX_CHK, request);
    case System::Code39:
        return code39(data, request);
    case System::Itf:
        // Interleaved 2 of 5 pairs its digits: an odd count has no symbol.
        request->symbology = BARCODE_C25INTER;
        request->data = data.toByteArray();
        return !data.isEmpty() && data.size() % 2 == 0 && allDigits(data);
    case System::Codabar:
        return codabar(data, request);
    case System::Code93:
        request->symbology = BARCODE_CODE93;
        request->data = data.toByteArray();
        return !data.isEmpty() &&
               std::all_of(data.begin(), data.end(), [](char c) { return uchar(c) < 0x80; });
    case System::Code128:
        return code128(data, request);
    case System::Unknown:
        break;
    }
    return false;
}

// The characters printed with the bars: EAN and UPC with their check digit, Code 39 between
// its asterisks, the others as they are, a control character as a blank.
QString hriText(System system, const SymbolRequest &request, const zint_symbol &symbol)
{
    switch (system) {
    case System::UpcA:
    case System::UpcE:
    case System::Ean13:
    case System::Ean8:
        return QString::fromLatin1(reinterpret_cast<const char *>(symbol.text));
    case System::Code39:
        return QStringLiteral("*%1*").arg(QString::fromLatin1(request.data));
    default:
        break;
    }
    QString text = QString::fromLatin1(request.data);
    for (QChar &c : text) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7f)
            c = QLatin1Char(' ');
    }
    return text;
}

bool inRange(int value, int lowest, int highest)
{
    return value >= lowest && value <= highest;
}

} // namespace

void CodeDrawer::initialize()
{
    m_qr = QrSettings();
    m_pdf417 = Pdf417Settings();
    m_barcode = BarcodeSettings();
}

bool CodeDrawer::execute(const EscPosCodeCommand &command, int paperWidth, CodeDrawing *drawing)
{
    switch (command.kind) {
    case Kind::QrPrint:
        *drawing = drawQrCode(paperWidth);
        return true;
    case Kind::Pdf417Print:
        *drawing = drawPdf417(paperWidth);
        return true;
    case Kind::Barcode:
        *drawing = drawBarcode(command, paperWidth);
        return true;
    default:
        break;
    }
    if (!setQrCode(command) && !setPdf417(command))
        setBarcode(command);
    return false;
}

// False: not a setting of the QR code.
bool CodeDrawer::setQrCode(const EscPosCodeCommand &command)
{
    switch (command.kind) {
    case Kind::QrModel:
        if (inRange(command.value, 49, 51))
            m_qr.model = command.value;
        return true;
    case Kind::QrModuleSize:
        if (inRange(command.value, 1, 16))
            m_qr.moduleSize = command.value;
        return true;
    case Kind::QrErrorCorrection:
        if (inRange(command.value, 48, 51))
            m_qr.errorCorrection = command.value;
        return true;
    case Kind::QrStore:
        m_qr.data = command.data.toByteArray();
        return true;
    default:
        return false;
    }
}

bool CodeDrawer::setPdf417(const EscPosCodeCommand &command)
{
    switch (command.kind) {
    case Kind::Pdf417Columns:
        if (inRange(command.value, 0, 30))
            m_pdf417.columns = command.value;
        return true;
    case Kind::Pdf417Rows:
        if (command.value == 0 || inRange(command.value, 3, 90))
            m_pdf417.rows = command.value;
        return true;
    case Kind::Pdf417ModuleWidth:
        if (inRange(command.value, 2, 8))
            m_pdf417.moduleWidth = command.value;
        return true;
    case Kind::Pdf417RowHeight:
        if (inRange(command.value, 2, 8))
            m_pdf417.rowHeight = command.value;
        return true;
    case Kind::Pdf417ErrorCorrection:
        // A ratio instead of a level leaves the level to the data's length.
        m_pdf417.level = inRange(command.value, 48, 56) ? command.value - 48 : -1;
        return true;
    case Kind::Pdf417Options:
        if (command.value == 0 || command.value == 1)
            m_pdf417.truncated = command.value == 1;
        return true;
    case Kind::Pdf417Store:
        m_pdf417.data = command.data.toByteArray();
        return true;
    default:
        return false;
    }
}

bool CodeDrawer::setBarcode(const EscPosCodeCommand &command)
{
    switch (command.kind) {
    case Kind::BarcodeHeight:
        if (inRange(command.value, 1, 255))
            m_barcode.height = command.value;
        return true;
    case Kind::BarcodeModuleWidth:
        if (inRange(command.value, 2, 6))
            m_barcode.moduleWidth = command.value;
        return true;
    case Kind::BarcodeHriPosition:
        if (inRange(command.value, 0, 3) || inRange(command.value, 48, 51))
            m_barcode.hriPosition = command.value % 48;
        return true;
    case Kind::BarcodeHriFont:
        if (inRange(command.value, 0, 1) || inRange(command.value, 48, 49))
            m_barcode.hriFont = command.value % 48;
        return true;
    default:
        return false;
    }
}

CodeDrawing CodeDrawer::drawQrCode(int paperWidth) const
{
    if (m_qr.data.isEmpty())
        return refused(QStringLiteral("GS ( k: no QR code data stored"));
    // libzint draws model 2 and Micro QR; model 1, long superseded, has no encoder there.
    if (m_qr.model == 49)
        return refused(QStringLiteral("GS ( k: QR code model 1"));
    SymbolRequest request;
    request.symbology = m_qr.model == 51 ? BARCODE_MICROQR : BARCODE_QRCODE;
    request.option1 = m_qr.errorCorrection - 48 + 1; // libzint counts L M Q H from 1
    request.data = m_qr.data;
    const Symbol symbol = encoded(request);
    if (!symbol)
        return refused(QStringLiteral("GS ( k: QR code data does not fit the symbol"));
    if (symbol->width * m_qr.moduleSize > paperWidth)
        return refused(QStringLiteral("GS ( k: QR code wider than the paper"));
    CodeDrawing drawing;
    drawing.dots = moduleDots(*symbol, m_qr.moduleSize, m_qr.moduleSize);
    return drawing;
}

CodeDrawing CodeDrawer::drawPdf417(int paperWidth) const
{
    if (m_pdf417.data.isEmpty())
        return refused(QStringLiteral("GS ( k: no PDF417 data stored"));
    SymbolRequest request;
    request.symbology = m_pdf417.truncated ? BARCODE_PDF417COMP : BARCODE_PDF417;
    request.option1 = m_pdf417.level;
    request.option2 = m_pdf417.columns;
    request.option3 = m_pdf417.rows;
    request.data = m_pdf417.data;
    const Symbol symbol = encoded(request);
    if (!symbol)
        return refused(QStringLiteral("GS ( k: PDF417 data does not fit the symbol"));
    if (symbol->width * m_pdf417.moduleWidth > paperWidth)
        return refused(QStringLiteral("GS ( k: PDF417 symbol wider than the paper"));
    CodeDrawing drawing;
    drawing.dots = moduleDots(*symbol, m_pdf417.moduleWidth, m_pdf417.moduleWidth * m_pdf417.rowHeight);
    return drawing;
}

CodeDrawing CodeDrawer::drawBarcode(const EscPosCodeCommand &command, int paperWidth) const
{
    const System system = EscPosCodeCommand::systemOf(command.value);
    if (system == System::Unknown)
        return refused(QStringLiteral("GS k: barcode system %1").arg(command.value));
    SymbolRequest request;
    const Symbol symbol = barcodeRequest(system, command.data, &request) ? encoded(request) : Symbol();
    if (!symbol)
        return refused(QStringLiteral("GS k: invalid %1 data").arg(readableName(system)));
    if (symbol->width * m_barcode.moduleWidth > paperWidth)
        return refused(QStringLiteral("GS k: %1 wider than the paper").arg(readableName(system)));
    CodeDrawing drawing;
    // A barcode has one row of modules, as tall as GS h says.
    drawing.dots = moduleDots(*symbol, m_barcode.moduleWidth, m_barcode.height);
    drawing.hriText = hriText(system, request, *symbol);
    drawing.hriAbove = m_barcode.hriPosition & 1;
    drawing.hriBelow = m_barcode.hriPosition & 2;
    drawing.hriFont = m_barcode.hriFont;
    return drawing;
}
