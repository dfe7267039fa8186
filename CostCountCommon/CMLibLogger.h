// The library logger: formats one message and hands it, with the caller's place in the source, to
// the application-logger plug-in. Until InitLibLogger has set both names and loaded that plug-in,
// every record is discarded. The logger never reports failures of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The record that crosses into the application-logger plug-in: a wire format, packed, all texts
// NUL-terminated and cut to fit.
#pragma pack(push, 1)
struct LibLoggerSettings {
    char m_logNameText[260];  // the log file
    char m_moduleName[128];
    char m_separator[3];  // between the fields of a line
    char m_reservedText[3];
    uint64_t m_reservedNumber;
    char m_logOwnerText[64];
    uint64_t m_sizeValue;   // limit of one log file, in bytes
    uint32_t m_countValue;  // number of log files kept
};
#pragma pack(pop)

static_assert(offsetof(LibLoggerSettings, m_logNameText) == 0);
static_assert(offsetof(LibLoggerSettings, m_moduleName) == 260);
static_assert(offsetof(LibLoggerSettings, m_separator) == 388);
static_assert(offsetof(LibLoggerSettings, m_reservedText) == 391);
static_assert(offsetof(LibLoggerSettings, m_reservedNumber) == 394);
static_assert(offsetof(LibLoggerSettings, m_logOwnerText) == 402);
static_assert(offsetof(LibLoggerSettings, m_sizeValue) == 466);
static_assert(offsetof(LibLoggerSettings, m_countValue) == 474);
static_assert(sizeof(LibLoggerSettings) == 478);

class CCMLibLogger {
public:
    // The process-wide logger, made on the first call, on any thread; null when memory is
    // exhausted, and then tried again on the next call. Never destroyed.
    __attribute__((visibility("default"))) static CCMLibLogger* getInstance();

    CCMLibLogger() = default;
    ~CCMLibLogger();
    CCMLibLogger(const CCMLibLogger&) = delete;
    CCMLibLogger& operator=(const CCMLibLogger&) = delete;

    // Sets the log file's name and the owner (an empty one keeps the earlier value) and who logs,
    // `moduleName`, fills the settings record and loads the plug-in at `loggerPath`, or the one
    // found under "applogger_path" when that is null. Not to be called while another thread logs.
    __attribute__((visibility("default"))) void InitLibLogger(std::string logName,
                                                              std::string logOwner,
                                                              std::string moduleName,
                                                              const char* loggerPath);

    bool IsInitialized() const;

    // Formats a message, cut to 1023 characters, and forwards it. `file` is the bare name of the
    // source file; `level` one of 'e', 'w', 'i', 'd'; `code` an errno value, a status or 0. Takes
    // no lock: serialising the lines is the plug-in's task. No cancellation point.
    void WriteLog(const char* file, unsigned int line, char level, unsigned int code,
                  const char* format, ...) __attribute__((format(printf, 6, 7)));

    // Hands a finished message to the plug-in's `alWrite`. Its result, or 0 when it cannot be
    // called.
    int writeLogByAppLogger(const char* file, unsigned int line, char level, unsigned int code,
                            const char* message);

private:
    std::string m_logName;
    std::string m_logOwner;
    LibLoggerSettings m_settings{};
    void* m_loggerModule = nullptr;
};
