#include "support/FailingMemory.h"

#include <cstdlib>
#include <new>

namespace {

// Of each thread its own: what other threads do meanwhile does not fail.
thread_local long allocationsLeft = -1;  // -1 is no limit
thread_local bool allocationFailed = false;

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    void* const memory = allocationsLeft == 0 ? nullptr : std::malloc(size == 0 ? 1 : size);
    allocationFailed = allocationFailed || memory == nullptr;
    allocationsLeft -= allocationsLeft > 0 ? 1 : 0;
    return memory;
}

void* operator new(std::size_t size)
{
    void* const memory = operator new(size, std::nothrow);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace tvn2x {

void FailAllocationsFrom(long n)
{
    allocationFailed = false;
    allocationsLeft = n;
}

bool AllowAllocations()
{
    allocationsLeft = -1;
    return allocationFailed;
}

}  // namespace tvn2x
