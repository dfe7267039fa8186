#include "host/export/TimeZone.h"

#include <re2/re2.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "host/export/Errors.h"

namespace tallyquist {
namespace {

bool IsInstalled(const std::string& zone) {
    const char* folder = std::getenv("TZDIR");
    std::error_code error;
    return std::filesystem::is_regular_file(
        std::filesystem::path(folder != nullptr ? folder : "/usr/share/zoneinfo") / zone, error);
}

bool IsRule(const std::string& zone) {
    return RE2::FullMatch(
        zone,
        R"((<[A-Za-z0-9+-]{3,}>|[A-Za-z]{3,})[+-]?\d{1,2}(:\d\d){0,2})"
        R"(((<[A-Za-z0-9+-]{3,}>|[A-Za-z]{3,})([+-]?\d{1,2}(:\d\d){0,2})?(,[JM0-9.]+(/[-+:0-9]+)?){2})?)");
}

}  // namespace

void UseTimeZone(const std::string& zone) {
    if (zone != "UTC" && !IsInstalled(zone) && !IsRule(zone)) {
        throw UsageError("--timezone: '" + zone + "' is not a time zone that this system knows");
    }
    setenv("TZ", zone.c_str(), 1);
    tzset();
}

}  // namespace tallyquist
