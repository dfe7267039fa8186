#include "CostCountCommon/src/BundleFolders.h"

#include "CostCountCommon/include/PluginLocations.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/Ascii.h"

namespace {

ApplicationType gAppType = APPLICATION_TYPE_MAIN;

}  // namespace

// Defined here because only the folder walk depends on it.
ApplicationType GetAppType() {
    return gAppType;
}

void SetAppType(ApplicationType type) {
    gAppType = type;
}

namespace bundle {
namespace {

constexpr std::string_view PLUGINS_FOLDER = "PlugIns";
constexpr std::string_view HELPERS_FOLDER = "Helpers";
constexpr std::string_view LOGIN_ITEMS_FOLDER = "LoginItems";

// Contents, ITEM.app, LoginItems and Library.
constexpr int CLIMB_FROM_CONTENTS = 4;

std::optional<std::string> Climbed(std::string_view path, int count) {
    if (!ContainsAsciiNoCase(path, LOGIN_ITEMS_FOLDER)) {
        return std::nullopt;
    }
    return WithoutLastComponents(path, count);
}

}  // namespace

std::string_view LastComponent(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

std::string WithoutLastComponents(std::string_view path, int count) {
    for (; count > 0; --count) {
        const size_t slash = path.rfind('/');
        path = path.substr(0, slash == std::string_view::npos ? 0 : slash);
    }
    return std::string(path);
}

std::string Joined(std::string_view folder, std::string_view name) {
    return std::string(folder).append("/").append(name);
}

bool IsHelper() {
    return LastComponent(platform::SupportFilesFolder()) == HELPERS_FOLDER;
}

std::optional<std::string> MainContentsFromContents(std::string_view contents) {
    return Climbed(contents, CLIMB_FROM_CONTENTS);
}

std::optional<std::string> MainContentsFromFolder(std::string_view folder) {
    return Climbed(folder, CLIMB_FROM_CONTENTS + 1);
}

std::string PluginFolder() {
    const std::string builtIn = platform::BuiltInPlugInsFolder();
    if (builtIn.empty()) {
        return {};
    }
    if (GetAppType() == APPLICATION_TYPE_LOGIN_ITEM) {
        const std::optional<std::string> contents = MainContentsFromFolder(builtIn);
        return contents ? Joined(*contents, LastComponent(builtIn)) : std::string();
    }
    return IsHelper()
               ? Joined(WithoutLastComponents(platform::SupportFilesFolder(), 1), PLUGINS_FOLDER)
               : builtIn;
}

}  // namespace bundle
