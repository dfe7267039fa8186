// Makes allocations fail for the time of a scope, in the whole process: the operator new of the
// test program serves every module that is loaded into it.
#pragma once

#include <cstddef>
#include <cstdint>

class FailingAllocation {
public:
    // Allocations of `size` bytes and more, up to `largest`, fail.
    explicit FailingAllocation(size_t size, size_t largest = SIZE_MAX);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
};
