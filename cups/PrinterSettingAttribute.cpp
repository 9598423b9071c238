#include "cups/PrinterSettingAttribute.h"

#include "cups/PaperFamily.h"
#include "cups/QueueOptions.h"
#include "job/PrinterSettingTable.h"

#include <algorithm>

namespace {

bool isFromConfiguration(const PrinterSettingChoice &choice)
{
    return choice.value == QLatin1String(printerSettingFromConfiguration);
}

// The choices as whole numbers, sorted; empty when one of them is not a number.
QList<int> numbersOf(const QList<PrinterSettingChoice> &choices)
{
    QList<int> numbers;
    for (const PrinterSettingChoice &choice : choices) {
        bool isNumber = false;
        const int number = choice.value.toInt(&isNumber);
        if (!isNumber)
            return {};
        numbers.append(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

bool isRun(const QList<int> &numbers)
{
    return numbers.size() > 2 && numbers.last() - numbers.first() == numbers.size() - 1;
}

} // namespace

PrinterSettingAttribute::PrinterSettingAttribute(const PrinterSetting &setting, const PaperFamily &paper)
    : m_name(setting.ippAttribute)
{
    QList<PrinterSettingChoice> choices = setting.choices(paper.columns);
    choices.erase(std::remove_if(choices.begin(), choices.end(), isFromConfiguration), choices.end());
    const QList<int> numbers = numbersOf(choices);
    if (numbers.isEmpty()) {
        m_syntax = Syntax::Keyword;
        for (const PrinterSettingChoice &choice : choices)
            m_keywords.append(choice.value.toLower());
    } else if (isRun(numbers)) {
        m_syntax = Syntax::IntegerRange;
        m_lowest = numbers.first();
        m_highest = numbers.last();
    } else {
        m_syntax = Syntax::Integer;
        m_integers = numbers;
    }
}

QList<PrinterSettingAttribute> PrinterSettingAttribute::all(const PaperFamily &paper)
{
    QList<PrinterSettingAttribute> attributes;
    for (const PrinterSetting &setting : printerSettings()) {
        if (setting.ippAttribute)
            attributes.append(PrinterSettingAttribute(setting, paper));
    }
    return attributes;
}

bool PrinterSettingAttribute::addTo(QueueOptions &options, const QString &attribute, const QString &value)
{
    if (value.isEmpty())
        return false;
    for (const PrinterSetting &setting : printerSettings()) {
        if (setting.ippAttribute && attribute == QLatin1String(setting.ippAttribute)) {
            options.add(QString::fromLatin1(setting.cupsOption), value);
            return true;
        }
    }
    return false;
}
