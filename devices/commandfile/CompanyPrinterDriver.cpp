#include "devices/commandfile/CompanyPrinterDriver.h"

#include "devices/commandfile/FiscalPayment.h"
#include "layout/FiscalTotals.h"

#include <QTextStream>

namespace {

const QLatin1String RecordEnd("\r\n");

} // namespace

CompanyPrinterDriver::CompanyPrinterDriver(const QString &outputPath) : PrinterDriver(outputPath, false) {}

CompanyPrinterDriver::CompanyPrinterDriver(const QString &outputPath, const BRConfiguration *configuration)
    : PrinterDriver(outputPath, false, configuration)
{
}

CompanyPrinterDriver::CompanyPrinterDriver(QIODevice *output, const BRConfiguration *configuration)
    : PrinterDriver(output, configuration)
{
}

CompanyPrinterDriver::~CompanyPrinterDriver() = default;

int CompanyPrinterDriver::getPaperWidth()
{
    return 32;
}

void CompanyPrinterDriver::setBold() {}

void CompanyPrinterDriver::setCharSize()
{
    m_justification = QStringLiteral("left");
}

void CompanyPrinterDriver::setCharSize(int)
{
    m_justification = QStringLiteral("left");
}

void CompanyPrinterDriver::setCenterJustify()
{
    m_justification = QStringLiteral("center");
}

void CompanyPrinterDriver::fullCut() {}

void CompanyPrinterDriver::generatePulse() {}

void CompanyPrinterDriver::printLogo() {}

// The fiscal printer and the printer side of the command file have no codes: the element is
// accepted, whatever its attributes, and leaves no byte behind.
bool CompanyPrinterDriver::printQrCode(const QrCodeElement &, QString *)
{
    return true;
}

bool CompanyPrinterDriver::printBarcode(const BarcodeElement &, QString *)
{
    return true;
}

void CompanyPrinterDriver::writeRecord(const QString &record)
{
    // Without an output file there is nowhere to write: the record is dropped.
    if (QTextStream *stream = outputStream())
        *stream << record << RecordEnd;
}

void CompanyPrinterDriver::startSection()
{
    if (isFiscalDocument())
        writeRecord(QStringLiteral("1020;1"));
}

void CompanyPrinterDriver::endSection()
{
    if (isFiscalDocument())
        writeRecord(QStringLiteral("1030;1;1"));
}

void CompanyPrinterDriver::print(unsigned int indent, const QString &text)
{
    QTextStream *stream = outputStream();
    if (!stream)
        return;
    for (unsigned int i = 0; i < indent; ++i)
        *stream << ' ';
    *stream << text;
}

void CompanyPrinterDriver::println(unsigned int indent, const QString &text)
{
    // The line end carries the indent a second time, then CR LF CR: the printer side expects it.
    print(indent, text);
    print(indent, QStringLiteral("\r\n\r"));
}

void CompanyPrinterDriver::println(const QString &text)
{
    println(0, text);
}

void CompanyPrinterDriver::printRowFiscal(const QString &department, const QString &quantity,
                                          const QString &description, const QString &price)
{
    // The sale record reads department, description, price, quantity.
    writeRecord(QLatin1String("1021;1;;") + department + QLatin1String(";1;;") + description +
                QLatin1String("; ") + price + QLatin1Char(';') + quantity);
}

void CompanyPrinterDriver::printRowFiscal(const QString &department, const QString &quantity,
                                          const QString &description, const QString &price,
                                          const QString &value)
{
    printRowFiscal(department, quantity, description, price);
    writeRecord(QLatin1String("1025;1;1;;") + value);
}

void CompanyPrinterDriver::printRowFiscal(const QString &elementName, const FiscalTotals &totals)
{
    // Kept: the fiscal documents pass their "total" element, and the printer side takes only
    // "totals"; their payments therefore leave no record.
    if (elementName != QLatin1String("totals"))
        return;

    // The discount rate is taken as it stands: a decimal comma makes it zero.
    if (totals.discountRate.toDouble() != 0) {
        writeRecord(QStringLiteral("1028"));
        writeRecord(QLatin1String("1025;1;1;;") + totals.discountRate);
    }

    if (const std::optional<FiscalPayment> payment = FiscalPayment::fromTotals(totals)) {
        writeRecord(QLatin1String("1030;") + QString::number(payment->kind) + QLatin1String(";1;") +
                    payment->word + QLatin1Char(';') + payment->amount);
    }
}
