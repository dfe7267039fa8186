// The command `tallyquist printers`: the printers that the application manages.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

Command AddPrintersCommand(CLI::App& program);

}  // namespace tallyquist
