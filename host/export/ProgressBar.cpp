#include "host/export/ProgressBar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace tallyquist {
namespace {

constexpr std::chrono::milliseconds LONG_WORK{1000};
constexpr std::chrono::milliseconds INTERVAL{200};
constexpr uint64_t WIDTH = 30;

}  // namespace

ProgressBar::ProgressBar(bool wanted)
    : m_active(wanted && isatty(STDERR_FILENO) == 1), m_next(Clock::now() + LONG_WORK) {}

ProgressBar::~ProgressBar() {
    Clear();
}

void ProgressBar::Look(uint64_t rows, const Progress& progress) {
    const Clock::time_point now = Clock::now();
    if (now < m_next) {
        return;
    }
    m_next = now + INTERVAL;
    m_shown = true;
    const auto count = static_cast<unsigned long long>(rows);
    if (progress.bytesTotal == 0) {
        std::fprintf(stderr, "\r%llu rows", count);
    } else {
        const uint64_t done = std::min(progress.bytesRead, progress.bytesTotal);
        const uint64_t filled = WIDTH * done / progress.bytesTotal;
        std::fprintf(stderr, "\r[%s%s] %3llu%%  %llu rows", std::string(filled, '#').c_str(),
                     std::string(WIDTH - filled, ' ').c_str(),
                     static_cast<unsigned long long>(100 * done / progress.bytesTotal), count);
    }
    std::fflush(stderr);
}

void ProgressBar::Clear() {
    if (m_shown) {
        std::fputs("\r\x1B[K", stderr);  // to the start of the line, erase to its end
        m_shown = false;
    }
}

}  // namespace tallyquist
