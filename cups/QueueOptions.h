#ifndef BRISTEL_CUPS_QUEUEOPTIONS_H
#define BRISTEL_CUPS_QUEUEOPTIONS_H

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

struct EscPosSettings;

/*
 * The receipt-printer settings a print queue carries, in the order they take effect: the
 * defaults of the queue's PPD file (set by lpadmin -o), then the job's own options (lp -o,
 * lpoptions).  A later value of the same option wins.  Options of other software in the job's
 * option string are none of our business and are passed over in silence.
 */
class QueueOptions
{
public:
    // The "*DefaultBristel...: value" lines of a PPD file; false (nothing added) when the file
    // cannot be read.
    bool addPpdDefaults(const QString &ppdPath);
    // A job's option string as the scheduler passes it ("BristelCut=Full copies=1 ...").
    void addJobOptions(const char *optionString);
    void add(const QString &name, const QString &value);

    // Applies every known option to settings; one line per value that could not be used,
    // which then leaves the setting as it was.
    QStringList applyTo(EscPosSettings &settings) const;

    // The option names, as the PPD files spell them; matched regardless of case.
    static QStringList names();

private:
    QList<QPair<QString, QString>> m_options;
};

#endif
