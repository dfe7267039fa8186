// Sets an environment variable for the time of a test.
#pragma once

#include <optional>
#include <string>

class ScopedVariable {
public:
    // A null value unsets the variable.
    ScopedVariable(const char* name, const char* value);
    ~ScopedVariable();
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    std::string m_name;
    std::optional<std::string> m_earlier;
};
