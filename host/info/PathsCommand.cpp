#include "host/info/PathsCommand.h"

#include <array>
#include <climits>
#include <filesystem>
#include <memory>
#include <system_error>
#include <type_traits>
#include <vector>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/include/MacUtility.h"
#include "host/common/Json.h"
#include "host/common/StandardOutput.h"
#include "host/common/TextTable.h"

namespace tallyquist {
namespace {

bool CorePluginResources(std::string* path) {
    *path = GetPluginResourcesPath();
    return true;
}

struct Release {
    void operator()(CFURLRef url) const { CFRelease(url); }
};

bool PluginFolder(std::string* path) {
    const std::unique_ptr<std::remove_pointer_t<CFURLRef>, Release> url(CreatePluginFolderURLRef());
    std::array<unsigned char, PATH_MAX> buffer{};
    if (!url || CFURLGetFileSystemRepresentation(url.get(), 1, buffer.data(), buffer.size()) == 0) {
        return false;
    }
    *path = reinterpret_cast<const char*>(buffer.data());
    return true;
}

// Where the background tools' named pipes lie.
bool PipeFolder(std::string* path) {
    return CCommonUtility::CreatePipeName("", path);
}

struct Folder {
    const char* key;
    bool (*resolve)(std::string* path);
};

constexpr auto FOLDERS = std::to_array<Folder>({
    {"application_data", GetApplicationDataPath},
    {"application_data_local", GetApplicationDataLocalPath},
    {"group_container", GetApplicationDataGroupContainerPath},
    {"group_container_app_support", GetApplicationDataGroupContainerAppSupportPath},
    {"temporary_folder", GetTempPath},
    {"resources", GetResourcesPath},
    {"core_plugin_resources", CorePluginResources},
    {"plugin_folder", PluginFolder},
    {"pipe_folder", PipeFolder},
});

// Keys of GetPluginFilePath: those of texts, and those of paths.
constexpr auto TEXTS = std::to_array<const char*>({"Appver", "systemsetting_path"});
constexpr auto FILES = std::to_array<const char*>({
    "install_path",
    "bnt_path",
    "detch_path",
    "sconp_path",
    "velsJoblog_path",
    "velsMedia_path",
    "xmlParser_path",
    "admutil_path",
    "applogger_path",
    "velsdevice_path",
    "joblogdriver_path",
    "PDiscovery_path",
    "JobCostExporter_path",
    "velsPrint_path",
    "velsCounter_path",
    "Language",
    "ipTracker_path",
});

struct Location {
    std::string key;
    std::string value;  // empty: not found
    bool isPath;
};

std::vector<Location> ResolveAll() {
    std::vector<Location> locations;
    const auto add = [&](const char* key, bool isPath, const auto& resolve) {
        std::string value;
        if (!resolve(&value)) {
            value.clear();
        }
        locations.push_back({key, value, isPath});
    };
    const auto addKey = [&](const char* key, bool isPath) {
        add(key, isPath, [&](std::string* value) { return GetPluginFilePath(key, value); });
    };
    for (const char* key : TEXTS) {
        addKey(key, false);
    }
    for (const Folder& folder : FOLDERS) {
        add(folder.key, true, folder.resolve);
    }
    for (const char* key : FILES) {
        addKey(key, true);
    }
    return locations;
}

// What this user may not look at counts as missing: the library could not use it either.
bool Exists(const std::string& path) {
    std::error_code error;
    return !path.empty() && std::filesystem::exists(path, error);
}

std::string TableOf(const std::vector<Location>& locations) {
    TextTable table({"key", "exists", "path"});
    for (const Location& location : locations) {
        table.Add({location.key,
                   !location.isPath         ? "-"
                   : Exists(location.value) ? "yes"
                                            : "no",
                   location.value.empty() ? "(not found)" : location.value});
    }
    return table.Text();
}

Json JsonOf(const std::vector<Location>& locations) {
    Json list = Json::array();
    for (const Location& location : locations) {
        const Json value = location.value.empty() ? Json(nullptr) : Json(location.value);
        list.push_back(
            location.isPath
                ? Json{{"key", location.key}, {"path", value}, {"exists", Exists(location.value)}}
                : Json{{"key", location.key}, {"text", value}});
    }
    return list;
}

void RunPaths(bool json) {
    const std::vector<Location> locations = ResolveAll();
    if (json) {
        WriteJson(JsonOf(locations));
    } else {
        WriteStandardOutput(TableOf(locations));
    }
}

}  // namespace

Command AddPathsCommand(CLI::App& program) {
    const auto json = std::make_shared<bool>(false);
    CLI::App* line = AddCommandLine(
        program, "paths",
        "Show where folders, plug-ins and helper tools are looked for, and whether they exist.");
    line->add_flag("--json", *json, "Print an array of objects for programs.");
    line->footer("Exit codes: 0 done, also when something is missing; 1 failed, 2 wrong usage.");
    return {line, [json] { RunPaths(*json); }};
}

}  // namespace tallyquist
