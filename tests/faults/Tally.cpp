#include "tests/faults/Tally.h"

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

Family::Family(const std::string& name) {
    Report("%-44s %8s %8s %6s %6s\n", name.c_str(), "tried", "told", "lost", "left");
}

void Family::Add(const std::string& operation, Tally tally) {
    tally.lost += tally.tried == 0 ? 1 : 0;
    ReportRow(operation.c_str(), tally);
    m_total = {m_total.tried + tally.tried, m_total.told + tally.told, m_total.lost + tally.lost,
               m_total.leftovers + tally.leftovers};
}

bool Family::End() const {
    ReportRow("  total", m_total);
    return m_total.lost == 0;
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
