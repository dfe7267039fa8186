// The replacement behind strReplace and CStringUtils::ReplaceString.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Replaces every `from` by `to`, left to right, without searching again what was inserted, and
// returns how many there were. An empty `from` occurs nowhere. `from` and `to` may lie in `text`,
// which stays as it was when memory runs out.
size_t ReplaceAll(std::string& text, std::string_view from, std::string_view to);
