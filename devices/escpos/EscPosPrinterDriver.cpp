#include "devices/escpos/EscPosPrinterDriver.h"

#include "devices/commandfile/FiscalPayment.h"
#include "devices/escpos/CodeSymbol.h"
#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/PbmImage.h"
#include "layout/BarcodeElement.h"
#include "layout/DocumentProfile.h"
#include "layout/FiscalTotals.h"
#include "layout/QrCodeElement.h"

#include <QObject>

namespace {

// Raster images are printed at most this many dots wide: 12 dots a character column, the
// cell of the common 203-dpi printers' font A.
constexpr int DotsPerColumn = 12;

// Bars two or three dots wide: every scanner reads them at 203 dpi, and wider ones only take
// paper.  The printer's GS w would go up to 6.
constexpr int narrowestModule = 2;
constexpr int widestModule = 3;

EscPosEncoder::QrErrorCorrection printerLevel(QrCodeElement::ErrorCorrection level)
{
    using Printer = EscPosEncoder::QrErrorCorrection;
    switch (level) {
    case QrCodeElement::ErrorCorrection::Low:
        return Printer::Low;
    case QrCodeElement::ErrorCorrection::Medium:
        return Printer::Medium;
    case QrCodeElement::ErrorCorrection::Quartile:
        return Printer::Quartile;
    case QrCodeElement::ErrorCorrection::High:
        break;
    }
    return Printer::High;
}

EscPosEncoder::BarcodeSystem printerSystem(BarcodeElement::Type type)
{
    using System = EscPosEncoder::BarcodeSystem;
    switch (type) {
    case BarcodeElement::Type::Ean13:
        return System::Ean13;
    case BarcodeElement::Type::Ean8:
        return System::Ean8;
    case BarcodeElement::Type::UpcA:
        return System::UpcA;
    case BarcodeElement::Type::Code39:
        return System::Code39;
    case BarcodeElement::Type::Code128:
        break;
    case BarcodeElement::Type::Itf:
        return System::Itf;
    }
    return System::Code128;
}

// What GS k is sent: EAN and UPC with their check digit, so that the printer computes nothing;
// Code 128 in code set B ("{B"), where a brace of the data is written twice.
QByteArray printerData(BarcodeElement::Type type, const QByteArray &encoded)
{
    if (type != BarcodeElement::Type::Code128)
        return encoded;
    return QByteArray("{B") + QByteArray(encoded).replace("{", "{{");
}

// The printer's Code 128 in code set B: start, a symbol per character, check and stop
// (13 modules); libzint may choose the shorter code set C for digits.
int printerCode128Modules(const QByteArray &encoded)
{
    return 11 * (int(encoded.size()) + 2) + 13;
}

// The widest module with which the symbol fits the paper, or 0.
int barcodeModuleWidth(int modules, int paperDots)
{
    for (int width = widestModule; width >= narrowestModule; --width) {
        if (modules * width <= paperDots)
            return width;
    }
    return 0;
}

// The barcode drawn with modules of at most moduleWidth dots, narrower where its digits below
// would stick out past the paper; null when even the narrowest does not fit.
PbmImage drawnToFit(const CodeSymbol &symbol, int moduleWidth, int paperDots)
{
    for (int width = moduleWidth; width >= narrowestModule; --width) {
        PbmImage image = symbol.draw(width);
        if (image.width() <= paperDots)
            return image;
    }
    return PbmImage();
}

const EscPosCodePage *codePageOf(const EscPosSettings &settings)
{
    const EscPosCodePage *page = EscPosCodePage::byName(settings.codePage);
    return page ? page : EscPosCodePage::byName(u"PC858");
}

} // namespace

EscPosPrinterDriver::EscPosPrinterDriver(QIODevice *output, const BRConfiguration *configuration,
                                         const EscPosSettings &settings)
    : PrinterDriver(configuration), m_settings(settings), m_codePage(codePageOf(settings)),
      m_encoder(output, m_codePage)
{
}

EscPosPrinterDriver::~EscPosPrinterDriver()
{
    m_encoder.flush();
}

int EscPosPrinterDriver::getPaperWidth()
{
    return m_settings.columns;
}

void EscPosPrinterDriver::reset()
{
    initPrinter();
}

void EscPosPrinterDriver::initPrinter()
{
    m_encoder.initialize(m_settings.codePageNumber);
}

void EscPosPrinterDriver::setBold()
{
    m_encoder.emphasis(true);
}

void EscPosPrinterDriver::setCharSize()
{
    m_justification = EscPosEncoder::Justification::Left;
    m_encoder.emphasis(false);
    m_encoder.characterSize(1, 1);
    m_encoder.justification(m_justification);
}

void EscPosPrinterDriver::setCharSize(int size)
{
    // Taller only: a wider character would break the column layout of the row.
    m_justification = EscPosEncoder::Justification::Left;
    m_encoder.characterSize(1, 1 + qBound(0, size, 7));
}

void EscPosPrinterDriver::setCenterJustify()
{
    m_justification = EscPosEncoder::Justification::Centre;
    m_encoder.justification(m_justification);
}

void EscPosPrinterDriver::printSeparatorLine()
{
    // A rule runs from the paper's left edge, as in the command file's grid of characters, also
    // where a centred title comes before it; the title's justification stays for what follows.
    const bool centred = m_justification == EscPosEncoder::Justification::Centre;
    if (centred)
        m_encoder.justification(EscPosEncoder::Justification::Left);
    PrinterDriver::printSeparatorLine();
    if (centred)
        m_encoder.justification(EscPosEncoder::Justification::Centre);
}

void EscPosPrinterDriver::fullCut()
{
    if (m_settings.cut == EscPosSettings::Cut::None)
        return;
    m_encoder.cut(m_settings.cut == EscPosSettings::Cut::Full ? EscPosEncoder::Cut::Full
                                                              : EscPosEncoder::Cut::Partial,
                  m_settings.cutFeed);
}

void EscPosPrinterDriver::generatePulse()
{
    m_encoder.drawerPulse(m_settings.drawerPin, m_settings.drawerOnMs, m_settings.drawerOffMs);
}

void EscPosPrinterDriver::printFiscalMark()
{
    setCenterJustify();
    setBold();
    println(QObject::tr("NOT A FISCAL DOCUMENT"));
    setCharSize();
}

void EscPosPrinterDriver::startSection()
{
    if (isFiscalDocument())
        printFiscalMark();
}

void EscPosPrinterDriver::endSection()
{
    if (m_finished)
        return;
    m_finished = true;
    if (isFiscalDocument())
        printFiscalMark();
    if (profile().openCashDrawer)
        generatePulse();
    fullCut();
    m_encoder.flush();
}

void EscPosPrinterDriver::finishAbandoned()
{
    if (m_finished)
        return;
    m_finished = true;
    setCharSize();
    fullCut();
    m_encoder.flush();
}

void EscPosPrinterDriver::print(unsigned int indent, const QString &text)
{
    m_encoder.spaces(indent);
    m_encoder.text(text);
}

void EscPosPrinterDriver::println(unsigned int indent, const QString &text)
{
    // The indent is written again before the line end, as in the command file, so that both
    // print the same characters.
    print(indent, text);
    m_encoder.spaces(indent);
    m_encoder.lineFeed();
}

void EscPosPrinterDriver::println(const QString &text)
{
    println(0, text);
}

void EscPosPrinterDriver::printAmountRow(const QString &label, const QString &amount)
{
    // "2 x Acqua ........ 1.50": the amount at the right edge of the paper, the label cut.
    const int room = qMax(0, profile().paperWidth - int(amount.size()) - 1);
    println(label.left(room).leftJustified(room, QLatin1Char('.')) + QLatin1Char(' ') + amount);
}

void EscPosPrinterDriver::printRowFiscal(const QString &, const QString &quantity, const QString &description,
                                         const QString &price)
{
    printAmountRow(quantity + QLatin1String(" x ") + description, price);
}

void EscPosPrinterDriver::printRowFiscal(const QString &elementName, const FiscalTotals &totals)
{
    // The fiscal documents send their "total" element, the command file's callers "totals":
    // on paper both show the same discount and payment.
    if (elementName != QLatin1String("total") && elementName != QLatin1String("totals"))
        return;
    if (!totals.price.isEmpty()) {
        setBold();
        printAmountRow(QObject::tr("TOTAL"), totals.price);
        setCharSize();
    }
    if (totals.discountRate.toDouble() != 0)
        printAmountRow(QObject::tr("Discount"), totals.discountRate);
    if (const std::optional<FiscalPayment> payment = FiscalPayment::fromTotals(totals))
        printAmountRow(payment->word, payment->amount);
}

void EscPosPrinterDriver::printLogo()
{
    if (m_settings.logo.isEmpty())
        return;
    PbmImage image;
    QString error;
    if (!image.load(m_settings.logo, &error)) {
        m_warnings.append(QStringLiteral("logo not printed: %1").arg(error));
        return;
    }
    m_encoder.justification(EscPosEncoder::Justification::Centre);
    m_encoder.rasterImage(image.croppedToWidth(qMax(1, profile().paperWidth) * DotsPerColumn));
    m_encoder.justification(EscPosEncoder::Justification::Left);
}

int EscPosPrinterDriver::paperDots() const
{
    return qMax(1, profile().paperWidth) * DotsPerColumn;
}

void EscPosPrinterDriver::startCentredSymbol()
{
    m_encoder.justification(EscPosEncoder::Justification::Centre);
}

void EscPosPrinterDriver::endCentredSymbol()
{
    m_encoder.justification(m_justification);
}

bool EscPosPrinterDriver::printQrCode(const QrCodeElement &request, QString *error)
{
    const CodeSymbol symbol = CodeSymbol::qrCode(request);
    if (!symbol.isValid()) {
        *error = symbol.error();
        return false;
    }
    // A symbol cut at the paper's edge reads as nothing, or worse as half a link.
    const int dots = symbol.modules() * request.size;
    if (dots > paperDots()) {
        *error = QStringLiteral("qrcode: %1 bytes with error correction %2 need %3 modules, %4 dots at "
                                "size %5: wider than the paper's %6 dots")
                     .arg(request.data.size())
                     .arg(QrCodeElement::errorCorrectionName(request.errorCorrection))
                     .arg(symbol.modules())
                     .arg(dots)
                     .arg(request.size)
                     .arg(paperDots());
        return false;
    }
    startCentredSymbol();
    if (m_settings.codes == EscPosSettings::Codes::Raster)
        m_encoder.rasterImage(symbol.draw(request.size));
    else
        m_encoder.qrCode(request.data, request.size, printerLevel(request.errorCorrection));
    endCentredSymbol();
    return true;
}

bool EscPosPrinterDriver::printBarcode(const BarcodeElement &request, QString *error)
{
    const CodeSymbol symbol = CodeSymbol::barcode(request);
    if (!symbol.isValid()) {
        *error = symbol.error();
        return false;
    }
    const bool raster = m_settings.codes == EscPosSettings::Codes::Raster;
    const QByteArray data = printerData(request.type, symbol.encodedData());
    const int modules = !raster && request.type == BarcodeElement::Type::Code128
                            ? printerCode128Modules(symbol.encodedData())
                            : symbol.modules();
    const int moduleWidth = barcodeModuleWidth(modules, paperDots());
    const PbmImage image = raster ? drawnToFit(symbol, moduleWidth, paperDots()) : PbmImage();
    if (moduleWidth == 0 || (raster && image.isNull()) || data.size() > 255) {
        *error = QStringLiteral("barcode: %1 data \"%2\" needs %3 modules: wider than the paper's %4 dots "
                                "even at %5 dots a module")
                     .arg(BarcodeElement::typeName(request.type), request.data)
                     .arg(modules)
                     .arg(paperDots())
                     .arg(narrowestModule);
        return false;
    }
    startCentredSymbol();
    if (raster)
        m_encoder.rasterImage(image);
    else
        m_encoder.barcode(printerSystem(request.type), data, request.height, moduleWidth, request.textBelow);
    endCentredSymbol();
    return true;
}

bool EscPosPrinterDriver::flush()
{
    return m_encoder.flush();
}
