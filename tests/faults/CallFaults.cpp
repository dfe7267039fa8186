// Faults that come within calls, one by one: every call of the parser plug-in fails, in each of the
// ways that a call can fail, and every allocation, alone or with all that follow.
#include "CostCountCommon/include/XmlPxdFunctions.h"
#include "tests/faults/Family.h"
#include "tests/support/CountingParser.h"
#include "tests/support/FailingAllocation.h"

namespace {

// Until the operation ends before the fault comes. `disarm` tells whether it came.
void FailEach(Trial& trial, const std::string& what, const std::function<void(int n)>& arm,
              const std::function<bool()>& disarm) {
    bool hasCome = true;
    trial.disarm = [&] { hasCome = disarm(); };
    int n = 0;
    while (hasCome) {
        ++n;
        const Tally before = trial.counts;
        const std::string fault = what + " " + std::to_string(n);
        trial.arm = [&] { arm(n); };
        CountingParser::Reset();
        const long live = LiveAllocations();
        trial.Attempt(fault);
        trial.Require(LiveAllocations() == live, fault, "memory was lost");
        trial.Require(CountingParser::LiveNodes() == 0, fault, "a node was lost");
        trial.Require(CountingParser::LiveDocuments() == 0, fault, "a document was lost");
        trial.Require(CountingParser::StrayReleases() == 0, fault, "a handle was given back twice");
        if (!hasCome) {
            trial.Require(trial.counts.lost == before.lost, fault, "failed without a fault");
            trial.counts.tried = before.tried;
            trial.counts.told = before.told;
        }
        trial.Restore();
    }
}

}  // namespace

bool TryParserFaults() {
    Bench bench(COUNTING_PARSER, 1);
    return TryFamily("failing calls of the parser", PARSER, bench, [](Trial& trial, auto&) {
        for (const unsigned int error : {unsigned{XMLPXD_INVALID_ARGUMENT},
                                         unsigned{XMLPXD_OUT_OF_MEMORY}, CountingParser::QUIETLY}) {
            // A parser that says nothing of a failure hides what it should have given.
            trial.isValueTold = error != CountingParser::QUIETLY;
            FailEach(
                trial, "error " + std::to_string(error) + " of call",
                [=](int n) { CountingParser::Fail("", n, error); },
                [=] {
                    const bool hasCome = CountingParser::HasFailed();
                    CountingParser::Fail("", 0, error);
                    return hasCome;
                });
        }
        return true;
    });
}

bool TryAllocationFaults() {
    using Then = FailingNthAllocation::Then;
    Bench bench(COUNTING_PARSER, 1);
    return TryFamily("failing allocations", MEMORY, bench, [](Trial& trial, auto&) {
        for (const Then then : {Then::SUCCEED, Then::FAIL}) {
            std::optional<FailingNthAllocation> failing;
            FailEach(
                trial, then == Then::FAIL ? "allocations from" : "allocation",
                [&](int n) { failing.emplace(static_cast<size_t>(n), then); },
                [&] {
                    failing.reset();
                    return FailingNthAllocation::HasFailed();
                });
        }
        return true;
    });
}
