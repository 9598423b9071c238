#include "devices/escpos/EscPosSettings.h"

#include "config/BRConfiguration.h"
#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/EscPosPaperFamily.h"

#include <QStringList>

namespace {

// A whole decimal number within [minimum, maximum], or nothing.
bool parseNumber(const QString &text, int minimum, int maximum, int *value)
{
    bool ok = false;
    const int number = text.trimmed().toInt(&ok, 10);
    if (!ok || number < minimum || number > maximum)
        return false;
    *value = number;
    return true;
}

// Milliseconds as the printer counts them: steps of 2 ms, at most 255 steps.
constexpr int longestPulseMs = 510;

// "a, b or c"
QString alternatives(const QStringList &values)
{
    if (values.size() < 2)
        return values.join(QString());
    return values.mid(0, values.size() - 1).join(QLatin1String(", ")) + QLatin1String(" or ") + values.last();
}

} // namespace

bool EscPosSettings::setCodePage(const QString &name)
{
    const EscPosCodePage *page = EscPosCodePage::byName(name.trimmed());
    if (!page)
        return false;
    codePage = page->name();
    codePageNumber = page->epsonNumber();
    return true;
}

bool EscPosSettings::setCodePageNumber(const QString &number)
{
    return parseNumber(number, 0, 255, &codePageNumber);
}

bool EscPosSettings::setColumns(const QString &text)
{
    // Wider than any receipt printer is a typing error, not a printer.
    return parseNumber(text, 1, 1000, &columns);
}

bool EscPosSettings::setCut(const QString &text)
{
    const QString word = text.trimmed().toLower();
    if (word == QLatin1String("full"))
        cut = Cut::Full;
    else if (word == QLatin1String("partial"))
        cut = Cut::Partial;
    else if (word == QLatin1String("none"))
        cut = Cut::None;
    else
        return false;
    return true;
}

bool EscPosSettings::setCutFeed(const QString &feed)
{
    return parseNumber(feed, 0, 255, &cutFeed);
}

bool EscPosSettings::setDrawerPin(const QString &pin)
{
    int number = 0;
    if (!parseNumber(pin, 2, 5, &number) || (number != 2 && number != 5))
        return false;
    drawerPin = number;
    return true;
}

bool EscPosSettings::setDrawerOnMs(const QString &milliseconds)
{
    return parseNumber(milliseconds, 0, longestPulseMs, &drawerOnMs);
}

bool EscPosSettings::setDrawerOffMs(const QString &milliseconds)
{
    return parseNumber(milliseconds, 0, longestPulseMs, &drawerOffMs);
}

bool EscPosSettings::setCodes(const QString &text)
{
    const QString word = text.trimmed().toLower();
    if (word == QLatin1String("native"))
        codes = Codes::Native;
    else if (word == QLatin1String("raster"))
        codes = Codes::Raster;
    else
        return false;
    return true;
}

bool EscPosSettings::setLogo(const QString &file)
{
    logo = file;
    return true;
}

QString EscPosSettings::cutName(Cut cut)
{
    switch (cut) {
    case Cut::Full:
        return QStringLiteral("full");
    case Cut::Partial:
        return QStringLiteral("partial");
    case Cut::None:
        break;
    }
    return QStringLiteral("none");
}

QString EscPosSettings::acceptedValues(Setter set)
{
    if (set == &EscPosSettings::setCodePage)
        return alternatives(EscPosCodePage::names());
    if (set == &EscPosSettings::setCodePageNumber || set == &EscPosSettings::setCutFeed)
        return QStringLiteral("0 to 255");
    if (set == &EscPosSettings::setColumns)
        return QStringLiteral("1 to 1000");
    if (set == &EscPosSettings::setCut)
        return QStringLiteral("full, partial or none");
    if (set == &EscPosSettings::setDrawerPin)
        return QStringLiteral("2 or 5");
    if (set == &EscPosSettings::setDrawerOnMs || set == &EscPosSettings::setDrawerOffMs)
        return QStringLiteral("0 to %1 ms").arg(longestPulseMs);
    if (set == &EscPosSettings::setCodes)
        return QStringLiteral("native or raster");
    return QString();
}

QString EscPosSettings::unusableValue(const QString &name, const QString &value, Setter set)
{
    return QStringLiteral("%1: unusable value \"%2\" (%3)").arg(name, value, acceptedValues(set));
}

const EscPosPaperFamily &EscPosSettings::paperFamily() const
{
    return EscPosPaperFamily::forColumns(columns);
}
