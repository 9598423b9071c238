#ifndef BRISTEL_TESTS_DRIVERPROBE_H
#define BRISTEL_TESTS_DRIVERPROBE_H

#include "config/BRConfiguration.h"
#include "devices/commandfile/CompanyPrinterDriver.h"

#include <QStringList>
#include <QTemporaryDir>

#include <memory>

// The command-file back-end with every print method replaced by a recorder, and the
// profile fields opened for inspection.
class DriverProbe : public CompanyPrinterDriver
{
public:
    using CompanyPrinterDriver::CompanyPrinterDriver;

    QStringList calls;
    int paperWidthAnswer = 32;

    int getPaperWidth() override { return paperWidthAnswer; }
    void startSection() override;
    void endSection() override;
    void reset() override;

    void printPartialOrder(const QString &name, const QXmlAttributes &attributes) override;
    void printFullOrder(const QString &name, const QXmlAttributes &attributes) override;
    void printFullOrderReceipt(const QString &name, const QXmlAttributes &attributes) override;
    void printFullOrderInvoice(const QString &name, const QXmlAttributes &attributes) override;
    void printFullOrderDelivery(const QString &name, const QXmlAttributes &attributes) override;
    void printFullOrderFiscal(const QString &name, const QXmlAttributes &attributes) override;
    void printAbstractOrder(const QString &name, const QXmlAttributes &attributes) override;
    void printAbstractOrderReceipt(const QString &name, const QXmlAttributes &attributes) override;
    void printAbstractOrderInvoice(const QString &name, const QXmlAttributes &attributes) override;
    void printAbstractOrderFiscal(const QString &name, const QXmlAttributes &attributes) override;
    void printReport(const QString &name, const QXmlAttributes &attributes) override;
    void printSold(const QString &name, const QXmlAttributes &attributes) override;
    void printStatementOfAccount(const QString &name, const QXmlAttributes &attributes) override;

    void flush();
    QString method() const { return currentMethod; }
    QString prefix() const { return documentPrefix; }
    bool fiscal() const { return isFiscal(); }
    bool duplicateFlag() const { return duplicate; }
    void setDuplicate(bool value) { duplicate = value; }
    QString justificationWord() const { return justification; }
    bool streamOpen() const { return outputStream != nullptr; }

    struct Profile
    {
        int quantityFieldWidth, priceFieldWidth, totalPriceFieldWidth, paperWidth, paperRows;
        QList<bool> switches; // printGeometry ... openCashDrawer, in declaration order
    };
    Profile profile() const;
    static QStringList switchNames();

private:
    void record(const char *method, const QString &name, const QXmlAttributes &attributes);
};

QXmlAttributes makeAttributes(std::initializer_list<std::pair<const char *, const char *>> list);

#endif
