// Counts the allocations of a test program, to tell what a frame costs. Whoever calls it gets an
// operator new that counts.
#pragma once

#include <cstddef>

// Allocations through operator new on the calling thread, since it began.
std::size_t AllocationCount();
