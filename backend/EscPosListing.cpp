#include "backend/EscPosListing.h"

#include "backend/EscPosCodePage.h"
#include "backend/EscPosCommandTable.h"
#include "backend/EscPosTokenizer.h"

namespace {

QString hexBytes(QByteArrayView bytes)
{
    // A long unknown run is shown by its start: the listing is for reading.
    constexpr qsizetype Shown = 16;
    QString hex = QString::fromLatin1(bytes.first(qMin(bytes.size(), Shown)).toByteArray().toHex(' '));
    if (bytes.size() > Shown)
        hex += QStringLiteral(" ... (%1 bytes)").arg(bytes.size());
    return hex;
}

QString onOff(int value)
{
    return value ? QStringLiteral("on") : QStringLiteral("off");
}

// A command the listing does not spell out: its name and its parameters, or their number
// when it carries data.
QString describeOther(const EscPosCommand &command)
{
    const QString name = QLatin1String(command.entry->name);
    const QByteArrayView parameters = command.bytes.sliced(qsizetype(command.entry->prefix.size()));
    if (parameters.isEmpty())
        return name;
    if (parameters.size() > 8)
        return QStringLiteral("%1, %2 bytes").arg(name).arg(parameters.size());
    return name + QLatin1Char(' ') + hexBytes(parameters);
}

QString describe(const EscPosCommand &command)
{
    using Kind = EscPosCommand::Kind;
    switch (command.kind) {
    case Kind::Initialize:
        return QStringLiteral("initialize");
    case Kind::CodeTable: {
        const EscPosCodePage *page = EscPosCodePage::byEpsonNumber(command.value);
        return page ? QStringLiteral("code table %1 %2").arg(command.value).arg(page->name())
                    : QStringLiteral("code table %1").arg(command.value);
    }
    case Kind::Emphasis:
        return QStringLiteral("bold ") + onOff(command.value);
    case Kind::DoubleStrike:
        return QStringLiteral("double strike ") + onOff(command.value);
    case Kind::Underline:
        return QStringLiteral("underline %1").arg(command.value);
    case Kind::PrintMode:
        return QStringLiteral("print mode %1").arg(command.value);
    case Kind::CharacterSize:
        if (command.value == 0)
            return QStringLiteral("size normal");
        return QStringLiteral("size width %1, height %2")
            .arg((command.value >> 4) + 1)
            .arg((command.value & 15) + 1);
    case Kind::Justification: {
        static const char *const words[] = {"left", "centre", "right"};
        return QStringLiteral("align ") + QLatin1String(words[command.value]);
    }
    case Kind::FeedLines:
        return QStringLiteral("feed %1 lines").arg(command.value);
    case Kind::FeedDots:
        return QStringLiteral("feed %1 dots").arg(command.value);
    case Kind::LineSpacing:
        return QStringLiteral("line spacing %1 dots").arg(command.value);
    case Kind::DefaultLineSpacing:
        return QStringLiteral("line spacing default");
    case Kind::Cut:
        return QStringLiteral("cut %1, feed %2")
            .arg(command.value ? QStringLiteral("partial") : QStringLiteral("full"))
            .arg(command.feed);
    case Kind::DrawerPulse:
        return QStringLiteral("drawer pin %1, %2 ms on, %3 ms off")
            .arg(command.value ? 5 : 2)
            .arg(command.onTime * 2)
            .arg(command.offTime * 2);
    case Kind::RasterImage:
        return QStringLiteral("image %1x%2 dots").arg(command.widthBytes * 8).arg(command.height);
    case Kind::CarriageReturn:
        return QStringLiteral("CR");
    case Kind::Other:
        return describeOther(command);
    case Kind::Unknown:
        return QStringLiteral("unknown ") + hexBytes(command.bytes);
    case Kind::Truncated:
        return QStringLiteral("cut short ") + hexBytes(command.bytes);
    case Kind::Text:
    case Kind::LineFeed:
        break;
    }
    return QString();
}

} // namespace

QString escPosPrintedText(QByteArrayView stream)
{
    EscPosTextDecoder decoder;
    QString text;
    EscPosTokenizer tokenizer(stream);
    EscPosCommand command;
    while (tokenizer.next(&command)) {
        if (command.kind == EscPosCommand::Kind::Text)
            text += decoder.decode(command.bytes);
        else if (command.kind == EscPosCommand::Kind::LineFeed)
            text += QLatin1Char('\n');
        else if (command.kind == EscPosCommand::Kind::Initialize)
            decoder.initialize();
        else if (command.kind == EscPosCommand::Kind::CodeTable)
            decoder.selectTable(command.value);
    }
    return text;
}

QString escPosListing(QByteArrayView stream)
{
    EscPosTextDecoder decoder;
    QString listing;
    bool lineStarted = false;
    EscPosTokenizer tokenizer(stream);
    EscPosCommand command;
    while (tokenizer.next(&command)) {
        switch (command.kind) {
        case EscPosCommand::Kind::LineFeed:
            listing += QLatin1Char('\n');
            lineStarted = false;
            continue;
        case EscPosCommand::Kind::Text:
            listing += decoder.decode(command.bytes);
            lineStarted = true;
            continue;
        case EscPosCommand::Kind::Initialize:
            decoder.initialize();
            break;
        case EscPosCommand::Kind::CodeTable:
            decoder.selectTable(command.value);
            break;
        default:
            break;
        }
        if (lineStarted && !listing.endsWith(QLatin1Char(' ')))
            listing += QLatin1Char(' ');
        listing += QLatin1Char('[') + describe(command) + QLatin1String("] ");
        lineStarted = true;
    }
    if (lineStarted)
        listing += QLatin1Char('\n');
    return listing;
}
