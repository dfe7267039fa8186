#include "host/export/TimeZone.h"

#include <re2/re2.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "host/common/Errors.h"
#include "host/common/Printable.h"

namespace tallyquist {
namespace {

bool IsInstalled(const std::string& zone) {
    const char* folder = std::getenv("TZDIR");
    std::error_code error;
    const auto path =
        std::filesystem::path(folder != nullptr ? folder : "/usr/share/zoneinfo") / zone;
    if (zone.empty() || !std::filesystem::is_regular_file(path, error)) {
        return false;
    }
    std::string magic(4, '\0');
    std::ifstream(path, std::ios::binary).read(magic.data(), 4);
    return magic == "TZif";
}

bool IsRule(const std::string& zone) {
    return RE2::FullMatch(
        zone,
        R"((<[A-Za-z0-9+-]{3,}>|[A-Za-z]{3,})[+-]?\d{1,2}(:\d\d){0,2})"
        R"(((<[A-Za-z0-9+-]{3,}>|[A-Za-z]{3,})([+-]?\d{1,2}(:\d\d){0,2})?(,[JM0-9.]+(/[-+:0-9]+)?){2})?)");
}

}  // namespace

void UseTimeZone(const std::string& zone) {
    if (RE2::FullMatch(zone, "(UTC|GMT)[+-].*") && !IsInstalled(zone)) {
        throw UsageError("--timezone: " + Printable(zone) +
                         " would be read the wrong way round; two hours east of UTC is Etc/GMT-2");
    }
    if (zone != "UTC" && !IsInstalled(zone) && !IsRule(zone)) {
        throw UsageError("--timezone: " + Printable(zone) +
                         " is not a time zone that this system knows");
    }
    setenv("TZ", zone.c_str(), 1);
    tzset();
}

}  // namespace tallyquist
