#ifndef BRISTEL_TESTS_RECORDINGBACKEND_H
#define BRISTEL_TESTS_RECORDINGBACKEND_H

#include "layout/BarcodeElement.h"
#include "layout/DocumentProfile.h"
#include "layout/FiscalTotals.h"
#include "layout/PrinterDriver.h"
#include "layout/QrCodeElement.h"

#include <QStringList>
#include <QTextStream>

/*
 * A third back-end, whole in this one file as any back-end is: it implements the primitives
 * by noting each call in calls, one entry a call ("println(1):text", "sale:1|2|Acqua|1.50"),
 * so that a test reads what the document methods asked of the printer.  Given an output file,
 * it also writes the texts through the driver's output stream, bare.
 */
class RecordingBackEnd : public PrinterDriver
{
public:
    using PrinterDriver::PrinterDriver;
    explicit RecordingBackEnd(const BRConfiguration *configuration) : PrinterDriver(configuration) {}

    QStringList calls;
    // What getPaperWidth answers: the width of a profile that names none.
    int paperWidthAnswer = 32;
    // The profile loaded when the last section started.
    DocumentProfile profileAtStart;

    // What a back-end can read of the driver, read from outside.
    const DocumentProfile &loadedProfile() const { return profile(); }
    bool fiscal() const { return isFiscalDocument(); }
    bool hasOutputStream() const { return outputStream() != nullptr; }
    void flush()
    {
        if (QTextStream *stream = outputStream())
            stream->flush();
    }

protected:
    int getPaperWidth() override { return paperWidthAnswer; }
    void reset() override { calls << QStringLiteral("reset"); }
    void initPrinter() override { calls << QStringLiteral("initPrinter"); }
    void setBold() override { calls << QStringLiteral("setBold"); }
    void setCharSize() override { calls << QStringLiteral("setCharSize"); }
    void setCharSize(int size) override { calls << QStringLiteral("setCharSize(%1)").arg(size); }
    void setCenterJustify() override { calls << QStringLiteral("setCenterJustify"); }
    void fullCut() override { calls << QStringLiteral("fullCut"); }
    void generatePulse() override { calls << QStringLiteral("generatePulse"); }
    void printLogo() override { calls << QStringLiteral("printLogo"); }
    void startSection() override
    {
        profileAtStart = profile();
        calls << (isFiscalDocument() ? QStringLiteral("startSection fiscal")
                                     : QStringLiteral("startSection"));
    }
    void endSection() override { calls << QStringLiteral("endSection"); }
    void print(unsigned int indent, const QString &text) override
    {
        calls << QStringLiteral("print(%1):%2").arg(indent).arg(text);
        write(text);
    }
    void println(unsigned int indent, const QString &text) override
    {
        calls << QStringLiteral("println(%1):%2").arg(indent).arg(text);
        write(text + QLatin1Char('\n'));
    }
    void println(const QString &text) override
    {
        calls << QStringLiteral("println:") + text;
        write(text + QLatin1Char('\n'));
    }
    void printRowFiscal(const QString &department, const QString &quantity, const QString &description,
                        const QString &price) override
    {
        calls << QStringList({department, quantity, description, price})
                     .join(QLatin1Char('|'))
                     .prepend(QStringLiteral("sale:"));
    }
    void printRowFiscal(const QString &elementName, const FiscalTotals &totals) override
    {
        calls << QStringLiteral(
                     "totals(%1):price=%2 cash=%3 creditCard=%4 cheque=%5 ticket=%6 discountRate=%7")
                     .arg(elementName, totals.price, totals.cash, totals.creditCard, totals.cheque,
                          totals.ticket, totals.discountRate);
    }
    // Codes whose data is "refuse" are refused.
    bool printQrCode(const QrCodeElement &request, QString *error) override
    {
        calls << QLatin1String("qrcode ") + QString::fromUtf8(request.data);
        return accept(request.data == "refuse", error);
    }
    bool printBarcode(const BarcodeElement &request, QString *error) override
    {
        calls << QLatin1String("barcode ") + request.data;
        return accept(request.data == QLatin1String("refuse"), error);
    }

private:
    void write(const QString &text)
    {
        if (QTextStream *stream = outputStream())
            *stream << text;
    }
    static bool accept(bool refused, QString *error)
    {
        if (refused)
            *error = QStringLiteral("refused");
        return !refused;
    }
};

#endif
