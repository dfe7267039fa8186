// What the tests of the application logger share: the loaded plug-in, a record, a folder.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "plugins/zopmekLogger/AppLogger.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

// A record with this log file (an absolute or relative name), limit and number of files.
LibLoggerSettings Settings(const std::string& name, uint64_t size = 0, uint32_t count = 1);

class LoggerFixture : public ::testing::Test {
protected:
    LoggerFixture();

    std::string Path(const std::string& name) const { return m_folder.Path(name); }
    int Log(LibLoggerSettings& settings, const std::string& message) const;

    decltype(&alWrite) m_alWrite = nullptr;

private:
    const TempFolder m_folder;
    const ScopedVariable m_dataHome;  // the folder "data" in that folder
};

// The lines of a file, each of which must be complete.
std::vector<std::string> Lines(const std::string& path);

// The messages of writers that run side by side: each tells its writer and number, and has a length
// and filling that follow from these, so that a damaged one shows.
std::string NumberedMessage(int writer, int number);

// How often each message is in the log and its older files. A line that is not whole, or is two
// lines in one, counts under its full text.
std::map<std::string, int> CountMessages(const std::string& path);

// The same for writers 0 ... writers-1 that wrote their messages 0 ... numbers-1 once each.
std::map<std::string, int> EachMessageOnce(int writers, int numbers);
