// Opens the inputs of one export, whatever their kinds, as one source of rows.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/input/RowSource.h"

namespace tallyquist {

enum class InputKind { AUTOMATIC, PAGE_LOG, CSV, TSV };

struct InputOptions {
    std::vector<std::string> paths;  // "-" is standard input; none means "-" too
    InputKind kind = InputKind::AUTOMATIC;
    std::string logFormat;                          // a PageLogFormat string; empty: recognise it
    bool perPage = false;                           // keep one row per page instead of summing jobs
    std::map<std::string, ColumnType> columnTypes;  // of CSV and TSV columns, by name
};

// How far reading has come, for a progress display.
struct Progress {
    uint64_t bytesRead = 0;   // of the files as they lie on the disk (compressed, when they are)
    uint64_t bytesTotal = 0;  // 0: unknown (standard input is among the inputs)
};

// Opens and recognises all inputs. Page logs are read in the order of their first record, so that
// rotated files may be named in any order. The columns are those of all inputs in order of
// appearance; a row leaves empty what its input does not have. Throws InputError. `findings` is
// called while rows are read; `*progress`, which must outlive the source, is kept up to date unless
// it is null.
std::unique_ptr<RowSource> OpenInputs(const InputOptions& options, FindingSink findings,
                                      Progress* progress);

}  // namespace tallyquist
