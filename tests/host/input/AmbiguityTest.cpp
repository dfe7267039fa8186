// The matcher against a slow reader that tries every way to take a line of the usual format apart.
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <sstream>

#include "host/input/PageLogMatcher.h"

namespace tallyquist {
namespace {

using Words = std::vector<std::string>;

const std::string DAY = "[21/Nov/2026:08:00:00";
const std::string ZONE = "+0000]";

std::string JoinWords(const Words& words, size_t begin, size_t end) {
    std::string joined;
    for (size_t i = begin; i < end; ++i) {
        joined += (i == begin ? "" : " ") + words[i];
    }
    return joined;
}

bool IsNumber(const std::string& word) {
    return word.find_first_not_of("0123456789") == std::string::npos;
}

// All fields of one way to read a line.
using Fields = std::vector<std::string>;

// Every way to read the words of a line, in the order of trust: first those without a billing code,
// then those with an address for the host, then all. Only the first kind that occurs counts; `any`
// gets all kinds.
std::set<Fields> AllReadings(const Words& words, std::set<Fields>& any) {
    std::set<Fields> kinds[3];
    const size_t size = words.size();
    const std::string& sides = words.back();
    for (size_t job = 2; job + 4 < size; ++job) {
        const bool head = IsNumber(words[job]) && words[job + 1] == DAY && words[job + 2] == ZONE &&
                          (words[job + 3] == "total" || IsNumber(words[job + 3])) &&
                          IsNumber(words[job + 4]);
        for (size_t host = job + 6; head && host + 3 < size; ++host) {
            if (sides != "-" && sides != "one-sided") {
                continue;
            }
            const std::string billing = JoinWords(words, job + 5, host);
            const Fields fields = {words[0],
                                   JoinWords(words, 1, job),
                                   words[job],
                                   words[job + 1] + " " + words[job + 2],
                                   words[job + 3],
                                   words[job + 4],
                                   billing,
                                   words[host],
                                   JoinWords(words, host + 1, size - 2),
                                   words[size - 2],
                                   sides};
            kinds[2].insert(fields);
            if (words[host] == "localhost" || words[host] == "10.0.0.7") {
                kinds[1].insert(fields);
            }
            if (billing == "-") {
                kinds[0].insert(fields);
            }
        }
    }
    any = kinds[2];
    for (const std::set<Fields>& kind : kinds) {
        if (!kind.empty()) {
            return kind;
        }
    }
    return {};
}

TEST(Ambiguity, SameAsTryingEverything) {
    const PageLogMatcher matcher(ParsePageLogFormat(USUAL_LOG_FORMAT));
    const Words vocabulary = {"-", "localhost", "10.0.0.7", "pc7", "pc7.lan", "7",
                              DAY, ZONE,        "total",    "1",   "doc",     "one-sided"};
    std::mt19937 random(20261121);
    const auto pick = [&](size_t count) {
        return std::uniform_int_distribution<size_t>(0, count - 1)(random);
    };
    size_t counts[3] = {};
    for (int round = 0; round < 20000; ++round) {
        Words words = {"Q"};
        const auto addAny = [&](size_t most) {
            for (size_t n = 1 + pick(most); n > 0; --n) {
                words.push_back(vocabulary[pick(vocabulary.size())]);
            }
        };
        addAny(2);
        words.insert(words.end(), {"7", DAY, ZONE, "total", "1"});
        addAny(9);
        if (pick(3) == 0) {
            words.insert(words.end(), {"7", DAY, ZONE, "total", "1"});
            addAny(6);
        }
        words.emplace_back(pick(4) == 0 ? "doc" : "-");
        const std::string line = JoinWords(words, 0, words.size());
        std::set<Fields> any;
        const std::set<Fields> all = AllReadings(words, any);
        Reading reading;
        ASSERT_EQ(matcher.Match(line, reading), !all.empty()) << line;
        ASSERT_EQ(matcher.Completes(line), !all.empty()) << line;
        ++counts[std::min<size_t>(all.size(), 2)];
        if (all.empty()) {
            continue;
        }
        ASSERT_TRUE(all.contains(Fields(reading.fields.begin(), reading.fields.end()))) << line;
        // Only with an address for the host several words may be the billing code.
        const bool hostInBilling = reading.fields[6].find(" pc7.lan") != std::string_view::npos;
        ASSERT_EQ(reading.ambiguous, all.size() > 1 || hostInBilling) << line;
        if (reading.ambiguous) {
            ASSERT_TRUE(
                any.contains(Fields(reading.otherFields.begin(), reading.otherFields.end())))
                << line;
        }
    }
    // The lines are only worth something when all three kinds are among them.
    for (const size_t count : counts) {
        EXPECT_GT(count, 1000U);
    }
}

}  // namespace
}  // namespace tallyquist
