// Where things are on this machine, the texts and the preference of the application, and other
// processes. All of it starts from the main bundle of the running process, never from the bundle
// this code was loaded from.
//
// Every function that fills a `std::string*` returns whether it did, and gives false for a null
// one, unless it says otherwise. Paths are UTF-8, absolute, and end without a slash; whether
// something lies there is not checked. Everything may be called from any thread once SetAppType
// (PluginLocations.h) has been.
#pragma once

#include <string>
#include <vector>

#include "CostCountCommon/include/PluginLocations.h"
#include "cm_common/TypedefList.h"
#include "compatible/CFTypes.h"

// --- Folders ---

// The machine-wide data folder, always "/Library/Application Support".
bool GetApplicationDataPath(std::string* path);
// The user's folder for the data of applications. Failures are logged.
bool GetApplicationDataLocalPath(std::string* path);
// The folder that the programs of the application group share, and "Library/Application Support"
// in it.
bool GetApplicationDataGroupContainerPath(std::string* path);
bool GetApplicationDataGroupContainerAppSupportPath(std::string* path);
// The user's folder for temporary files. Failures are logged.
bool GetTempPath(std::string* path);
// Stores `path` with a leading ~ or ~NAME replaced by that user's home folder, and as it is when
// there is no such user. Nothing happens when an argument is null or the result is not UTF-8.
void PathToPathByExpandingTildePath(const char* path, std::string* expanded);

// --- Resources ---

// The main application's resources folder; false when its path is not UTF-8. In a login item that
// lies outside any LoginItems folder the result is true and `*path` stays as it is: callers rely on
// that.
bool GetResourcesPath(std::string* path);
// The resources folder of qvtrelCore.plugin; empty when there is no such bundle.
std::string GetPluginResourcesPath();
// The text of `key` in the main bundle's string table for the user's language. All bits set when
// there is one, else 0 and an empty `*text`; 0 also for a null argument.
int LoadResourceString(const char* key, std::string* text);
// How many languages the main bundle has resources for.
int localizationsCount();

// --- Plug-ins as URLs ---

// New URLs for CFRelease; null when the plug-in folder cannot be told, or for a name that is null,
// empty or not UTF-8.
[[nodiscard]] CFURLRef CreatePluginFolderURLRef();
[[nodiscard]] CFURLRef CreatePluginURLRef(const char* fileName);

// --- Preferences ---

// The one preference is "ErrorLogConfirmTime", a time in seconds, signed and of 64 bits. Stores the
// number that `value` begins with (as atol reads it), at once; other keys are ignored.
void SetPreferenceValue(const char* key, const char* value);
// Stores its decimal text; the empty text for another key or when no number is stored.
void GetPreferenceValue(const char* key, std::string& value);
// 1 when there is such a preference, else 0; also stored in `*valid` unless that is null.
unsigned int IsValidPreferenceKey(const char* key, unsigned int* valid);

// --- Processes ---

// Starts the program at `modulePath` with `params` as its single argument, never through a shell.
// The child inherits environment, user and standard streams, and no other descriptor. Failures are
// logged; text that is not UTF-8 or holds a NUL is one.
//
// CreateProcessAsUser returns the process identifier at once, or -1; the caller waits for the child
// (waitpid) or ignores SIGCHLD, else it stays in the process table. ExecuteProcess waits, as a
// cancellation point, and returns the exit status, 0 for a child that a signal ended, or -1; always
// -1, after the wait, in a process that ignores SIGCHLD.
int CreateProcessAsUser(const std::string& modulePath, const std::string& params);
int ExecuteProcess(const std::string& modulePath, const std::string& params);

// Whether a process of the current user runs the background service, which is known by its file
// name, whatever the case; its identifier goes into `info`. False for a null one.
bool CheckStartedBNT(PROCESS_INFORMATION* info);
// The same, and false when `path` does not exist.
bool CheckConnectBNT(std::string path);

// --- Files ---

// Appends the names of the entries of the pattern's folder in which its last component is found,
// sorted. The component is a regular expression in which * stands for any text; it may match
// anywhere in the name, and a dot matches any character. It is one of the system's, POSIX extended
// on Linux; one that cannot be compiled, or only at a cost out of proportion (references back to
// groups, more than 1000 repetitions, more than 1024 characters), finds nothing. Entries whose
// names are not UTF-8 are left out. A pattern without a slash names no folder and gives nothing,
// like a folder that cannot be read or an expression with a mistake.
void MacGetFileList(const std::string& pattern, std::vector<std::string>& names);
