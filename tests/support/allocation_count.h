// Counts the allocations of a test program, to tell what a frame costs. Whoever calls it gets an
// operator new that counts.
#pragma once

#include <cstddef>

// The address sanitizer keeps its own operator new, which knows more than a counter: nothing is
// counted then.
#ifdef __SANITIZE_ADDRESS__
constexpr bool kCountsAllocations = false;
#else
constexpr bool kCountsAllocations = true;
#endif

// Allocations through operator new on the calling thread, since it began.
std::size_t AllocationCount();
