#include "devices/escpos/CodeSymbol.h"

#include "layout/BarcodeElement.h"
#include "layout/QrCodeElement.h"

#include <zint.h>

#include <memory>

namespace {

struct SymbolDeleter
{
    void operator()(zint_symbol *symbol) const { ZBarcode_Delete(symbol); }
};
using Symbol = std::unique_ptr<zint_symbol, SymbolDeleter>;

// EAN and UPC take their data without the check digit or with it; libzint checks a given one
// only in its "with check digit" symbologies, and pads anything shorter, which would print
// another article's number.
struct DigitsRule
{
    int withoutCheck;
    int symbology;
    int symbologyWithCheck;
};

DigitsRule digitsRuleOf(BarcodeElement::Type type)
{
    switch (type) {
    case BarcodeElement::Type::Ean8:
        return {7, BARCODE_EANX, BARCODE_EANX_CHK};
    case BarcodeElement::Type::UpcA:
        return {11, BARCODE_UPCA, BARCODE_UPCA_CHK};
    default:
        break;
    }
    return {12, BARCODE_EANX, BARCODE_EANX_CHK};
}

// The symbology for the data, or the reason the data is refused before libzint sees it.
QString chooseSymbology(const BarcodeElement &request, int *symbology)
{
    const QString name = BarcodeElement::typeName(request.type);
    switch (request.type) {
    case BarcodeElement::Type::Ean13:
    case BarcodeElement::Type::Ean8:
    case BarcodeElement::Type::UpcA: {
        const DigitsRule rule = digitsRuleOf(request.type);
        const int length = int(request.data.size());
        if (length != rule.withoutCheck && length != rule.withoutCheck + 1)
            return QStringLiteral("%1 takes %2 digits, or %3 with the check digit, not %4")
                .arg(name)
                .arg(rule.withoutCheck)
                .arg(rule.withoutCheck + 1)
                .arg(length);
        // An add-on ("+12") is not for receipts; the digits themselves libzint checks.
        if (request.data.contains(QLatin1Char('+')))
            return QStringLiteral("%1 takes digits only").arg(name);
        *symbology = length == rule.withoutCheck ? rule.symbology : rule.symbologyWithCheck;
        return QString();
    }
    case BarcodeElement::Type::Code39:
        // Only extended Code 39 has small letters; libzint would print capitals instead.
        for (const QChar c : request.data) {
            if (c.isLower())
                return QStringLiteral("Code 39 has no small letters (\"%1\")").arg(c);
        }
        *symbology = BARCODE_CODE39;
        return QString();
    case BarcodeElement::Type::Code128:
        // The printer is sent code set B, which holds the printable ASCII characters.
        for (const QChar c : request.data) {
            if (c.unicode() < 0x20 || c.unicode() > 0x7e)
                return QStringLiteral("Code 128 takes printable ASCII characters only");
        }
        *symbology = BARCODE_CODE128;
        return QString();
    case BarcodeElement::Type::Itf:
        // Interleaved 2 of 5 pairs its digits; libzint would put a zero in front of an odd one.
        if (request.data.size() % 2 != 0)
            return QStringLiteral("ITF takes an even number of digits, not %1").arg(request.data.size());
        *symbology = BARCODE_C25INTER;
        return QString();
    }
    return QString();
}

// libzint's option for a QR code's mask: (mask + 1) << 8.
constexpr int fixedQrMask = 1 << 8;

bool holdsCheckDigit(int symbology)
{
    return symbology == BARCODE_EANX || symbology == BARCODE_EANX_CHK || symbology == BARCODE_UPCA ||
           symbology == BARCODE_UPCA_CHK;
}

} // namespace

CodeSymbol CodeSymbol::qrCode(const QrCodeElement &request)
{
    CodeSymbol symbol;
    if (!request.problem.isEmpty()) {
        symbol.m_error = request.problem;
        return symbol;
    }
    symbol.m_symbology = BARCODE_QRCODE;
    symbol.m_option1 = int(request.errorCorrection) + 1; // libzint counts L M Q H from 1
    symbol.m_data = request.data;
    symbol.encode();
    if (!symbol.isValid())
        symbol.m_error = QStringLiteral("qrcode: %1").arg(symbol.m_error);
    return symbol;
}

CodeSymbol CodeSymbol::barcode(const BarcodeElement &request)
{
    CodeSymbol symbol;
    if (!request.problem.isEmpty()) {
        symbol.m_error = request.problem;
        return symbol;
    }
    const QString refused = chooseSymbology(request, &symbol.m_symbology);
    symbol.m_data = request.data.toLatin1();
    symbol.m_barHeight = request.height;
    symbol.m_textBelow = request.textBelow;
    if (refused.isEmpty())
        symbol.encode();
    else
        symbol.m_error = refused;
    if (!symbol.isValid())
        symbol.m_error = QStringLiteral("barcode: %1 data \"%2\": %3")
                             .arg(BarcodeElement::typeName(request.type), request.data, symbol.m_error);
    return symbol;
}

void CodeSymbol::encode()
{
    const Symbol symbol(ZBarcode_Create());
    if (!symbol) {
        m_error = QStringLiteral("out of memory");
        return;
    }
    symbol->symbology = m_symbology;
    symbol->option_1 = m_option1;
    symbol->input_mode = DATA_MODE;
    // The check needs the symbol's size, which the mask does not change: a fixed mask spares
    // libzint scoring all eight, most of the time a QR code takes.  draw() lets it choose.
    if (m_symbology == BARCODE_QRCODE)
        symbol->option_3 = fixedQrMask;
    const int status = ZBarcode_Encode(
        symbol.get(), reinterpret_cast<const unsigned char *>(m_data.constData()), int(m_data.size()));
    if (status >= ZINT_ERROR) {
        m_error = QString::fromUtf8(symbol->errtxt);
        return;
    }
    m_modules = symbol->width;
    // The human-readable text of EAN and UPC is their data with the check digit libzint
    // computed or checked; other texts add start and stop characters, or there is none.
    m_encodedData =
        holdsCheckDigit(m_symbology) ? QByteArray(reinterpret_cast<const char *>(symbol->text)) : m_data;
}

PbmImage CodeSymbol::draw(int moduleDots) const
{
    if (!isValid() || moduleDots <= 0)
        return PbmImage();
    const Symbol symbol(ZBarcode_Create());
    if (!symbol)
        return PbmImage();
    symbol->symbology = m_symbology;
    symbol->option_1 = m_option1;
    symbol->input_mode = DATA_MODE;
    // libzint's raster output gives two pixels a module at scale 1.
    symbol->scale = float(moduleDots) / 2.0f;
    symbol->output_options = BARCODE_NO_QUIET_ZONES;
    symbol->show_hrt = m_textBelow ? 1 : 0;
    if (m_barHeight > 0)
        symbol->height = float(m_barHeight) / float(moduleDots); // in modules
    if (ZBarcode_Encode_and_Buffer(symbol.get(), reinterpret_cast<const unsigned char *>(m_data.constData()),
                                   int(m_data.size()), 0) >= ZINT_ERROR)
        return PbmImage();

    // The bitmap holds three bytes (red, green, blue) a pixel; the foreground is black.
    const int width = symbol->bitmap_width;
    const int height = symbol->bitmap_height;
    const int rowBytes = (width + 7) / 8;
    QByteArray rows(qsizetype(rowBytes) * height, '\0');
    const unsigned char *pixel = symbol->bitmap;
    for (int y = 0; y < height; ++y) {
        char *row = rows.data() + qsizetype(y) * rowBytes;
        for (int x = 0; x < width; ++x, pixel += 3) {
            if (pixel[0] < 128)
                row[x / 8] = char(row[x / 8] | (0x80 >> (x % 8)));
        }
    }
    return PbmImage::fromRows(width, height, rows);
}
