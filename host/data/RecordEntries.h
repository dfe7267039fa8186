// Entries from the library's records, and records from entries.
#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <span>
#include <string>

#include "host/data/Entries.h"

namespace tallyquist {

// How the entries of a kind stand in records.
template <typename Record>
struct RecordShape {
    // A constant does not compile unless there is a member per field.
    constexpr RecordShape(const EntryKind& entryKind,
                          std::span<std::string Record::*const> fieldMembers,
                          std::map<std::string, std::string> Record::*nameMember = nullptr)
        : kind(entryKind), members(fieldMembers), names(nameMember) {
        if (members.size() != kind.fields.size() || (names != nullptr) != kind.HasNames()) {
            throw "the record does not have the fields of the entry";
        }
    }

    const EntryKind& kind;
    std::span<std::string Record::*const> members;  // by field
    std::map<std::string, std::string> Record::*names;
};

template <typename Record>
void AppendEntries(const std::list<Record>& records, const RecordShape<Record>& shape,
                   Entries& entries) {
    for (const Record& record : records) {
        Entry& entry = entries.emplace_back(Entry{.kind = &shape.kind, .values = {}, .names = {}});
        for (const auto member : shape.members) {
            entry.values.push_back(record.*member);
        }
        if (shape.names != nullptr) {
            entry.names = record.*shape.names;
        }
    }
}

template <typename Record>
void AppendRecords(const Entries& entries, const RecordShape<Record>& shape,
                   std::list<Record>& records) {
    for (const Entry& entry : entries) {
        if (entry.kind != &shape.kind) {
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
