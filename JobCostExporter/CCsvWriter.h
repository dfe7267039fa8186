// Writes one file of comma-separated values, row by row. Once a write failed, the writer refuses
// further work and removes the incomplete file when it is closed. Failures are logged through
// CCMLibLogger.
//
// Results: 0; an errno value; -1 when the writer has failed before or has no open file. One thread
// at a time. No function throws but EscapeValue, when memory is exhausted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "JobCostExporter/RowBuffer.h"
#include "JobCostExporter/TypedCells.h"

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
    static std::string EscapeValue(const char* value);

    size_t BufferSize() const { return BUFFER_SIZE; }

private:
    static constexpr size_t BUFFER_SIZE = 12582912;  // 12 MiB

    void BufferStream();
    bool WriteGathered();
    int FailRow(int error);

    std::string m_path;
    FILE* m_file = nullptr;
    uint64_t m_rowCount = 0;
    bool m_failed = false;

    // The C library ignores the size asked for unless it is given a buffer.
    std::unique_ptr<char[]> m_streamBuffer;
    RowBuffer m_row;
    DateTimeCells m_dateTimes;
};
