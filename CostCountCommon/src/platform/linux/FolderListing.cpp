// Folders, and names in them, by regular expressions.
#include <locale.h>
#include <regex.h>

#include <algorithm>
#include <utility>

#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/RegularExpressions.h"
#include "CostCountCommon/src/platform/linux/FolderNames.h"
#include "compatible/Utf8.h"

namespace platform {
namespace {

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
    std::vector<std::string> found;
    if (!FolderNames(folder, &found)) {
        return false;
    }
    std::erase_if(found, [](const std::string& name) { return !IsUtf8(name); });
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
