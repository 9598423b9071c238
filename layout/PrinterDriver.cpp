#include "layout/PrinterDriver.h"

#include "config/BRConfiguration.h"
#include "config/DocumentProfileKind.h"
#include "config/SyncSingleton.h"
#include "layout/BarcodeElement.h"
#include "layout/QrCodeElement.h"

#include <QFile>
#include <QTextStream>

#include <utility>

struct PrinterDriver::PrintMethod
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

const PrinterDriver::PrintMethod *PrinterDriver::findPrintMethod(const QString &name)
{
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

PrinterDriver::PrinterDriver(const QString &outputPath, bool append)
    : PrinterDriver(outputPath, append, SyncSingleton<BRConfiguration>::instance())
{
}

PrinterDriver::PrinterDriver(const QString &outputPath, bool append, const BRConfiguration *configuration)
    : configuration(configuration)
{
    openOutput(outputPath, append);
}

PrinterDriver::PrinterDriver(QIODevice *output, const BRConfiguration *configuration)
    : configuration(configuration)
{
    outputStream = std::make_unique<QTextStream>(output);
    outputStream->setEncoding(QStringConverter::System);
}

PrinterDriver::~PrinterDriver()
{
    // Closing the file through the stream's flush keeps every buffered byte.
    if (outputStream)
        outputStream->flush();
    if (outputFile)
        outputFile->close();
}

QStringList PrinterDriver::takeMessages()
{
    return std::exchange(m_messages, QStringList());
}

void PrinterDriver::openOutput(const QString &outputPath, bool append)
{
    outputFile = std::make_unique<QFile>(outputPath);
    const QIODevice::OpenMode mode =
        append ? (QIODevice::WriteOnly | QIODevice::Append) : QIODevice::WriteOnly;
    if (!outputFile->open(mode)) {
        m_messages.append(QStringLiteral("PrintManager::printAbstractOrder(...): Unable To Open File"));
        return;
    }
    outputStream = std::make_unique<QTextStream>(outputFile.get());
    outputStream->setEncoding(QStringConverter::System);
}

bool PrinterDriver::startDocument()
{
    reset();
    return true;
}

bool PrinterDriver::endDocument()
{
    endSection();
    return true;
}

bool PrinterDriver::startElement(const QString &, const QString &, const QString &qName,
                                 const QXmlAttributes &attributes)
{
    if (qName == QLatin1String("method"))
        return selectPrintMethod(attributes);
    // Elements before the method element, the root among them, are ignored.
    if (!m_printMethod)
        return true;
    if (const std::optional<bool> printed = printCode(qName, attributes))
        return *printed;
    (this->*(m_printMethod->print))(qName, attributes);
    return true;
}

// Codes belong to no document's own vocabulary: every print method takes them alike, straight
// to the back-end, so no document method sees them.  Nothing when the element is no code.
std::optional<bool> PrinterDriver::printCode(const QString &name, const QXmlAttributes &attributes)
{
    QString error;
    bool printed = false;
    if (name == QLatin1String("qrcode"))
        printed = printQrCode(QrCodeElement::fromAttributes(attributes), &error);
    else if (name == QLatin1String("barcode"))
        printed = printBarcode(BarcodeElement::fromAttributes(attributes), &error);
    else
        return std::nullopt;
    if (!printed)
        m_elementError = error;
    return printed;
}

bool PrinterDriver::selectPrintMethod(const QXmlAttributes &attributes)
{
    const PrintMethod *method = findPrintMethod(attributes.value(QLatin1String("name")));
    if (!method) {
        m_stoppedOnUnknownMethod = true;
        m_messages.append(QStringLiteral("File Format Not Supported"));
        currentMethod.clear();
        m_printMethod = nullptr;
        return false; // stops the parse
    }
    loadValues(method->profileKind);
    currentMethod = method->name;
    m_printMethod = method;
    if (method->duplicate == PrintMethod::Duplicate::Set)
        duplicate = true;
    else if (method->duplicate == PrintMethod::Duplicate::Clear)
        duplicate = false;
    startSection();
    return true;
}

bool PrinterDriver::isFiscal() const
{
    if (!m_printMethod)
        return false;
    const DocumentProfileKind *kind = findDocumentProfileKind(m_printMethod->profileKind);
    return kind && kind->fiscal;
}

bool PrinterDriver::endElement(const QString &, const QString &, const QString &)
{
    return true;
}

void PrinterDriver::reset() {}

void PrinterDriver::initPrinter() {}

void PrinterDriver::printRowFiscal(const QString &, const QXmlAttributes &) {}

void PrinterDriver::printRowFiscal(const QString &, const QString &, const QString &, const QString &) {}

bool PrinterDriver::printDuplicate()
{
    return duplicate;
}

bool PrinterDriver::oneTime()
{
    if (oneTimeDone)
        return false;
    oneTimeDone = true;
    return true;
}
