#ifndef BRISTEL_SUPPORT_HLIBRARY_P_H
#define BRISTEL_SUPPORT_HLIBRARY_P_H

#include <chrono>

/*
 * The two halves of HLibrary::hsleep(), apart so that each can be checked without blocking
 * for whole seconds.  Not part of the library's interface.
 */
namespace HLibraryPrivate {

// The interval hsleep(seconds) blocks for.
std::chrono::milliseconds hsleepInterval(unsigned int seconds);

// Blocks the calling thread for at least the interval; a signal that interrupts the sleep
// does not shorten it.
void sleepFor(std::chrono::milliseconds interval);

} // namespace HLibraryPrivate

#endif
