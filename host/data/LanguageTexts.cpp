#include "host/data/LanguageTexts.h"

#include <algorithm>

#include "compatible/Ascii.h"
#include "host/data/ArgumentChecks.h"

namespace tallyquist {
namespace {

LanguageText Parse(const Argument& argument) {
    CheckHeldByXml(argument);
    const size_t equals = argument.text.find('=');
    if (equals == std::string::npos) {
        Refuse(argument, " is not LANG=TEXT, such as en=Plotter");
    }
    const std::string language = argument.text.substr(0, equals);
    if (!IsLanguageCode(language)) {
        Refuse({argument.option, language}, " is not a language code such as en or pt-BR");
    }
    return {language, argument.text.substr(equals + 1)};
}

}  // namespace

// Parts of up to 8 letters and digits; the first is of letters, two at least.
bool IsLanguageCode(const std::string& text) {
    constexpr size_t LONGEST_PART = 8;
    bool isFirst = true;
    size_t length = 0;
    for (const char c : text) {
        const char lower = AsciiLower(c);
        if (c == '-' || c == '_') {
            if (length < (isFirst ? 2U : 1U)) {
                return false;
            }
            isFirst = false;
            length = 0;
        } else if (++length > LONGEST_PART ||
                   !((lower >= 'a' && lower <= 'z') || (!isFirst && c >= '0' && c <= '9'))) {
            return false;
        }
    }
    return length >= (isFirst ? 2U : 1U);
}

bool IsSameLanguage(const std::string& a, const std::string& b) {
    const auto folded = [](char c) { return c == '_' ? '-' : AsciiLower(c); };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return folded(x) == folded(y); });
}

std::vector<LanguageText> ParseLanguageTexts(const char* option,
                                             const std::vector<std::string>& values,
                                             bool mayBeEmpty) {
    std::vector<LanguageText> texts;
    for (const std::string& value : values) {
        const LanguageText given = Parse({option, value});
        if (given.text.empty() && !mayBeEmpty) {
            Refuse({option, value}, " has no text");
        }
        if (std::any_of(texts.begin(), texts.end(), [&](const LanguageText& earlier) {
                return IsSameLanguage(earlier.language, given.language);
            })) {
            Refuse({option, given.language}, " is given twice");
        }
        texts.push_back(given);
    }
    return texts;
}

}  // namespace tallyquist
