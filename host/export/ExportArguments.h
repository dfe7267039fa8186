// The command line of `tallyquist export`.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

Command AddExportCommand(CLI::App& program);

}  // namespace tallyquist
