// What a reader of one input gives to the code that makes one table of all inputs.
#pragma once

#include <cstdint>
#include <optional>

#include "host/input/RowSource.h"

namespace tallyquist {

struct Record {
    Row values;  // by column of the reader
    // Copies printed of one page, when the record is one page of a job that more may follow for.
    std::optional<int64_t> onePage;
    uint64_t line = 0;
};

class RecordReader {
public:
    virtual ~RecordReader() = default;
    RecordReader() = default;
    RecordReader(const RecordReader&) = delete;
    RecordReader& operator=(const RecordReader&) = delete;

    // False at the end. Throws InputError.
    virtual bool Next(Record& record) = 0;
    // How much of the file was read, as it lies on the disk.
    virtual uint64_t BytesRead() const = 0;
};

}  // namespace tallyquist
