// A progress bar on standard error, for work that takes long and a person who watches.
#pragma once

#include <chrono>
#include <cstdint>

#include "host/input/Inputs.h"

namespace tallyquist {

class ProgressBar {
public:
    // Shows nothing unless `wanted` and standard error is a terminal.
    explicit ProgressBar(bool wanted);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // To be called for each row.
    void Update(uint64_t rows, const Progress& progress) {
        if (m_active && rows % ROWS_PER_LOOK == 0) {
            Look(rows, progress);
        }
    }

    // Takes the bar away, so that other lines can be printed.
    void Clear();

private:
    using Clock = std::chrono::steady_clock;

    static constexpr uint64_t ROWS_PER_LOOK = 1024;

    void Look(uint64_t rows, const Progress& progress);

    bool m_active;
    bool m_shown = false;
    Clock::time_point m_next;
};

}  // namespace tallyquist
