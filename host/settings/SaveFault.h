// What is said of a file that the XML parser plug-in did not save.
#pragma once

#include <string>

#include "host/common/Errors.h"

namespace tallyquist {

// `reason` is the system's number after the call, which had been set to 0 before: where the system
// is the reason, the plug-in leaves its number as it is.
CommandError CannotWrite(const std::string& path, int reason);

}  // namespace tallyquist
