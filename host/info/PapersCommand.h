// The command `tallyquist papers`: the paper sizes and roll widths that printers report.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

Command AddPapersCommand(CLI::App& program);

}  // namespace tallyquist
