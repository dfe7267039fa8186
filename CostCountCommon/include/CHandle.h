// The bases of everything that can be waited for, and the wait codes.
#pragma once

// What waits give.
constexpr unsigned int WAIT_OBJECT_0 = 0;   // signalled, or acquired
constexpr unsigned int WAIT_TIMEOUT = 258;  // not signalled in time
constexpr unsigned int WAIT_FAILED = 0xFFFFFFFF;

// As a number of milliseconds: for ever.
constexpr unsigned int INFINITE = 0xFFFFFFFF;

// What a Windows-style handle points to.
class CHandle {
public:
    CHandle() = default;
    virtual ~CHandle() = default;
    CHandle(const CHandle&) = delete;
    CHandle& operator=(const CHandle&) = delete;
};

// Each gives a wait code. Wait must block at a cancellation point, and nothing in it may keep a
// cancellation from ending the thread: TimedWait of CHandleSupport stands on that.
class IHandleWait {
public:
    virtual unsigned int Wait() = 0;
    virtual unsigned int TryWait() = 0;
    virtual unsigned int TimedWait(unsigned int milliseconds) = 0;

protected:
    // Not virtual: nothing is destroyed through this base, and the three functions are the first in
    // its table.
    ~IHandleWait() = default;
};
