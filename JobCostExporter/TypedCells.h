// The two kinds of typed cell: text of whole seconds in, text of the cell out.
#pragma once

#include <cstddef>
#include <cstdint>

#include "JobCostExporter/CalendarDays.h"
#include "JobCostExporter/LocalTime.h"

// What a cell's text may take, its terminator included.
constexpr size_t TYPED_CELL_SIZE = 256;

// atol(text), faster for plain numbers.
int64_t ParseSeconds(const char* text);

// Date and time cells of local time.
class DateTimeCells {
public:
    // To be called before the cells of a row: notices a changed time zone.
    void Refresh();

    // Writes "YYYY/MM/DD hh:mm:ss" at `out`, which has room for TYPED_CELL_SIZE bytes, and returns
    // its end; "1900/01/00 00:00:00" for an instant that the system cannot convert.
    char* Write(char* out, int64_t seconds);

private:
    LocalTime m_zone;
    CalendarDays m_days;
};

// Writes "hh:mm:ss" at `out`, which has room for TYPED_CELL_SIZE bytes, and returns its end. Hours
// grow beyond two digits; a negative span gives negative parts (-61 is "00:-1:-1").
char* WriteTimeSpan(char* out, int64_t seconds);
