#ifndef BRISTEL_CUPS_OPTIONSTRING_H
#define BRISTEL_CUPS_OPTIONSTRING_H

#include <QList>
#include <QPair>
#include <QString>

/*
 * The option string a CUPS filter receives as its fifth argument: options separated by
 * white space, each "name=value" or a bare "name" (true; "noname": name is false).  A value
 * may hold quoted parts ('...' or "...", the quotes removed), a collection in braces (kept as
 * it stands, braces and all) and backslash escapes (the next character as it is; the
 * scheduler escapes white space, quotes and backslashes this way).  Options come back in the
 * order written; later ones of the same name are meant to win.
 *
 * Read here rather than with libcups: the filter would load some two dozen libraries (TLS,
 * Kerberos, Avahi) for this alone, twice its own start-up time on every job.
 */
QList<QPair<QString, QString>> parseOptionString(const char *options);

#endif
