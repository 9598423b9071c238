#include "compiler/HeapTuning.h"

#include <cstdint>
#include <cstdlib> // defines __GLIBC__ on the GNU C library

#ifdef __GLIBC__
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>
#endif

// A run touches a few hundred kilobytes of heap.  Under virtualisation every page fault costs
// several microseconds, so the first step of the heap is faulted in with one call instead of
// page by page.  And the top of the heap is never handed back: trimming it whenever the rows
// in flight are freed only faults the same pages in again for the next rows, which on a large
// document means hundreds of trims, each one a TLB shootdown.
void tuneHeapForOneRun()
{
#ifdef __GLIBC__
    mallopt(M_TRIM_THRESHOLD, 256 * 1024 * 1024);
    mallopt(M_TOP_PAD, heapStep());
#ifdef MADV_POPULATE_WRITE
    // A block below the allocator's mapping threshold comes from the heap and makes it grow
    // now, by the block and a whole step.
    void *probe = std::malloc(100 * 1024);
    if (!probe)
        return;
    const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t from = reinterpret_cast<std::uintptr_t>(probe) & ~(pageSize - 1);
    const std::uintptr_t to = reinterpret_cast<std::uintptr_t>(sbrk(0));
    std::free(probe);
    // A probe outside the heap (a replaced allocator) leaves nothing to fault in.  Kernels
    // before 5.14 refuse the advice; the pages then fault in one by one as before.
    if (to > from)
        madvise(reinterpret_cast<void *>(from), to - from, MADV_POPULATE_WRITE);
#endif
#endif
}
