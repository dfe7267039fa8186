// What the library asks of the machine, in one place: data folders, settings that stand in for a
// registry, pipe names, temporary files, the job-log database's settings, and forwards to events,
// threads, processes and files.
//
// Every function reports failure by false or an empty text. What fails here is logged; forwards
// report as the functions that they forward to. Null outputs fail.
// None throws; all may be called from any thread.
#pragma once

#include <string>
#include <vector>

#include "cm_common/TypedefList.h"

class CCommonUtility {
public:
    // Which value of the settings GetLibPath gives.
    enum PATH_KIND : unsigned int {
        PATH_SYSTEM_SETTING = 0,
        PATH_BNT = 1,
        PATH_DETCH = 2,
        PATH_SCONP = 3,
        PATH_JOBLOG = 4,
        PATH_MEDIA = 5,
        PATH_XML_PARSER = 6,
        PATH_ADMIN_UTILITY = 7,
        PATH_INSTALL = 8,
        PATH_DEVICE = 9,
        PATH_JOBLOG_DRIVER = 10,
        PATH_APP_LOGGER = 11,
        PATH_DISCOVERY = 12,
        PATH_JOB_COST_EXPORTER = 13,
        PATH_PRINT = 14,
        PATH_COUNTER = 15,
        PATH_IP_TRACKER = 16,
    };

    // --- Folders and names ---

    // The folder for data of that kind (MANAGEMENT_DATA_TYPE). It need not exist: a program creates
    // those that it writes to (CreateFolder).
    static bool GetDataFolderBase(MANAGEMENT_DATA_TYPE kind, std::string* folder);

    // The full path of a named pipe; of the folder of pipes for an empty `base`.
    static bool CreatePipeName(const std::string& base, std::string* pipeName);

    // The folder for temporary files of the application, the name BASE.NUMBER.EXTENSION, and the
    // path of such a file in that folder. Nothing is created.
    static bool GetTempFolderPath(std::string* folder);
    static bool GetTempFileName(const std::string& base, int number, const std::string& extension,
                                std::string* name);
    static bool GetTempFilePath(const std::string& base, int number, const std::string& extension,
                                std::string* path);

    // Deletes the log of a printer's connection. One that does not exist counts as deleted.
    static bool DeleteConnectionJobLog(const char* printerId);

    // --- The settings store ---
    //
    // Its one key is "SOFTWARE\\Norvane\\Tallyquist". Values are the locations of GetPluginFilePath
    // (PluginLocations.h) and, for the user, the preferences of MacUtility.h. Only those are set.

    static bool GetRegistryValue(const std::string& key, const std::string& name,
                                 std::string* value);
    static bool GetRegistryHKCUValue(const std::string& key, const std::string& name,
                                     std::string* value);
    static bool SetRegistryValue(const std::string& key, const std::string& name,
                                 const std::string& value);
    // Empty when there is none.
    static std::string GetLibPath(PATH_KIND kind);

    // --- The job-log database's settings ---

    // The name of the file in its folder, with a slash in front, and its template's path.
    static std::string GetDBSettingsFileName();
    static std::string GetDefaultDBSettingsFilePath();
    // Reads and writes the file in `folder`: where the database lies, and its volume. The writer
    // gives 0, or 0xFFFFFFFF on failure.
    static bool GetDBSetting(const std::string& folder, std::string* dbPath, std::string* dbVolume);
    static unsigned int CreateDBSettingFile(const std::string& folder, const std::string& dbPath,
                                            const std::string& dbVolume);
    // Makes sure that the file is there, with a database path if it is new. An empty `folder` means
    // the folder of data kind 0; it must exist.
    static bool CheckDBSettingFile(std::string folder);
    // Writes the default database path unless there is one.
    static bool initializeDBPath(const std::string& folder);
    // The lock that is held while the database is being moved, and whether it is. Asking takes the
    // lock's name away (NamedLock.h).
    static std::string GetDBMoveLockName();
    static bool IsJobLogDBMoving();

    // --- Forwards: to osFree.h and MacUtility.h, where their contracts stand ---

    static void Sleep(unsigned int milliseconds);
    // A new event without a name that others know.
    static bool CreateEvent(void** event);
    static bool SendEvent(void* event);
    static int WaitSingleEvent(void* event, unsigned int milliseconds);
    static void ResetEvent(void* event);
    static bool StartThread(unsigned int (*routine)(void*), void* argument, void** handle);
    static int StartProcessAsMidiumRid(const std::string& modulePath, const std::string& params);
    static int ExecuteProcess(const std::string& modulePath, const std::string& params);
    static bool CheckFolderExists(const std::string& path);
    static bool CreateFolder(const std::string& path);
    static bool CheckFileExists(const std::string& path);
    // An existing target is replaced.
    static bool CopyTQUsingFile(const std::string& source, const std::string& target);
    // Creates the folder `name` in `parent` when it is missing.
    static bool CreateIfFolderIsNotExists(const std::string& parent, const std::string& name);
    static void GetFileList(const std::string& pattern, std::vector<std::string>& names);
};
