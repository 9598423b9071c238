#include "job/ProgramMessage.h"

#include <cstdio>

void printProgramMessage(const char *program, const QString &message)
{
    std::fprintf(stderr, "%s: %s\n", program, qUtf8Printable(message));
    std::fflush(stderr);
}
