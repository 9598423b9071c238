#ifndef BRISTEL_BACKEND_COMPANYPRINTERDRIVER_H
#define BRISTEL_BACKEND_COMPANYPRINTERDRIVER_H

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
    void printRowFiscal(const QString &elementName, const QXmlAttributes &attributes) override;
    void printRowFiscal(const QString &department, const QString &quantity, const QString &description,
                        const QString &price) override;
    void printLogo() override;
    bool printQrCode(const QrCodeElement &request, QString *error) override;
    bool printBarcode(const BarcodeElement &request, QString *error) override;
    virtual void printRowFiscal(const QString &department, const QString &quantity,
                                const QString &description, const QString &price, const QString &value);

private:
    void writeRecord(const QString &record);

    QString m_unused; // carried by the back-end, read by nothing
};

#endif
