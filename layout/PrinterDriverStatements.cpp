// The list of sold items and the customer's statement of account.

#include "layout/PrinterDriver.h"

#include "layout/DocumentText.h"
#include "layout/PrinterDriver_p.h"

#include <QObject>

using documenttext::attribute;

namespace {

const QString DateAmountType = QStringLiteral("date-amount-type");

// The movement's type code is itself the source text of its printed name, looked up by its 8-bit
// text; a type without a translation prints exactly as the document gives it.
QString movementType(const QString &type)
{
    const QByteArray key = type.toLatin1();
    const QString translated = QObject::tr(key.constData());
    return translated == QString::fromUtf8(key) ? type : translated;
}

} // namespace

void PrinterDriver::printSold(const QString &name, const QXmlAttributes &attributes)
{
    if (printSections(name, attributes))
        return;
    if (name != QLatin1String("receipe"))
        return;
    // Every item row is printed in bold on its own.
    setBold();
    println(d->descriptionRow(attribute(attributes, "quantity"), attribute(attributes, "description"),
                              QString(), attribute(attributes, "amount"), QLatin1Char('.'),
                              QStringLiteral("qxdpt")));
    setCharSize();
}

void PrinterDriver::printStatementOfAccount(const QString &name, const QXmlAttributes &attributes)
{
    if (printSections(name, attributes))
        return;
    if (name == QLatin1String("statement_list")) {
        setBold();
        println(d->descriptionRow(QObject::tr("Date"), QObject::tr("Description"), QObject::tr("Amount"),
                                  QString(), QLatin1Char(' '), DateAmountType));
        reset(); // the heading is closed by a printer reset
    } else if (name == QLatin1String("statement")) {
        println(d->descriptionRow(
            attribute(attributes, "date") + QLatin1String(": "), movementType(attribute(attributes, "type")),
            attribute(attributes, "amount"), QString(), QLatin1Char('.'), DateAmountType));
    }
}
