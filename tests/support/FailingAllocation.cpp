#include "tests/support/FailingAllocation.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<size_t> gRefusedFrom{SIZE_MAX};
std::atomic<size_t> gRefusedUpTo{SIZE_MAX};

void* Allocate(size_t size) {
    return size >= gRefusedFrom && size <= gRefusedUpTo ? nullptr
                                                        : std::malloc(size == 0 ? 1 : size);
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
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
    std::free(memory);
}
#pragma GCC visibility pop
