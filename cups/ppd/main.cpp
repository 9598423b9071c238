// bristel-ppd: writes the PPD file of every paper family into a folder, at build time.
//
//   bristel-ppd FOLDER

#include "cups/PaperFamily.h"
#include "cups/PpdWriter.h"
#include "job/ProgramMessage.h"

#include <QDir>
#include <QSaveFile>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s folder\n", argv[0]);
        return 1;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const PaperFamily &paper : paperFamilies()) {
        QSaveFile file(folder.filePath(paper.fileName));
        if (!file.open(QIODevice::WriteOnly) || file.write(PpdWriter::ppd(paper)) < 0 || !file.commit()) {
            printProgramMessage("bristel-ppd", file.fileName() + QStringLiteral(": ") + file.errorString());
            return 1;
        }
    }
    return 0;
}
