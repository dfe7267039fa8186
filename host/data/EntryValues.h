// What the texts of entries may be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/data/Entries.h"

namespace tallyquist {

enum class DecimalMark { POINT, COMMA };

// Brings a text that a person gave for the field into the form that files have. Empty, or what is
// wrong with the text, such as "is empty".
std::string AdoptValue(const Field& field, DecimalMark mark, std::string* value);

// What is wrong with a text that no field asks more of, or empty.
std::string TextFault(std::string_view text);

// Adds the single values that are not given.
void Complete(Entries& entries, EntryKinds kinds);

// The entry in words for messages, such as "media 'plain' 'A4'".
std::string EntryLabel(const Entry& entry);

// What tells the entry from the others of its kind.
std::vector<std::string> IdsOf(const Entry& entry);

}  // namespace tallyquist
