// Folders, and names in them, by regular expressions.
#include <locale.h>
#include <regex.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "CostCountCommon/src/CancellationOff.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/RegularExpressions.h"
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
