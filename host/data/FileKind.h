// The kinds of data files that hold entries.
#pragma once

#include <span>
#include <string>

#include "cm_common/TypedefList.h"
#include "host/data/Entries.h"
#include "host/settings/XmlLayer.h"

namespace tallyquist {

struct FileKind {
    const char* noun;
    const char* nouns;
    MANAGEMENT_DATA_TYPE place;
    const char* folder;  // below the data folder of that place
    const char* base;    // the template that new files are made from, among the core plug-in's
    unsigned int root;
    EntryKinds entryKinds;
    std::span<const char* const> columns;  // of a table, in its order; those of all entries
    // Through the library, which prints what goes wrong. The path lies in the kind's folder. What
    // cannot be read of a file is left out.
    Entries (*read)(XmlLayer& xml, const std::string& path);
    // False when the file could not be saved. Capabilities give true also when they could not be
    // made up before.
    bool (*write)(XmlLayer& xml, const std::string& path, const Entries& entries);
};

extern const FileKind PRICE_LIST;
extern const FileKind CAPABILITIES;

}  // namespace tallyquist
