// Compiles one document with one configuration, both taken from the input: the
// configuration text comes first, then a line holding "%%", then the XML document.  Without
// that line the whole input is the document and the configuration is empty.

#include "FuzzSupport.h"

#include "app/Compile.h"
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
    const QByteArray input = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    static const QByteArray separator("\n%%\n");
    const qsizetype split = input.indexOf(separator);
    const QByteArray configText = split < 0 ? QByteArray() : input.left(split + 1);
    QByteArray document = split < 0 ? input : input.mid(split + separator.size());
    document.detach();

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
    if (document.isEmpty() && !written.isEmpty())
        __builtin_trap();
    return 0;
}
