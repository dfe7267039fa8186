// Takes lines of a page log apart, in linear time whatever they hold.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "host/input/PageLogFormat.h"

namespace tallyquist {

// A line taken apart. The views point into the text that was matched.
struct Reading {
    std::vector<std::string_view> fields;  // in the order of the format
    bool certain = true;  // no less likely kind of host name or billing code had to be assumed
    bool ambiguous = false;
    // The other way to read it, when it is ambiguous.
    std::vector<std::string_view> otherFields;
};

// Nothing in a page log is quoted, so a line may fit its format in several ways. Two readings bound
// all others: the one where the free texts are as short as possible from left to right, and the one
// where they are as long as possible. The line is ambiguous when these two differ, and also when an
// address was taken for the host although a host name stands in front of it.
class PageLogMatcher {
public:
    explicit PageLogMatcher(PageLogFormat format);
    ~PageLogMatcher();

    const PageLogFormat& Format() const { return m_format; }

    // Reads a complete record.
    bool Match(std::string_view text, Reading& reading) const;
    // Whether Match would succeed, for less.
    bool Completes(std::string_view text) const;
    // Reads what there is of a record that ends too early: all fields that are certainly whole and
    // the beginning of a free text. Fails when not even the job and its pages are whole.
    bool MatchCut(std::string_view text, Reading& reading) const;
    // Whether the text begins like a record of its own, up to the job number and the time.
    bool StartsRecord(std::string_view text) const;
    // Where the text holds the job number and time of a record; npos when it does not.
    size_t FindRecordInside(std::string_view text) const;
    // Whether the last field is a free text, so that nothing shows where a record ends.
    bool EndsInFreeText() const;

private:
    class Pattern;
    class CutPattern;

    PageLogFormat m_format;
    std::vector<std::unique_ptr<Pattern>> m_patterns;  // the most trusted way to read comes first
    std::vector<std::unique_ptr<CutPattern>> m_cutPatterns;  // the longest comes first
    std::unique_ptr<Pattern> m_start;
    std::unique_ptr<Pattern> m_inside;
};

// The matchers of a format as it stands and of the same format with quotes around each line. Their
// fields are the same.
struct MatcherPair {
    std::shared_ptr<const PageLogMatcher> bare;
    std::shared_ptr<const PageLogMatcher> quoted;

    // Printers' names do not begin with a quote, so the line itself shows which one to use.
    const PageLogMatcher& For(std::string_view line) const;
};

MatcherPair MakeMatchers(const PageLogFormat& format);

}  // namespace tallyquist
