// What the library and its plug-ins do besides XML, and what the program writes.
#include <fcntl.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "CostCountCommon/CMLibLogger.h"
#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/NamedLock.h"
#include "CostCountCommon/include/CBntMessageReader.h"
#include "CostCountCommon/include/MacUtility.h"
#include "compatible/osFree.h"
#include "tests/faults/Operation.h"

namespace {

using enum Promise;

constexpr const char* PREFERENCES = "config/Norvane/Tallyquist/preferences";
constexpr const char* CONFIRM_TIME = "ErrorLogConfirmTime";
constexpr const char* LOG = GROUP_FOLDER "/own.log";
constexpr const char* PRINTERS = GROUP_FOLDER "/printer_list.xml";

std::string Lines(Bench& b, const std::string& head, const std::string& start,
                  const std::string& end) {
    std::string lines = head + "\n";
    for (int i = 0; i < b.items; ++i) {
        lines.append(start).append(std::to_string(i)).append(end).append("\n");
    }
    return lines;
}

bool ConvertText(Bench& b) {
    const CFStringRef string = CreateCFString("a text that needs memory of its own");
    CFStringToUstring(string, &b.second);
    if (string != nullptr) {
        CFRelease(string);
    }
    return !b.second.empty();
}
bool CopyText(Bench& b) {
    char* copy = SysAllocString("text");
    b.second = copy == nullptr ? "" : copy;
    SysFreeString(copy);
    return !b.second.empty();
}
bool ListPlugins(Bench& b) {
    std::vector<std::string> names;
    CCommonUtility::GetFileList(b.contents, names);
    b.second = names.empty() ? "" : "listed";
    return !names.empty();
}

bool WriteSources(Bench& b) {
    WriteFile("from1", Lines(b, "first", "a line that is copied ", ""));
    WriteFile("from2", Lines(b, "second", "another ", ""));
    WriteFile("target/copy", ReadFile("from2"));
    return true;
}
bool WritePreferences(Bench& b) {
    WriteFile(PREFERENCES,
              Lines(b, "Another=1", "PreferenceOfAnotherProgram", "=1") + CONFIRM_TIME + "=2\n");
    return true;
}
bool GetPreference(Bench& b) {
    GetPreferenceValue(CONFIRM_TIME, b.second);
    return !b.second.empty();
}

// The exporter writes in place, so there is no earlier file to keep.
bool RemoveTable(Bench&) {
    return std::filesystem::remove("target/jobs.csv");
}
bool ExportTable(Bench& b) {
    const char* values[] = {b.Written().text.c_str(), "1795250919", "90061"};
    const char* types[] = {nullptr, "datetime", "timespan"};
    void* handle = nullptr;
    b.exporter.create(&handle);
    if (handle == nullptr) {
        return false;
    }
    bool isWritten = b.exporter.open(handle, "target/jobs.csv") == 0;
    isWritten = isWritten && b.exporter.writeBom(handle) == 0;
    for (int i = 0; i < b.items && isWritten; ++i) {
        isWritten = b.exporter.writeValues(handle, 3, values, nullptr, types) == 0;
    }
    isWritten = b.exporter.close(handle) == 0 && isWritten;
    b.exporter.dispose(handle);
    return isWritten;
}

// A page, so that the next line needs another one of the disk.
bool WriteEarlierLog(Bench&) {
    WriteFile(LOG, std::string(4095, 'x') + "\n");
    return true;
}
bool WriteLog(Bench& b) {
    CCMLibLogger logger;
    logger.InitLibLogger("own.log", "owner", "module", LOGGER_MODULE);
    return logger.IsInitialized() &&
           logger.writeLogByAppLogger("File", 1, 'e', 2, b.Written().text.c_str()) == 0;
}

bool ReadMessage(Bench& b) {
    CBntMessageReader reader;
    return reader.Append(b.command.data(), b.command.size()) &&
           reader.Finish(&b.second) == BntRead::MESSAGE;
}
bool WaitForEvents(Bench& b) {
    const char* name = b.eventName.c_str();
    void* events[2] = {nullptr, CreateEvent(nullptr, false, false, name)};
    void* opened = OpenEvent(0, false, name);
    int result = static_cast<int>(WAIT_FAILED);
    if (opened != nullptr && CCommonUtility::CreateEvent(&events[0])) {
        SetEvent(opened);
        result = WaitForMultipleObjects(2, events, false, 60000);
    }
    CloseHandle(events[0]);
    CloseHandle(events[1]);
    CloseHandle(opened);
    return result == static_cast<int>(WAIT_OBJECT_0) + 1;
}
bool WaitForEvent(Bench& b) {
    CEventHandle event;
    return event.Open(b.eventName.c_str(), O_CREAT | O_EXCL, 0600, 1, true) &&
           event.TimedWait(60000) == WAIT_OBJECT_0;
}
bool RunThread(Bench&) {
    void* thread = nullptr;
    const auto nothing = [](void*) { return 0U; };
    const bool isJoined = CCommonUtility::StartThread(nothing, nullptr, &thread) &&
                          WaitForSingleObject(thread, INFINITE) == static_cast<int>(WAIT_OBJECT_0);
    CloseHandle(thread);
    return isJoined;
}
bool TakeLock(Bench& b) {
    CNamedLock lock;
    return lock.Lock(b.lockName.c_str(), 0) == CNamedLock::LOCKED;
}

// --- The program ---

bool Run(const std::string& arguments) {
    const std::string line = "exec " TALLYQUIST " " + arguments + " >/dev/null 2>&1";
    const int status = std::system(line.c_str());
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
bool AddFirstPrinter(Bench& b) {
    std::filesystem::remove(PRINTERS);
    return Run(
        "printers add --serial P0 --model Plotter --port-type ipv4 --port 10.0.0.5 --name en=" +
        b.records[1].number);
}
// The second variant removes the printer again. A printer that is there already is no failure.
bool AddSecondPrinter(Bench& b) {
    return b.variant == 0 ? Run("printers add --serial P1 --model M --port-type usb --port 1") ||
                                Run("printers show P1")
                          : Run("printers remove P1") || !Run("printers show P1");
}
bool ImportCosts(Bench& b) {
    return Run("costs import Office prices" + b.Written().number);
}
bool SetCost(Bench& b) {
    return Run("costs set Office ink C 0." + b.Written().number);
}
bool ImportCaps(Bench& b) {
    return Run("caps import P0 caps" + b.Written().number);
}
bool SetDbPath(Bench& b) {
    return Run("db path /" + b.Written().number);
}
bool ExportJobs(Bench& b) {
    return Run("export --force -q -o target/exported.csv log" + b.Written().number);
}
bool WriteTables(Bench& b) {
    for (const Records& r : b.records) {
        WriteFile("prices" + r.number, Lines(b, "kind,id,cost", "ink,ink ", ",0." + r.number));
        WriteFile("caps" + r.number, Lines(b, "kind,id,color", "ink,ink ", ",C" + r.number));
        WriteFile("log" + r.number, Lines(b, "user,job", "user " + r.number + ",", ""));
    }
    return ImportCosts(b) && ImportCaps(b) && ExportJobs(b);
}

const Operation OPERATIONS[] = {
    {"InitializeXmlPxd",
     [](Bench&) { return CCommonXmlPxd().InitializeXmlPxd("s", "/", "./parser", false); }, MEMORY},
    {"GetDataFolderBase",
     [](Bench& b) { return CCommonUtility::GetDataFolderBase(MANAGEMENT_DATA_UNIT_COST, &b.out); },
     MEMORY},
    {"CreatePipeName", [](Bench& b) { return CCommonUtility::CreatePipeName("pipe", &b.out); },
     MEMORY},
    {"GetTempFilePath",
     [](Bench& b) { return CCommonUtility::GetTempFilePath("base", 1, "ext", &b.out); }, MEMORY},
    {"GetLibPath",
     [](Bench& b) {
         return !(b.second = CCommonUtility::GetLibPath(CCommonUtility::PATH_PRINT)).empty();
     },
     MEMORY},
    {"SysAllocString, SysFreeString", CopyText, MEMORY},
    {"GetFileList", ListPlugins, MEMORY},
    {"CreateCFString, CFStringToUstring", ConvertText, MEMORY},
    {"CopyFile",
     [](Bench& b) { return CopyFile(b.variant == 0 ? "from1" : "from2", "target/copy", 0); },
     MEMORY | SYSTEM | PLACE | KILL, "target/copy", WriteSources},
    // There is nobody to tell of a failure to store a preference.
    {"SetPreferenceValue",
     [](Bench& b) { return SetPreferenceValue(CONFIRM_TIME, b.Written().number.c_str()), true; },
     MEMORY | SYSTEM | PLACE | KILL, PREFERENCES, WritePreferences, UNTOLD},
    {"GetPreferenceValue", GetPreference, MEMORY, PREFERENCES, WritePreferences},
    {"DataExporterCreate ... Dispose", ExportTable, MEMORY | SYSTEM, "target/jobs.csv", RemoveTable,
     GONE},
    {"InitLibLogger, alWrite", WriteLog, MEMORY | SYSTEM, LOG, WriteEarlierLog},
    {"CBntMessageReader", ReadMessage, MEMORY},
    {"CreateEvent ... WaitForMultipleObjects", WaitForEvents, MEMORY},
    {"CEventHandle", WaitForEvent, MEMORY},
    {"StartThread, WaitForSingleObject", RunThread, MEMORY},
    {"CNamedLock", TakeLock, MEMORY},

    {"settings set", [](Bench& b) { return Run("settings set MaxDetch " + b.Written().number); },
     SYSTEM | PLACE | KILL, GROUP_FOLDER "/CMSystemSetting.cfg"},
    {"printers add", AddSecondPrinter, SYSTEM | PLACE | KILL, PRINTERS, AddFirstPrinter},
    {"printers set",
     [](Bench& b) { return Run("printers set P0 --name en=" + b.Written().number); }, KILL,
     PRINTERS, AddFirstPrinter},
    {"costs import", ImportCosts, SYSTEM | PLACE | KILL, LOCAL_FOLDER "/Cost/Office", WriteTables},
    {"costs set", SetCost, SYSTEM | PLACE | KILL, LOCAL_FOLDER "/Cost/Office"},
    {"caps import", ImportCaps, SYSTEM | PLACE | KILL, LOCAL_FOLDER "/PrinterCaps/P0", WriteTables},
    {"db path", SetDbPath, SYSTEM | PLACE | KILL, GROUP_FOLDER "/db_settings"},
    {"export -o", ExportJobs, SYSTEM | PLACE | KILL, "target/exported.csv", WriteTables},
};

}  // namespace

std::span<const Operation> LibraryOperations() {
    return OPERATIONS;
}
