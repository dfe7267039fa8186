// What one call writes, and what it leaves alone.
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <regex>
#include <string_view>
#include <thread>

#include "tests/plugins/zopmekLogger/LoggerFixture.h"

namespace {

class LogLineTest : public LoggerFixture {};

constexpr const char* TIME = "9999-99-99 99:99:99.999+99:99";

struct LineCase {
    std::string_view separator;
    const char* source;
    unsigned int code;
    int level;
    const char* module;
    const char* message;
    const char* rest;  // the line after the time, with PID for the process id
};

constexpr LineCase LINES[] = {
    {",", "CCsvWriter", 28, 'e', "exporter", "fwrite failed",
     ",PID,error,CCsvWriter:50,28 (No space left on device),exporter,fwrite failed"},
    {",", "A", 0, 'w', "m", "", ",PID,warning,A:50,0,m,"},
    {",", "A", 9999, 'd', "m", "x", ",PID,debug,A:50,9999,m,x"},
    {",", "A", 4294967295, 'x', "m", "x", ",PID,level 'x',A:50,4294967295,m,x"},
    {",", "A", INT_MAX, -1, "m", "x", ",PID,level -1,A:50,2147483647,m,x"},
    {",", nullptr, 0, 'i', nullptr, nullptr, ",PID,info,:50,0,,"},
    {",", "A", 0, 'i', "a,b", "say \"x\"", ",PID,info,A:50,0,\"a,b\",\"say \"\"x\"\"\""},
    {",", "A\n", 0, 'i', "m", "a\r\nb", ",PID,info,\"A\\n:50\",0,m,\"a\\r\\nb\""},
    // Separators of no, two and three characters, and one that cannot separate.
    {"", "A", 0, 'i', "a,b", "a;b", ",PID,info,A:50,0,\"a,b\",a;b"},
    {";;", "A", 0, 'i', "a;b", "a;", ";;PID;;info;;A:50;;0;;a;b;;\"a;\""},
    {"::;", "A", 0, 'i', "m", "a::;b", "::;PID::;info::;A:50::;0::;m::;\"a::;b\""},
    {"\n", "A", 0, 'i', "a,b", "x", ",PID,info,A:50,0,\"a,b\",x"},
};

TEST_F(LogLineTest, HoldsTheFieldsAndQuotesThemWhereNeeded) {
    const ScopedVariable zone("TZ", "UTC0");
    const std::string path = Path("log.csv");
    for (const LineCase& row : LINES) {
        SCOPED_TRACE(row.rest);
        LibLoggerSettings settings = Settings(path);
        settings.m_separator[0] = '\0';
        row.separator.copy(settings.m_separator, sizeof settings.m_separator);
        memset(settings.m_reservedText, ';', sizeof settings.m_reservedText);
        ASSERT_EQ(m_alWrite(row.source, 50, &settings, row.module, nullptr, row.code, row.level,
                            row.message),
                  0);
        const std::vector<std::string> lines = Lines(path);
        ASSERT_EQ(lines.size(), 1U);
        std::string rest = row.rest;
        rest.replace(rest.find("PID"), 3, std::to_string(getpid()));
        const std::string time = lines[0].substr(0, strlen(TIME));
        EXPECT_EQ(std::regex_replace(time, std::regex("[0-9]"), "9"), TIME);
        EXPECT_EQ(lines[0].substr(time.size()), rest);
        std::filesystem::remove(path);
    }
}

TEST_F(LogLineTest, TellsTheLocalTimeAndItsOffset) {
    LibLoggerSettings settings = Settings(Path("log.csv"));
    const ScopedVariable earlierZone("TZ", "UTC0");
    ASSERT_EQ(Log(settings, "x"), 0);
    EXPECT_EQ(ReadFile(Path("log.csv")).substr(23, 6), "+00:00");
    const ScopedVariable zone("TZ", "XST-5:30");  // 5:30 ahead
    settings.m_separator[0] = ':';
    using std::chrono::system_clock;
    const time_t before = system_clock::to_time_t(system_clock::now());
    ASSERT_EQ(Log(settings, "x"), 0);
    const time_t after = system_clock::to_time_t(system_clock::now());
    const std::string line = Lines(Path("log.csv")).back();
    struct tm time {};
    const char* rest = strptime(line.c_str(), "\"%Y-%m-%d %H:%M:%S.", &time);
    ASSERT_NE(rest, nullptr) << line;
    // The time holds the separator, so it is quoted.
    EXPECT_EQ(std::string(rest).substr(3, 8), "+05:30\":");
    const time_t written = timegm(&time) - (5 * 60 + 30) * 60;
    EXPECT_GE(written, before);
    EXPECT_LE(written, after);
}

TEST_F(LogLineTest, LeavesErrnoAndCancellationAlone) {
    LibLoggerSettings settings = Settings(Path("log.csv"));
    LibLoggerSettings wrong = Settings(Path("missing/log.csv"));
    errno = EDOM;
    EXPECT_EQ(Log(wrong, "x"), ENOENT);
    EXPECT_EQ(Log(settings, "x"), 0);
    EXPECT_EQ(errno, EDOM);

    // A thread that is already to be cancelled still gets its line written, and may be cancelled
    // again afterwards. It ends in the usual way, which the sanitizers cope with better.
    int result = -1;
    int state = PTHREAD_CANCEL_DISABLE;
    std::thread thread([&] {
        pthread_cancel(pthread_self());
        result = Log(settings, "cancelled");
        pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state);
    });
    thread.join();
    EXPECT_EQ(result, 0);
    EXPECT_EQ(state, PTHREAD_CANCEL_ENABLE);
    EXPECT_EQ(Lines(Path("log.csv")).size(), 2U);
}

}  // namespace
