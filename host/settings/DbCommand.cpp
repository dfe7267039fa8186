#include "host/settings/DbCommand.h"

#include <semaphore.h>

#include <cerrno>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "host/common/Errors.h"
#include "host/common/Json.h"
#include "host/common/LibraryOutput.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"
#include "host/common/TextTable.h"
#include "host/settings/DataFolder.h"
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
    return DataFolder(MANAGEMENT_DATA_DB_SETTING);
}

std::string FilePath() {
    return Folder() + CCommonUtility::GetDBSettingsFileName();
}

// Looks at the lock without the library's way of asking, which takes the lock's name away, so that
// the next one who asks is told that nothing moves.
bool IsMoving() {
    const std::string name = platform::SemaphoreName(CCommonUtility::GetDBMoveLockName());
    sem_t* lock = sem_open(name.c_str(), 0);
    if (lock == SEM_FAILED) {
        return errno == EACCES;  // another user's
    }
    const bool isFree = sem_trywait(lock) == 0;
    if (isFree) {
        sem_post(lock);
    }
    sem_close(lock);
    return !isFree;
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

// Makes the file where it is missing.
void MakeFile() {
    if (!CCommonUtility::CheckDBSettingFile(Folder())) {
        throw CommandError("cannot make " + Visible(FilePath()) + " from the templates in " +
                           Visible(GetPluginResourcesPath()) + "/xmls");
    }
}

std::string DefaultPath() {
    return DataFolder(MANAGEMENT_DATA_JOBLOG_DB) + "/joblog";
}

// A volume that is missing, as after a program that was killed on the way, gets its default too.
void SetPath(XmlLayer& xml, const std::string& path) {
    auto file = SettingsFile::Open(xml, DB_SETTINGS, FilePath());
    if (!file) {
        throw CommandError(Visible(FilePath()) + " is missing");
    }
    file->Set(XMLTAG_DB_JOBLOGDB_PATH, path);
    if (file->Value(XMLTAG_DB_JOBLOGDB_VOLUME).value_or("").empty()) {
        file->Set(XMLTAG_DB_JOBLOGDB_VOLUME, "0");
    }
    file->Save(FilePath());
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

// The setting; after a change, when one is given, before anybody else's turn.
DbSetting ReadAfter(const std::function<void(XmlLayer&)>& change) {
    const LibraryOutput quiet;
    XmlLayer xml;
    xml.Bind();
    std::optional<FolderLock> turn;
    if (change) {
        turn.emplace(Folder());
        change(xml);
    }
    DbSetting setting = Read(xml);
    TellOfAnotherFile(xml, setting);
    return setting;
}

void ShowDb(const DbOptions& options) {
    const DbSetting setting = ReadAfter(nullptr);
    const bool isMoving = IsMoving();
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
    bool isInitialised = false;
    const DbSetting setting = ReadAfter([&](XmlLayer& xml) {
        isInitialised = !HasPath(Read(xml));
        MakeFile();
        if (!HasPath(Read(xml))) {
            SetPath(xml, DefaultPath());
        }
    });
    if (options.json) {
        Json json = JsonOf(setting);
        json["initialised"] = isInitialised;
        WriteJson(json);
        return;
    }
    WriteStandardOutput(Visible(setting.file) +
                        (isInitialised ? ": initialised" : ": exists already, unchanged") +
                        "; the database is in " + Visible(setting.path.value_or("")) + "\n");
}

void ChangePath(XmlLayer& xml, const std::string& path) {
    if (IsMoving()) {
        throw CommandError("the database is being moved; its path cannot be changed now");
    }
    MakeFile();
    SetPath(xml, path);
}

void PathOfDb(const DbOptions& options) {
    const std::string& path = options.path;
    if (!path.empty() && !path.starts_with('/')) {
        throw UsageError("the path must be absolute, not " + Printable(path));
    }
    const DbSetting setting = path.empty()
                                  ? ReadAfter(nullptr)
                                  : ReadAfter([&](XmlLayer& xml) { ChangePath(xml, path); });
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
    CLI::App* init =
        add("init",
            "Make the file, with the default path and volume, unless there is one with "
            "a path.");
    CLI::App* path = add("path", "Print the database's path, or set it.");
    path->add_option("PATH", options->path, "The new path, absolute; the volume stays.")
        ->type_name("")
        ->check(NotEmpty());
    return {line, RunOneOf({{show, [options] { ShowDb(*options); }},
                            {init, [options] { InitialiseDb(*options); }},
                            {path, [options] { PathOfDb(*options); }}})};
}

}  // namespace tallyquist
