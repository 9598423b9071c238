// Document profiles: the widths and switches of the loaded document kind.

#include "layout/PrinterDriver.h"

#include "config/BRConfiguration.h"
#include "config/DocumentProfileKind.h"
#include "layout/PrinterDriver_p.h"

QString PrinterDriver::documentPath(const QString &kind) const
{
    const QString lowered = kind.toLower();
    if (const DocumentProfileKind *row = findDocumentProfileKind(lowered))
        return QLatin1String(row->keyPrefix);
    d->messages.append(QLatin1String("Error into PrinterDriver::documentPath:  ") + lowered);
    return QLatin1String(fallbackDocumentProfileKind().keyPrefix);
}

int PrinterDriverPrivate::profileInt(const QString &field) const
{
    // A width beyond any paper is held to a bound, so that the column arithmetic cannot
    // overflow and a single row cannot ask for gigabytes.
    constexpr int Limit = 100000;
    const int value = configuration->getStrValue(documentPrefix + field).toInt(nullptr, 10);
    return qBound(-Limit, value, Limit);
}

void PrinterDriver::loadValues(const QString &kind)
{
    d->documentPrefix = documentPath(kind);

    DocumentProfile &profile = d->profile;
    profile.quantityFieldWidth = d->profileInt(QStringLiteral("quantityFieldWidth"));
    profile.priceFieldWidth = d->profileInt(QStringLiteral("priceFieldWidth"));
    profile.totalPriceFieldWidth = d->profileInt(QStringLiteral("totalPriceFieldWidth"));
    profile.paperWidth = d->profileInt(QStringLiteral("paperWidth"));
    profile.paperRows = d->profileInt(QStringLiteral("paperRows"));
    if (profile.paperWidth == 0)
        profile.paperWidth = getPaperWidth();

    const BRConfiguration &configuration = *d->configuration;
    const QString &prefix = d->documentPrefix;
    // "style" is part of every profile but has no effect on the printed page.
    configuration.getStrValue(prefix + QLatin1String("style"));

    const auto isOn = [&configuration, &prefix](const char *field) {
        return configuration.getStrValue(prefix + QLatin1String(field)) == QLatin1String("true");
    };
    profile.printGeometry = isOn("printGeometry");
    profile.printHeader = isOn("printHeader");
    profile.printLogo = isOn("printLogo");
    profile.printCompany = isOn("printCompany");
    profile.printDeliveryAddress = isOn("printDeliveryAddress");
    profile.printBillingAddress = isOn("printBillingAddress");
    profile.printTelephone = isOn("printTelephone");
    profile.printDate = isOn("printDate");
    profile.printTime = isOn("printTime");
    profile.printTable = isOn("printTable");
    profile.printCustomer = isOn("printCustomer");
    profile.printLicenseNumber = isOn("printLicenseNumber");
    profile.printFiscalCode = isOn("printFiscalCode");
    profile.printCredit = isOn("printCredit");
    profile.printWaiter = isOn("printWaiter");
    profile.printNote = isOn("printNote");
    profile.openCashDrawer = isOn("openCashDrawer");
}
