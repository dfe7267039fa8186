#include "CostCountCommon/include/PluginLocations.h"

#include <algorithm>
#include <array>
#include <exception>
#include <string_view>

#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/Ascii.h"

namespace {

ApplicationType gAppType = APPLICATION_TYPE_MAIN;

constexpr std::string_view PLUGINS_FOLDER = "PlugIns";
constexpr std::string_view HELPERS_FOLDER = "Helpers";

// A login item's bundle is MAIN.app/Contents/Library/LoginItems/ITEM.app. From its plug-ins folder
// five components lead up to the main application's Contents, from its Contents four.
constexpr int CLIMB_FROM_PLUGINS = 5;
constexpr int CLIMB_FROM_CONTENTS = 4;

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

bool LiesInLoginItems(std::string_view path) {
    return ContainsAsciiNoCase(path, "LoginItems");
}

// Empty when there is none.
std::string PluginFolder() {
    const std::string builtIn = platform::BuiltInPlugInsFolder();
    if (builtIn.empty()) {
        return {};
    }
    if (gAppType == APPLICATION_TYPE_LOGIN_ITEM) {
        return LiesInLoginItems(builtIn)
                   ? Joined(WithoutLastComponents(builtIn, CLIMB_FROM_PLUGINS),
                            LastComponent(builtIn))
                   : std::string();
    }
    const std::string support = platform::SupportFilesFolder();
    return LastComponent(support) == HELPERS_FOLDER
               ? Joined(WithoutLastComponents(support, 1), PLUGINS_FOLDER)
               : builtIn;
}

// The folder that contains the main application bundle.
std::string InstallFolder() {
    const std::string plugins = PluginFolder();
    const bool insideApplication = gAppType == APPLICATION_TYPE_LOGIN_ITEM ||
                                   LastComponent(platform::SupportFilesFolder()) == HELPERS_FOLDER;
    const std::string bundle = insideApplication
                                   ? WithoutLastComponents(plugins, 2)  // PlugIns, Contents
                                   : platform::MainBundleFolder();
    const std::string folder = WithoutLastComponents(bundle, 1);
    return folder.empty() && !bundle.empty() ? "/" : folder;
}

bool Store(const std::string& text, std::string* path) {
    *path = text;
    return !text.empty();
}

bool FileName(std::string_view name, std::string* path) {
    return Store(std::string(name), path);
}

bool InPluginFolder(std::string_view name, std::string* path) {
    const std::string folder = PluginFolder();
    return Store(folder.empty() ? folder : Joined(folder, name), path);
}

bool HelperTool(std::string_view relative, std::string* path) {
    if (gAppType != APPLICATION_TYPE_LOGIN_ITEM) {
        // Taken literally for a tool in Helpers too, which so looks in a Helpers folder of its own.
        const std::string builtIn = platform::BuiltInPlugInsFolder();
        return Store(
            builtIn.empty() ? builtIn : Joined(WithoutLastComponents(builtIn, 1), relative), path);
    }
    const std::string support = platform::SupportFilesFolder();
    if (LiesInLoginItems(support)) {
        *path = Joined(WithoutLastComponents(support, CLIMB_FROM_CONTENTS), relative);
    }
    return true;
}

bool InstallPath(std::string_view, std::string* path) {
    return Store(InstallFolder(), path);
}

bool BundleVersion(std::string_view, std::string* path) {
    return Store(platform::MainBundleVersion(), path);
}

struct Location {
    std::string_view key;
    bool (*resolve)(std::string_view name, std::string* path);
    std::string_view name;
};

constexpr std::array<Location, 19> LOCATIONS{{
    {"systemsetting_path", FileName, "CMSystemSetting.cfg"},
    {"bnt_path", HelperTool, "Helpers/qvtrelBnt"},
    {"detch_path", HelperTool, "Helpers/qvtrelDetch"},
    {"sconp_path", InPluginFolder, "sconp_path"},  // the key serves as the file name
    {"velsJoblog_path", InPluginFolder, "zopmekJoblog.plugin"},
    {"velsMedia_path", InPluginFolder, "zopmekMedia.plugin"},
    {"xmlParser_path", InPluginFolder, "zopmekxmlpxd.plugin"},
    {"admutil_path", InPluginFolder, "zopmekadmutil.plugin"},
    {"install_path", InstallPath, ""},
    {"applogger_path", InPluginFolder, "zopmekLogger.plugin"},
    {"velsdevice_path", InPluginFolder, "zopmekDevice.plugin"},
    {"joblogdriver_path", InPluginFolder, "qvtrelDbdrv.plugin"},
    {"PDiscovery_path", InPluginFolder, "zopmekPDiscovery.plugin"},
    {"JobCostExporter_path", InPluginFolder, "qvtrelExporter.plugin"},
    {"velsPrint_path", InPluginFolder, "zopmekPrint.plugin"},
    {"velsCounter_path", InPluginFolder, "zopmekCounter.plugin"},
    {"Language", InPluginFolder, "Language"},  // the key serves as the file name
    {"Appver", BundleVersion, ""},
    {"ipTracker_path", InPluginFolder, "zopmekipt.plugin"},
}};

}  // namespace

ApplicationType GetAppType() {
    return gAppType;
}

void SetAppType(ApplicationType type) {
    gAppType = type;
}

bool GetPluginFilePath(const char* key, std::string* path) try {
    if (key == nullptr || path == nullptr) {
        return false;
    }
    const auto* found = std::find_if(LOCATIONS.begin(), LOCATIONS.end(),
                                     [&](const Location& location) { return location.key == key; });
    return found != LOCATIONS.end() && found->resolve(found->name, path);
} catch (const std::exception&) {
    return false;  // out of memory
}
