#include "host/export/CellValues.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tallyquist {
namespace {

constexpr std::string_view TROUBLESOME = "\",\r\n";

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// A number as people and spreadsheet programs write it: signs, digits with separators, an exponent,
// a per cent sign.
bool IsNumber(std::string_view text) {
    while (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        text.remove_prefix(1);
    }
    if (!text.empty() && text.back() == '%') {
        text.remove_suffix(1);
    }
    const size_t exponent = text.find_first_of("eE");
    if (exponent != std::string_view::npos) {
        std::string_view power = text.substr(exponent + 1);
        if (!power.empty() && (power.front() == '+' || power.front() == '-')) {
            power.remove_prefix(1);
        }
        if (power.empty() || !std::all_of(power.begin(), power.end(), IsDigit)) {
            return false;
        }
        text = text.substr(0, exponent);
    }
    return std::any_of(text.begin(), text.end(), IsDigit) &&
           std::all_of(text.begin(), text.end(),
                       [](char c) { return IsDigit(c) || c == '.' || c == ','; });
}

// Some programs drop white space before they look for a formula, some take the full-width forms of
// the signs as well.
bool WouldBeEvaluated(std::string_view text) {
    static constexpr std::array<std::string_view, 8> STARTS{"=",  "+",  "-",  "@",
                                                            "＝", "＋", "－", "＠"};
    const size_t begin = text.find_first_not_of(" \t\r\n");
    if (begin == std::string_view::npos) {
        return false;
    }
    const std::string_view visible = text.substr(begin);
    // A sign alone is no formula; "-" is how logs write that there is no value.
    return std::any_of(STARTS.begin(), STARTS.end(),
                       [&](std::string_view start) {
                           return visible.starts_with(start) && visible.size() > start.size();
                       }) &&
           !IsNumber(visible);
}

}  // namespace

std::string PortableText(const std::string& text) {
    std::string portable = WouldBeEvaluated(text) ? "'" : "";
    for (size_t at = 0; at < text.size(); ++at) {
        switch (text[at]) {
            case '"':
                portable += "”";
                break;
            case ',':
                portable += ';';
                break;
            case '\r':
                if (at + 1 < text.size() && text[at + 1] == '\n') {
                    ++at;
                }
                [[fallthrough]];
            case '\n':
                portable += ' ';
                break;
            default:
                portable += text[at];
        }
    }
    return portable;
}

void CellValues::Prepare(std::string& text) {
    const bool troublesome = text.find_first_of(TROUBLESOME) != std::string::npos;
    if (m_mode == ValueMode::EXACT) {
        m_count += troublesome ? 1 : 0;
        return;
    }
    if (troublesome || WouldBeEvaluated(text)) {
        text = PortableText(text);
        ++m_count;
    }
}

}  // namespace tallyquist
