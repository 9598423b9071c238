#ifndef BRISTEL_LAYOUT_PRINTERDRIVER_P_H
#define BRISTEL_LAYOUT_PRINTERDRIVER_P_H

// The state of PrinterDriver that its source files share and no back-end sees.

#include "layout/DocumentProfile.h"
#include "layout/PrinterDriver.h"

#include <QFile>
#include <QString>
#include <QTextStream>

#include <memory>

/*
 * What the driver knows while a document is read: the chosen print method, the loaded
 * profile, the printer the document named, and the latches.  The document methods' helpers
 * reach the back-end's primitives through the forwarding functions here, so that the
 * primitives stay the back-end's protected business.
 */
class PrinterDriverPrivate
{
public:
    struct PrintMethod;

    PrinterDriverPrivate(PrinterDriver *driver, const BRConfiguration *configuration)
        : q(driver), configuration(configuration)
    {
    }
    Q_DISABLE_COPY_MOVE(PrinterDriverPrivate)

    // The back-end's primitives.
    int getPaperWidth() { return q->getPaperWidth(); }
    void reset() { q->reset(); }
    void initPrinter() { q->initPrinter(); }
    void setBold() { q->setBold(); }
    void setCharSize() { q->setCharSize(); }
    void setCharSize(int size) { q->setCharSize(size); }
    void setCenterJustify() { q->setCenterJustify(); }
    void printLogo() { q->printLogo(); }
    void printSeparatorLine() { q->printSeparatorLine(); }
    void startSection() { q->startSection(); }
    void endSection() { q->endSection(); }
    void print(unsigned int indent, const QString &text) { q->print(indent, text); }
    void println(unsigned int indent, const QString &text) { q->println(indent, text); }
    void println(const QString &text) { q->println(text); }
    void printRowFiscal(const QString &department, const QString &quantity, const QString &description,
                        const QString &price)
    {
        q->printRowFiscal(department, quantity, description, price);
    }
    void printRowFiscal(const QString &elementName, const FiscalTotals &totals)
    {
        q->printRowFiscal(elementName, totals);
    }
    bool printQrCode(const QrCodeElement &request, QString *error) { return q->printQrCode(request, error); }
    bool printBarcode(const BarcodeElement &request, QString *error)
    {
        return q->printBarcode(request, error);
    }

    // Column layout (PrinterDriverLayout.cpp).
    QString descriptionRow(const QString &quantity, const QString &description, const QString &price,
                           const QString &total, QChar fill, const QString &layout) const;
    // The headings of item rows ("Num", "Description", "Price", "Amount") and of category rows
    // ("Num", "Description", empty, "Price"); once the headings have been printed they return
    // at once, without translating the labels again.
    void printItemColumnsHeader();
    void printCategoryColumnsHeader();

    // Reads a profile key of the loaded document kind as a base-10 integer (0 when unset).
    int profileInt(const QString &field) const;

    void openOutput(const QString &outputPath, bool append);
    bool selectPrintMethod(const QXmlAttributes &attributes);

    PrinterDriver *const q;
    const BRConfiguration *const configuration;
    QString currentMethod;
    const PrintMethod *printMethod = nullptr; // the entry of currentMethod, null when none
    std::unique_ptr<QFile> outputFile;
    std::unique_ptr<QTextStream> outputStream;
    bool duplicate = false;
    bool oneTimeDone = false; // shared by oneTime() and the column headings
    QString documentPrefix;
    // The printer a "printers" element names; only its name is printed.
    QString printerName;
    QString printerCharSize;
    QString printerIpAddress;
    QString printerPort;
    DocumentProfile profile;
    QString unusedText;   // Kept: carried by the driver, read by nothing
    QString credit;       // Kept: the last order's credit, stored and read by nothing
    QStringList messages; // the fixed problem lines, taken by takeMessages()
    bool stoppedOnUnknownMethod = false;
    QString elementError;
};

#endif
