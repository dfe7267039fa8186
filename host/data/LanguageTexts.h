// Texts in several languages, as options give them.
#pragma once

#include <string>
#include <vector>

namespace tallyquist {

struct LanguageText {
    std::string language;  // a code such as en or pt-BR
    std::string text;
};

// Such as en or pt-BR.
bool IsLanguageCode(const std::string& text);

// Whether two codes mean one language: they may differ in case and in the sign between their parts.
bool IsSameLanguage(const std::string& a, const std::string& b);

// The values, each LANG=TEXT, of an option that may be repeated. Throws UsageError for what XML
// cannot hold, for what is no such value, for a language that is given twice and, unless
// `mayBeEmpty`, for an empty text.
std::vector<LanguageText> ParseLanguageTexts(const char* option,
                                             const std::vector<std::string>& values,
                                             bool mayBeEmpty);

}  // namespace tallyquist
