// Entries from the library's records, and records from entries.
#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <span>
#include <string>

#include "host/data/Entries.h"

namespace tallyquist {

// How the fields of an entry stand in a record.
template <typename Record>
struct RecordShape {
    std::span<std::string Record::*const> members;  // one per field of the entry
    std::map<std::string, std::string> Record::*names = nullptr;
};

template <typename Record>
void AppendEntries(const std::list<Record>& records, const RecordShape<Record>& shape,
                   const EntryKind& kind, Entries& entries) {
    for (const Record& record : records) {
        Entry& entry = entries.emplace_back(Entry{.kind = &kind, .values = {}, .names = {}});
        for (const auto member : shape.members) {
            entry.values.push_back(record.*member);
        }
        if (shape.names != nullptr) {
            entry.names = record.*shape.names;
        }
    }
}

template <typename Record>
void AppendRecords(const Entries& entries, const RecordShape<Record>& shape, const EntryKind& kind,
                   std::list<Record>& records) {
    for (const Entry& entry : entries) {
        if (entry.kind != &kind) {
            continue;
        }
        Record& record = records.emplace_back();
        for (size_t i = 0; i < shape.members.size(); ++i) {
            record.*shape.members[i] = entry.values[i];
        }
        if (shape.names != nullptr) {
            record.*shape.names = entry.names;
        }
    }
}

}  // namespace tallyquist
