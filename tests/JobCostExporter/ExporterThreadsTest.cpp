// Two handles on two threads share nothing.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/support/Environment.h"
#include "tests/support/ExporterModule.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr int ROWS = 2000;

void Write(const ExporterModule& exporter, const std::string& path, int64_t firstDay) {
    void* handle = nullptr;
    exporter.create(&handle);
    exporter.open(handle, path.c_str());
    const char* types[] = {"datetime", "timespan", nullptr};
    for (int row = 0; row < ROWS; ++row) {
        const std::string seconds = std::to_string((firstDay + row) * 86400);
        const char* values[] = {seconds.c_str(), "61", path.c_str()};
        exporter.writeValues(handle, 3, values, nullptr, types);
    }
    exporter.close(handle);
    exporter.dispose(handle);
}

TEST(ExporterThreads, HandlesOnTwoThreadsDoNotDisturbEachOther) {
    const ScopedVariable zone("TZ", "Europe/Berlin");
    const ExporterModule exporter;
    const TempFolder folder;
    const auto path = [&](const char* name, int i) {
        return folder.Path(name + std::to_string(i));
    };
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] { Write(exporter, path("threaded", i), i * 5000); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int i = 0; i < 4; ++i) {
        const std::string alone = path("alone---", i);  // as long as the other name
        Write(exporter, alone, i * 5000);
        std::string expected = ReadFile(alone);
        for (size_t at = 0; (at = expected.find("alone---", at)) != std::string::npos;) {
            expected.replace(at, 8, "threaded");
        }
        EXPECT_EQ(expected, ReadFile(path("threaded", i)));
    }
}

}  // namespace
