// Names doubtful lines on standard error while an export runs, and counts them.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "host/export/ProgressBar.h"
#include "host/input/RowSource.h"

namespace tallyquist {

class FindingReport {
public:
    FindingReport(bool quiet, ProgressBar& progress) : m_quiet(quiet), m_progress(progress) {}

    void Add(const Finding& finding);

    uint64_t Total() const;

    // Such as "3 doubtful lines (1 cut, 2 forged)".
    std::string Summary() const;

private:
    // A damaged log of millions of lines is not to bury everything else.
    static constexpr uint64_t MOST_NAMED = 100;

    bool m_quiet;
    ProgressBar& m_progress;
    std::array<uint64_t, 4> m_counts{};
};

}  // namespace tallyquist
