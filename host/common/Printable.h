// Texts of unknown origin made fit for a message on one line.
#pragma once

#include <string>
#include <string_view>

namespace tallyquist {

// The text with control characters and bytes that are not UTF-8 as \xNN.
std::string Visible(std::string_view text);

// The same in single quotes, long texts shortened.
std::string Printable(std::string_view text);

}  // namespace tallyquist
