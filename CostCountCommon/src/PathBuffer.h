// A path put together in a buffer of a fixed size: the programs that share pipes and settings all
// have room for that much and no more.
#pragma once

#include <cstddef>
#include <string>

class PathBuffer {
public:
    // Begins with that path. 0, or ERANGE when it does not fit.
    int Assign(const std::string& path);
    // Adds a component, separated by one slash. False, with the path as it was, when it does not
    // fit.
    bool Append(const std::string& component);

    const char* Text() const { return m_text; }

private:
    static constexpr size_t SIZE = 1024;

    char m_text[SIZE] = {};
};
