// Two handles on two threads share nothing.
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <cstdio>
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

// Any thread of a host may flush all streams, as the end of the process does.
TEST(ExporterThreads, AnotherThreadMayFlushAllStreams) {
    const ExporterModule exporter;
    const TempFolder folder;
    std::atomic<bool> done = false;
    std::thread flusher([&] {
        while (!done) {
            std::fflush(nullptr);
        }
    });
    void* handle = nullptr;
    exporter.create(&handle);
    exporter.open(handle, folder.Path("out.csv").c_str());
    std::string expected;
    for (int row = 0; row < 20'000; ++row) {
        const std::string number = std::to_string(row);
        const char* values[] = {number.c_str()};
        EXPECT_EQ(0, exporter.writeValues(handle, 1, values, nullptr, nullptr));
        expected += row == 0 ? "\"" : "\n\"";
        expected += number;
        expected += '"';
    }
    done = true;
    flusher.join();
    EXPECT_EQ(0, exporter.close(handle));
    exporter.dispose(handle);
    EXPECT_EQ(expected, ReadFile(folder.Path("out.csv")));
}

// Closing a file is where a cancelled thread leaves; it must not be stopped by a destructor.
TEST(ExporterThreads, ACancelledThreadLeavesThroughDispose) {
    const ExporterModule exporter;
    const TempFolder folder;
    void* handle = nullptr;
    exporter.create(&handle);
    ASSERT_EQ(0, exporter.open(handle, folder.Path("out.csv").c_str()));
    const char* values[] = {"a"};
    ASSERT_EQ(0, exporter.writeValues(handle, 1, values, nullptr, nullptr));
    auto dispose = [&] {
        pthread_cancel(pthread_self());
        exporter.dispose(handle);
        pthread_testcancel();
    };
    pthread_t thread{};
    ASSERT_EQ(0, pthread_create(
                     &thread, nullptr,
                     [](void* work) -> void* {
                         (*static_cast<decltype(dispose)*>(work))();
                         return nullptr;
                     },
                     &dispose));
    void* result = nullptr;
    ASSERT_EQ(0, pthread_join(thread, &result));
    EXPECT_EQ(PTHREAD_CANCELED, result);
    EXPECT_EQ("\"a\"", ReadFile(folder.Path("out.csv")));
}

}  // namespace
