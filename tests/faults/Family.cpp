#include "tests/faults/Family.h"

#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <stdexcept>

namespace {

FILE* gReport = stdout;

void ReportRow(const char* name, const Tally& tally) {
    Report("%-44s %8ld %8ld %6ld %6ld\n", name, tally.tried, tally.told, tally.lost,
           tally.leftovers);
}

}  // namespace

bool TryFamily(const std::string& name, Faults faults, Bench& bench,
               const std::function<bool(Trial& trial, const Operation& operation)>& attempt) {
    Report("%-44s %8s %8s %6s %6s\n", name.c_str(), "tried", "told", "lost", "left");
    Tally total;
    for (const Operation& operation : OperationsWith(faults)) {
        Trial trial(bench, operation);
        if (!attempt(trial, operation)) {
            Report("not possible here: %s\n", name.c_str());
            break;
        }
        // A row of nothing tried would mean nothing.
        trial.counts.lost += trial.counts.tried == 0 ? 1 : 0;
        ReportRow(operation.name, trial.counts);
        total.tried += trial.counts.tried;
        total.told += trial.counts.told;
        total.lost += trial.counts.lost;
        total.leftovers += trial.counts.leftovers;
    }
    ReportRow("  total", total);
    return total.lost == 0;
}

void SetStandardOutputAside() {
    gReport = fdopen(dup(STDOUT_FILENO), "w");
    if (gReport == nullptr || std::freopen("/dev/null", "w", stdout) == nullptr) {
        throw std::runtime_error("standard output cannot be set aside");
    }
}

void Report(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vfprintf(gReport, format, arguments);
    va_end(arguments);
    fflush(gReport);
}
