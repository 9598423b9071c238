#include "cups/OptionString.h"

#include <QByteArray>

namespace {

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

} // namespace

QList<QPair<QString, QString>> parseOptionString(const char *options)
{
    QList<QPair<QString, QString>> parsed;
    if (!options)
        return parsed;
    const char *p = options;
    while (*p) {
        while (isSpace(*p))
            ++p;
        if (!*p)
            break;
        QByteArray name;
        while (*p && *p != '=' && !isSpace(*p))
            name.append(*p++);
        if (*p != '=') {
            // A bare name is a switch: "duplex" on, "noduplex" off.
            if (name.size() > 2 && name.startsWith("no"))
                parsed.append({QString::fromUtf8(name.mid(2)), QStringLiteral("false")});
            else if (!name.isEmpty())
                parsed.append({QString::fromUtf8(name), QStringLiteral("true")});
            continue;
        }
        ++p; // '='
        QByteArray value;
        while (*p && !isSpace(*p)) {
            if (*p == '\\' && p[1]) {
                value.append(p[1]);
                p += 2;
            } else if (*p == '\'' || *p == '"') {
                const char quote = *p++;
                while (*p && *p != quote) {
                    if (*p == '\\' && p[1])
                        ++p;
                    value.append(*p++);
                }
                if (*p)
                    ++p; // the closing quote
            } else if (*p == '{') {
                int depth = 0;
                do {
                    if (*p == '{')
                        ++depth;
                    else if (*p == '}')
                        --depth;
                    value.append(*p++);
                } while (*p && depth > 0);
            } else {
                value.append(*p++);
            }
        }
        if (!name.isEmpty())
            parsed.append({QString::fromUtf8(name), QString::fromUtf8(value)});
    }
    return parsed;
}
