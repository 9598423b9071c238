#include "cups/QueueOptions.h"

#include "cups/OptionString.h"
#include "devices/escpos/EscPosSettings.h"
#include "job/PrinterSettingTable.h"

#include <QFile>

bool QueueOptions::addPpdDefaults(const QString &ppdPath)
{
    QFile ppd(ppdPath);
    if (!ppd.open(QIODevice::ReadOnly))
        return false;
    const QByteArray prefix = "*DefaultBristel";
    while (!ppd.atEnd()) {
        const QByteArray line = ppd.readLine().trimmed();
        if (!line.startsWith(prefix))
            continue;
        const qsizetype colon = line.indexOf(':');
        if (colon < 0)
            continue;
        add(QString::fromLatin1(line.mid(8, colon - 8)), QString::fromLatin1(line.mid(colon + 1).trimmed()));
    }
    return true;
}

void QueueOptions::addJobOptions(const char *optionString)
{
    m_options.append(parseOptionString(optionString));
}

void QueueOptions::add(const QString &name, const QString &value)
{
    m_options.append({name, value});
}

QStringList QueueOptions::applyTo(EscPosSettings &settings) const
{
    QStringList problems;
    for (const PrinterSetting &known : printerSettings()) {
        if (!known.cupsOption)
            continue;
        for (const auto &[name, value] : m_options) {
            if (name.compare(QLatin1String(known.cupsOption), Qt::CaseInsensitive) != 0)
                continue;
            if (value.compare(QLatin1String(printerSettingFromConfiguration), Qt::CaseInsensitive) == 0)
                continue;
            if (!(settings.*known.set)(value))
                problems.append(QStringLiteral("%1: unusable value \"%2\"").arg(name, value));
        }
    }
    return problems;
}

QStringList QueueOptions::names()
{
    QStringList names;
    for (const PrinterSetting &known : printerSettings()) {
        if (known.cupsOption)
            names.append(QLatin1String(known.cupsOption));
    }
    return names;
}
