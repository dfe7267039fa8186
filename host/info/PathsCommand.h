// The command `tallyquist paths`: where the library looks for things on this machine.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

Command AddPathsCommand(CLI::App& program);

}  // namespace tallyquist
