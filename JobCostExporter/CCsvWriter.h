// Writes one file of comma-separated values, row by row. Once a write failed, the writer refuses
// further work and removes the incomplete file when it is closed. Failures are logged through
// CCMLibLogger.
//
// Results: 0; an errno value; -1 when the writer has failed before or has no open file. One thread
// at a time. No function throws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "JobCostExporter/CellBuffer.h"
#include "JobCostExporter/LocalTime.h"

class CCsvWriter {
public:
    CCsvWriter() = default;
    ~CCsvWriter();
    CCsvWriter(const CCsvWriter&) = delete;
    CCsvWriter& operator=(const CCsvWriter&) = delete;

    // Creates or empties the file. A stream that is still open is abandoned, deliberately: its file
    // gets what was written when the process ends. A writer that has failed stays failed.
    int Open(const char* path);
    int WriteBOM();
    // The third array is accepted and never read.
    int WriteValues(int count, const char** values, const char** unusedColumn, const char** types);
    // Gives 0 for a writer that failed earlier, if closing itself succeeds, although the file is
    // gone.
    int Close();

    // The text of an untyped cell before the quotes that every cell gets. That a quoted value is
    // then quoted a second time is the file format that readers of these files expect; do not
    // repair it.
    std::string EscapeValue(const char* value);

    size_t BufferSize() const { return BUFFER_SIZE; }

private:
    static constexpr size_t BUFFER_SIZE = 12582912;  // 12 MiB

    struct Cell {
        const char* text;  // null: memory is exhausted
        size_t size;
    };

    void BufferStream();
    int FailRow(int error);
    Cell BuildCell(const char* value, const char* type, bool last);
    Cell BuildText(const char* value, bool last);
    Cell BuildEscaped(const char* value, bool last);

    std::string m_path;
    FILE* m_file = nullptr;
    uint64_t m_rowCount = 0;
    bool m_failed = false;

    // The C library ignores the size asked for unless it is given a buffer.
    std::unique_ptr<char[]> m_streamBuffer;
    CellBuffer m_cell;
    LocalTime m_zone;
    bool m_zoneFresh = false;  // m_zone was refreshed for the present row
};
