// Order tickets for the kitchen and the bar: the preparation ticket and the priced ticket.

#include "layout/PrinterDriver.h"

#include "layout/DocumentText.h"
#include "layout/PrinterDriver_p.h"

#include <QObject>

using documenttext::attribute;

namespace {

using documenttext::FullStop;

// A variant removes something ("-", also for a missing or unreadable quantity), adds one
// ("+"), or carries its own quantity, printed as the document writes it.
QString variantMarker(const QString &quantity)
{
    const double number = quantity.toDouble();
    if (number == -1 || number == 0)
        return QStringLiteral("-");
    if (number == 1)
        return QStringLiteral("+");
    return quantity;
}

QString variantDescription(const QXmlAttributes &attributes)
{
    return variantMarker(attribute(attributes, "quantity")) + QLatin1Char(' ') +
           attribute(attributes, "name");
}

} // namespace

void PrinterDriver::printPartialOrder(const QString &name, const QXmlAttributes &attributes)
{
    // "orderinfo" is claimed by the section headers first, so the kitchen ticket's own
    // column heading below is never printed.
    if (printSections(name, attributes))
        return;
    if (name == QLatin1String("customer")) {
        printCustomerHeader(attributes);
    } else if (name == QLatin1String("orderinfo")) {
        setBold();
        println(d->descriptionRow(QObject::tr("Num"), QObject::tr("Description"), QString(), QString(),
                                  QLatin1Char(' '), QStringLiteral("qd")));
    } else if (name == QLatin1String("receipe")) {
        setCharSize();
        println(d->descriptionRow(attribute(attributes, "number"), attribute(attributes, "name"), QString(),
                                  QString(), FullStop, QStringLiteral("qd")));
    } else if (name == QLatin1String("otherreceipe")) {
        // The size stays at 1 for the variants that follow, until the next "receipe".
        setCharSize(1);
        println(d->descriptionRow(attribute(attributes, "number"), attribute(attributes, "name"), QString(),
                                  QString(), FullStop, QStringLiteral("qd")));
    } else if (name == QLatin1String("variant")) {
        println(d->descriptionRow(attribute(attributes, "number"), variantDescription(attributes), QString(),
                                  QString(), FullStop, QStringLiteral("qd")));
    }
}

void PrinterDriver::printFullOrder(const QString &name, const QXmlAttributes &attributes)
{
    if (printSections(name, attributes))
        return;
    if (name == QLatin1String("customer")) {
        printCustomerHeader(attributes);
    } else if (name == QLatin1String("receipe")) {
        // Dishes whose name begins with "=" (the cover charge, for one) stay off the priced ticket.
        if (attribute(attributes, "name").startsWith(QLatin1Char('=')))
            return;
        d->printItemColumnsHeader();
        println(d->descriptionRow(attribute(attributes, "number"), attribute(attributes, "name"),
                                  attribute(attributes, "price"), attribute(attributes, "totalPrice"),
                                  FullStop, QStringLiteral("qdpt")));
    } else if (name == QLatin1String("variant")) {
        println(d->descriptionRow(attribute(attributes, "number"), variantDescription(attributes),
                                  attribute(attributes, "price"), attribute(attributes, "totalPrice"),
                                  FullStop, QStringLiteral("qdpt")));
    } else if (name == QLatin1String("total")) {
        println(QString());
        setBold(); // stays on: the ticket ends here
        println(d->descriptionRow(QString(), QObject::tr("TOTAL"), QString(), attribute(attributes, "price"),
                                  FullStop, QStringLiteral("qdpt")));
    }
}
