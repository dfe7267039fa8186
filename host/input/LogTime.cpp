// The time stamps of page logs. External interface: ParseLogTime, FindLogTime.
// The zone is part of the stamp, so nothing here depends on the zone or language of this machine.
#include "host/input/LogTime.h"

#include <array>
#include <chrono>

#include "host/input/RowSource.h"

namespace tallyquist {
namespace {

constexpr std::string_view FORM = "[dd/mmm/dddd:dd:dd:dd sdddd]";
constexpr std::array<std::string_view, 12> MONTHS = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

bool HasForm(std::string_view text) {
    if (text.size() != FORM.size()) {
        return false;
    }
    for (size_t i = 0; i < FORM.size(); ++i) {
        const char c = text[i];
        switch (FORM[i]) {
            case 'd':
                if (c < '0' || c > '9') {
                    return false;
                }
                break;
            case 's':
                if (c != '+' && c != '-') {
                    return false;
                }
                break;
            case 'm':
                break;  // The name of the month is looked up.
            default:
                if (c != FORM[i]) {
                    return false;
                }
        }
    }
    return true;
}

int Number(std::string_view digits) {
    int value = 0;
    for (const char c : digits) {
        value = value * 10 + (c - '0');
    }
    return value;
}

}  // namespace

std::optional<int64_t> ParseLogTime(std::string_view text) {
    if (!HasForm(text)) {
        return std::nullopt;
    }
    unsigned month = 0;
    while (month < MONTHS.size() && MONTHS[month] != text.substr(4, 3)) {
        ++month;
    }
    const std::chrono::year_month_day date{
        std::chrono::year(Number(text.substr(8, 4))), std::chrono::month(month + 1),
        std::chrono::day(static_cast<unsigned>(Number(text.substr(1, 2))))};
    const int hour = Number(text.substr(13, 2));
    const int minute = Number(text.substr(16, 2));
    const int second = Number(text.substr(19, 2));
    const int zoneHour = Number(text.substr(23, 2));
    const int zoneMinute = Number(text.substr(25, 2));
    // Second 60 is a leap second; it counts as the second after 59.
    if (month == MONTHS.size() || !date.ok() || hour > 23 || minute > 59 || second > 60 ||
        zoneHour > 23 || zoneMinute > 59) {
        return std::nullopt;
    }
    const int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
    const int zone = (zoneHour * 60 + zoneMinute) * 60;
    const int ofDay = (hour * 60 + minute) * 60 + second;
    const int64_t seconds = days * 86400 + ofDay + (text[22] == '-' ? zone : -zone);
    return IsShowableTime(seconds) ? std::optional(seconds) : std::nullopt;
}

std::optional<int64_t> FindLogTime(std::string_view text) {
    size_t at = text.find('[');
    while (at != std::string_view::npos && !HasForm(text.substr(at, FORM.size()))) {
        at = text.find('[', at + 1);
    }
    return at == std::string_view::npos ? std::nullopt : ParseLogTime(text.substr(at, FORM.size()));
}

}  // namespace tallyquist
