// What price lists and capabilities hold, as entries with named texts: the one form that tables,
// JSON and the commands work on.
#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "CostCountCommon/include/XmlTagIds.h"

namespace tallyquist {

enum class FieldType {
    ID,      // tells an entry from the others of its kind; never empty
    NUMBER,  // a decimal number that is not negative, or empty
    WHOLE,   // a whole number of 32 bits; never empty
    TEXT,
};

enum FieldUse : unsigned int {
    NEEDED = 0,         // a table must have the column
    OPTIONAL = 1,       // a table may lack the column
    MAY_BE_ABSENT = 2,  // also a file may lack the element
};

struct Field {
    const char* column;
    unsigned int tag;  // of the element
    FieldType type;
    FieldUse use;
};

// A kind of entry. One without a list is a single value below the root: each file has one, and it
// has one field.
struct EntryKind {
    const char* name;
    unsigned int list;
    unsigned int item;
    std::span<const Field> fields;
    unsigned int nameTag;   // of the elements that hold a name per language, or XMLTAG_NONE
    const char* initially;  // the text of a single value that is not given

    constexpr bool IsList() const { return list != XMLTAG_NONE; }
    constexpr bool HasNames() const { return nameTag != XMLTAG_NONE; }
};

// The single values stand last.
using EntryKinds = std::span<const EntryKind>;

struct Entry {
    const EntryKind* kind;
    std::vector<std::string> values;           // one per field
    std::map<std::string, std::string> names;  // by language code

    bool operator==(const Entry&) const = default;
};

// In the order of the kinds; one of each single value.
using Entries = std::vector<Entry>;

inline auto CountOf(const Entries& entries, const EntryKind& kind) {
    return std::count_if(entries.begin(), entries.end(),
                         [&](const Entry& entry) { return entry.kind == &kind; });
}

// Of all names, sorted.
inline std::set<std::string> LanguagesOf(const Entries& entries) {
    std::set<std::string> languages;
    for (const Entry& entry : entries) {
        for (const auto& [language, name] : entry.names) {
            languages.insert(language);
        }
    }
    return languages;
}

}  // namespace tallyquist
