// `tallyquist message`: builds, sends and shows messages to and from the background tools.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

Command AddMessageCommand(CLI::App& program);

}  // namespace tallyquist
