// Column layout: the item rows, the column headings and the separator rule.

#include "driver/PrinterDriver.h"

#include "driver/DocumentText.h"

#include <QObject>

using documenttext::Blank;

namespace {

// The description column is the only one that is cut: to its width when that is positive,
// to nothing when it is 0, and not at all when the other columns already overflow the paper.
QString descriptionColumn(const QString &description, int width, QChar fill)
{
    if (width < 0)
        return description;
    return description.leftJustified(width, fill, true);
}

} // namespace

QString PrinterDriver::descriptionRow(const QString &quantity, const QString &description,
                                      const QString &price, const QString &total, const QChar &fill,
                                      const QString &layout) const
{
    const int q = quantityFieldWidth;
    const int p = priceFieldWidth;
    const int t = totalPriceFieldWidth;
    const int w = paperWidth;

    if (layout == QLatin1String("qdpt")) {
        return quantity.rightJustified(q, Blank) + Blank +
               descriptionColumn(description, w - q - p - t - 1, fill) + price.rightJustified(p, fill) +
               total.rightJustified(t, Blank);
    }
    if (layout == QLatin1String("qxdpt")) {
        return quantity.rightJustified(q, Blank) + QLatin1String(" x ") +
               descriptionColumn(description, w - q - p - t - 3, fill) + price.rightJustified(p, fill) +
               total.rightJustified(t, Blank);
    }
    if (layout == QLatin1String("qxdtDoubleLine")) {
        // The two lines are parted by a bare line feed, not by the back-end's line end.
        return quantity + QLatin1String(" x ") + price + QLatin1Char('\n') +
               descriptionColumn(description, w - t, fill) + total.rightJustified(t, fill);
    }
    if (layout == QLatin1String("qxd"))
        return quantity.rightJustified(q, Blank) + QLatin1String(" x ") +
               descriptionColumn(description, w - q - 3, fill);
    if (layout == QLatin1String("qd")) {
        // Reserves room for " x " it does not write, and pads with blanks whatever the fill.
        return quantity.rightJustified(q, Blank) + Blank + descriptionColumn(description, w - q - 3, Blank);
    }
    if (layout == QLatin1String("date-amount-type")) {
        // Reserves three columns for a separator it never writes.
        return quantity.leftJustified(15, Blank) + descriptionColumn(description, w - 15 - p - 3, fill) +
               price.rightJustified(p, fill);
    }
    return QString();
}

void PrinterDriver::printColumnsHeader(const QString &quantityHeading, const QString &descriptionHeading,
                                       const QString &priceHeading, const QString &totalHeading)
{
    // The headings appear once per run; the latch is the one oneTime() tests.
    if (oneTimeDone)
        return;
    oneTimeDone = true;
    setBold();
    println(descriptionRow(quantityHeading, descriptionHeading, priceHeading, totalHeading, Blank,
                           QStringLiteral("qdpt")));
    setCharSize();
}

void PrinterDriver::printItemColumnsHeader()
{
    if (!oneTimeDone)
        printColumnsHeader(QObject::tr("Num"), QObject::tr("Description"), QObject::tr("Price"),
                           QObject::tr("Amount"));
}

void PrinterDriver::printCategoryColumnsHeader()
{
    if (!oneTimeDone)
        printColumnsHeader(QObject::tr("Num"), QObject::tr("Description"), QString(), QObject::tr("Price"));
}

void PrinterDriver::printSeparatorLine()
{
    println(QString(qMax(0, paperWidth), QLatin1Char('=')));
}
