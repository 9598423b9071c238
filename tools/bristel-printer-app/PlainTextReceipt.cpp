#include "PlainTextReceipt.h"

#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/EscPosEncoder.h"
#include "devices/escpos/EscPosSettings.h"

#include <QBuffer>

namespace {

constexpr int TabWidth = 8;

QString expandTabs(const QString &line)
{
    QString expanded;
    for (const QChar c : line) {
        if (c == QLatin1Char('\t'))
            expanded += QString(TabWidth - expanded.size() % TabWidth, QLatin1Char(' '));
        else
            expanded += c;
    }
    return expanded;
}

void wrapLine(QString line, int columns, QStringList *lines)
{
    while (line.size() > columns) {
        const qsizetype space = line.lastIndexOf(QLatin1Char(' '), columns);
        if (space > 0) {
            lines->append(line.left(space));
            line = line.mid(space + 1);
        } else {
            lines->append(line.left(columns));
            line = line.mid(columns);
        }
    }
    lines->append(line);
}

} // namespace

QStringList PlainTextReceipt::wrap(const QString &text, int columns)
{
    QString normalised = text;
    normalised.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (normalised.endsWith(QLatin1Char('\n')))
        normalised.chop(1);
    QStringList lines;
    for (const QString &line : normalised.split(QLatin1Char('\n')))
        wrapLine(expandTabs(line), qMax(1, columns), &lines);
    return lines;
}

QByteArray PlainTextReceipt::render(const QByteArray &utf8, const EscPosSettings &settings)
{
    const EscPosCodePage *codePage = EscPosCodePage::byName(settings.codePage);
    QByteArray bytes;
    QBuffer output(&bytes);
    output.open(QIODevice::WriteOnly);
    EscPosEncoder encoder(&output, codePage ? codePage : EscPosCodePage::byName(u"PC858"));
    encoder.initialize(settings.codePageNumber);
    for (const QString &line : wrap(QString::fromUtf8(utf8), settings.columns)) {
        encoder.text(line);
        encoder.lineFeed();
    }
    if (settings.cut != EscPosSettings::Cut::None)
        encoder.cut(settings.cut == EscPosSettings::Cut::Full ? EscPosEncoder::Cut::Full
                                                              : EscPosEncoder::Cut::Partial,
                    settings.cutFeed);
    encoder.flush();
    return bytes;
}
