// A folder of its own for a test, gone with everything in it when the test ends.
#pragma once

#include <filesystem>
#include <string>

class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // Without links, as programs that lie in it find it.
    std::string Path(const std::string& name = "") const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

// The whole contents of a file; empty when it cannot be read.
std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& contents);
