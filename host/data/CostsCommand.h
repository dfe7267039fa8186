// `tallyquist costs`: the prices that job costs are computed with.
#pragma once

#include "host/common/Command.h"

namespace tallyquist {

Command AddCostsCommand(CLI::App& program);

}  // namespace tallyquist
