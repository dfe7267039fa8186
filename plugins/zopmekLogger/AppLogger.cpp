// The entry point: takes the settings record apart, finds the log file, and turns every failure
// into an errno value.
#include "plugins/zopmekLogger/AppLogger.h"

#include <pthread.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "CostCountCommon/src/platform/Platform.h"
#include "plugins/zopmekLogger/ForkLock.h"
#include "plugins/zopmekLogger/LineFormatter.h"
#include "plugins/zopmekLogger/LogFile.h"
#include "plugins/zopmekLogger/LogFileSink.h"

namespace {

constexpr char APPLICATION_GROUP[] = "K7Q3MZP2WD.RX.qvtrel";
constexpr char LOG_FOLDER[] = "/Library/Application Support/Norvane/Tallyquist/";

// Most file operations are points where a cancelled thread may end, with half a line written or
// half a rotation done; so cancellation waits until the call is over. And logging a failure must
// not change the errno that the caller may still want to look at.
class CallGuard {
public:
    CallGuard() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_cancelState); }
    ~CallGuard() {
        errno = m_errno;
        pthread_setcancelstate(m_cancelState, nullptr);
    }
    CallGuard(const CallGuard&) = delete;
    CallGuard& operator=(const CallGuard&) = delete;

private:
    int m_errno = errno;
    int m_cancelState = PTHREAD_CANCEL_ENABLE;
};

std::string_view Text(const char* text) {
    return text == nullptr ? std::string_view() : std::string_view(text);
}

// The text of a record's field, which need not be terminated.
template <size_t SIZE>
std::string_view FieldText(const char (&field)[SIZE]) {
    return {field, strnlen(field, SIZE)};
}

LogFile NamedLogFile(const LibLoggerSettings& settings) {
    const std::string name(FieldText(settings.m_logNameText));
    if (name.empty()) {
        throw std::system_error(EINVAL, std::generic_category());
    }
    const bool relative = name.front() != '/';
    std::string path = name;
    if (relative) {
        const std::string group = platform::GroupContainerFolder(APPLICATION_GROUP);
        if (group.empty()) {
            throw std::system_error(ENOENT, std::generic_category());
        }
        path = group + LOG_FOLDER + name;
    }
    // A folder of the application's own is made when it is missing; a place that somebody chose is
    // either there or a mistake.
    return {std::move(path), settings.m_sizeValue, settings.m_countValue, relative};
}

}  // namespace

extern "C" int alWrite(const char* file, unsigned int line, LibLoggerSettings* settings,
                       const char* moduleName, const char* /*reserved*/, unsigned int code,
                       int level, const char* message) {
    const CallGuard guard;
    if (settings == nullptr) {
        return EINVAL;
    }
    const std::lock_guard<std::mutex> lock(ForkLock());
    try {
        const LineFields fields{FieldText(settings->m_separator), Text(file), line, level, code};
        LogFileSink sink(NamedLogFile(*settings), std::make_unique<LineFormatter>(fields));
        // Straight to the sink: a logger object in between would print failures and hide them.
        sink.log({Text(moduleName), spdlog::level::off, Text(message)});
        return 0;
    } catch (const std::system_error& error) {
        return error.code().value();
    } catch (const std::bad_alloc&) {
        return ENOMEM;
    } catch (const std::exception&) {
        return EIO;
    }
}
