#include "host/settings/SettingsCommand.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "CostCountCommon/CommonUtility.h"
#include "host/common/Errors.h"
#include "host/common/Json.h"
#include "host/common/LibraryOutput.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"
#include "host/common/TextTable.h"
#include "host/settings/DataFolder.h"
#include "host/settings/FolderLock.h"
#include "host/settings/SettingsFile.h"
#include "host/settings/SystemSettings.h"

namespace tallyquist {
namespace {

struct SettingsOptions {
    std::string name;  // empty: all
    bool json = false;
    std::string changedName;
    std::string changedValue;
};

struct Setting {
    std::string name;
    std::optional<std::string> value;
    const char* from;  // null without a value
};

// One of the two copies of the file.
struct Copy {
    std::string path;
    bool exists = false;
};

// What `settings` shows.
struct Overview {
    std::vector<Setting> settings;
    Copy user;
    Copy installed;
    std::vector<std::string> notes;
    std::string faults;  // of the copies, in lines
};

std::string UserFolder() {
    return DataFolder(MANAGEMENT_DATA_SYSTEM_SETTING);
}

std::string UserPath() {
    return UserFolder() + "/" + CCommonUtility::GetLibPath(CCommonUtility::PATH_SYSTEM_SETTING);
}

std::string InstalledPath(XmlLayer& xml) {
    std::string path;
    if (!xml.GetSystemSettingFileFullPath(&path)) {
        throw CommandError("the application's resources folder cannot be told");
    }
    return path;
}

Copy CopyAt(const std::string& path) {
    std::error_code error;
    return {path, std::filesystem::exists(path, error)};
}

using File = std::optional<SettingsFile>;

// A copy that cannot be read is one without settings, as it is for programs.
File OpenCopy(XmlLayer& xml, const std::string& path, std::string* faults) {
    try {
        return SettingsFile::Open(xml, SYSTEM_SETTINGS, path);
    } catch (const CommandError& error) {
        faults->append(faults->empty() ? "" : "\n").append(error.what());
        return std::nullopt;
    }
}

Setting Read(const std::string& name, unsigned int tagId, const File& user, const File& installed) {
    if (auto value = user ? user->Value(tagId) : std::nullopt) {
        return {name, value, "user"};
    }
    auto value = installed ? installed->Value(tagId) : std::nullopt;
    return {name, value, value ? "installed" : nullptr};
}

Overview ReadAll(XmlLayer& xml, const std::vector<unsigned int>& ids) {
    const LibraryOutput quiet;
    xml.Bind();
    Overview overview;
    overview.user = CopyAt(UserPath());
    overview.installed = CopyAt(InstalledPath(xml));
    const File user = OpenCopy(xml, overview.user.path, &overview.faults);
    const File installed = OpenCopy(xml, overview.installed.path, &overview.faults);
    if (!overview.installed.exists && overview.faults.empty()) {
        overview.faults = Visible(overview.installed.path) + " is missing";
    }
    for (const unsigned int id : ids) {
        const std::string& name = xml.Names().at(id);
        overview.settings.push_back(Read(name, id, user, installed));
        if (user && user->IsHidden(id)) {
            overview.notes.push_back(Visible(overview.user.path) + ": " + name +
                                     " comes after an element that programs do not know, which "
                                     "ends their search");
        }
    }
    return overview;
}

std::string TextOf(const Overview& overview) {
    TextTable settings({"name", "value", "from"});
    for (const Setting& setting : overview.settings) {
        settings.Add({setting.name, setting.value.value_or("(not set)"),
                      setting.from != nullptr ? setting.from : "-"});
    }
    TextTable files({"file", "exists", "path"});
    files.Add({"user", overview.user.exists ? "yes" : "no", overview.user.path});
    files.Add({"installed", overview.installed.exists ? "yes" : "no", overview.installed.path});
    return settings.Text() + "\n" + files.Text();
}

Json JsonOf(const Copy& copy) {
    return {{"path", copy.path}, {"exists", copy.exists}};
}

Json JsonOf(const Overview& overview) {
    Json settings = Json::array();
    for (const Setting& setting : overview.settings) {
        settings.push_back(
            {{"name", setting.name},
             {"value", setting.value ? Json(*setting.value) : Json(nullptr)},
             {"from", setting.from != nullptr ? Json(setting.from) : Json(nullptr)}});
    }
    return {{"settings", settings},
            {"user", JsonOf(overview.user)},
            {"installed", JsonOf(overview.installed)}};
}

void ShowSettings(const SettingsOptions& options) {
    XmlLayer xml;
    const Overview overview = ReadAll(
        xml, options.name.empty() ? SystemSettingIds(xml)
                                  : std::vector<unsigned int>{SystemSettingId(xml, options.name)});
    if (options.json) {
        WriteJson(JsonOf(overview));
    } else {
        WriteStandardOutput(TextOf(overview));
    }
    for (const std::string& note : overview.notes) {
        std::fprintf(stderr, "tallyquist: %s\n", note.c_str());
    }
    if (!overview.faults.empty()) {
        throw CommandError(overview.faults);
    }
}

// The user's copy, or the installed one where the user has none.
SettingsFile OpenForChange(XmlLayer& xml, const std::string& userPath) {
    if (auto user = SettingsFile::Open(xml, SYSTEM_SETTINGS, userPath)) {
        return std::move(*user);
    }
    const std::string installedPath = InstalledPath(xml);
    auto installed = SettingsFile::Open(xml, SYSTEM_SETTINGS, installedPath);
    if (!installed) {
        throw CommandError(Visible(installedPath) + " is missing");
    }
    return std::move(*installed);
}

void ChangeSetting(const SettingsOptions& options) {
    XmlLayer xml;
    const unsigned int tagId = SystemSettingId(xml, options.changedName);
    CheckSystemSetting(xml, tagId, options.changedValue);
    const std::string path = UserPath();
    {
        const LibraryOutput quiet;
        xml.Bind();
        const FolderLock turn(UserFolder());
        SettingsFile file = OpenForChange(xml, path);
        file.Set(tagId, options.changedValue);
        file.Save(path);
    }
    WriteStandardOutput(Visible(path) + ": " + options.changedName + " = " +
                        Visible(options.changedValue) + "\n");
}

}  // namespace

Command AddSettingsCommand(CLI::App& program) {
    const auto options = std::make_shared<SettingsOptions>();
    CLI::App* line = AddCommandLine(
        program, "settings", "Show or change the settings that all programs of the system share.");
    line->add_option("NAME", options->name, "Only this setting.")->type_name("")->check(NotEmpty());
    line->add_flag("--json", options->json, "Print an object for programs.");
    line->footer(
        "A setting of the user's copy of the file overrides that of the installed copy.\n"
        "Exit codes: 0 done, 1 failed or a copy cannot be read, 2 wrong usage.");
    CLI::App* set = AddCommandLine(
        *line, "set",
        "Change a setting in the user's copy, which is made from the installed one when missing.");
    set->add_option("NAME", options->changedName,
                    "The setting, as 'tallyquist settings' spells it.")
        ->type_name("")
        ->required()
        ->check(NotEmpty());
    set->add_option("VALUE", options->changedValue, "Its new value.")
        ->type_name("")
        ->required()
        ->check(NotEmpty());
    set->footer(
        "Comments and unknown elements of the file stay. A file that cannot be read is not "
        "touched.\n"
        "Exit codes: 0 done, 1 failed, 2 wrong usage.");
    return {line, [options, set] {
                if (set->parsed()) {
                    if (options->json || !options->name.empty()) {
                        throw UsageError("'set' takes nothing before it");
                    }
                    ChangeSetting(*options);
                } else {
                    ShowSettings(*options);
                }
            }};
}

}  // namespace tallyquist
