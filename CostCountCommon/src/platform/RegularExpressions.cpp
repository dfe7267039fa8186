#include "CostCountCommon/src/platform/RegularExpressions.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace platform {

bool IsModest(std::string_view expression) {
    constexpr size_t LONGEST = 1024;
    constexpr size_t MOST_REPETITIONS = 1000;
    size_t repetitions = 1;
    for (size_t at = 0; at < expression.size() && expression.size() <= LONGEST; ++at) {
        const std::string_view rest = expression.substr(at + 1);
        if (expression[at] == '\\' && !rest.empty()) {
            if (rest.front() >= '1' && rest.front() <= '9') {
                return false;
            }
            ++at;
        } else if (expression[at] == '{') {
            // The larger number stands last.
            const size_t comma = rest.substr(0, rest.find('}')).find(',');
            const std::string_view last =
                rest.substr(comma == std::string_view::npos ? 0 : comma + 1);
            size_t count = 1;
            std::from_chars(last.data(), last.data() + last.size(), count);
            repetitions *= std::clamp<size_t>(count, 1, MOST_REPETITIONS + 1);
            if (repetitions > MOST_REPETITIONS) {
                return false;
            }
        }
    }
    return expression.size() <= LONGEST;
}

}  // namespace platform
