// Whole numbers in texts.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace tallyquist {

// A decimal number that is all of the text, with no sign but a minus. Nothing for any other text,
// and for a number that does not fit.
template <typename Number>
std::optional<Number> WholeNumber(std::string_view text) {
    Number number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

}  // namespace tallyquist
