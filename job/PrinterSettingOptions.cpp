#include "job/PrinterSettingOptions.h"

#include "devices/escpos/EscPosSettings.h"
#include "job/PrinterSettingTable.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

// The help the program shows for the setting; empty when the program does not offer it.
QString helpOf(const PrinterSetting &setting, PrinterSettingOptions::Program program)
{
    const char *help = program == PrinterSettingOptions::Program::Render ? setting.help : setting.previewHelp;
    if (!help)
        return QString();
    const QString text = QCoreApplication::translate("main", help);
    return setting.helpValues ? text.arg(setting.helpValues()) : text;
}

} // namespace

PrinterSettingOptions::PrinterSettingOptions(Program program)
{
    for (const PrinterSetting &setting : printerSettings()) {
        const QString help = helpOf(setting, program);
        if (help.isEmpty())
            continue;
        m_options.push_back({&setting, QCommandLineOption(QLatin1String(setting.commandLineOption), help,
                                                          QLatin1String(setting.valueName))});
    }
}

void PrinterSettingOptions::addTo(QCommandLineParser &parser) const
{
    for (const Option &option : m_options)
        parser.addOption(option.option);
}

bool PrinterSettingOptions::applyTo(const QCommandLineParser &parser, EscPosSettings &settings,
                                    Refusal *refusal) const
{
    for (const Option &option : m_options) {
        if (!parser.isSet(option.option))
            continue;
        const QString value = parser.value(option.option);
        if (!(settings.*option.setting->set)(value)) {
            *refusal = {option.setting, QLatin1String("--") + option.option.names().constFirst(), value};
            return false;
        }
    }
    return true;
}

QString PrinterSettingOptions::describe(const Refusal &refusal)
{
    return EscPosSettings::unusableValue(refusal.option, refusal.value, refusal.setting->set);
}
