// Reads arbitrary bytes as a configuration file, in the text and in the XML layout, answers a
// few lookups and writes the tree back out.

#include "FuzzSupport.h"

#include "config/Config.h"

#include <cstddef>
#include <cstdint>

namespace {

const char *const Keys[] = {
    "bristel.receiptdoc.paperWidth",
    "bristel.doc.quantityFieldWidth",
    "bristel.language.file",
    "bristel.fiscaldoc.descriptionWidth",
    "a.b",
    "a.b.c",
    "a.b.c.d.e.f",
    "a",
    "",
    ".",
    "..",
    "a..b",
};

void readAndLookUp(const QString &path, const char *type)
{
    libconfig::Config config(path, QLatin1String(type));
    for (const char *key : Keys)
        (void)config.lookup(QLatin1String(key));
    // The writers must cope with whatever the reader built.
    config.buildConfigFile(fuzzsupport::pathOf("written.cfg"));
    config.buildConfigXmlFile(fuzzsupport::pathOf("written.xml"));
    libconfig::Config reread(fuzzsupport::pathOf("written.cfg"), QStringLiteral("cfg"));
    for (const char *key : Keys)
        (void)reread.lookup(QLatin1String(key));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzzsupport::setUpProcess(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString path = fuzzsupport::pathOf("cfg");
    fuzzsupport::writeFile(path, reinterpret_cast<const char *>(data), qsizetype(size));
    readAndLookUp(path, "cfg");
    readAndLookUp(path, "xml");
    return 0;
}
