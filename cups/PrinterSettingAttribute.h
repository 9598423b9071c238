#ifndef BRISTEL_CUPS_PRINTERSETTINGATTRIBUTE_H
#define BRISTEL_CUPS_PRINTERSETTINGATTRIBUTE_H

#include <QList>
#include <QString>
#include <QStringList>

struct PaperFamily;
struct PrinterSetting;
class QueueOptions;

/*
 * A printer setting as the printer application offers it over IPP: the attribute's name
 * (bristel-cut, with bristel-cut-supported and bristel-cut-default), and the values it takes,
 * read from the same choices the PPD files offer.  Choices that are all whole numbers become
 * integers (a run of more than two of them a range), any other choice a keyword in lower
 * case, as IPP spells keywords; the choice that leaves the setting to the configuration file
 * is no value of the attribute: a printer whose attribute has no default value takes what the
 * configuration says.
 */
class PrinterSettingAttribute
{
public:
    enum class Syntax
    {
        Keyword,
        Integer,
        IntegerRange
    };

    PrinterSettingAttribute(const PrinterSetting &setting, const PaperFamily &paper);

    QString name() const { return QString::fromLatin1(m_name); }
    // The name as the table holds it, for as long as the program runs.
    const char *ippName() const { return m_name; }
    Syntax syntax() const { return m_syntax; }
    QStringList keywords() const { return m_keywords; } // Keyword
    QList<int> integers() const { return m_integers; }  // Integer
    int lowest() const { return m_lowest; }             // IntegerRange
    int highest() const { return m_highest; }           // IntegerRange

    // The attributes of every setting the printer application offers, in the table's order.
    static QList<PrinterSettingAttribute> all(const PaperFamily &paper);
    // Adds a printer's or a job's value of an attribute to options under the setting's option
    // name; false, adding nothing, for a name no setting has or an empty value.
    static bool addTo(QueueOptions &options, const QString &attribute, const QString &value);

private:
    const char *m_name;
    Syntax m_syntax = Syntax::Keyword;
    QStringList m_keywords;
    QList<int> m_integers;
    int m_lowest = 0;
    int m_highest = 0;
};

#endif
