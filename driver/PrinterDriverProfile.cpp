// Document profiles: the widths and switches of the loaded document kind.

#include "driver/PrinterDriver.h"

#include "config/BRConfiguration.h"

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
    m_messages.append(QLatin1String("Error into PrinterDriver::documentPath:  ") + lowered);
    return QStringLiteral("bristel.prefiscaldoc."); // an unknown kind prints as a pre-fiscal ticket
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
