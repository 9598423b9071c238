#ifndef BRISTEL_FUZZ_FUZZSUPPORT_H
#define BRISTEL_FUZZ_FUZZSUPPORT_H

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QString>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace fuzzsupport {

inline std::string &removalPath()
{
    static std::string path;
    return path;
}

inline void removeWorkFolder()
{
    if (removalPath().empty())
        return;
    const std::string command = "rm -rf '" + removalPath() + "'";
    if (std::system(command.c_str()) != 0)
        std::fprintf(stderr, "could not remove %s\n", removalPath().c_str());
    removalPath().clear();
}

// A private folder for the files of one fuzzing process, removed at exit and before an abort
// for a violated property.
inline const QString &workFolder()
{
    static const QString folder = [] {
        std::string pattern = "/tmp/bristel-fuzz-XXXXXX";
        if (!mkdtemp(pattern.data())) {
            std::perror("mkdtemp");
            std::abort();
        }
        removalPath() = pattern;
        std::atexit(removeWorkFolder);
        return QString::fromStdString(pattern);
    }();
    return folder;
}

inline QString pathOf(const char *name)
{
    return workFolder() + QLatin1Char('/') + QLatin1String(name);
}

inline void writeFile(const QString &path, const char *data, qsizetype size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        std::abort();
    if (file.write(data, size) != size)
        std::abort();
}

// A property that every input must keep: when it does not, the input is a finding.  The
// message goes to standard error and the process aborts, which libFuzzer saves as a crash
// and the corpus runner of the test suite reports as a failure.
inline void require(bool holds, const char *property)
{
    if (holds)
        return;
    std::fprintf(stderr, "property violated: %s\n", property);
    std::fflush(stderr);
    removeWorkFolder();
    std::abort();
}

// The code under test reports on standard output; keep it out of the fuzzer's log unless
// BRISTEL_FUZZ_VERBOSE is set.  An application object exists as in the real program.
// An input of the job targets: a configuration text, a line "%%", then the XML document.
// Without that line the whole input is the document and the configuration is empty.
struct JobInput
{
    QByteArray configText;
    QByteArray document; // a copy of its own, so that a reader may keep pointers into it
};

inline JobInput splitJobInput(const unsigned char *data, std::size_t size)
{
    const QByteArray input = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    static const QByteArray separator("\n%%\n");
    const qsizetype split = input.indexOf(separator);
    JobInput job;
    job.configText = split < 0 ? QByteArray() : input.left(split + 1);
    job.document = split < 0 ? input : input.mid(split + separator.size());
    job.document.detach();
    return job;
}

inline void setUpProcess(int *argc, char ***argv)
{
    if (!std::getenv("BRISTEL_FUZZ_VERBOSE")) {
        if (!std::freopen("/dev/null", "w", stdout))
            std::abort();
    }
    static QCoreApplication application(*argc, *argv);
    workFolder();
}

} // namespace fuzzsupport

#endif
