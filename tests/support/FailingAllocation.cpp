#include "tests/support/FailingAllocation.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<size_t> gRefusedFrom{SIZE_MAX};
std::atomic<size_t> gRefusedUpTo{SIZE_MAX};

constexpr size_t NEVER = SIZE_MAX;
std::atomic<size_t> gFirstRefused{NEVER};
std::atomic<size_t> gLastRefused{NEVER};
std::atomic<size_t> gCount{0};
std::atomic<bool> gHasFailed{false};
std::atomic<long> gLive{0};

bool IsRefused(size_t size) {
    if (gFirstRefused != NEVER) {
        const size_t number = ++gCount;
        if (number >= gFirstRefused && number <= gLastRefused) {
            gHasFailed = true;
            return true;
        }
    }
    return size >= gRefusedFrom && size <= gRefusedUpTo;
}

void* Allocate(size_t size) {
    void* memory = IsRefused(size) ? nullptr : std::malloc(size == 0 ? 1 : size);
    gLive += memory == nullptr ? 0 : 1;
    return memory;
}

void Free(void* memory) {
    gLive -= memory == nullptr ? 0 : 1;
    std::free(memory);
}

void* AllocateOrThrow(size_t size) {
    void* memory = Allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

FailingAllocation::FailingAllocation(size_t size, size_t largest) {
    gRefusedUpTo = largest;
    gRefusedFrom = size;
}

FailingAllocation::~FailingAllocation() {
    gRefusedFrom = SIZE_MAX;
}

FailingNthAllocation::FailingNthAllocation(size_t nth, Then then) {
    gCount = 0;
    gHasFailed = false;
    gLastRefused = then == Then::FAIL ? NEVER - 1 : nth;
    gFirstRefused = nth;
}

FailingNthAllocation::~FailingNthAllocation() {
    gFirstRefused = NEVER;
}

bool FailingNthAllocation::HasFailed() {
    return gHasFailed;
}

long LiveAllocations() {
    return gLive;
}

// Visible to the modules that a test loads, which is the point.
#pragma GCC visibility push(default)
void* operator new(size_t size) {
    return AllocateOrThrow(size);
}
void* operator new[](size_t size) {
    return AllocateOrThrow(size);
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void operator delete(void* memory) noexcept {
    Free(memory);
}
void operator delete[](void* memory) noexcept {
    Free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    Free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
    Free(memory);
}
#pragma GCC visibility pop
