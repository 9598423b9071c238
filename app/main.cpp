#include "app/Compile.h"
#include "app/HeapTuning.h"

int main(int argc, char **argv)
{
    tuneHeapForOneRun();
    compile(argc, argv);
    return 0;
}
