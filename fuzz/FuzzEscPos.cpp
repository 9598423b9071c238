// Renders one document as ESC/POS with one configuration, both taken from the input as for
// fuzz_compile (configuration, a line "%%", the document), and checks what reaches the
// printer: only the commands the back-end itself writes, every initialisation followed by the
// configured code table, at most one drawer pulse and one cut, and no pulse after a fault.

#include "FuzzSupport.h"

#include "app/RenderJob.h"
#include "backend/EscPosListing.h"
#include "backend/EscPosTokenizer.h"
#include "config/BRConfiguration.h"

#include <QBuffer>

#include <cstddef>
#include <cstdint>

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
    const EscPosSettings settings = EscPosSettings::fromConfiguration(configuration);

    QBuffer in(&document);
    in.open(QIODevice::ReadOnly);
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    const RenderResult result = renderJob(&in, &out, RenderFormat::EscPos, configuration, settings);
    const QByteArray stream = out.data();

    using Kind = EscPosCommand::Kind;
    EscPosTokenizer tokenizer(stream);
    EscPosCommand command;
    Kind previous = Kind::Text;
    int pulses = 0;
    int cuts = 0;
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
            fuzzsupport::require(false, "only the back-end's own commands reach the printer");
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
