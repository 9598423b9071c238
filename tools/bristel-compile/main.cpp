#include "compiler/Compile.h"
#include "compiler/HeapTuning.h"
#include "config/OutputFile.h"

int main(int argc, char **argv)
{
    tuneHeapForOneRun();
    // Kept: the exit status is 0 whatever happens to the output, so a reader that closes its
    // FIFO early must not end the process with SIGPIPE either.
    OutputFile::reportClosedPipesAsWriteErrors();
    compile(argc, argv);
    return 0;
}
