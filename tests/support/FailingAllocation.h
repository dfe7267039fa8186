// Makes allocations fail for the time of a scope, in the whole process: the operator new of the
// test program serves every module that is loaded into it.
#pragma once

#include <cstddef>

class FailingAllocation {
public:
    // Allocations of `size` bytes and more fail.
    explicit FailingAllocation(size_t size);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
};
