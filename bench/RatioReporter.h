// Prints, after the usual table, how many times the processor time of its limit each piece of work
// took, and whether that is within the wanted bound.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

// Pairs "NAME/work" with "NAME/limit", both measured in this run, by the medians of their
// repetitions.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    // By how names begin, up to a comma.
    explicit RatioReporter(std::map<std::string, double> bounds) : m_bounds(std::move(bounds)) {}

    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    std::map<std::string, double> m_bounds;
    std::map<std::string, std::vector<double>> m_times;  // processor time by benchmark
};
