#ifndef BRISTEL_LAYOUT_PRINTERDRIVER_H
#define BRISTEL_LAYOUT_PRINTERDRIVER_H

#include <QString>
#include <QStringList>
#include <QXmlAttributes>
#include <QXmlDefaultHandler>

#include <memory>

class BRConfiguration;
struct BarcodeElement;
struct DocumentProfile;
struct FiscalTotals;
class PrinterDriverPrivate;
struct QrCodeElement;
class QIODevice;
class QTextStream;

/*
 * The abstract printer driver: the content handler of the document parse.
 *
 * The "method" element selects one of the thirteen print methods and loads its document
 * profile; every later start tag goes, with its attributes, to that method.  Document
 * methods never write bytes themselves: they lay out texts and hand them to the device
 * primitives, the protected virtual functions below, which a back-end implements.  A back-end
 * sees nothing else of the driver: the primitives take plain values, and the little state it
 * may need (the loaded profile, whether the document is fiscal, the output stream) comes
 * through the const accessors beside them.  Adding a back-end is one subclass in one file.
 */
class PrinterDriver : public QXmlDefaultHandler
{
public:
    PrinterDriver(const QString &outputPath, bool append);
    // The same, reading profiles from the given configuration instead of the process-wide one.
    PrinterDriver(const QString &outputPath, bool append, const BRConfiguration *configuration);
    // Writes to a device the caller opened and keeps open (standard output, a pipe, a buffer).
    PrinterDriver(QIODevice *output, const BRConfiguration *configuration);
    // For a back-end that writes its bytes its own way: no output stream at all.
    explicit PrinterDriver(const BRConfiguration *configuration);
    ~PrinterDriver() override;

    PrinterDriver(const PrinterDriver &) = delete;
    PrinterDriver &operator=(const PrinterDriver &) = delete;

    // Content handler.
    bool startDocument() override;
    bool endDocument() override;
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &attributes) override;
    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override;

    // The thirteen print methods, one per value of the "method" element's name.
    void printPartialOrder(const QString &name, const QXmlAttributes &attributes);
    void printFullOrder(const QString &name, const QXmlAttributes &attributes);
    void printFullOrderReceipt(const QString &name, const QXmlAttributes &attributes);
    void printFullOrderInvoice(const QString &name, const QXmlAttributes &attributes);
    void printFullOrderDelivery(const QString &name, const QXmlAttributes &attributes);
    void printFullOrderFiscal(const QString &name, const QXmlAttributes &attributes);
    void printAbstractOrder(const QString &name, const QXmlAttributes &attributes);
    void printAbstractOrderReceipt(const QString &name, const QXmlAttributes &attributes);
    void printAbstractOrderInvoice(const QString &name, const QXmlAttributes &attributes);
    void printAbstractOrderFiscal(const QString &name, const QXmlAttributes &attributes);
    void printReport(const QString &name, const QXmlAttributes &attributes);
    void printSold(const QString &name, const QXmlAttributes &attributes);
    void printStatementOfAccount(const QString &name, const QXmlAttributes &attributes);

    // Section headers.
    bool printSections(const QString &name, const QXmlAttributes &attributes);
    void printGeometry(const QXmlAttributes &attributes);
    void printPrinterInfo();
    void printHeaders(const QXmlAttributes &attributes);
    void printCompanyHeader(const QXmlAttributes &attributes);
    void printReceiptHeader(const QXmlAttributes &attributes);
    void printInvoiceHeader(const QXmlAttributes &attributes);
    void printDeliveryHeader(const QXmlAttributes &attributes);
    void printCustomerHeader(const QXmlAttributes &attributes);
    void printOrderInfo(const QXmlAttributes &attributes);

    // Column layout.
    void printColumnsHeader(const QString &quantityHeading, const QString &descriptionHeading,
                            const QString &priceHeading, const QString &totalHeading);
    QString descriptionRow(const QString &quantity, const QString &description, const QString &price,
                           const QString &total, const QChar &fill, const QString &layout) const;

    // Document profiles.
    QString documentPath(const QString &kind) const;
    void loadValues(const QString &kind);

    // The closing element of a fiscal receipt, handed to the back-end's totals record.
    void printRowFiscal(const QString &elementName, const QXmlAttributes &attributes);

    bool printDuplicate() const;
    bool oneTime();
    // The fixed lines of the problems met so far, oldest first, taken out of the driver:
    // "File Format Not Supported" and the others the ordering application watches for.  The
    // driver prints nothing; bristel-compile puts them on standard output.
    QStringList takeMessages();
    bool stoppedOnUnknownMethod() const;
    // Why the back-end could not print the element the parse stopped at; empty otherwise.
    QString elementError() const;

protected:
    // The device primitives: all a back-end implements, and all the document methods use.

    // The paper's width in columns, for a profile that names none.
    virtual int getPaperWidth() = 0;
    // The document starts; a statement's heading also ends with it.  Nothing by default.
    virtual void reset();
    // A "printers" element named the printer to print on.  Nothing by default.
    virtual void initPrinter();
    // Bold text from here on.
    virtual void setBold() = 0;
    // Normal text from here on: not bold, normal size, left-justified.
    virtual void setCharSize() = 0;
    // Character size from 0 (normal) upwards, for what follows.
    virtual void setCharSize(int size) = 0;
    // Centred lines from here on, until the next setCharSize().
    virtual void setCenterJustify() = 0;
    virtual void fullCut() = 0;
    // The pulse that opens the cash drawer.
    virtual void generatePulse() = 0;
    // The stored logo, wherever a "logo" element stands, whatever the profile's switch says.
    virtual void printLogo() = 0;
    // A rule across the paper.  By default profile().paperWidth "=" signs through println.
    virtual void printSeparatorLine();
    // A "method" element chose a print method (isFiscalDocument() tells which kind); it is
    // called again for each later "method" element, with nothing closed in between.
    virtual void startSection() = 0;
    // The document ended after a complete parse; once per document.
    virtual void endSection() = 0;
    // indent blanks, then text; the line goes on.
    virtual void print(unsigned int indent, const QString &text) = 0;
    // indent blanks and text, then the line ends.
    virtual void println(unsigned int indent, const QString &text) = 0;
    virtual void println(const QString &text) = 0;
    // One sale of a fiscal receipt, the fields as the document writes them; the description is
    // already cut to the configured width.  Nothing by default.
    virtual void printRowFiscal(const QString &department, const QString &quantity,
                                const QString &description, const QString &price);
    // The closing element of a fiscal receipt, by its element name ("total" from the fiscal
    // documents), with its figures.  Nothing by default.
    virtual void printRowFiscal(const QString &elementName, const FiscalTotals &totals);
    // A QR code or a barcode, which a job may carry wherever a line may stand, in any document.
    // False, with the reason in *error, when the code cannot be printed as the job asks; the
    // parse then stops at that element.
    [[nodiscard]] virtual bool printQrCode(const QrCodeElement &request, QString *error) = 0;
    [[nodiscard]] virtual bool printBarcode(const BarcodeElement &request, QString *error) = 0;

    // What a back-end may read of the driver's state.

    // The profile of the document kind loaded by the last "method" element.
    const DocumentProfile &profile() const;
    // The chosen print method is one of the two fiscal receipts.
    bool isFiscalDocument() const;
    // The text stream on the output file or device; null when the file could not be opened or
    // the back-end writes its own way.
    QTextStream *outputStream() const;

private:
    friend class PrinterDriverPrivate;
    std::unique_ptr<PrinterDriverPrivate> d;
};

#endif
