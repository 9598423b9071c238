// Document profiles: the widths and switches of the loaded document kind.

#include "driver/PrinterDriver.h"

#include "config/BRConfiguration.h"
#include "driver/PrinterDriver_p.h"

#include <cstdio>

QString PrinterDriver::documentPath(const QString &kind) const
{
    static const struct
    {
        QLatin1String kind;
        QLatin1String prefix;
    } prefixes[] = {
        // The order ticket's keys carry no kind word: "bristel.doc.paperWidth".
        {QLatin1String("order"), QLatin1String("bristel.doc.")},
        {QLatin1String("prefiscal"), QLatin1String("bristel.prefiscaldoc.")},
        {QLatin1String("fiscal"), QLatin1String("bristel.fiscaldoc.")},
        {QLatin1String("receipt"), QLatin1String("bristel.receiptdoc.")},
        {QLatin1String("invoice"), QLatin1String("bristel.invoicedoc.")},
        {QLatin1String("delivery"), QLatin1String("bristel.deliverydoc.")},
        {QLatin1String("report"), QLatin1String("bristel.reportdoc.")},
        {QLatin1String("sold"), QLatin1String("bristel.solddoc.")},
    };
    const QString lowered = kind.toLower();
    for (const auto &entry : prefixes) {
        if (lowered == entry.kind)
            return entry.prefix;
    }
    std::printf("Error into PrinterDriver::documentPath:  %s\n", lowered.toLocal8Bit().constData());
    std::fflush(stdout);
    return QStringLiteral("bristel.prefiscaldoc."); // an unknown kind prints as a pre-fiscal ticket
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
