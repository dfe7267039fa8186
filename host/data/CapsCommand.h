// `tallyquist caps`: what printers can use.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

Command AddCapsCommand(CLI::App& program);

}  // namespace tallyquist
