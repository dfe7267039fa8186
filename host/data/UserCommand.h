// The command `tallyquist user`: how the application shows job costs.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

Command AddUserCommand(CLI::App& program);

}  // namespace tallyquist
