// Entries as a table of comma-separated values, one row each, for spreadsheet programs.
#pragma once

#include <memory>
#include <string>

#include "host/data/Entries.h"
#include "host/data/EntryValues.h"
#include "host/data/FileKind.h"
#include "host/input/LineReader.h"

namespace tallyquist {

struct TableContents {
    Entries entries;
    // Where the first needed number is that is there but empty, as it may be in files, and how many
    // there are; empty when there are none.
    std::string emptyNumbers;
};

// Reads a table as EntryTableText writes it, and as spreadsheet programs save it: with any of the
// usual separators, in any order of columns and rows, with columns and rows that are empty. Throws
// InputError, which names the input, the line and, where there is one, the column.
TableContents ReadEntryTable(std::unique_ptr<LineReader> lines, const FileKind& kind,
                             DecimalMark mark);

// The table, from which ReadEntryTable makes the same entries. A text that a spreadsheet program
// would evaluate has an apostrophe in front.
std::string EntryTableText(const Entries& entries, const FileKind& kind);

}  // namespace tallyquist
