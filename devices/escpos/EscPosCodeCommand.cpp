#include "devices/escpos/EscPosCodeCommand.h"

#include "devices/escpos/EscPosCommandTable.h"
#include "devices/escpos/EscPosTokenizer.h"

#include <string_view>

namespace {

using Kind = EscPosCodeCommand::Kind;

constexpr unsigned qrSymbol = 49;     // cn '1'
constexpr unsigned pdf417Symbol = 48; // cn '0'

// The parameters after the command's name, or after GS ( k's pL pH.
QByteArrayView parametersOf(const EscPosCommand &command)
{
    return command.bytes.sliced(qsizetype(command.entry->prefix.size()));
}

unsigned byteAt(QByteArrayView bytes, qsizetype index)
{
    return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0u;
}

// The function numbers of GS ( k for a QR code: fn 65 is "function 165", and so on.
Kind qrFunction(unsigned fn)
{
    switch (fn) {
    case 65:
        return Kind::QrModel;
    case 67:
        return Kind::QrModuleSize;
    case 69:
        return Kind::QrErrorCorrection;
    case 80:
        return Kind::QrStore;
    case 81:
        return Kind::QrPrint;
    default:
        return Kind::SymbolOther;
    }
}

Kind pdf417Function(unsigned fn)
{
    switch (fn) {
    case 65:
        return Kind::Pdf417Columns;
    case 66:
        return Kind::Pdf417Rows;
    case 67:
        return Kind::Pdf417ModuleWidth;
    case 68:
        return Kind::Pdf417RowHeight;
    case 69:
        return Kind::Pdf417ErrorCorrection;
    case 70:
        return Kind::Pdf417Options;
    case 80:
        return Kind::Pdf417Store;
    case 81:
        return Kind::Pdf417Print;
    default:
        return Kind::SymbolOther;
    }
}

// GS ( k pL pH cn fn [parameters]: pL pH count from cn on.
EscPosCodeCommand symbolFunction(QByteArrayView parameters)
{
    EscPosCodeCommand code;
    if (parameters.size() < 4) {
        code.kind = Kind::SymbolOther;
        return code;
    }
    const unsigned cn = byteAt(parameters, 2);
    const unsigned fn = byteAt(parameters, 3);
    code.kind = cn == qrSymbol ? qrFunction(fn) : cn == pdf417Symbol ? pdf417Function(fn) : Kind::SymbolOther;
    switch (code.kind) {
    case Kind::QrStore:
    case Kind::Pdf417Store:
        // m = 48, then the data.
        code.data = parameters.size() > 5 ? parameters.sliced(5) : QByteArrayView();
        break;
    case Kind::Pdf417ErrorCorrection:
        // m = 48 chooses a level; m = 49 a ratio, which is not a level.
        code.value = byteAt(parameters, 4) == 48 ? int(byteAt(parameters, 5)) : -1;
        break;
    default:
        code.value = int(byteAt(parameters, 4));
        break;
    }
    return code;
}

// GS k m d1 ... dk NUL, or GS k m n d1 ... dn.
EscPosCodeCommand barcode(QByteArrayView parameters)
{
    EscPosCodeCommand code;
    code.kind = Kind::Barcode;
    code.value = int(byteAt(parameters, 0));
    if (code.value >= 65) {
        code.data = parameters.size() > 2 ? parameters.sliced(2) : QByteArrayView();
    } else if (parameters.size() > 1) {
        code.data = parameters.sliced(1);
        if (code.data.endsWith('\0'))
            code.data.chop(1);
    }
    return code;
}

Kind barcodeSetting(std::string_view name)
{
    if (name == "GS h")
        return Kind::BarcodeHeight;
    if (name == "GS w")
        return Kind::BarcodeModuleWidth;
    if (name == "GS H")
        return Kind::BarcodeHriPosition;
    if (name == "GS f")
        return Kind::BarcodeHriFont;
    return Kind::None;
}

} // namespace

EscPosCodeCommand EscPosCodeCommand::from(const EscPosCommand &command)
{
    if (command.kind != EscPosCommand::Kind::Other || !command.entry)
        return EscPosCodeCommand();
    const std::string_view name(command.entry->name);
    const QByteArrayView parameters = parametersOf(command);
    if (name == "GS ( k")
        return symbolFunction(parameters);
    if (name == "GS k")
        return barcode(parameters);
    EscPosCodeCommand code;
    code.kind = barcodeSetting(name);
    code.value = int(byteAt(parameters, 0));
    return code;
}

EscPosCodeCommand::System EscPosCodeCommand::systemOf(int m)
{
    if (m >= 0 && m <= 6)
        return System(m);
    if (m >= 65 && m <= 73)
        return System(m - 65);
    return System::Unknown;
}

QString EscPosCodeCommand::systemName(System system)
{
    switch (system) {
    case System::UpcA:
        return QStringLiteral("UPC-A");
    case System::UpcE:
        return QStringLiteral("UPC-E");
    case System::Ean13:
        return QStringLiteral("EAN13");
    case System::Ean8:
        return QStringLiteral("EAN8");
    case System::Code39:
        return QStringLiteral("CODE39");
    case System::Itf:
        return QStringLiteral("ITF");
    case System::Codabar:
        return QStringLiteral("CODABAR");
    case System::Code93:
        return QStringLiteral("CODE93");
    case System::Code128:
        return QStringLiteral("CODE128");
    case System::Unknown:
        break;
    }
    return QString();
}

QString EscPosCodeCommand::hriPositionName(int value)
{
    static const char *const names[] = {"none", "above", "below", "both"};
    const int position = value >= 48 ? value - 48 : value;
    return position >= 0 && position <= 3 ? QLatin1String(names[position]) : QString();
}
