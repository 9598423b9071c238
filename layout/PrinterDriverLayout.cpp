// Column layout: the item rows, the column headings and the separator rule.

#include "layout/PrinterDriver.h"

#include "layout/DocumentText.h"
#include "layout/PrinterDriver_p.h"

#include <QObject>

using documenttext::Blank;

namespace {

// A row is built in one buffer, column after column: rows are the hot path of long documents.
class Row
{
public:
    explicit Row(qsizetype capacity) { m_text.reserve(capacity); }

    Row &text(QStringView text)
    {
        m_text.append(text);
        return *this;
    }
    // Padded on the left up to width; a longer text is kept whole.
    Row &right(QStringView text, int width, QChar fill)
    {
        pad(width - text.size(), fill);
        return this->text(text);
    }
    // Padded on the right up to width; a longer text is kept whole.
    Row &left(QStringView text, int width, QChar fill)
    {
        this->text(text);
        return pad(width - text.size(), fill);
    }
    // The description column is the only one that is cut: to its width when that is positive,
    // to nothing when it is 0, and not at all when the other columns already overflow the paper.
    Row &description(QStringView text, int width, QChar fill)
    {
        if (width < 0)
            return this->text(text);
        return left(text.left(width), width, fill);
    }
    QString take() { return std::move(m_text); }

private:
    Row &pad(qsizetype count, QChar fill)
    {
        if (count > 0)
            m_text.resize(m_text.size() + count, fill);
        return *this;
    }

    QString m_text;
};

} // namespace

QString PrinterDriver::descriptionRow(const QString &quantity, const QString &description,
                                      const QString &price, const QString &total, const QChar &fill,
                                      const QString &layout) const
{
    return d->descriptionRow(quantity, description, price, total, fill, layout);
}

QString PrinterDriverPrivate::descriptionRow(const QString &quantity, const QString &description,
                                             const QString &price, const QString &total, QChar fill,
                                             const QString &layout) const
{
    const int q = profile.quantityFieldWidth;
    const int p = profile.priceFieldWidth;
    const int t = profile.totalPriceFieldWidth;
    const int w = profile.paperWidth;
    Row row(qMax(w, 0) + quantity.size() + description.size() + price.size() + total.size() + 3);

    if (layout == QLatin1String("qdpt")) {
        return row.right(quantity, q, Blank)
            .text(u" ")
            .description(description, w - q - p - t - 1, fill)
            .right(price, p, fill)
            .right(total, t, Blank)
            .take();
    }
    if (layout == QLatin1String("qxdpt")) {
        return row.right(quantity, q, Blank)
            .text(u" x ")
            .description(description, w - q - p - t - 3, fill)
            .right(price, p, fill)
            .right(total, t, Blank)
            .take();
    }
    if (layout == QLatin1String("qxdtDoubleLine")) {
        // The two lines are parted by a bare line feed, not by the back-end's line end.
        return row.text(quantity)
            .text(u" x ")
            .text(price)
            .text(u"\n")
            .description(description, w - t, fill)
            .right(total, t, fill)
            .take();
    }
    if (layout == QLatin1String("qxd"))
        return row.right(quantity, q, Blank).text(u" x ").description(description, w - q - 3, fill).take();
    if (layout == QLatin1String("qd")) {
        // Reserves room for " x " it does not write, and pads with blanks whatever the fill.
        return row.right(quantity, q, Blank).text(u" ").description(description, w - q - 3, Blank).take();
    }
    if (layout == QLatin1String("date-amount-type")) {
        // Reserves three columns for a separator it never writes.
        return row.left(quantity, 15, Blank)
            .description(description, w - 15 - p - 3, fill)
            .right(price, p, fill)
            .take();
    }
    return QString();
}

void PrinterDriver::printColumnsHeader(const QString &quantityHeading, const QString &descriptionHeading,
                                       const QString &priceHeading, const QString &totalHeading)
{
    // The headings appear once per run; the latch is the one oneTime() tests.
    if (d->oneTimeDone)
        return;
    d->oneTimeDone = true;
    setBold();
    println(d->descriptionRow(quantityHeading, descriptionHeading, priceHeading, totalHeading, Blank,
                              QStringLiteral("qdpt")));
    setCharSize();
}

void PrinterDriverPrivate::printItemColumnsHeader()
{
    if (!oneTimeDone)
        q->printColumnsHeader(QObject::tr("Num"), QObject::tr("Description"), QObject::tr("Price"),
                              QObject::tr("Amount"));
}

void PrinterDriverPrivate::printCategoryColumnsHeader()
{
    if (!oneTimeDone)
        q->printColumnsHeader(QObject::tr("Num"), QObject::tr("Description"), QString(),
                              QObject::tr("Price"));
}

void PrinterDriver::printSeparatorLine()
{
    println(QString(qMax(0, d->profile.paperWidth), QLatin1Char('=')));
}
