#ifndef BRISTEL_DEVICES_COMMANDFILE_COMPANYPRINTERDRIVER_H
#define BRISTEL_DEVICES_COMMANDFILE_COMPANYPRINTERDRIVER_H

#include "layout/PrinterDriver.h"

/*
 * The command-file back-end: text lines ended by CR LF CR for the ordinary documents, and
 * numbered command records ended by CR LF for the fiscal printer.  Another program sends
 * the file on to the printer, so every byte written here is part of that interface.
 * Device functions the file format has no command for (bold, cut, pulse, logo, QR codes and
 * barcodes) write nothing.
 */
class CompanyPrinterDriver : public PrinterDriver
{
public:
    explicit CompanyPrinterDriver(const QString &outputPath);
    CompanyPrinterDriver(const QString &outputPath, const BRConfiguration *configuration);
    // Writes to a device the caller keeps open, such as standard output.
    CompanyPrinterDriver(QIODevice *output, const BRConfiguration *configuration);
    ~CompanyPrinterDriver() override;

    // The primitives are public here: the command file's records may be written directly.
    using PrinterDriver::initPrinter;
    using PrinterDriver::printRowFiscal;
    using PrinterDriver::printSeparatorLine;
    using PrinterDriver::reset;
    int getPaperWidth() override;
    void setBold() override;
    void setCharSize() override;
    void setCharSize(int size) override;
    void setCenterJustify() override;
    void fullCut() override;
    void generatePulse() override;
    void startSection() override;
    void endSection() override;
    void print(unsigned int indent, const QString &text) override;
    void println(unsigned int indent, const QString &text) override;
    void println(const QString &text) override;
    void printRowFiscal(const QString &elementName, const FiscalTotals &totals) override;
    void printRowFiscal(const QString &department, const QString &quantity, const QString &description,
                        const QString &price) override;
    void printLogo() override;
    bool printQrCode(const QrCodeElement &request, QString *error) override;
    bool printBarcode(const BarcodeElement &request, QString *error) override;
    virtual void printRowFiscal(const QString &department, const QString &quantity,
                                const QString &description, const QString &price, const QString &value);

    // "left" or "center", as setCharSize and setCenterJustify leave it.  Kept: the command file
    // has no place for it, so nothing reads it and centred lines are written like any other.
    QString justification() const { return m_justification; }

private:
    void writeRecord(const QString &record);

    QString m_justification = QStringLiteral("left");
    QString m_unused; // Kept: carried by the back-end, read by nothing
};

#endif
