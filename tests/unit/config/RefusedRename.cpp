#include "RefusedRename.h"

#include <atomic>
#include <cerrno>
#include <dlfcn.h>

namespace {

std::atomic<bool> refusing{false};
std::atomic<int> refusedCount{0};

using RenameFunction = int (*)(const char *, const char *);

RenameFunction libraryRename()
{
    static const auto function = reinterpret_cast<RenameFunction>(::dlsym(RTLD_NEXT, "rename"));
    return function;
}

} // namespace

RefusedRename::RefusedRename()
{
    refusedCount = 0;
    refusing = true;
}

RefusedRename::~RefusedRename()
{
    refusing = false;
}

int RefusedRename::refused() const
{
    return refusedCount;
}

// Stands in front of the C library's rename() for the whole test program; it only refuses
// while a RefusedRename is alive.
extern "C" int rename(const char *from, const char *to) noexcept
{
    if (refusing) {
        ++refusedCount;
        errno = EIO;
        return -1;
    }
    return libraryRename()(from, to);
}
