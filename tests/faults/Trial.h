// An operation under faults: its file made as before, each attempt judged by what it left.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/faults/Operation.h"

using Contents = std::optional<std::string>;  // none when there is no file

Contents ContentsOf(const std::string& path);

// What became of faults.
struct Tally {
    long tried = 0;
    long told = 0;
    long lost = 0;       // neither old nor new, leaked, or thrown
    long leftovers = 0;  // temporary files of killed processes
};

class Trial {
public:
    // Runs the operation without faults to learn what is right. Throws when it fails then.
    Trial(Bench& bench, const Operation& operation);

    // Runs it once, with whatever faults there are, and counts what became of it. `fault` is for
    // those who read what was lost.
    void Attempt(const std::string& fault);
    // The same in a child process, where `impose` first makes the fault. False, and nothing is
    // counted, when it could not be made.
    bool AttemptInChild(const std::string& fault, const std::function<bool()>& impose);
    void Require(bool isWell, const std::string& fault, const char* what);
    // Makes the file again as it was before, and removes what else lies in its folder.
    void Restore();

    // How many files are in the folder that were not there before.
    long Leftovers() const;

    const std::string file;    // of the operation
    const std::string folder;  // that it lies in
    // Called before and after the operation itself.
    std::function<void()> arm = [] {};
    std::function<void()> disarm = [] {};
    bool isValueTold = true;  // whether a value is looked at
    bool canBeDone = true;    // whether the fault may be got over
    Contents before;
    Contents after;
    Tally counts;

private:
    bool Run();
    void Judge(bool isDone, const std::string& fault);
    bool IsExpected(const std::string& name) const;

    Bench& m_bench;
    const Operation& m_operation;
    bool m_hasThrown = false;
    Contents m_fromNothing;               // made where there was not even a folder
    std::vector<std::string> m_values;    // before, and with and without the user's settings
    std::vector<std::string> m_expected;  // names in the folder
};
