// The time zone that the exported times are written in.
#pragma once

#include <string>

namespace tallyquist {

// Makes `zone` (a name such as Europe/Berlin, or a POSIX rule such as CET-1CEST,M3.5.0,M10.5.0/3)
// the zone of this process. Throws UsageError for a zone that the system does not know, which the C
// library would silently take for UTC.
void UseTimeZone(const std::string& zone);

}  // namespace tallyquist
