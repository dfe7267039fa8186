// Texts of the main bundle in the user's language, from Resources/LANGUAGE.lproj. The language is
// told by the variables of the locale, in the way and order of the message catalogues.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/linux/Bundle.h"
#include "CostCountCommon/src/platform/linux/FolderNames.h"
#include "CostCountCommon/src/platform/linux/StringsFile.h"
#include "CostCountCommon/src/platform/linux/TextFile.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr char TABLE[] = "Localizable.strings";
constexpr char LANGUAGE_EXTENSION[] = ".lproj";
// What is larger is no table of texts, and not worth the memory.
constexpr size_t MAX_TABLE_SIZE = 16 * 1024 * 1024;

std::string_view Variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : std::string_view();
}

std::string_view LocaleName() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (!Variable(name).empty()) {
            return Variable(name);
        }
    }
    return {};
}

// The written form that folders are named after where the locale names a territory.
std::string_view ChineseScript(std::string_view territory) {
    constexpr std::array<std::string_view, 2> SIMPLIFIED{"CN", "SG"};
    constexpr std::array<std::string_view, 3> TRADITIONAL{"TW", "HK", "MO"};
    if (std::find(SIMPLIFIED.begin(), SIMPLIFIED.end(), territory) != SIMPLIFIED.end()) {
        return "zh-Hans";
    }
    return std::find(TRADITIONAL.begin(), TRADITIONAL.end(), territory) != TRADITIONAL.end()
               ? "zh-Hant"
               : "";
}

// The names that the folder of a locale such as de_AT.UTF-8@euro may have, the closest one first.
void AddLanguageFolderNames(std::string_view locale, std::vector<std::string>* names) {
    const std::string_view plain = locale.substr(0, locale.find_first_of(".@"));
    // A name with a slash would lead out of the resources.
    if (plain.empty() || plain.find('/') != std::string_view::npos) {
        return;
    }
    names->emplace_back(plain);
    const size_t split = plain.find_first_of("_-");
    if (split == std::string_view::npos) {
        return;
    }
    const std::string_view language = plain.substr(0, split);
    const std::string_view territory = plain.substr(split + 1);
    names->push_back(std::string(language).append("-").append(territory));
    // A script between the two, as in zh-Hant-TW, has folders of its own.
    const size_t script = territory.find_first_of("_-");
    if (script != std::string_view::npos) {
        names->push_back(std::string(language).append("-").append(territory.substr(0, script)));
    }
    if (language == "zh" && !ChineseScript(territory).empty()) {
        names->emplace_back(ChineseScript(territory));
    }
    names->emplace_back(language);
}

std::vector<std::string> LanguageFolderNames() {
    std::vector<std::string> names;
    const std::string_view locale = LocaleName();
    if (!locale.empty() && locale != "C" && locale != "POSIX") {
        for (std::string_view list = Variable("LANGUAGE"); !list.empty();) {
            const size_t end = std::min(list.find(':'), list.size());
            AddLanguageFolderNames(list.substr(0, end), &names);
            list.remove_prefix(std::min(end + 1, list.size()));
        }
        AddLanguageFolderNames(locale, &names);
    }
    AddLanguageFolderNames(MainBundleProperty("CFBundleDevelopmentRegion"), &names);
    AddLanguageFolderNames("en", &names);
    return names;
}

std::string TableText(const fs::path& path) {
    std::string text;
    return ReadTextFile(path, MAX_TABLE_SIZE, &text) ? text : std::string();
}

}  // namespace

std::optional<std::string> LocalizedString(const char* key) {
    const fs::path resources = ResourcesFolder();
    for (const std::string& name : LanguageFolderNames()) {
        const fs::path path = resources / (name + LANGUAGE_EXTENSION) / TABLE;
        std::error_code error;
        if (fs::is_regular_file(path, error)) {
            // One table serves all keys: a text that it lacks is not taken from another language.
            const auto table = ParseStringsFile(TableText(path));
            const auto found = table.find(key);
            return found != table.end() ? std::optional(found->second) : std::nullopt;
        }
    }
    return std::nullopt;
}

int LocalizationsCount() {
    const fs::path resources = ResourcesFolder();
    std::vector<std::string> names;
    int count = 0;
    if (FolderNames(resources, &names)) {
        for (const std::string& name : names) {
            const fs::path path = resources / name;
            std::error_code unknown;
            if (path.extension() == LANGUAGE_EXTENSION && fs::is_directory(path, unknown)) {
                ++count;
            }
        }
    }
    return count;
}

}  // namespace platform
