// Folders, and names in them, by regular expressions.
#include <locale.h>
#include <regex.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "CostCountCommon/src/CancellationOff.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/Utf8.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

// Makes text UTF-8 to the regular expressions of this thread, whatever the program's locale, so
// that a dot stands for a character instead of a byte.
class Utf8Locale {
public:
    Utf8Locale() : m_locale(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {
        if (m_locale != nullptr) {
            m_earlier = uselocale(m_locale);
        }
    }
    ~Utf8Locale() {
        if (m_locale != nullptr) {
            uselocale(m_earlier);
            freelocale(m_locale);
        }
    }
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;

    bool IsSet() const { return m_locale != nullptr; }

private:
    locale_t m_locale;
    locale_t m_earlier = nullptr;
};

// Whether an expression can be compiled and searched for in reasonable time, memory and stack. A
// reference back to a group, or many repetitions within repetitions, may cost without bound.
bool IsModest(std::string_view expression) {
    constexpr size_t LONGEST = 1024;
    constexpr size_t MOST_REPETITIONS = 1000;
    size_t repetitions = 1;
    for (size_t at = 0; at < expression.size() && expression.size() <= LONGEST; ++at) {
        const std::string_view rest = expression.substr(at + 1);
        if (expression[at] == '\\' && !rest.empty()) {
            if (rest.front() >= '1' && rest.front() <= '9') {
                return false;
            }
            ++at;
        } else if (expression[at] == '{') {
            // The larger number stands last.
            const size_t comma = rest.substr(0, rest.find('}')).find(',');
            const std::string_view last =
                rest.substr(comma == std::string_view::npos ? 0 : comma + 1);
            size_t count = 1;
            std::from_chars(last.data(), last.data() + last.size(), count);
            repetitions *= std::clamp<size_t>(count, 1, MOST_REPETITIONS + 1);
            if (repetitions > MOST_REPETITIONS) {
                return false;
            }
        }
    }
    return expression.size() <= LONGEST;
}

class Expression {
public:
    explicit Expression(const std::string& text)
        : m_isCompiled(IsModest(text) &&
                       regcomp(&m_expression, text.c_str(), REG_EXTENDED | REG_NOSUB) == 0) {}
    ~Expression() {
        if (m_isCompiled) {
            regfree(&m_expression);
        }
    }
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;

    bool IsCompiled() const { return m_isCompiled; }
    bool Matches(const std::string& text) const {
        return regexec(&m_expression, text.c_str(), 0, nullptr, 0) == 0;
    }

private:
    regex_t m_expression{};
    bool m_isCompiled;
};

}  // namespace

bool ListFolder(const std::string& folder, std::vector<std::string>* names) {
    // Opening a folder is a cancellation point within functions that must not be left.
    const CancellationOff whole;
    std::vector<std::string> found;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::string name = entry->path().filename().string();
        if (IsUtf8(name)) {
            found.push_back(std::move(name));
        }
    }
    if (error) {
        return false;
    }
    std::sort(found.begin(), found.end());
    *names = std::move(found);
    return true;
}

bool KeepMatching(const std::string& expression, std::vector<std::string>* names) {
    const Utf8Locale locale;
    const Expression compiled(expression);
    if (!locale.IsSet() || !compiled.IsCompiled()) {
        return false;
    }
    std::erase_if(*names, [&](const std::string& name) { return !compiled.Matches(name); });
    return true;
}

}  // namespace platform
