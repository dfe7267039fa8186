// Entries for people and for programs.
#pragma once

#include <string>

#include "host/common/Json.h"
#include "host/data/DataFiles.h"

namespace tallyquist {

// A table per kind, then the single values.
std::string TextOf(const Entries& entries, EntryKinds kinds);

// An object with the names that the file has.
Json JsonOf(const Entries& entries, const DataFiles& files);

// How many entries of each kind that is a list, such as "ink 4, media 2, extra 0".
std::string CountsOf(const Entries& entries, EntryKinds kinds);

}  // namespace tallyquist
