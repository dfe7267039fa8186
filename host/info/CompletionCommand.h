// The command that prints what completes the program's command line in a shell.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

// Knows the commands that `program` has when it runs, its own and later ones too.
Command AddCompletionCommand(CLI::App& program);

}  // namespace tallyquist
