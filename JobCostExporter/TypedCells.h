// The two kinds of typed cell: text of whole seconds in, text of the cell out.
#pragma once

#include <cstddef>
#include <cstdint>

#include "JobCostExporter/LocalTime.h"

// What a cell's text may take, its terminator included.
constexpr size_t TYPED_CELL_SIZE = 256;

// atol(text), faster for plain numbers.
int64_t ParseSeconds(const char* text);

// Both write the cell at `out`, which has room for TYPED_CELL_SIZE bytes, and return its end.
//
// "YYYY/MM/DD hh:mm:ss" in local time; "1900/01/00 00:00:00" for an instant that the system cannot
// convert. `zone` has been refreshed for this row.
char* WriteDateTime(char* out, int64_t seconds, LocalTime& zone);
// "hh:mm:ss"; hours grow beyond two digits, a negative span gives negative parts (-61 is
// "00:-1:-1").
char* WriteTimeSpan(char* out, int64_t seconds);
