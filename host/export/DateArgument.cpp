#include "host/export/DateArgument.h"

#include <array>
#include <ctime>

#include "host/export/Errors.h"

namespace tallyquist {
namespace {

struct Form {
    const char* pattern;
    int tm::*smallest;  // the part that the range covers one of
};

constexpr std::array<Form, 5> FORMS{{
    {"%Y-%m-%d", &tm::tm_mday},
    {"%Y-%m-%d %H:%M", &tm::tm_min},
    {"%Y-%m-%dT%H:%M", &tm::tm_min},
    {"%Y-%m-%d %H:%M:%S", &tm::tm_sec},
    {"%Y-%m-%dT%H:%M:%S", &tm::tm_sec},
}};

int64_t SecondsOf(struct tm local) {
    local.tm_isdst = -1;
    return mktime(&local);
}

// A day such as 30 February is turned into one of March instead of being refused.
bool Exists(struct tm local) {
    const int day = local.tm_mday;
    local.tm_hour = 12;  // no zone leaves out noon
    local.tm_isdst = -1;
    return mktime(&local) != -1 && local.tm_mday == day;
}

}  // namespace

DateRange ParseDateArgument(const std::string& option, const std::string& text) {
    for (const Form& form : FORMS) {
        struct tm local {};
        const char* end = strptime(text.c_str(), form.pattern, &local);
        if (end != nullptr && *end == '\0' && Exists(local)) {
            struct tm next = local;
            ++(next.*form.smallest);
            return {SecondsOf(local), SecondsOf(next) - 1};
        }
    }
    throw UsageError(option + ": '" + text +
                     "' is not a date such as 2026-11-21 or 2026-11-21 09:46");
}

}  // namespace tallyquist
