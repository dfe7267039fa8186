// Makes allocations fail for the time of a scope, in the whole process: the operator new of the
// test program serves every module that is loaded into it. One scope at a time.
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

class FailingNthAllocation {
public:
    enum class Then { SUCCEED, FAIL };

    // The nth allocation from now fails, and all later ones succeed or fail.
    FailingNthAllocation(size_t nth, Then then);
    ~FailingNthAllocation();
    FailingNthAllocation(const FailingNthAllocation&) = delete;
    FailingNthAllocation& operator=(const FailingNthAllocation&) = delete;

    // Whether it has come, in this scope or, after it, in the last one.
    static bool HasFailed();
};

// How much was allocated and not given back.
long LiveAllocations();
