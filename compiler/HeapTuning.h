#ifndef BRISTEL_COMPILER_HEAPTUNING_H
#define BRISTEL_COMPILER_HEAPTUNING_H

/*
 * Allocator settings for a process that compiles one document and ends.
 *
 * Freed memory stays with the process until it exits, the heap grows in steps of
 * heapStep() bytes, and the first step is faulted in at once.  Does nothing where the C
 * library's allocator is not the GNU one (or a sanitizer has replaced it).
 */
void tuneHeapForOneRun();

// The step by which the heap grows once tuned.
constexpr int heapStep()
{
    return 128 * 1024;
}

#endif
