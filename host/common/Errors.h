// Why a command ends without a result.
#pragma once

#include <stdexcept>

namespace tallyquist {

// The command line asks for something that makes no sense: exit code 2.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The work failed. what() names the file and the reason: exit code 1.
class CommandError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace tallyquist
