// Runs a fuzz target's LLVMFuzzerTestOneInput on saved inputs, without libFuzzer: the test
// suite's way of replaying the seed corpus and every crash kept under fuzz/crashes/.
//
//   <runner> <file or folder>...
//
// A folder stands for its regular files (names starting with '.' left out), in name order.
// Each input is named on standard error before it runs, so a crash points at its file.
// Exits 1 when there is no input at all; a violated property aborts the process.

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int main(int argc, char **argv)
{
    QStringList inputs;
    for (int i = 1; i < argc; ++i) {
        const QString path = QString::fromLocal8Bit(argv[i]);
        const QFileInfo info(path);
        if (info.isDir()) {
            const QStringList names = QDir(path).entryList(QDir::Files, QDir::Name);
            for (const QString &name : names)
                inputs.append(QDir(path).filePath(name));
        } else if (info.isFile()) {
            inputs.append(path);
        } else {
            std::fprintf(stderr, "%s: no such file or folder\n", argv[i]);
            return 1;
        }
    }
    if (inputs.isEmpty()) {
        std::fprintf(stderr, "no inputs to run\n");
        return 1;
    }

    LLVMFuzzerInitialize(&argc, &argv);
    for (const QString &input : inputs) {
        QFile file(input);
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s: cannot read\n", qPrintable(input));
            return 1;
        }
        const QByteArray data = file.readAll();
        std::fprintf(stderr, "running %s (%lld bytes)\n", qPrintable(input),
                     static_cast<long long>(data.size()));
        std::fflush(stderr);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(data.constData()),
                               static_cast<std::size_t>(data.size()));
    }
    std::fprintf(stderr, "%lld inputs, every property held\n", static_cast<long long>(inputs.size()));
    return 0;
}
