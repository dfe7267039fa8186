// Where the main bundle lies, answered from folders: the application that TALLYQUIST_CONTENTS
// names, else the one around an executable in Contents/Linux, else the executable's own folder.
#include "CostCountCommon/src/platform/linux/Bundle.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/linux/PropertyList.h"
#include "CostCountCommon/src/platform/linux/TextFile.h"
#include "compatible/Utf8.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr char RESOURCES_FOLDER[] = "Resources";

// What is larger is no property list of a bundle.
constexpr size_t LARGEST_PROPERTY_LIST = 1 << 20;

struct MainBundle {
    fs::path folder;
    fs::path contents;  // of an application; a plain folder's own path otherwise
};

fs::path WithoutTrailingSlash(const fs::path& path) {
    return path.has_filename() || path == path.root_path() ? path : path.parent_path();
}

// Empty when the folder that a relative path starts from is gone.
fs::path Absolute(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    if (error) {
        return {};
    }
    // What stands before ".." may be a link, which only the file system can tell.
    const bool leadsBack = std::find(absolute.begin(), absolute.end(), "..") != absolute.end();
    const fs::path plain = leadsBack ? fs::weakly_canonical(absolute, error) : absolute;
    return WithoutTrailingSlash((error ? absolute : plain).lexically_normal());
}

MainBundle LocateMainBundle() {
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

// Not cached: the variable may be set by the program itself, and the answer costs microseconds. A
// bundle whose path is not UTF-8 cannot be named, and is none.
MainBundle FindMainBundle() {
    MainBundle found = LocateMainBundle();
    return IsUtf8(found.contents.native()) ? found : MainBundle();
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
    std::string text;
    return ReadTextFile(InContents("Info.plist"), LARGEST_PROPERTY_LIST, &text)
               ? PropertyListString(text, key)
               : std::string();
}

std::string MainBundleVersion() {
    return MainBundleProperty("CFBundleVersion");
}

}  // namespace platform
