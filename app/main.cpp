#include "app/Compile.h"

#include <cstdlib> // defines __GLIBC__ on the GNU C library
#ifdef __GLIBC__
#include <malloc.h>
#endif

// One run compiles one document and ends.  The allocator would otherwise hand the top of the
// heap back to the system whenever the rows in flight are freed, only to fault the same pages
// in again for the next rows: on a large document that is hundreds of trims, each one a TLB
// shootdown.  Whatever the run freed goes back with the process instead.
static void keepFreedHeap()
{
#ifdef __GLIBC__
    mallopt(M_TRIM_THRESHOLD, 256 * 1024 * 1024);
#endif
}

int main(int argc, char **argv)
{
    keepFreedHeap();
    compile(argc, argv);
    return 0;
}
