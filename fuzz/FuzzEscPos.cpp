// Renders one document as ESC/POS with one configuration, both taken from the input as for
// fuzz_compile (configuration, a line "%%", the document), and checks what reaches the
// printer: only the commands the back-end itself writes, every initialisation followed by the
// configured code table, at most one drawer pulse and one cut, and no pulse after a fault.

#include "FuzzSupport.h"

#include "config/BRConfiguration.h"
#include "devices/escpos/EscPosListing.h"
#include "devices/escpos/EscPosTokenizer.h"
#include "job/PrinterSettingTable.h"
#include "job/RenderJob.h"

#include <QBuffer>

#include <cstddef>
#include <cstdint>

namespace {

// The length of the QR code or barcode command the back-end writes at `at` (GS ( k with the
// QR code's functions, GS h, GS w, GS H, GS k in its length form with printable data), or 0
// when the bytes there are none of them.
qsizetype codeCommandLength(QByteArrayView stream, qsizetype at)
{
    const auto byte = [&](qsizetype i) { return at + i < stream.size() ? int(uchar(stream[at + i])) : -1; };
    if (byte(0) != 0x1d)
        return 0;
    switch (byte(1)) {
    case 'h':
        return byte(2) >= 1 ? 3 : 0;
    case 'w':
        return byte(2) >= 2 && byte(2) <= 6 ? 3 : 0;
    case 'H':
        return byte(2) == 0 || byte(2) == 2 ? 3 : 0;
    case 'k': {
        const int system = byte(2);
        const int length = byte(3);
        if (system < 65 || system > 73 || length <= 0 || at + 4 + length > stream.size())
            return 0;
        for (qsizetype i = 4; i < 4 + length; ++i) {
            if (byte(i) < 0x20 || byte(i) > 0x7e)
                return 0;
        }
        return 4 + length;
    }
    case '(': {
        // GS ( k pL pH cn fn ...: cn 49 is the QR code; fn 65 model, 67 module size, 69 error
        // correction, 80 the data, 81 print.
        if (byte(2) != 'k' || byte(5) != 49 || byte(4) < 0)
            return 0;
        const qsizetype length = byte(3) | byte(4) << 8;
        const int function = byte(6);
        const bool known = (function == 65 && length == 4) || (function == 67 && length == 3) ||
                           (function == 69 && length == 3) || (function == 80 && length >= 3) ||
                           (function == 81 && length == 3);
        return known && at + 5 + length <= stream.size() ? 5 + length : 0;
    }
    default:
        return 0;
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzzsupport::setUpProcess(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzzsupport::JobInput job = fuzzsupport::splitJobInput(data, size);
    const QByteArray &configText = job.configText;
    QByteArray &document = job.document;

    const QString configPath = fuzzsupport::pathOf("bristel.conf");
    fuzzsupport::writeFile(configPath, configText.constData(), configText.size());
    const BRConfiguration configuration(configPath, QStringLiteral("cfg"));
    const EscPosSettings settings = printerSettingsFromConfiguration(configuration);

    QBuffer in(&document);
    in.open(QIODevice::ReadOnly);
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    const RenderResult result = renderJob(&in, &out, RenderFormat::EscPos, configuration, settings);
    const QByteArray stream = out.data();

    using Kind = EscPosCommand::Kind;
    Kind previous = Kind::Text;
    int pulses = 0;
    int cuts = 0;
    EscPosTokenizer tokenizer(stream);
    EscPosCommand command;
    while (tokenizer.next(&command)) {
        switch (command.kind) {
        case Kind::Text:
        case Kind::LineFeed:
        case Kind::Emphasis:
        case Kind::CharacterSize:
        case Kind::Justification:
        case Kind::RasterImage:
        case Kind::Initialize:
            break;
        case Kind::CodeTable:
            fuzzsupport::require(previous == Kind::Initialize && command.value == settings.codePageNumber,
                                 "the configured code table follows every initialisation");
            break;
        case Kind::Cut:
            ++cuts;
            break;
        case Kind::DrawerPulse:
            ++pulses;
            break;
        default:
            // Besides those, only the QR code's and the barcodes' commands, in the shape the
            // back-end writes them.
            fuzzsupport::require(command.kind == Kind::Other &&
                                     codeCommandLength(stream, command.offset) == command.bytes.size(),
                                 "only the back-end's own commands reach the printer");
        }
        if (previous == Kind::Initialize)
            fuzzsupport::require(command.kind == Kind::CodeTable, "ESC t follows every ESC @");
        previous = command.kind;
    }
    fuzzsupport::require(pulses <= 1 && cuts <= 1, "at most one drawer pulse and one cut");
    fuzzsupport::require(pulses == 0 || result.status == RenderResult::Status::Ok,
                         "no drawer pulse after a fault");
    // The listing reads whatever the stream holds.
    escPosListing(stream);
    return 0;
}
