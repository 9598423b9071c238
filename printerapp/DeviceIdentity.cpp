#include "DeviceIdentity.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

// The value of the first of keys present, as "KEY:value;" pairs carry them; keys are compared
// without regard to case, and both the short and the long names are in use.
QString fieldOf(const QString &deviceId, std::initializer_list<const char *> keys)
{
    const QStringList pairs = deviceId.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const char *key : keys) {
        for (const QString &pair : pairs) {
            const qsizetype colon = pair.indexOf(QLatin1Char(':'));
            if (colon > 0 && pair.left(colon).trimmed().compare(QLatin1String(key), Qt::CaseInsensitive) == 0)
                return pair.mid(colon + 1).trimmed();
        }
    }
    return QString();
}

} // namespace

DeviceIdentity::DeviceIdentity(const QString &deviceId)
    : m_manufacturer(fieldOf(deviceId, {"MFG", "MANUFACTURER"})),
      m_model(fieldOf(deviceId, {"MDL", "MODEL"})), m_commandSets(fieldOf(deviceId, {"CMD", "COMMAND SET"}))
{
}

bool DeviceIdentity::speaksEscPos() const
{
    for (const QString &set : m_commandSets.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString name = set.trimmed().remove(QLatin1Char('/')).toUpper();
        if (name == QLatin1String("ESCPOS"))
            return true;
    }
    return m_manufacturer.compare(QLatin1String("EPSON"), Qt::CaseInsensitive) == 0 &&
           m_model.startsWith(QLatin1String("TM-"), Qt::CaseInsensitive);
}

int DeviceIdentity::paperWidthMm() const
{
    // "58" standing alone or opening the 5890 family's numbers; "TM-T88" or "XP-Q580" are 80 mm.
    static const QRegularExpression narrow(QStringLiteral("(^|[^0-9A-Za-z]|[A-Za-z]{2,})58(90|mm|[^0-9]|$)"),
                                           QRegularExpression::CaseInsensitiveOption);
    return narrow.match(m_model).hasMatch() ? 58 : 80;
}
