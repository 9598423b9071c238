// Document profiles: the widths and switches of the loaded document kind.

#include "layout/PrinterDriver.h"

#include "config/BRConfiguration.h"
#include "config/DocumentProfileKind.h"

QString PrinterDriver::documentPath(const QString &kind) const
{
    const QString lowered = kind.toLower();
    if (const DocumentProfileKind *row = findDocumentProfileKind(lowered))
        return QLatin1String(row->keyPrefix);
    m_messages.append(QLatin1String("Error into PrinterDriver::documentPath:  ") + lowered);
    return QLatin1String(fallbackDocumentProfileKind().keyPrefix);
}

int PrinterDriver::profileInt(const QString &field) const
{
    // A width beyond any paper is held to a bound, so that the column arithmetic cannot
    // overflow and a single row cannot ask for gigabytes.
    constexpr int Limit = 100000;
    const int value = configuration->getStrValue(documentPrefix + field).toInt(nullptr, 10);
    return qBound(-Limit, value, Limit);
}

void PrinterDriver::loadValues(const QString &kind)
{
    documentPrefix = documentPath(kind);

    quantityFieldWidth = profileInt(QStringLiteral("quantityFieldWidth"));
    priceFieldWidth = profileInt(QStringLiteral("priceFieldWidth"));
    totalPriceFieldWidth = profileInt(QStringLiteral("totalPriceFieldWidth"));
    paperWidth = profileInt(QStringLiteral("paperWidth"));
    paperRows = profileInt(QStringLiteral("paperRows"));
    if (paperWidth == 0)
        paperWidth = getPaperWidth();

    // "style" is part of every profile but has no effect on the printed page.
    configuration->getStrValue(documentPrefix + QLatin1String("style"));

    const auto isOn = [this](const char *field) {
        return configuration->getStrValue(documentPrefix + QLatin1String(field)) == QLatin1String("true");
    };
    printGeometrySwitch = isOn("printGeometry");
    printHeader = isOn("printHeader");
    printLogoSwitch = isOn("printLogo");
    printCompany = isOn("printCompany");
    printDeliveryAddress = isOn("printDeliveryAddress");
    printBillingAddress = isOn("printBillingAddress");
    printTelephone = isOn("printTelephone");
    printDate = isOn("printDate");
    printTime = isOn("printTime");
    printTable = isOn("printTable");
    printCustomer = isOn("printCustomer");
    printLicenseNumber = isOn("printLicenseNumber");
    printFiscalCode = isOn("printFiscalCode");
    printCredit = isOn("printCredit");
    printWaiter = isOn("printWaiter");
    printNote = isOn("printNote");
    openCashDrawer = isOn("openCashDrawer");
}
