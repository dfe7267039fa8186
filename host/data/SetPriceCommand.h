// `tallyquist costs set`: one price.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

// Adds it below `parent`.
Command AddSetPriceCommand(CLI::App& parent);

}  // namespace tallyquist
