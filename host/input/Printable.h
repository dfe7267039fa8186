// Texts of unknown origin made fit for a message on one line.
#pragma once

#include <string>
#include <string_view>

namespace tallyquist {

// The text in single quotes: control characters and bytes that are not UTF-8 as \xNN, long texts
// shortened.
std::string Printable(std::string_view text);

}  // namespace tallyquist
