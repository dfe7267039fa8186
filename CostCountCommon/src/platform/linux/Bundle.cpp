// Where the main bundle lies, answered from folders: the application that TALLYQUIST_CONTENTS
// names, else the one around an executable in Contents/Linux, else the executable's own folder.
#include "CostCountCommon/src/platform/linux/Bundle.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/linux/PropertyList.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr char RESOURCES_FOLDER[] = "Resources";

struct MainBundle {
    fs::path folder;
    fs::path contents;  // of an application; a plain folder's own path otherwise
};

fs::path WithoutTrailingSlash(const fs::path& path) {
    return path.has_filename() || path == path.root_path() ? path : path.parent_path();
}

fs::path Absolute(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return WithoutTrailingSlash((error ? path : absolute).lexically_normal());
}

// Not cached: the variable may be set by the program itself, and the answer costs microseconds.
MainBundle FindMainBundle() {
    const char* named = std::getenv("TALLYQUIST_CONTENTS");
    if (named != nullptr && *named != '\0') {
        const fs::path contents = Absolute(named);
        return {contents.parent_path(), contents};
    }
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/self/exe", error);
    const fs::path folder = executable.parent_path();
    if (folder.filename() == "Linux" && folder.parent_path().filename() == "Contents") {
        const fs::path contents = folder.parent_path();
        return {contents.parent_path(), contents};
    }
    return {folder, folder};
}

std::string InContents(const char* name) {
    const fs::path contents = FindMainBundle().contents;
    return contents.empty() ? std::string() : (contents / name).string();
}

}  // namespace

std::string MainBundleFolder() {
    return FindMainBundle().folder.string();
}

std::string SupportFilesFolder() {
    return FindMainBundle().contents.string();
}

std::string BuiltInPlugInsFolder() {
    return InContents("PlugIns");
}

std::string ResourcesFolder() {
    return InContents(RESOURCES_FOLDER);
}

std::string ResourcesFolderOf(const std::string& path) {
    std::error_code error;
    const fs::path folder(path);
    return fs::is_directory(folder, error) ? (folder / "Contents" / RESOURCES_FOLDER).string()
                                           : std::string();
}

std::string MainBundleProperty(std::string_view key) {
    std::ifstream file(InContents("Info.plist"), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return PropertyListString(text, key);
}

std::string MainBundleVersion() {
    return MainBundleProperty("CFBundleVersion");
}

}  // namespace platform
