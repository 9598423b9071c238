#include "PrinterSettings.h"

#include "ReceiptDriver.h"
#include "cups/PrinterSettingAttribute.h"

#include <QByteArray>

#include <memory>

namespace {

struct IppDeleter
{
    void operator()(ipp_t *ipp) const { ippDelete(ipp); }
};
using IppMessage = std::unique_ptr<ipp_t, IppDeleter>;

void addSupported(ipp_t *attributes, const PrinterSettingAttribute &setting)
{
    const QByteArray name = (setting.name() + QStringLiteral("-supported")).toLatin1();
    switch (setting.syntax()) {
    case PrinterSettingAttribute::Syntax::Keyword: {
        const QStringList keywords = setting.keywords();
        ipp_attribute_t *attribute = ippAddStrings(attributes, IPP_TAG_PRINTER, IPP_TAG_KEYWORD,
                                                   name.constData(), int(keywords.size()), nullptr, nullptr);
        for (int i = 0; i < keywords.size(); ++i)
            ippSetString(attributes, &attribute, i, keywords.at(i).toLatin1().constData());
        break;
    }
    case PrinterSettingAttribute::Syntax::Integer: {
        const QList<int> values = setting.integers();
        ippAddIntegers(attributes, IPP_TAG_PRINTER, IPP_TAG_INTEGER, name.constData(), int(values.size()),
                       values.constData());
        break;
    }
    case PrinterSettingAttribute::Syntax::IntegerRange:
        ippAddRange(attributes, IPP_TAG_PRINTER, name.constData(), setting.lowest(), setting.highest());
        break;
    }
}

// The attribute's value as a person writes it ("partial", "5"); empty when it has none.
QString valueOf(ipp_attribute_t *attribute)
{
    if (!attribute || ippGetValueTag(attribute) == IPP_TAG_NOVALUE)
        return QString();
    char text[256];
    ippAttributeString(attribute, text, sizeof text);
    return QString::fromUtf8(text);
}

} // namespace

void offerPrinterSettings(pappl_pr_driver_data_t *data, ipp_t **attributes, const ReceiptDriver &driver)
{
    if (!*attributes)
        *attributes = ippNew();
    data->num_vendor = 0;
    for (const PrinterSettingAttribute &setting : PrinterSettingAttribute::all(driver.paperFamily())) {
        if (data->num_vendor == PAPPL_MAX_VENDOR)
            break;
        addSupported(*attributes, setting);
        // The name must outlive the printer: the table's own string.
        data->vendor[data->num_vendor++] = setting.ippName();
    }
}

QueueOptions printerSettingsOf(pappl_job_t *job)
{
    pappl_printer_t *printer = papplJobGetPrinter(job);
    const IppMessage defaults(papplPrinterGetDriverAttributes(printer));
    pappl_pr_driver_data_t data;
    papplPrinterGetDriverData(printer, &data);
    QueueOptions options;
    for (int i = 0; i < data.num_vendor; ++i) {
        const QString name = QString::fromLatin1(data.vendor[i]);
        QString value = valueOf(papplJobGetAttribute(job, data.vendor[i]));
        if (value.isEmpty())
            value = valueOf(ippFindAttribute(
                defaults.get(), (name + QStringLiteral("-default")).toLatin1().constData(), IPP_TAG_ZERO));
        PrinterSettingAttribute::addTo(options, name, value);
    }
    return options;
}
