// Second processes, and names that no test running at the same time uses.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

// A process that runs `body` and ends with its result, killed and waited for at the end of the
// scope, or after a minute, at the latest.
class ChildProcess {
public:
    explicit ChildProcess(const std::function<int()>& body);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t Id() const { return m_id; }
    // The exit code; -1 when a signal ended it.
    int Wait();
    void Kill();

private:
    pid_t m_id;
};

// A name of 5 characters for the events of this process, which nobody has: one that a killed
// process of the same number left is removed. `index` tells those of one test apart, below 36.
std::string UniqueShortName(int index = 0);

// The turn at something that all programs of this machine know by one fixed name, so that tests of
// it never run at the same time. It ends with the scope.
class Turn {
public:
    explicit Turn(const std::string& name);
    ~Turn();
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    int m_file;
};

// How many threads this process has. One that was joined may count for a moment longer.
int ThreadCount();
// Whether the number falls to `count` in the time that a machine under load needs.
bool ThreadCountFallsTo(int count);
