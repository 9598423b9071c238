#ifndef BRISTEL_CUPS_CONFIGURATIONFILECHECK_H
#define BRISTEL_CUPS_CONFIGURATIONFILECHECK_H

#include <QString>

/*
 * Whether the filter can read its configuration file, and why not.  A file that is missing
 * and a file that is there but closed to the filter are different things: the first means
 * every setting has its default, the second that the administrator's settings (a code page,
 * a logo, the profiles) would be silently dropped, so the job must not print with defaults.
 * The filter runs as the scheduler's user (lp), which often cannot read what root wrote.
 */
class ConfigurationFileCheck
{
public:
    enum class State
    {
        Readable,
        Missing,
        Unreadable
    };

    explicit ConfigurationFileCheck(const QString &fileName);

    State state() const { return m_state; }
    // Why the file cannot be read ("Permission denied", "is a folder"); empty otherwise.
    QString reason() const { return m_reason; }

private:
    State m_state = State::Missing;
    QString m_reason;
};

#endif
