// Numbers that are kept as whole thousandths: micrometres as millimetres, and the like.
#pragma once

#include <cstdint>
#include <string>

namespace tallyquist {

// With at most three decimals and no zeros at the end, such as 215.9. `thousandths` >= 0.
std::string FormatThousandths(int64_t thousandths);

}  // namespace tallyquist
