// Where the sibling plug-ins, helper tools and settings of the application lie, by fixed keys. All
// of it starts from the main bundle of the running process, never from the bundle this code was
// loaded from. Nothing here logs, so the logger can find its own plug-in through it.
#pragma once

#include <string>

// The kind of process. Only a login item, nested in the main application's LoginItems folder, finds
// things in another way: it climbs out to the main application.
enum ApplicationType : int {
    APPLICATION_TYPE_MAIN = 2,
    APPLICATION_TYPE_LOGIN_ITEM = 3,
};

// Process-wide, initially APPLICATION_TYPE_MAIN. Set it once at start-up, before other threads use
// the functions below: it is a plain value without a lock.
ApplicationType GetAppType();
void SetAppType(ApplicationType type);

// Stores the path (or, for "systemsetting_path" and "Appver", the text) of `key` in `*path`. Keys
// are compared exactly. Whether the file exists is not checked.
//
// False for a null argument or an unknown key, leaving `*path` as it is; false with an empty
// `*path` when there is nothing to tell, as without a plug-in folder or a version. "bnt_path" and
// "detch_path" in a login item that lies outside any LoginItems folder give true and leave `*path`
// as it is: callers rely on that.
bool GetPluginFilePath(const char* key, std::string* path);
