#include "support/allocation_count.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocationCount = 0;

}  // namespace

std::size_t AllocationCount() {
    return allocationCount;
}

#ifndef __SANITIZE_ADDRESS__
// Not inlined: the compiler would take malloc and delete for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocationCount;
    if (void* place = std::malloc(size == 0 ? 1 : size)) return place;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* place) noexcept {
    std::free(place);
}
[[gnu::noinline]] void operator delete(void* place, std::size_t) noexcept {
    std::free(place);
}
#endif
