#include "devices/escpos/EscPosListing.h"

#include "devices/escpos/EscPosCodeCommand.h"
#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/EscPosCommandTable.h"
#include "devices/escpos/EscPosTokenizer.h"

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

// A symbol's or a barcode's data in quotes, the way a person reads it: printable ASCII as it
// stands, every other byte in hexadecimal, and a long data by its start.
QString quotedData(QByteArrayView data)
{
    constexpr qsizetype Shown = 80;
    QString text = QStringLiteral("\"");
    for (qsizetype i = 0; i < data.size() && i < Shown; ++i) {
        const auto byte = static_cast<unsigned char>(data[i]);
        if (byte == '"' || byte == '\\')
            text += QLatin1String("\\") + QLatin1Char(char(byte));
        else if (byte >= 0x20 && byte < 0x7f)
            text += QLatin1Char(char(byte));
        else
            text += QStringLiteral("\\x%1").arg(uint(byte), 2, 16, QLatin1Char('0'));
    }
    text += QLatin1Char('"');
    if (data.size() > Shown)
        text += QStringLiteral("...");
    return text;
}

QString qrModelName(int value)
{
    switch (value) {
    case 49:
        return QStringLiteral("model 1");
    case 50:
        return QStringLiteral("model 2");
    case 51:
        return QStringLiteral("Micro QR");
    default:
        return QStringLiteral("model %1 (no such model)").arg(value);
    }
}

QString qrErrorCorrectionName(int value)
{
    if (value < 48 || value > 51)
        return QStringLiteral("%1 (no such level)").arg(value);
    return QString(QLatin1Char("LMQH"[value - 48]));
}

QString describeBarcode(const EscPosCodeCommand &code)
{
    const QString name = EscPosCodeCommand::systemName(EscPosCodeCommand::systemOf(code.value));
    return QStringLiteral("barcode %1: %2")
        .arg(name.isEmpty() ? QStringLiteral("system %1").arg(code.value) : name, quotedData(code.data));
}

QString describeHriPosition(int value)
{
    const QString position = EscPosCodeCommand::hriPositionName(value);
    return QStringLiteral("barcode HRI ") + (position.isEmpty() ? QString::number(value) : position);
}

QString describeHriFont(int value)
{
    if (value == 0 || value == 48)
        return QStringLiteral("barcode HRI font A");
    if (value == 1 || value == 49)
        return QStringLiteral("barcode HRI font B");
    return QStringLiteral("barcode HRI font %1").arg(value);
}

// The QR code's functions in words.
QString describeQrCode(const EscPosCodeCommand &code)
{
    using Kind = EscPosCodeCommand::Kind;
    switch (code.kind) {
    case Kind::QrModel:
        return QStringLiteral("QR code ") + qrModelName(code.value);
    case Kind::QrModuleSize:
        return QStringLiteral("QR module %1").arg(code.value);
    case Kind::QrErrorCorrection:
        return QStringLiteral("QR error correction ") + qrErrorCorrectionName(code.value);
    case Kind::QrStore:
        return QStringLiteral("QR data, %1 bytes: %2").arg(code.data.size()).arg(quotedData(code.data));
    case Kind::QrPrint:
        return QStringLiteral("QR print");
    default:
        return QString();
    }
}

QString describePdf417(const EscPosCodeCommand &code)
{
    using Kind = EscPosCodeCommand::Kind;
    switch (code.kind) {
    case Kind::Pdf417Columns:
        return QStringLiteral("PDF417 columns %1").arg(code.value);
    case Kind::Pdf417Rows:
        return QStringLiteral("PDF417 rows %1").arg(code.value);
    case Kind::Pdf417ModuleWidth:
        return QStringLiteral("PDF417 module %1").arg(code.value);
    case Kind::Pdf417RowHeight:
        return QStringLiteral("PDF417 row height %1").arg(code.value);
    case Kind::Pdf417ErrorCorrection:
        return code.value >= 48 && code.value <= 56
                   ? QStringLiteral("PDF417 error correction level %1").arg(code.value - 48)
                   : QString();
    case Kind::Pdf417Options:
        return code.value == 0 || code.value == 1
                   ? QStringLiteral("PDF417 ") +
                         (code.value ? QStringLiteral("truncated") : QStringLiteral("standard"))
                   : QString();
    case Kind::Pdf417Store:
        return QStringLiteral("PDF417 data, %1 bytes: %2").arg(code.data.size()).arg(quotedData(code.data));
    case Kind::Pdf417Print:
        return QStringLiteral("PDF417 print");
    default:
        return QString();
    }
}

// The commands of QR codes, PDF417 symbols and barcodes in words; empty for the others.
QString describeCode(const EscPosCommand &command)
{
    using Kind = EscPosCodeCommand::Kind;
    const EscPosCodeCommand code = EscPosCodeCommand::from(command);
    switch (code.kind) {
    case Kind::None:
    case Kind::SymbolOther:
        return QString();
    case Kind::BarcodeHeight:
        return QStringLiteral("barcode height %1").arg(code.value);
    case Kind::BarcodeModuleWidth:
        return QStringLiteral("barcode module %1").arg(code.value);
    case Kind::BarcodeHriPosition:
        return describeHriPosition(code.value);
    case Kind::BarcodeHriFont:
        return describeHriFont(code.value);
    case Kind::Barcode:
        return describeBarcode(code);
    default:
        break;
    }
    const QString qr = describeQrCode(code);
    return qr.isEmpty() ? describePdf417(code) : qr;
}

QString describeCodeTable(int number)
{
    const EscPosCodePage *page = EscPosCodePage::byEpsonNumber(number);
    return page ? QStringLiteral("code table %1 %2").arg(number).arg(page->name())
                : QStringLiteral("code table %1").arg(number);
}

QString describeCharacterSize(int value)
{
    if (value == 0)
        return QStringLiteral("size normal");
    return QStringLiteral("size width %1, height %2").arg((value >> 4) + 1).arg((value & 15) + 1);
}

QString describeJustification(int value)
{
    static const char *const words[] = {"left", "centre", "right"};
    return QStringLiteral("align ") + QLatin1String(words[value]);
}

// The commands that change how characters look; empty for the others.
QString describeCharacterStyle(const EscPosCommand &command)
{
    using Kind = EscPosCommand::Kind;
    switch (command.kind) {
    case Kind::Emphasis:
        return QStringLiteral("bold ") + onOff(command.value);
    case Kind::DoubleStrike:
        return QStringLiteral("double strike ") + onOff(command.value);
    case Kind::Underline:
        return QStringLiteral("underline %1").arg(command.value);
    case Kind::PrintMode:
        return QStringLiteral("print mode %1").arg(command.value);
    case Kind::CharacterSize:
        return describeCharacterSize(command.value);
    case Kind::Justification:
        return describeJustification(command.value);
    default:
        return QString();
    }
}

// The commands that move the paper between lines; empty for the others.
QString describeFeed(const EscPosCommand &command)
{
    using Kind = EscPosCommand::Kind;
    switch (command.kind) {
    case Kind::FeedLines:
        return QStringLiteral("feed %1 lines").arg(command.value);
    case Kind::FeedDots:
        return QStringLiteral("feed %1 dots").arg(command.value);
    case Kind::LineSpacing:
        return QStringLiteral("line spacing %1 dots").arg(command.value);
    case Kind::DefaultLineSpacing:
        return QStringLiteral("line spacing default");
    default:
        return QString();
    }
}

QString describeCut(const EscPosCommand &command)
{
    return QStringLiteral("cut %1, feed %2")
        .arg(command.value ? QStringLiteral("partial") : QStringLiteral("full"))
        .arg(command.feed);
}

QString describeDrawerPulse(const EscPosCommand &command)
{
    return QStringLiteral("drawer pin %1, %2 ms on, %3 ms off")
        .arg(command.value ? 5 : 2)
        .arg(command.onTime * 2)
        .arg(command.offTime * 2);
}

// Any command but text and line feeds, in words.
QString describe(const EscPosCommand &command)
{
    using Kind = EscPosCommand::Kind;
    switch (command.kind) {
    case Kind::Initialize:
        return QStringLiteral("initialize");
    case Kind::CodeTable:
        return describeCodeTable(command.value);
    case Kind::Emphasis:
    case Kind::DoubleStrike:
    case Kind::Underline:
    case Kind::PrintMode:
    case Kind::CharacterSize:
    case Kind::Justification:
        return describeCharacterStyle(command);
    case Kind::FeedLines:
    case Kind::FeedDots:
    case Kind::LineSpacing:
    case Kind::DefaultLineSpacing:
        return describeFeed(command);
    case Kind::Cut:
        return describeCut(command);
    case Kind::DrawerPulse:
        return describeDrawerPulse(command);
    case Kind::RasterImage:
        return QStringLiteral("image %1x%2 dots").arg(command.widthBytes * 8).arg(command.height);
    case Kind::CarriageReturn:
        return QStringLiteral("CR");
    case Kind::Other: {
        const QString code = describeCode(command);
        return code.isEmpty() ? describeOther(command) : code;
    }
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
