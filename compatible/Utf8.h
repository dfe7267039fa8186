// Strict UTF-8.
#pragma once

#include <string_view>

// Whether `text` is UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF, no cut
// sequence.
bool IsUtf8(std::string_view text);
