#include "layout/PrinterDriver.h"

#include "config/BRConfiguration.h"
#include "config/DocumentProfileKind.h"
#include "config/SyncSingleton.h"
#include "layout/BarcodeElement.h"
#include "layout/FiscalTotals.h"
#include "layout/PrinterDriver_p.h"
#include "layout/QrCodeElement.h"

#include <QFile>
#include <QTextStream>

#include <optional>
#include <utility>

struct PrinterDriverPrivate::PrintMethod
{
    enum class Duplicate
    {
        Unchanged,
        Set,
        Clear
    };
    using Member = void (PrinterDriver::*)(const QString &, const QXmlAttributes &);

    QLatin1String name;
    QLatin1String profileKind;
    Duplicate duplicate;
    Member print;
};

namespace {

const PrinterDriverPrivate::PrintMethod *findPrintMethod(const QString &name)
{
    using PrintMethod = PrinterDriverPrivate::PrintMethod;
    using D = PrintMethod::Duplicate;
    static const PrintMethod methods[] = {
        {QLatin1String("printPartialOrder"), QLatin1String("order"), D::Unchanged,
         &PrinterDriver::printPartialOrder},
        {QLatin1String("printFullOrder"), QLatin1String("prefiscal"), D::Unchanged,
         &PrinterDriver::printFullOrder},
        {QLatin1String("printFullOrderReceipt"), QLatin1String("receipt"), D::Unchanged,
         &PrinterDriver::printFullOrderReceipt},
        {QLatin1String("printFullOrderInvoice"), QLatin1String("invoice"), D::Set,
         &PrinterDriver::printFullOrderInvoice},
        {QLatin1String("printFullOrderDelivery"), QLatin1String("delivery"), D::Unchanged,
         &PrinterDriver::printFullOrderDelivery},
        {QLatin1String("printFullOrderFiscal"), QLatin1String("fiscal"), D::Clear,
         &PrinterDriver::printFullOrderFiscal},
        {QLatin1String("printAbstractOrder"), QLatin1String("order"), D::Unchanged,
         &PrinterDriver::printAbstractOrder},
        {QLatin1String("printAbstractOrderReceipt"), QLatin1String("receipt"), D::Unchanged,
         &PrinterDriver::printAbstractOrderReceipt},
        {QLatin1String("printAbstractOrderInvoice"), QLatin1String("invoice"), D::Set,
         &PrinterDriver::printAbstractOrderInvoice},
        {QLatin1String("printAbstractOrderFiscal"), QLatin1String("fiscal"), D::Clear,
         &PrinterDriver::printAbstractOrderFiscal},
        {QLatin1String("printReport"), QLatin1String("report"), D::Unchanged, &PrinterDriver::printReport},
        {QLatin1String("printSold"), QLatin1String("sold"), D::Unchanged, &PrinterDriver::printSold},
        // The statement of account has no profile of its own and borrows the report's.
        {QLatin1String("printStatementOfAccount"), QLatin1String("report"), D::Unchanged,
         &PrinterDriver::printStatementOfAccount},
    };
    for (const PrintMethod &method : methods) {
        if (name == method.name)
            return &method;
    }
    return nullptr;
}

} // namespace

PrinterDriver::PrinterDriver(const QString &outputPath, bool append)
    : PrinterDriver(outputPath, append, SyncSingleton<BRConfiguration>::instance())
{
}

PrinterDriver::PrinterDriver(const QString &outputPath, bool append, const BRConfiguration *configuration)
    : PrinterDriver(configuration)
{
    d->openOutput(outputPath, append);
}

PrinterDriver::PrinterDriver(QIODevice *output, const BRConfiguration *configuration)
    : PrinterDriver(configuration)
{
    d->outputStream = std::make_unique<QTextStream>(output);
    d->outputStream->setEncoding(QStringConverter::System);
}

PrinterDriver::PrinterDriver(const BRConfiguration *configuration)
    : d(std::make_unique<PrinterDriverPrivate>(this, configuration))
{
}

PrinterDriver::~PrinterDriver()
{
    // Closing the file through the stream's flush keeps every buffered byte.
    if (d->outputStream)
        d->outputStream->flush();
    if (d->outputFile)
        d->outputFile->close();
}

QStringList PrinterDriver::takeMessages()
{
    return std::exchange(d->messages, QStringList());
}

void PrinterDriverPrivate::openOutput(const QString &outputPath, bool append)
{
    outputFile = std::make_unique<QFile>(outputPath);
    const QIODevice::OpenMode mode =
        append ? (QIODevice::WriteOnly | QIODevice::Append) : QIODevice::WriteOnly;
    if (!outputFile->open(mode)) {
        messages.append(QStringLiteral("PrintManager::printAbstractOrder(...): Unable To Open File"));
        return;
    }
    outputStream = std::make_unique<QTextStream>(outputFile.get());
    outputStream->setEncoding(QStringConverter::System);
}

bool PrinterDriver::startDocument()
{
    d->reset();
    return true;
}

bool PrinterDriver::endDocument()
{
    d->endSection();
    return true;
}

namespace {

// Codes belong to no document's own vocabulary: every print method takes them alike, straight
// to the back-end, so no document method sees them.  Nothing when the element is no code.
std::optional<bool> printCode(PrinterDriverPrivate &d, const QString &name, const QXmlAttributes &attributes)
{
    QString error;
    bool printed = false;
    if (name == QLatin1String("qrcode"))
        printed = d.printQrCode(QrCodeElement::fromAttributes(attributes), &error);
    else if (name == QLatin1String("barcode"))
        printed = d.printBarcode(BarcodeElement::fromAttributes(attributes), &error);
    else
        return std::nullopt;
    if (!printed)
        d.elementError = error;
    return printed;
}

} // namespace

bool PrinterDriver::startElement(const QString &, const QString &, const QString &qName,
                                 const QXmlAttributes &attributes)
{
    if (qName == QLatin1String("method"))
        return d->selectPrintMethod(attributes);
    // Elements before the method element, the root among them, are ignored.
    if (!d->printMethod)
        return true;
    if (const std::optional<bool> printed = printCode(*d, qName, attributes))
        return *printed;
    (this->*(d->printMethod->print))(qName, attributes);
    return true;
}

bool PrinterDriverPrivate::selectPrintMethod(const QXmlAttributes &attributes)
{
    const PrintMethod *method = findPrintMethod(attributes.value(QLatin1String("name")));
    if (!method) {
        stoppedOnUnknownMethod = true;
        messages.append(QStringLiteral("File Format Not Supported"));
        currentMethod.clear();
        printMethod = nullptr;
        return false; // stops the parse
    }
    q->loadValues(method->profileKind);
    currentMethod = method->name;
    printMethod = method;
    if (method->duplicate == PrintMethod::Duplicate::Set)
        duplicate = true;
    else if (method->duplicate == PrintMethod::Duplicate::Clear)
        duplicate = false;
    startSection();
    return true;
}

bool PrinterDriver::endElement(const QString &, const QString &, const QString &)
{
    return true;
}

void PrinterDriver::reset() {}

void PrinterDriver::initPrinter() {}

void PrinterDriver::printRowFiscal(const QString &, const QString &, const QString &, const QString &) {}

void PrinterDriver::printRowFiscal(const QString &, const FiscalTotals &) {}

void PrinterDriver::printRowFiscal(const QString &elementName, const QXmlAttributes &attributes)
{
    const auto value = [&attributes](const char *name) { return attributes.value(QLatin1String(name)); };
    d->printRowFiscal(elementName, FiscalTotals{value("price"), value("cash"), value("creditCard"),
                                                value("cheque"), value("ticket"), value("discountRate")});
}

bool PrinterDriver::printDuplicate() const
{
    return d->duplicate;
}

bool PrinterDriver::oneTime()
{
    if (d->oneTimeDone)
        return false;
    d->oneTimeDone = true;
    return true;
}

bool PrinterDriver::stoppedOnUnknownMethod() const
{
    return d->stoppedOnUnknownMethod;
}

QString PrinterDriver::elementError() const
{
    return d->elementError;
}

const DocumentProfile &PrinterDriver::profile() const
{
    return d->profile;
}

bool PrinterDriver::isFiscalDocument() const
{
    if (!d->printMethod)
        return false;
    const DocumentProfileKind *kind = findDocumentProfileKind(d->printMethod->profileKind);
    return kind && kind->fiscal;
}

QTextStream *PrinterDriver::outputStream() const
{
    return d->outputStream.get();
}
