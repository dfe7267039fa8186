// Two handles on two threads share nothing.
#include <pthread.h>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>
#include <utility>

#include "tests/JobCostExporter/CsvFixture.h"
#include "tests/support/Environment.h"

namespace {

constexpr int ROWS = 2000;

class ExporterThreads : public CsvFixture {};

void Write(const ExporterModule& exporter, const std::string& path, int number) {
    void* handle = nullptr;
    exporter.create(&handle);
    exporter.open(handle, path.c_str());
    const char* types[] = {"datetime", "timespan"};
    for (int row = 0; row < ROWS; ++row) {
        const std::string seconds = std::to_string((number * 5000LL + row) * 86400);
        const char* values[] = {seconds.c_str(), seconds.c_str()};
        exporter.writeValues(handle, 2, values, nullptr, types);
    }
    exporter.close(handle);
    exporter.dispose(handle);
}

TEST_F(ExporterThreads, HandlesOnTwoThreadsDoNotDisturbEachOther) {
    const ScopedVariable zone("TZ", "Europe/Berlin");
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] { Write(m_exporter, m_folder.Path(std::to_string(i)), i); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int i = 0; i < 4; ++i) {
        Write(m_exporter, m_path, i);
        EXPECT_EQ(ReadFile(m_path), ReadFile(m_folder.Path(std::to_string(i))));
    }
}

// Any thread of a host may flush all streams, as the end of the process does.
TEST_F(ExporterThreads, AnotherThreadMayFlushAllStreams) {
    constexpr int FLUSHES = 1'000'000;
    constexpr int MOST_ROWS = 5'000'000;  // when flushing is stuck
    std::atomic<int> flushes = 0;
    EXPECT_EQ(0, Open());
    std::thread flusher([&] {
        for (; flushes < FLUSHES; ++flushes) {
            std::fflush(nullptr);
        }
    });
    std::string expected;
    for (int row = 0; row < MOST_ROWS && flushes < FLUSHES; ++row) {
        const std::string number = std::to_string(row);
        EXPECT_EQ(0, WriteRow({number.c_str()}));
        expected.append(row == 0 ? "\"" : "\n\"").append(number).append("\"");
    }
    flushes = FLUSHES;
    flusher.join();
    EXPECT_EQ(0, m_exporter.close(m_handle));
    EXPECT_EQ(expected, ReadFile(m_path));
}

// Closing a file is where a cancelled thread leaves; it must not be stopped by a destructor.
TEST_F(ExporterThreads, ACancelledThreadLeavesThroughDispose) {
    ASSERT_EQ(0, Open());
    ASSERT_EQ(0, WriteRow({"a"}));
    auto dispose = [this] {
        pthread_cancel(pthread_self());
        m_exporter.dispose(std::exchange(m_handle, nullptr));
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
    EXPECT_EQ("\"a\"", ReadFile(m_path));
}

}  // namespace
