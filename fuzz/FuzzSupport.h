#ifndef BRISTEL_FUZZ_FUZZSUPPORT_H
#define BRISTEL_FUZZ_FUZZSUPPORT_H

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QString>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace fuzzsupport {

// A private folder for the files of one fuzzing process, removed at exit.
inline const QString &workFolder()
{
    static const QString folder = [] {
        std::string pattern = "/tmp/bristel-fuzz-XXXXXX";
        if (!mkdtemp(pattern.data())) {
            std::perror("mkdtemp");
            std::abort();
        }
        const std::string path = pattern;
        static std::string removal = path;
        std::atexit([] {
            const std::string command = "rm -rf '" + removal + "'";
            if (std::system(command.c_str()) != 0)
                std::fprintf(stderr, "could not remove %s\n", removal.c_str());
        });
        return QString::fromStdString(path);
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

// The code under test reports on standard output; keep it out of the fuzzer's log unless
// BRISTEL_FUZZ_VERBOSE is set.  An application object exists as in the real program.
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
