#include "CostCountCommon/CMLibLogger.h"

#include <atomic>
#include <cstdarg>
#include <exception>
#include <memory>
#include <new>

#include "CostCountCommon/include/PluginLocations.h"
#include "CostCountCommon/src/CancellationOff.h"
#include "compatible/osFree.h"

namespace {

constexpr uint64_t LOG_FILE_SIZE = 12582912;  // 12 MiB
constexpr uint32_t LOG_FILE_COUNT = 2;

constexpr size_t MESSAGE_SIZE = 1024;

using AlWrite = int (*)(const char* file, unsigned int line, LibLoggerSettings* settings,
                        const char* moduleName, const char* reserved, unsigned int code, int level,
                        const char* message);

}  // namespace

CCMLibLogger* CCMLibLogger::getInstance() {
    // A pointer: a failed allocation is tried again on the next call, and nothing destroys the
    // logger while static destructors may still log.
    static std::atomic<CCMLibLogger*> singleton = nullptr;
    CCMLibLogger* logger = singleton;
    if (logger == nullptr) {
        std::unique_ptr<CCMLibLogger> made(new (std::nothrow) CCMLibLogger);
        // Another thread may have been first; then `logger` becomes its logger.
        if (singleton.compare_exchange_strong(logger, made.get())) {
            logger = made.release();
        }
    }
    return logger;
}

CCMLibLogger::~CCMLibLogger() {
    FreeLibrary(m_loggerModule);
    m_loggerModule = nullptr;
}

// By value because hosts call it by its exported name, of which the types are a part.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void CCMLibLogger::InitLibLogger(std::string logName, std::string logOwner, std::string moduleName,
                                 const char* loggerPath) try {
    if (!logName.empty()) {
        m_logName.swap(logName);
    }
    if (!logOwner.empty()) {
        m_logOwner.swap(logOwner);
    }
    sprintf_s(m_settings.m_logNameText, "%s", m_logName.c_str());
    sprintf_s(m_settings.m_moduleName, "%s", moduleName.c_str());
    sprintf_s(m_settings.m_separator, "%s", ",");
    sprintf_s(m_settings.m_reservedText, "%s", "");
    m_settings.m_reservedNumber = 0;
    sprintf_s(m_settings.m_logOwnerText, "%s", m_logOwner.c_str());
    m_settings.m_sizeValue = LOG_FILE_SIZE;
    m_settings.m_countValue = LOG_FILE_COUNT;

    std::string path;
    if (loggerPath != nullptr) {
        path = loggerPath;
    } else {
        GetPluginFilePath("applogger_path", &path);
    }
    if (!path.empty()) {
        // A module loaded before is deliberately not released: another thread may still be in it.
        m_loggerModule = LoadLibrary(path.c_str());
    }
} catch (const std::exception&) {
    // Out of memory: the logger goes on, silently, with what was set so far.
}

bool CCMLibLogger::IsInitialized() const {
    return !m_logName.empty() && !m_logOwner.empty() && m_loggerModule != nullptr;
}

void CCMLibLogger::WriteLog(const char* file, unsigned int line, char level, unsigned int code,
                            const char* format, ...) {
    if (!IsInitialized()) {
        return;
    }
    char buffer[MESSAGE_SIZE + 1] = {};
    va_list arguments;
    va_start(arguments, format);
    const int length = vsprintf_s(buffer, MESSAGE_SIZE, format, arguments);
    va_end(arguments);
    if (length < 0) {
        return;
    }
    buffer[MESSAGE_SIZE] = '\0';
    writeLogByAppLogger(file, line, level, code, buffer);
}

int CCMLibLogger::writeLogByAppLogger(const char* file, unsigned int line, char level,
                                      unsigned int code, const char* message) {
    if (m_loggerModule == nullptr) {
        return 0;
    }
    // What the plug-in holds while it writes would stay behind, and so might what the caller holds.
    const CancellationOff whole;
    // Looked up anew for every message, deliberately: nothing here holds on to an address.
    const auto alWrite = reinterpret_cast<AlWrite>(GetProcAddress(m_loggerModule, "alWrite"));
    if (alWrite == nullptr) {
        return 0;
    }
    return alWrite(file, line, &m_settings, m_settings.m_moduleName, "", code,
                   static_cast<signed char>(level), message);
}
