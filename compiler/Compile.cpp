#include "compiler/Compile.h"

#include "compiler/StreamSaxReader.h"
#include "config/BRConfiguration.h"
#include "config/SyncSingleton.h"
#include "devices/commandfile/CompanyPrinterDriver.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>
#include <QTranslator>

#include <cstdio>
#include <memory>

namespace {

// The driver's problems as the ordering application reads them: one fixed line each on
// standard output.
void printMessages(PrinterDriver &driver)
{
    for (const QString &line : driver.takeMessages())
        std::printf("%s\n", line.toLocal8Bit().constData());
    std::fflush(stdout);
}

} // namespace

bool loadTranslation(QTranslator &translator, const BRConfiguration &configuration)
{
    const QString basedir = configuration.getStrValue(QStringLiteral("bristel.language.basedir"));
    const QString file = configuration.getStrValue(QStringLiteral("bristel.language.file"));
    if (file == QLatin1String("/")) {
        // "/" asks for the translation of the current locale, e.g. <basedir>/bristel_it_IT.
        return translator.load(basedir + QLatin1String("/bristel_") + QLocale::system().name(),
                               QStringLiteral("."));
    }
    // Joined as they stand: the directory must end with a separator or the file begin with one.
    return translator.load(basedir + file);
}

void compileDocument(QIODevice *input, const QString &outputPath, const BRConfiguration *configuration)
{
    const std::unique_ptr<CompanyPrinterDriver> driver =
        configuration ? std::make_unique<CompanyPrinterDriver>(outputPath, configuration)
                      : std::make_unique<CompanyPrinterDriver>(outputPath);
    printMessages(*driver);
    StreamSaxReader reader;
    reader.setContentHandler(driver.get());
    // A missing or malformed input is not reported: what was written before stays.
    reader.parse(input);
    printMessages(*driver);
}

void compile(int argc, char **argv)
{
    if (argc != 3 && argc != 4) {
        std::printf("Usage: %s input_file output_file\n", argc > 0 && argv[0] ? argv[0] : "");
        std::fflush(stdout);
        return;
    }
    const QString inputPath = QFile::decodeName(argv[1]);
    const QString outputPath = QFile::decodeName(argv[2]);

    QCoreApplication application(argc, argv);
    const BRConfiguration *configuration = SyncSingleton<BRConfiguration>::instance();
    if (const QString missing = configuration->readError(); !missing.isEmpty()) {
        // The ordering application watches standard output for this line.
        std::printf("%s\n", missing.toLocal8Bit().constData());
        std::fflush(stdout);
    }
    QTranslator translator;
    // A missing translation leaves the labels in English, silently.
    if (loadTranslation(translator, *configuration))
        QCoreApplication::installTranslator(&translator);

    QFile input(inputPath);
    if (!input.open(QIODevice::ReadOnly)) {
        // The output file is still created (or emptied) as for any run.
        CompanyPrinterDriver driver(outputPath);
        printMessages(driver);
        return;
    }
    compileDocument(&input, outputPath);
}
