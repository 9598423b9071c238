// Micro-benchmarks of the hot paths: the column layout, the configuration load and lookup,
// and the compile of a whole receipt in process.

#include "compiler/Compile.h"
#include "config/BRConfiguration.h"
#include "devices/commandfile/CompanyPrinterDriver.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

const QString SampleConfiguration = QStringLiteral(BENCH_DIR "/../examples/bristel.conf");

// Exposes the layout of a driver with the receipt profile loaded.
class LayoutDriver : public CompanyPrinterDriver
{
public:
    LayoutDriver(const QString &output, const BRConfiguration *configuration)
        : CompanyPrinterDriver(output, configuration)
    {
        loadValues(QStringLiteral("receipt"));
    }
};

void descriptionRowQxdpt(benchmark::State &state)
{
    QTemporaryDir dir;
    const BRConfiguration configuration(SampleConfiguration, QStringLiteral("cfg"));
    const LayoutDriver driver(dir.filePath(QStringLiteral("out")), &configuration);
    const QString quantity = QStringLiteral("2"), name = QStringLiteral("Spaghetti alla carbonara"),
                  price = QStringLiteral("9.00"), total = QStringLiteral("18.00"),
                  layout = QStringLiteral("qxdpt");
    for (auto _ : state)
        benchmark::DoNotOptimize(
            driver.descriptionRow(quantity, name, price, total, QLatin1Char('.'), layout));
}
BENCHMARK(descriptionRowQxdpt);

void configurationLookup(benchmark::State &state)
{
    const BRConfiguration configuration(SampleConfiguration, QStringLiteral("cfg"));
    const QString key = QStringLiteral("bristel.solddoc.openCashDrawer"); // the last profile, last key
    for (auto _ : state)
        benchmark::DoNotOptimize(configuration.getStrValue(key));
}
BENCHMARK(configurationLookup);

// Reading the sample configuration into its tree, and freeing the tree: once per run.
void configurationLoad(benchmark::State &state)
{
    for (auto _ : state) {
        const BRConfiguration configuration(SampleConfiguration, QStringLiteral("cfg"));
        benchmark::DoNotOptimize(&configuration);
    }
}
BENCHMARK(configurationLoad);

QByteArray receiptDocument(int items)
{
    QByteArray xml = "<document><method name=\"printFullOrderReceipt\"/>"
                     "<headers line1=\"Trattoria da Anna\" line2=\"Open every day\"/>"
                     "<company name=\"Trattoria da Anna s.r.l.\" address=\"Via Roma 1, 00100 Roma\"/>"
                     "<receipt serialnumber=\"000123\"/>"
                     "<orderinfo date=\"12/03/2026\" time=\"20:15\" table=\"7\" waiter=\"Anna\"/>"
                     "<customer name=\"Mario Rossi\" billingaddress=\"Via Verdi 3, 00100 Roma\"/>";
    for (int i = 0; i < items; ++i)
        xml +=
            "<receipe number=\"2\" name=\"Spaghetti alla carbonara\" price=\"9.00\" totalPrice=\"18.00\"/>";
    xml += "<total price=\"360.00\"/></document>";
    return xml;
}

void compileReceipt(benchmark::State &state)
{
    QTemporaryDir dir;
    const BRConfiguration configuration(SampleConfiguration, QStringLiteral("cfg"));
    QByteArray document = receiptDocument(static_cast<int>(state.range(0)));
    const QString output = dir.filePath(QStringLiteral("out"));
    for (auto _ : state) {
        QBuffer input(&document);
        input.open(QIODevice::ReadOnly);
        compileDocument(&input, output, &configuration);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(compileReceipt)->Arg(20)->Arg(10000);

} // namespace

BENCHMARK_MAIN();
