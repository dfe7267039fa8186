// The command `tallyquist export`: job logs and tables in, a file of comma-separated values out.
#pragma once

#include <string>

#include "host/export/CellValues.h"
#include "host/export/RowSelection.h"
#include "host/input/Inputs.h"

namespace tallyquist {

struct ExportOptions {
    InputOptions input;
    SelectionOptions selection;
    std::string from;  // dates as typed; empty: no limit
    std::string to;
    std::string timeZone;  // empty: that of the process
    ValueMode values = ValueMode::PORTABLE;
    std::string output;  // "-" is standard output
    bool byteOrderMark = false;
    bool force = false;   // replace an existing file
    bool strict = false;  // doubtful lines are fatal
    bool quiet = false;   // print nothing but errors
};

// Throws UsageError, CommandError or InputError. Leaves either the whole new file or what was
// there.
void RunExport(ExportOptions options);

}  // namespace tallyquist
