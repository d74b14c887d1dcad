// SPDX-License-Identifier: MIT
// Counts the heap allocations of the whole process (the library included), so that a benchmark
// can show its queries make none. Include it in exactly one file of a benchmark executable.
#pragma once

#include <atomic>
#include <cstdlib>
#include <new>

static std::atomic<long long> g_allocations{0};

void *operator new(std::size_t size)
{
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    if (void *p = std::malloc(size ? size : 1))
        return p;
    throw std::bad_alloc();
}

void operator delete(void *p) noexcept
{
    std::free(p);
}

void operator delete(void *p, std::size_t) noexcept
{
    std::free(p);
}
