// Output for other programs.
#pragma once

#include <nlohmann/json.hpp>

namespace tallyquist {

// Keeps the order in which members were added.
using Json = nlohmann::ordered_json;

// Prints it, indented, with a line feed at the end. JSON is UTF-8: bytes that are not are replaced
// by U+FFFD. Throws CommandError.
void WriteJson(const Json& json);

// The same on one line.
void WriteJsonLine(const Json& json);

}  // namespace tallyquist
