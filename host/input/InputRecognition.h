// Tells what kind of input a file is from its name and its beginning.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/input/Inputs.h"
#include "host/input/LineReader.h"
#include "host/input/PageLogMatcher.h"

namespace tallyquist {

struct Recognized {
    enum class Kind { EMPTY, PAGE_LOG, TABLE };
    Kind kind = Kind::EMPTY;
    std::vector<MatcherPair> formats;  // of a page log, the one it begins with first
    std::optional<int64_t> firstTime;  // of the first record of a page log
    char separator = ',';              // of a table
};

class InputRecognizer {
public:
    // Throws OptionError when the log format is not usable.
    explicit InputRecognizer(const InputOptions& options);

    // Peeks at an input that nothing was read from yet. Throws InputError when it is no input for
    // this program.
    // `tail` gives the end of the input where that can be had; it is asked for page logs alone,
    // whose format may have been changed on the way.
    Recognized Recognize(LineReader& lines, const std::function<std::string()>& tail) const;

private:
    struct Beginning;

    bool FindPageLog(const Beginning& beginning, Recognized& result) const;
    void AddLaterFormats(const std::vector<std::string_view>& lines, Recognized& result) const;
    bool FindBrokenRecord(const Beginning& beginning, Recognized& result) const;
    bool FindTable(const Beginning& beginning, Recognized& result, std::string& reason) const;
    bool GuessTable(const Beginning& beginning, char separator, std::string& reason) const;
    [[noreturn]] void Refuse(const Beginning& beginning, const std::string& tableReason) const;

    InputKind m_kind;
    bool m_formatGiven;
    bool m_typesGiven;
    std::vector<MatcherPair> m_candidates;
};

}  // namespace tallyquist
