#ifndef BRISTEL_LAYOUT_DOCUMENTTEXT_H
#define BRISTEL_LAYOUT_DOCUMENTTEXT_H

// Small helpers shared by the document methods' source files.

#include <QChar>
#include <QString>
#include <QXmlAttributes>

namespace documenttext {

inline const QChar FullStop = QLatin1Char('.');
inline const QChar Blank = QLatin1Char(' ');

// An attribute of the element by name; a missing one reads as the empty text.
inline QString attribute(const QXmlAttributes &attributes, const char *name)
{
    return attributes.value(QLatin1String(name));
}

} // namespace documenttext

#endif
