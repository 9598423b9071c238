#ifndef BRISTEL_DEVICES_ESCPOS_ESCPOSPRINTERDRIVER_H
#define BRISTEL_DEVICES_ESCPOS_ESCPOSPRINTERDRIVER_H

#include "devices/escpos/EscPosEncoder.h"
#include "devices/escpos/EscPosSettings.h"
#include "layout/PrinterDriver.h"

#include <QStringList>

class EscPosCodePage;

/*
 * The receipt-printer back-end: the same document methods as the command file, printed as
 * ESC/POS bytes that a thermal printer takes directly.  Emphasis, centring and double height
 * reach the paper; every document ends with a cut and, where the profile opens the cash
 * drawer, a drawer pulse.  A fiscal receipt cannot be driven through ESC/POS: its sales and
 * payment are printed as a readable receipt, marked as not being a fiscal document.
 */
class EscPosPrinterDriver : public PrinterDriver
{
public:
    // The device stays the caller's and must be open for writing.
    EscPosPrinterDriver(QIODevice *output, const BRConfiguration *configuration,
                        const EscPosSettings &settings);
    ~EscPosPrinterDriver() override;

    // Ends a job whose document broke off: the paper is cut, but no drawer opens.
    void finishAbandoned();
    // Hands every byte to the device; false once a write has failed.
    bool flush();
    // Problems that did not stop the job (an unreadable logo), one a line.
    QStringList warnings() const { return m_warnings; }

protected:
    int getPaperWidth() override;
    void reset() override;
    void initPrinter() override;
    void setBold() override;
    void setCharSize() override;
    void setCharSize(int size) override;
    void setCenterJustify() override;
    void printSeparatorLine() override;
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

private:
    void printFiscalMark();
    void printAmountRow(const QString &label, const QString &amount);
    int paperDots() const;
    // Codes stand in the middle of the paper; what follows keeps the justification it had.
    void startCentredSymbol();
    void endCentredSymbol();

    EscPosSettings m_settings;
    const EscPosCodePage *m_codePage;
    EscPosEncoder m_encoder;
    QStringList m_warnings;
    // Where lines stand; a rule and a code go back to it after they are printed.
    EscPosEncoder::Justification m_justification = EscPosEncoder::Justification::Left;
    bool m_finished = false;
};

#endif
