// The allocator settings of the compiler process: freed heap is kept, the first step is resident.

#include "compiler/HeapTuning.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

// Only the GNU allocator has these settings; a sanitizer build replaces it.
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)

#include <sys/mman.h>
#include <unistd.h>

namespace {

std::uintptr_t programBreak()
{
    return reinterpret_cast<std::uintptr_t>(sbrk(0));
}

// Allocates two megabytes in blocks of 4 KiB (from the heap, too large for the allocator's
// per-thread caches), frees them from the top down and returns the program break before and
// after the freeing.
std::pair<std::uintptr_t, std::uintptr_t> breakAroundFreeingTwoMegabytes()
{
    std::vector<void *> blocks;
    for (int i = 0; i < 512; ++i)
        blocks.push_back(std::malloc(4096));
    const std::uintptr_t grown = programBreak();
    for (auto block = blocks.rbegin(); block != blocks.rend(); ++block)
        std::free(*block);
    return {grown, programBreak()};
}

// The settings last for the whole process and every test moves the program break, so each
// test runs in a fresh run of this program that does nothing else: GoogleTest's
// "threadsafe" death-test style starts the program again for the one test.  The fresh run
// ends with status 0 when none of its expectations failed.
#define EXPECT_IN_FRESH_PROCESS(body)                                                                        \
    do {                                                                                                     \
        GTEST_FLAG_SET(death_test_style, "threadsafe");                                                      \
        EXPECT_EXIT(                                                                                         \
            {                                                                                                \
                body;                                                                                        \
                std::fflush(stdout);                                                                         \
                std::_Exit(::testing::Test::HasFailure() ? 1 : 0);                                           \
            },                                                                                               \
            ::testing::ExitedWithCode(0), "");                                                               \
    } while (false)

void expectUntunedHeapGoesBack()
{
    // What the tuning is there for: by default the top of the heap goes back when freed.
    const auto [grown, afterFree] = breakAroundFreeingTwoMegabytes();
    EXPECT_LT(afterFree, grown);
}

void expectFreedHeapStays()
{
    tuneHeapForOneRun();
    const auto [grown, afterFree] = breakAroundFreeingTwoMegabytes();
    EXPECT_EQ(afterFree, grown);
}

void expectFirstStepResident()
{
    tuneHeapForOneRun();
    // The pages just below the break are the heap's fresh room, which nothing has written yet.
    const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t end = programBreak() & ~(pageSize - 1);
    const std::uintptr_t begin = end - std::uintptr_t(heapStep()) / 2;
    std::vector<unsigned char> resident((end - begin) / pageSize);
    ASSERT_EQ(mincore(reinterpret_cast<void *>(begin), end - begin, resident.data()), 0);
    for (std::size_t page = 0; page < resident.size(); ++page)
        EXPECT_TRUE(resident[page] & 1) << "page " << page << " of the first step is not resident";
}

void expectWholeSteps()
{
    tuneHeapForOneRun();
    const std::uintptr_t before = programBreak();
    // Use up the room of the first step, then one small block more.
    std::vector<void *> blocks;
    while (programBreak() == before)
        blocks.push_back(std::malloc(1024));
    EXPECT_GE(programBreak() - before, std::uintptr_t(heapStep()));
    for (void *block : blocks)
        std::free(block);
}

} // namespace

TEST(HeapTuning, UntunedAllocatorHandsFreedHeapBack)
{
    EXPECT_IN_FRESH_PROCESS(expectUntunedHeapGoesBack());
}

TEST(HeapTuning, FreedHeapStaysWithTheProcess)
{
    EXPECT_IN_FRESH_PROCESS(expectFreedHeapStays());
}

TEST(HeapTuning, FirstStepIsResidentAtOnce)
{
    EXPECT_IN_FRESH_PROCESS(expectFirstStepResident());
}

TEST(HeapTuning, HeapGrowsByWholeSteps)
{
    EXPECT_IN_FRESH_PROCESS(expectWholeSteps());
}

#endif
