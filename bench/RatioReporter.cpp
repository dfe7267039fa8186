#include "bench/RatioReporter.h"

#include <algorithm>
#include <ostream>

namespace {

double Median(std::vector<double> times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

}  // namespace

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type == Run::RT_Iteration && !run.error_occurred) {
            m_times[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
        }
    }
    ConsoleReporter::ReportRuns(runs);
}

// scripts/bench reads the rows, whose columns are two blanks apart.
void RatioReporter::Finalize() {
    GetOutputStream() << "\nprocessor time over that of the limit, medians\n";
    for (const auto& [name, times] : m_times) {
        const size_t suffix = name.rfind("/work");
        const auto limit = suffix == std::string::npos
                               ? m_times.end()
                               : m_times.find(name.substr(0, suffix) + "/limit");
        if (limit != m_times.end()) {
            const std::string work = name.substr(0, suffix);
            const double bound = m_bounds.at(work.substr(0, work.find(',')));
            const double ratio = Median(times) / Median(limit->second);
            GetOutputStream() << "  " << work << "  " << ratio << "  " << bound << "  "
                              << (ratio <= bound ? "within" : "ABOVE") << "\n";
        }
    }
}
