// The list of sold items and the customer's statement of account.

#include "driver/PrinterDriver.h"

#include <QObject>

namespace {

QString attribute(const QXmlAttributes &attributes, const char *name)
{
    return attributes.value(QLatin1String(name));
}

const QString DateAmountType = QStringLiteral("date-amount-type");

} // namespace

void PrinterDriver::printSold(const QString &name, const QXmlAttributes &attributes)
{
    if (printSections(name, attributes))
        return;
    if (name != QLatin1String("receipe"))
        return;
    // Every item row is printed in bold on its own.
    setBold();
    println(descriptionRow(attribute(attributes, "quantity"), attribute(attributes, "description"), QString(),
                           attribute(attributes, "amount"), QLatin1Char('.'), QStringLiteral("qxdpt")));
    setCharSize();
}

void PrinterDriver::printStatementOfAccount(const QString &name, const QXmlAttributes &attributes)
{
    if (printSections(name, attributes))
        return;
    if (name == QLatin1String("statement_list")) {
        setBold();
        println(descriptionRow(QObject::tr("Date"), QObject::tr("Description"), QObject::tr("Amount"),
                               QString(), QLatin1Char(' '), DateAmountType));
        reset(); // the heading is closed by a printer reset
    } else if (name == QLatin1String("statement")) {
        // The movement's type code is itself the source text of its printed name.
        const QString type = QObject::tr(attribute(attributes, "type").toLatin1().constData());
        println(descriptionRow(attribute(attributes, "date") + QLatin1String(": "), type,
                               attribute(attributes, "amount"), QString(), QLatin1Char('.'), DateAmountType));
    }
}
