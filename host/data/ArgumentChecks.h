// Values of options on their way into a data file.
#pragma once

#include <optional>
#include <string>

#include "host/common/WholeNumber.h"

namespace tallyquist {

// A value with the option that gave it.
struct Argument {
    const char* option;
    const std::string& text;
};

// Throws UsageError: OPTION: 'TEXT', and the reason, which begins with a blank.
[[noreturn]] void Refuse(const Argument& argument, const std::string& reason);

// Throws UsageError for control characters and bytes that are not UTF-8.
void CheckHeldByXml(const Argument& argument);

// A decimal number without anything around it. Throws UsageError.
template <typename Number>
Number ParseNumber(const Argument& argument, Number first, Number last) {
    const std::optional<Number> number = WholeNumber<Number>(argument.text);
    if (!number || *number < first || *number > last) {
        Refuse(argument, std::string(" is not a number from ")
                             .append(std::to_string(first))
                             .append(" to ")
                             .append(std::to_string(last)));
    }
    return *number;
}

}  // namespace tallyquist
