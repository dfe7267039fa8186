// What the bundles bring as data: resources folders and localised texts.
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/BundleFolders.h"
#include "CostCountCommon/src/platform/Platform.h"

namespace {

constexpr char RESOURCES_PLUGIN[] = "qvtrelCore.plugin";

constexpr int FOUND = -1;  // all bits set
constexpr int NOT_FOUND = 0;

// The main application's one; empty in a login item that lies outside it.
std::string MainResourcesFolder(const std::string& own) {
    if (GetAppType() != APPLICATION_TYPE_LOGIN_ITEM) {
        return own;
    }
    const std::optional<std::string> contents = bundle::MainContentsFromFolder(own);
    return contents ? bundle::Joined(*contents, bundle::LastComponent(own)) : std::string();
}

}  // namespace

bool GetResourcesPath(std::string* path) try {
    if (path == nullptr) {
        return false;
    }
    const std::string own = platform::ResourcesFolder();
    if (own.empty()) {
        return false;  // no main bundle
    }
    std::string folder = MainResourcesFolder(own);
    if (!folder.empty()) {
        *path = std::move(folder);
    }
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

std::string GetPluginResourcesPath() try {
    const std::string plugins = bundle::PluginFolder();
    if (plugins.empty()) {
        return {};
    }
    return platform::ResourcesFolderOf(bundle::Joined(plugins, RESOURCES_PLUGIN));
} catch (const std::exception&) {
    return {};  // out of memory
}

int LoadResourceString(const char* key, std::string* text) try {
    if (text == nullptr) {
        return NOT_FOUND;
    }
    text->clear();
    if (key == nullptr) {
        return NOT_FOUND;
    }
    std::optional<std::string> found = platform::LocalizedString(key);
    if (!found) {
        return NOT_FOUND;
    }
    *text = std::move(*found);
    return FOUND;
} catch (const std::exception&) {
    return NOT_FOUND;  // out of memory
}

int localizationsCount() try {
    return platform::LocalizationsCount();
} catch (const std::exception&) {
    return 0;  // out of memory
}
