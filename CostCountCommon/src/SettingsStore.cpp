// The values that stand in for a registry. Its external interface is the part "The settings store"
// of CCommonUtility.
#include <exception>
#include <iterator>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/UtilityLog.h"

namespace {

using utility::LogError;

constexpr const char* KEY = "SOFTWARE\\Norvane\\Tallyquist";

// By PATH_KIND.
constexpr const char* PATH_VALUES[] = {
    "systemsetting_path", "bnt_path",
    "detch_path",         "sconp_path",
    "velsJoblog_path",    "velsMedia_path",
    "xmlParser_path",     "admutil_path",
    "install_path",       "velsdevice_path",
    "joblogdriver_path",  "applogger_path",
    "PDiscovery_path",    "JobCostExporter_path",
    "velsPrint_path",     "velsCounter_path",
    "ipTracker_path",
};
static_assert(std::size(PATH_VALUES) == CCommonUtility::PATH_IP_TRACKER + 1);

bool IsPreference(const std::string& name) {
    return IsValidPreferenceKey(name.c_str(), nullptr) != 0;
}

}  // namespace

bool CCommonUtility::GetRegistryValue(const std::string& key, const std::string& name,
                                      std::string* value) try {
    if (key != KEY || value == nullptr) {
        LogError(__LINE__, "invalid parameter.");
        return false;
    }
    if (IsPreference(name)) {
        GetPreferenceValue(name.c_str(), *value);
        return true;
    }
    if (!GetPluginFilePath(name.c_str(), value)) {
        LogError(__LINE__, "GetPluginFilePath() failed.");
        return false;
    }
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonUtility::GetRegistryHKCUValue(const std::string& key, const std::string& name,
                                          std::string* value) try {
    if (key != KEY || value == nullptr || !IsPreference(name)) {
        LogError(__LINE__, "invalid parameter.");
        return false;
    }
    GetPreferenceValue(name.c_str(), *value);
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonUtility::SetRegistryValue(const std::string& key, const std::string& name,
                                      const std::string& value) try {
    if (key != KEY || !IsPreference(name)) {
        LogError(__LINE__, "invalid parameter.");
        return false;
    }
    SetPreferenceValue(name.c_str(), value.c_str());
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

std::string CCommonUtility::GetLibPath(PATH_KIND kind) try {
    if (kind >= std::size(PATH_VALUES)) {
        LogError(__LINE__, "invalid parameter.");
        return {};
    }
    std::string path;
    return GetRegistryValue(KEY, PATH_VALUES[kind], &path) ? path : std::string();
} catch (const std::exception&) {
    return {};  // out of memory
}
