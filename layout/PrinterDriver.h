#ifndef BRISTEL_DRIVER_PRINTERDRIVER_H
#define BRISTEL_DRIVER_PRINTERDRIVER_H

#include <QString>
#include <QStringList>
#include <QXmlAttributes>
#include <QXmlDefaultHandler>

#include <memory>
#include <optional>

class BRConfiguration;
struct BarcodeElement;
struct QrCodeElement;
class QFile;
class QIODevice;
class QTextStream;

/*
 * The abstract printer driver: the content handler of the document parse.
 *
 * The "method" element selects one of the thirteen print methods and loads its document
 * profile; every later start tag goes, with its attributes, to that method.  Document
 * methods never write bytes themselves: they hand texts to the device primitives, which a
 * back-end implements, so the back-end alone decides the byte format.
 */
class PrinterDriver : public QXmlDefaultHandler
{
public:
    PrinterDriver(const QString &outputPath, bool append);
    // The same, reading profiles from the given configuration instead of the process-wide one.
    PrinterDriver(const QString &outputPath, bool append, const BRConfiguration *configuration);
    // Writes to a device the caller opened and keeps open (standard output, a pipe, a buffer).
    PrinterDriver(QIODevice *output, const BRConfiguration *configuration);
    ~PrinterDriver() override;

    PrinterDriver(const PrinterDriver &) = delete;
    PrinterDriver &operator=(const PrinterDriver &) = delete;

    // Content handler.
    bool startDocument() override;
    bool endDocument() override;
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &attributes) override;
    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override;

    // Device primitives.
    virtual int getPaperWidth() = 0;
    virtual void reset();
    virtual void setBold() = 0;
    virtual void setCharSize() = 0;
    virtual void setCharSize(int size) = 0;
    virtual void setCenterJustify() = 0;
    virtual void fullCut() = 0;
    virtual void generatePulse() = 0;
    virtual void printSeparatorLine();
    virtual void startSection() = 0;
    virtual void endSection() = 0;
    virtual void initPrinter();
    virtual void print(unsigned int indent, const QString &text) = 0;
    virtual void println(unsigned int indent, const QString &text) = 0;
    virtual void println(const QString &text) = 0;
    virtual void printRowFiscal(const QString &elementName, const QXmlAttributes &attributes);
    virtual void printRowFiscal(const QString &department, const QString &quantity,
                                const QString &description, const QString &price);
    // A QR code or a barcode, which a job may carry wherever a line may stand, in any document.
    // False, with the reason in *error, when the code cannot be printed as the job asks; the
    // parse then stops at that element.
    [[nodiscard]] virtual bool printQrCode(const QrCodeElement &request, QString *error) = 0;
    [[nodiscard]] virtual bool printBarcode(const BarcodeElement &request, QString *error) = 0;

    // Section headers.
    virtual void printGeometry(const QXmlAttributes &attributes);
    virtual void printPrinterInfo();
    virtual void printHeaders(const QXmlAttributes &attributes);
    virtual void printLogo() = 0;
    virtual void printCompanyHeader(const QXmlAttributes &attributes);
    virtual void printReceiptHeader(const QXmlAttributes &attributes);
    virtual void printInvoiceHeader(const QXmlAttributes &attributes);
    virtual void printDeliveryHeader(const QXmlAttributes &attributes);
    virtual void printCustomerHeader(const QXmlAttributes &attributes);
    virtual void printOrderInfo(const QXmlAttributes &attributes);
    virtual bool printSections(const QString &name, const QXmlAttributes &attributes);
    virtual void printColumnsHeader(const QString &quantityHeading, const QString &descriptionHeading,
                                    const QString &priceHeading, const QString &totalHeading);
    // The headings of item rows ("Num", "Description", "Price", "Amount") and of category rows
    // ("Num", "Description", empty, "Price"), through printColumnsHeader; once the headings
    // have been printed they return at once, without translating the labels again.
    void printItemColumnsHeader();
    void printCategoryColumnsHeader();

    // The thirteen print methods, one per value of the "method" element's name.
    virtual void printPartialOrder(const QString &name, const QXmlAttributes &attributes);
    virtual void printFullOrder(const QString &name, const QXmlAttributes &attributes);
    virtual void printFullOrderReceipt(const QString &name, const QXmlAttributes &attributes);
    virtual void printFullOrderInvoice(const QString &name, const QXmlAttributes &attributes);
    virtual void printFullOrderDelivery(const QString &name, const QXmlAttributes &attributes);
    virtual void printFullOrderFiscal(const QString &name, const QXmlAttributes &attributes);
    virtual void printAbstractOrder(const QString &name, const QXmlAttributes &attributes);
    virtual void printAbstractOrderReceipt(const QString &name, const QXmlAttributes &attributes);
    virtual void printAbstractOrderInvoice(const QString &name, const QXmlAttributes &attributes);
    virtual void printAbstractOrderFiscal(const QString &name, const QXmlAttributes &attributes);
    virtual void printReport(const QString &name, const QXmlAttributes &attributes);
    virtual void printSold(const QString &name, const QXmlAttributes &attributes);
    virtual void printStatementOfAccount(const QString &name, const QXmlAttributes &attributes);

    virtual bool printDuplicate();

    bool oneTime();
    // The fixed lines of the problems met so far, oldest first, taken out of the driver:
    // "File Format Not Supported" and the others the ordering application watches for.  The
    // driver prints nothing; bristel-compile puts them on standard output.
    QStringList takeMessages();
    bool stoppedOnUnknownMethod() const { return m_stoppedOnUnknownMethod; }
    // Why the back-end could not print the element the parse stopped at; empty otherwise.
    QString elementError() const { return m_elementError; }

    QString documentPath(const QString &kind) const;
    void loadValues(const QString &kind);
    QString descriptionRow(const QString &quantity, const QString &description, const QString &price,
                           const QString &total, const QChar &fill, const QString &layout) const;

protected:
    // Reads a profile key of the loaded document kind as a base-10 integer (0 when unset).
    int profileInt(const QString &field) const;
    // Whether the selected print method makes a fiscal receipt, by its profile's kind: the
    // back-ends open and close the fiscal printer's records, or mark the receipt, by it.
    bool isFiscal() const;

    const BRConfiguration *configuration;
    QString currentMethod;
    std::unique_ptr<QFile> outputFile;
    std::unique_ptr<QTextStream> outputStream;
    bool duplicate = false;
    bool oneTimeDone = false;
    QString justification = QStringLiteral("left");
    QString documentPrefix;
    QString printerName;
    QString printerCharSize;
    QString printerIpAddress;
    QString printerPort;
    int quantityFieldWidth = 0;
    int priceFieldWidth = 0;
    int totalPriceFieldWidth = 0;
    int paperWidth = 0;
    int paperRows = 0;
    QString unusedText; // carried by the driver, read by nothing
    // The printGeometry and printLogo switches take a suffix: C++ does not let a data member
    // share its name with the header methods of the same names.
    bool printGeometrySwitch = false;
    bool printHeader = false;
    bool printLogoSwitch = false;
    bool printCompany = false;
    bool printDeliveryAddress = false;
    bool printTelephone = false;
    bool printDate = false;
    bool printTime = false;
    bool printTable = false;
    bool printCustomer = false;
    bool printBillingAddress = false;
    bool printLicenseNumber = false;
    bool printFiscalCode = false;
    bool printCredit = false;
    bool printWaiter = false;
    bool printNote = false;
    bool openCashDrawer = false;
    QString credit;

private:
    struct PrintMethod;
    static const PrintMethod *findPrintMethod(const QString &name);
    void openOutput(const QString &outputPath, bool append);
    bool selectPrintMethod(const QXmlAttributes &attributes);
    std::optional<bool> printCode(const QString &name, const QXmlAttributes &attributes);

    const PrintMethod *m_printMethod = nullptr; // the entry of currentMethod, null when none
    mutable QStringList m_messages;             // documentPath, a const lookup, adds to it too
    bool m_stoppedOnUnknownMethod = false;
    QString m_elementError;
};

#endif
