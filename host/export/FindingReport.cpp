#include "host/export/FindingReport.h"

#include <cstdio>
#include <numeric>

namespace tallyquist {
namespace {

constexpr std::array<const char*, 4> KINDS{"ambiguous", "cut", "forged", "unreadable"};
static_assert(static_cast<size_t>(Finding::Kind::AMBIGUOUS) == 0 &&
              static_cast<size_t>(Finding::Kind::CUT) == 1 &&
              static_cast<size_t>(Finding::Kind::FORGED) == 2 &&
              static_cast<size_t>(Finding::Kind::UNREADABLE) == 3);

}  // namespace

void FindingReport::Add(const Finding& finding) {
    const auto kind = static_cast<size_t>(finding.kind);
    ++m_counts[kind];
    if (m_quiet || Total() > MOST_NAMED) {
        return;
    }
    m_progress.Clear();
    std::fprintf(stderr, "%s:%llu: %s: %s\n", finding.file.c_str(),
                 static_cast<unsigned long long>(finding.line), KINDS[kind], finding.text.c_str());
    if (Total() == MOST_NAMED) {
        std::fputs("further doubtful lines are counted, not named\n", stderr);
    }
}

uint64_t FindingReport::Total() const {
    return std::accumulate(m_counts.begin(), m_counts.end(), uint64_t{0});
}

std::string FindingReport::Summary() const {
    std::string kinds;
    for (size_t kind = 0; kind < KINDS.size(); ++kind) {
        if (m_counts[kind] != 0) {
            kinds +=
                (kinds.empty() ? "" : ", ") + std::to_string(m_counts[kind]) + " " + KINDS[kind];
        }
    }
    return std::to_string(Total()) + (Total() == 1 ? " doubtful line (" : " doubtful lines (") +
           kinds + ")";
}

}  // namespace tallyquist
