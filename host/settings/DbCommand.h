// The command `tallyquist db`: where the job-log database lies.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

Command AddDbCommand(CLI::App& program);

}  // namespace tallyquist
