// Compiles one document with one configuration, both taken from the input: the
// configuration text comes first, then a line holding "%%", then the XML document.  Without
// that line the whole input is the document and the configuration is empty.  Properties:
//  - an empty document writes nothing;
//  - every line written ends with CR LF CR, a fiscal-printer record ("1020;1") with CR LF,
//    and the output ends with a complete line (checked when no text of the document can hold
//    a line end of its own: no character references, no entity declarations);
//  - the output's size is linear in the input's: each input byte is worth at most a row of
//    the widest width the configuration names.

#include "FuzzSupport.h"

#include "compiler/Compile.h"
#include "config/BRConfiguration.h"

#include <QBuffer>
#include <QRegularExpression>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

// True when written is a sequence of text lines ending "\r\n\r" and records ending "\r\n".
// A line end followed by CR closes a text line; one followed by anything else closes a
// record, which is a four-digit code and its fields.
bool linesAreComplete(const QByteArray &written)
{
    static const QRegularExpression record(QStringLiteral("^[0-9]{4}(;[^\\r\\n]*)?$"));
    qsizetype start = 0;
    while (start < written.size()) {
        const qsizetype lf = written.indexOf('\n', start);
        if (lf < 0 || lf == 0 || written.at(lf - 1) != '\r')
            return false; // an unfinished line, or LF without its CR
        if (lf + 1 < written.size() && written.at(lf + 1) == '\r') {
            start = lf + 2;
            continue;
        }
        // A record; or the last text line, which must still have its CR after the LF.
        const QByteArray line = written.mid(start, lf - 1 - start);
        if (!record.match(QString::fromLatin1(line)).hasMatch())
            return false;
        start = lf + 1;
    }
    return true;
}

// The widest width or count the configuration can ask for: its largest number, held to the
// driver's bound of 100000, and not below the default paper width.
qint64 widestSetting(const QByteArray &configText)
{
    qint64 widest = 40;
    static const QRegularExpression number(QStringLiteral("[0-9]+"));
    for (const QRegularExpressionMatch &match : number.globalMatch(QString::fromLatin1(configText))) {
        const QString digits = match.captured();
        widest = std::max(widest,
                          digits.size() > 6 ? qint64(100000) : std::min<qint64>(digits.toLongLong(), 100000));
    }
    return widest;
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

    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    const QString outputPath = fuzzsupport::pathOf("output.txt");
    compileDocument(&buffer, outputPath, &configuration);

    // The output file must be complete and readable once the driver is gone.
    QFile output(outputPath);
    if (!output.open(QIODevice::ReadOnly))
        __builtin_trap();
    const QByteArray written = output.readAll();
    // Bytes come only from the driver's texts and line ends, so an empty document writes nothing.
    fuzzsupport::require(!document.isEmpty() || written.isEmpty(), "an empty document wrote something");
    if (!document.contains("&#") && !document.contains("<!ENTITY"))
        fuzzsupport::require(linesAreComplete(written),
                             "a line does not end with CR LF CR (a record with CR LF)");
    // A row of the widest width, its separators and an indented line end per input byte, over
    // the document and the configuration.  A quadratic growth breaks this long before 64 KiB.
    const qint64 bound = (qint64(size) + 256) * (4 * widestSetting(configText) + 64);
    fuzzsupport::require(written.size() <= bound, "the output grows faster than the input");
    return 0;
}
