// The time stamps of page logs, such as [21/Nov/2026:09:46:54 +0100].
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tallyquist {

// Seconds since 1970-01-01 00:00:00 UTC. Empty when the text has another form or names a day or a
// time of day that does not exist or is outside the years 1 to 9999 in UTC.
std::optional<int64_t> ParseLogTime(std::string_view text);

// The time of the first thing in the text that has the form of a time stamp.
std::optional<int64_t> FindLogTime(std::string_view text);

}  // namespace tallyquist
