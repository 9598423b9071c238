#ifndef BRISTEL_PRINTERAPP_PLAINTEXTRECEIPT_H
#define BRISTEL_PRINTERAPP_PLAINTEXTRECEIPT_H

#include <QByteArray>
#include <QString>
#include <QStringList>

struct EscPosSettings;

// A plain text job (UTF-8) as a receipt: the printer initialised in the settings' code page,
// every line wrapped at the settings' columns (at the last space that fits, else where the
// line is full), and the settings' cut at the end. A character the code page lacks prints as
// '?', as in a rendered document.
class PlainTextReceipt
{
public:
    static QByteArray render(const QByteArray &utf8, const EscPosSettings &settings);
    // The lines of text as the printer prints them, columns characters each at most.
    static QStringList wrap(const QString &text, int columns);
};

#endif
