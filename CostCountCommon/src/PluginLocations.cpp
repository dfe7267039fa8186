#include "CostCountCommon/include/PluginLocations.h"

#include <algorithm>
#include <array>
#include <exception>
#include <string_view>

#include "CostCountCommon/src/BundleFolders.h"
#include "CostCountCommon/src/platform/Platform.h"

namespace {

using bundle::IsHelper;
using bundle::Joined;
using bundle::PluginFolder;
using bundle::WithoutLastComponents;

// The folder that contains the main application bundle.
std::string InstallFolder() {
    const std::string plugins = PluginFolder();
    const bool insideApplication = GetAppType() == APPLICATION_TYPE_LOGIN_ITEM || IsHelper();
    const std::string application = insideApplication
                                        ? WithoutLastComponents(plugins, 2)  // PlugIns, Contents
                                        : platform::MainBundleFolder();
    const std::string folder = WithoutLastComponents(application, 1);
    return folder.empty() && !application.empty() ? "/" : folder;
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
    if (GetAppType() != APPLICATION_TYPE_LOGIN_ITEM) {
        // Taken literally for a tool in Helpers too, which so looks in a Helpers folder of its own.
        const std::string builtIn = platform::BuiltInPlugInsFolder();
        return Store(
            builtIn.empty() ? builtIn : Joined(WithoutLastComponents(builtIn, 1), relative), path);
    }
    const auto contents = bundle::MainContentsFromContents(platform::SupportFilesFolder());
    if (contents) {
        *path = Joined(*contents, relative);
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
