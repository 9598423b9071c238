// What a fresh page of memory costs: touched page by page (one fault each) or faulted in with
// one call.  The start-up tuning of the compiler's heap rests on the difference.

#include <benchmark/benchmark.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

namespace {

constexpr std::size_t Pages = 64;

std::size_t pageSize()
{
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// A fresh anonymous mapping, unmapped when the benchmark iteration ends.
class FreshPages
{
public:
    FreshPages() : m_size(Pages * pageSize())
    {
        m_data = static_cast<char *>(
            mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    }
    ~FreshPages()
    {
        if (m_data != MAP_FAILED)
            munmap(m_data, m_size);
    }
    FreshPages(const FreshPages &) = delete;
    FreshPages &operator=(const FreshPages &) = delete;

    bool valid() const { return m_data != MAP_FAILED; }
    char *data() const { return m_data; }
    std::size_t size() const { return m_size; }

private:
    std::size_t m_size;
    char *m_data;
};

// Times faultIn over fresh pages; mapping and unmapping them stay outside the timing.
template <typename FaultIn> void timeFaultingIn(benchmark::State &state, FaultIn faultIn)
{
    for (auto _ : state) {
        state.PauseTiming();
        {
            const FreshPages pages;
            if (!pages.valid()) {
                state.SkipWithError("mmap failed");
                break;
            }
            state.ResumeTiming();
            if (!faultIn(pages)) {
                state.SkipWithError("this kernel cannot populate page tables (5.14 or later can)");
                break;
            }
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t(Pages));
}

void faultInPageByPage(benchmark::State &state)
{
    timeFaultingIn(state, [](const FreshPages &pages) {
        for (std::size_t offset = 0; offset < pages.size(); offset += pageSize())
            pages.data()[offset] = 1;
        benchmark::ClobberMemory();
        return true;
    });
}
BENCHMARK(faultInPageByPage)->UseRealTime();

#ifdef MADV_POPULATE_WRITE
void faultInWithOneCall(benchmark::State &state)
{
    timeFaultingIn(state, [](const FreshPages &pages) {
        return madvise(pages.data(), pages.size(), MADV_POPULATE_WRITE) == 0;
    });
}
BENCHMARK(faultInWithOneCall)->UseRealTime();
#endif

} // namespace
