#include "host/settings/DbCommand.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "CostCountCommon/CommonUtility.h"
#include "host/common/Errors.h"
#include "host/common/Json.h"
#include "host/common/LibraryOutput.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"
#include "host/common/TextTable.h"
#include "host/settings/FolderLock.h"
#include "host/settings/SettingsFile.h"

namespace tallyquist {
namespace {

struct DbOptions {
    bool json = false;
    std::string path;  // empty: unchanged
};

// What the database's setting file says.
struct DbSetting {
    std::string file;
    bool exists = false;
    std::optional<std::string> path;
    std::optional<std::string> volume;
};

std::string Folder() {
    std::string folder;
    if (!CCommonUtility::GetDataFolderBase(MANAGEMENT_DATA_DB_SETTING, &folder)) {
        throw CommandError("the user's data folder cannot be told");
    }
    return folder;
}

std::string FilePath() {
    return Folder() + CCommonUtility::GetDBSettingsFileName();
}

bool Exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

// Asking takes the name of the lock away, so that who asks next while the same move goes on is told
// that there is none. A lock that has a holder says no more than that; this is the library's way.
bool IsMoving() {
    return CCommonUtility::IsJobLogDBMoving();
}

DbSetting Read(XmlLayer& xml) {
    DbSetting setting;
    setting.file = FilePath();
    if (const auto file = SettingsFile::Open(xml, DB_SETTINGS, setting.file)) {
        setting.exists = true;
        setting.path = file->Value(XMLTAG_DB_JOBLOGDB_PATH);
        setting.volume = file->Value(XMLTAG_DB_JOBLOGDB_VOLUME);
    }
    return setting;
}

// Makes the file where it is missing; whether it did.
bool Initialise() {
    const std::string file = FilePath();
    const bool existed = Exists(file);
    if (!CCommonUtility::CheckDBSettingFile(Folder())) {
        throw CommandError("cannot create " + Visible(file) + " from " +
                           Visible(CCommonUtility::GetDefaultDBSettingsFilePath()));
    }
    return !existed;
}

Json JsonText(const std::optional<std::string>& text) {
    return text ? Json(*text) : Json(nullptr);
}

Json JsonOf(const DbSetting& setting) {
    return {{"path", JsonText(setting.path)},
            {"volume", JsonText(setting.volume)},
            {"file", setting.file}};
}

bool HasPath(const DbSetting& setting) {
    return setting.path && !setting.path->empty();
}

// Messages to the helper tools take the database from the file that the system settings name.
void TellOfAnotherFile(XmlLayer& xml, const DbSetting& setting) {
    std::string named;
    if (xml.GetDBSettingFilePath(&named) && named != setting.file) {
        std::fprintf(stderr,
                     "tallyquist: helper tools are told of the database in %s, which the setting "
                     "%s names\n",
                     Visible(named).c_str(),
                     xml.Names().at(XMLTAG_SYS_JOBLOGDBSETTINGPATH).c_str());
    }
}

void ShowDb(const DbOptions& options) {
    DbSetting setting;
    bool isMoving = false;
    {
        const LibraryOutput quiet;
        XmlLayer xml;
        xml.Bind();
        setting = Read(xml);
        isMoving = IsMoving();
        TellOfAnotherFile(xml, setting);
    }
    if (options.json) {
        Json json = JsonOf(setting);
        json["file_exists"] = setting.exists;
        json["is_moving"] = isMoving;
        WriteJson(json);
        return;
    }
    TextTable table({"key", "value"});
    table.Add({"path", HasPath(setting) ? *setting.path : "(not set)"});
    table.Add({"volume", setting.volume.value_or("(not set)")});
    table.Add({"file", setting.file});
    table.Add({"file exists", setting.exists ? "yes" : "no"});
    table.Add({"is moving", isMoving ? "yes" : "no"});
    WriteStandardOutput(table.Text());
}

void InitialiseDb(const DbOptions& options) {
    DbSetting setting;
    bool isCreated = false;
    {
        const LibraryOutput quiet;
        XmlLayer xml;
        xml.Bind();
        const FolderLock turn(Folder());
        isCreated = Initialise();
        setting = Read(xml);
    }
    if (options.json) {
        Json json = JsonOf(setting);
        json["created"] = isCreated;
        WriteJson(json);
        return;
    }
    WriteStandardOutput(
        Visible(setting.file) + (isCreated ? ": created; " : ": exists already, unchanged; ") +
        (HasPath(setting) ? "the database is in " + Visible(*setting.path)
                          : std::string("it has no path, 'tallyquist db path PATH' sets one")) +
        "\n");
}

DbSetting ChangePath(XmlLayer& xml, const std::string& path) {
    if (!path.starts_with('/')) {
        throw UsageError("the path must be absolute, not " + Printable(path));
    }
    xml.Bind();
    const FolderLock turn(Folder());
    if (IsMoving()) {
        throw CommandError("the database is being moved; its path cannot be changed now");
    }
    Initialise();
    auto file = SettingsFile::Open(xml, DB_SETTINGS, FilePath());
    if (!file) {
        throw CommandError(Visible(FilePath()) + " is missing");
    }
    file->Set(XMLTAG_DB_JOBLOGDB_PATH, path);
    file->Save(FilePath());
    return Read(xml);
}

DbSetting ReadOrChangePath(const std::string& path) {
    const LibraryOutput quiet;
    XmlLayer xml;
    if (!path.empty()) {
        return ChangePath(xml, path);
    }
    xml.Bind();
    return Read(xml);
}

void PathOfDb(const DbOptions& options) {
    const DbSetting setting = ReadOrChangePath(options.path);
    if (options.json) {
        WriteJson(JsonOf(setting));
    }
    if (!HasPath(setting)) {
        throw CommandError(Visible(setting.file) +
                           (setting.exists ? " has no path" : " does not exist"));
    }
    if (!options.json) {
        WriteStandardOutput(Visible(*setting.path) + "\n");
    }
}

}  // namespace

Command AddDbCommand(CLI::App& program) {
    const auto options = std::make_shared<DbOptions>();
    CLI::App* line = AddCommandLine(program, "db",
                                    "Show, initialise or change where the job-log database lies.");
    line->require_subcommand(1);
    const auto add = [&](const char* name, const char* meaning) {
        CLI::App* command = AddCommandLine(*line, name, meaning);
        command->add_flag("--json", options->json, "Print an object for programs.");
        command->footer("Exit codes: 0 done, 1 failed, 2 wrong usage.");
        return command;
    };
    CLI::App* show =
        add("show",
            "Show the database's path and volume, the file that tells them, and whether the "
            "database is being moved.");
    CLI::App* init = add("init", "Make the file, with the default path, unless there is one.");
    CLI::App* path = add("path", "Print the database's path, or set it.");
    path->add_option("PATH", options->path, "The new path, absolute; the volume stays.")
        ->type_name("")
        ->check(NotEmpty());
    return {line, [options, show, init] {
                if (show->parsed()) {
                    ShowDb(*options);
                } else if (init->parsed()) {
                    InitialiseDb(*options);
                } else {
                    PathOfDb(*options);
                }
            }};
}

}  // namespace tallyquist
