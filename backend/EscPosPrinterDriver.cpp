#include "backend/EscPosPrinterDriver.h"

#include "backend/EscPosCodePage.h"
#include "backend/FiscalPayment.h"
#include "backend/PbmImage.h"

#include <QObject>

namespace {

// Raster images are printed at most this many dots wide: 12 dots a character column, the
// cell of the common 203-dpi printers' font A.
constexpr int DotsPerColumn = 12;

const EscPosCodePage *codePageOf(const EscPosSettings &settings)
{
    const EscPosCodePage *page = EscPosCodePage::byName(settings.codePage);
    return page ? page : EscPosCodePage::byName(u"PC858");
}

} // namespace

EscPosPrinterDriver::EscPosPrinterDriver(QIODevice *output, const BRConfiguration *configuration,
                                         const EscPosSettings &settings)
    : PrinterDriver(output, configuration), m_settings(settings), m_codePage(codePageOf(settings)),
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
    justification = QStringLiteral("left");
    m_encoder.emphasis(false);
    m_encoder.characterSize(1, 1);
    m_encoder.justification(EscPosEncoder::Justification::Left);
}

void EscPosPrinterDriver::setCharSize(int size)
{
    // Taller only: a wider character would break the column layout of the row.
    justification = QStringLiteral("left");
    m_encoder.characterSize(1, 1 + qBound(0, size, 7));
}

void EscPosPrinterDriver::setCenterJustify()
{
    justification = QStringLiteral("center");
    m_encoder.justification(EscPosEncoder::Justification::Centre);
}

void EscPosPrinterDriver::printSeparatorLine()
{
    // A rule runs from the paper's left edge, as in the command file's grid of characters, also
    // where a centred title comes before it; the title's justification stays for what follows.
    const bool centred = justification == QLatin1String("center");
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

bool EscPosPrinterDriver::isFiscal() const
{
    return currentMethod == QLatin1String("printAbstractOrderFiscal") ||
           currentMethod == QLatin1String("printFullOrderFiscal");
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
    if (isFiscal())
        printFiscalMark();
}

void EscPosPrinterDriver::endSection()
{
    if (m_finished)
        return;
    m_finished = true;
    if (isFiscal())
        printFiscalMark();
    if (openCashDrawer)
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
    const int room = qMax(0, paperWidth - int(amount.size()) - 1);
    println(label.left(room).leftJustified(room, QLatin1Char('.')) + QLatin1Char(' ') + amount);
}

void EscPosPrinterDriver::printRowFiscal(const QString &, const QString &quantity, const QString &description,
                                         const QString &price)
{
    printAmountRow(quantity + QLatin1String(" x ") + description, price);
}

void EscPosPrinterDriver::printRowFiscal(const QString &elementName, const QXmlAttributes &attributes)
{
    // The fiscal documents send their "total" element, the command file's callers "totals":
    // on paper both show the same discount and payment.
    if (elementName != QLatin1String("total") && elementName != QLatin1String("totals"))
        return;
    const QString price = attributes.value(QLatin1String("price"));
    if (!price.isEmpty()) {
        setBold();
        printAmountRow(QObject::tr("TOTAL"), price);
        setCharSize();
    }
    const QString discountRate = attributes.value(QLatin1String("discountRate"));
    if (discountRate.toDouble() != 0)
        printAmountRow(QObject::tr("Discount"), discountRate);
    if (const std::optional<FiscalPayment> payment = FiscalPayment::fromTotals(attributes))
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
    m_encoder.rasterImage(image.croppedToWidth(qMax(1, paperWidth) * DotsPerColumn));
    m_encoder.justification(EscPosEncoder::Justification::Left);
}

bool EscPosPrinterDriver::flush()
{
    return m_encoder.flush();
}
