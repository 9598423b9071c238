#include "DriverProbe.h"

#include <QTextStream>

void DriverProbe::startSection()
{
    calls << QStringLiteral("startSection");
    CompanyPrinterDriver::startSection();
}

void DriverProbe::endSection()
{
    calls << QStringLiteral("endSection");
    CompanyPrinterDriver::endSection();
}

void DriverProbe::reset()
{
    calls << QStringLiteral("reset");
}

void DriverProbe::record(const char *method, const QString &name, const QXmlAttributes &attributes)
{
    QString call = QLatin1String(method) + QLatin1Char('(') + name;
    for (int i = 0; i < attributes.count(); ++i)
        call += QLatin1Char(' ') + attributes.qName(i) + QLatin1Char('=') + attributes.value(i);
    calls << call + QLatin1Char(')');
}

#define RECORDER(method)                                                                                     \
    void DriverProbe::method(const QString &name, const QXmlAttributes &attributes)                          \
    {                                                                                                        \
        record(#method, name, attributes);                                                                   \
    }
RECORDER(printPartialOrder)
RECORDER(printFullOrder)
RECORDER(printFullOrderReceipt)
RECORDER(printFullOrderInvoice)
RECORDER(printFullOrderDelivery)
RECORDER(printFullOrderFiscal)
RECORDER(printAbstractOrder)
RECORDER(printAbstractOrderReceipt)
RECORDER(printAbstractOrderInvoice)
RECORDER(printAbstractOrderFiscal)
RECORDER(printReport)
RECORDER(printSold)
RECORDER(printStatementOfAccount)
#undef RECORDER

void DriverProbe::flush()
{
    if (outputStream)
        outputStream->flush();
}

DriverProbe::Profile DriverProbe::profile() const
{
    return {quantityFieldWidth,
            priceFieldWidth,
            totalPriceFieldWidth,
            paperWidth,
            paperRows,
            {printGeometrySwitch, printHeader, printLogoSwitch, printCompany, printDeliveryAddress,
             printTelephone, printDate, printTime, printTable, printCustomer, printBillingAddress,
             printLicenseNumber, printFiscalCode, printCredit, printWaiter, printNote, openCashDrawer}};
}

QStringList DriverProbe::switchNames()
{
    return {QStringLiteral("printGeometry"),
            QStringLiteral("printHeader"),
            QStringLiteral("printLogo"),
            QStringLiteral("printCompany"),
            QStringLiteral("printDeliveryAddress"),
            QStringLiteral("printTelephone"),
            QStringLiteral("printDate"),
            QStringLiteral("printTime"),
            QStringLiteral("printTable"),
            QStringLiteral("printCustomer"),
            QStringLiteral("printBillingAddress"),
            QStringLiteral("printLicenseNumber"),
            QStringLiteral("printFiscalCode"),
            QStringLiteral("printCredit"),
            QStringLiteral("printWaiter"),
            QStringLiteral("printNote"),
            QStringLiteral("openCashDrawer")};
}

QXmlAttributes makeAttributes(std::initializer_list<std::pair<const char *, const char *>> list)
{
    QXmlAttributes result;
    for (const auto &[name, value] : list)
        result.append(QString::fromUtf8(name), QString(), QString::fromUtf8(name), QString::fromUtf8(value));
    return result;
}
