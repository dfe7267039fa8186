// The command `tallyquist settings`: the settings that all programs of the system share.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

Command AddSettingsCommand(CLI::App& program);

}  // namespace tallyquist
