// Runs the program as a user does and keeps what it says.
#pragma once

#include <string>
#include <vector>

struct ProgramRun {
    int exitCode;
    std::string out;
    std::string err;
};

// `arguments` as a shell takes them, redirections included; `folder` is the current folder.
ProgramRun RunTallyquist(const std::string& arguments, const std::string& folder);

// The names in a folder, sorted.
std::vector<std::string> NamesIn(const std::string& folder);
