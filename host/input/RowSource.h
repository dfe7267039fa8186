// What every kind of input gives: columns, rows one at a time, and findings about doubtful lines.
#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tallyquist {

enum class ColumnType {
    TEXT,
    DATE_TIME,  // decimal seconds since 1970-01-01 00:00:00 UTC
    TIME_SPAN,  // decimal seconds
};

struct Column {
    std::string name;
    ColumnType type = ColumnType::TEXT;
};

// The range of times that a calendar with four digits for the year shows: years 1 to 9999.
constexpr bool IsShowableTime(int64_t seconds) {
    return seconds >= -62135596800 && seconds <= 253402300799;
}

// One text per column. The text of a typed column is a whole number, or empty when there is no
// value.
using Row = std::vector<std::string>;

// A source of rows. Reading takes memory that does not grow with the number of rows.
class RowSource {
public:
    virtual ~RowSource() = default;
    RowSource() = default;
    RowSource(const RowSource&) = delete;
    RowSource& operator=(const RowSource&) = delete;

    // The same for the whole life of the source.
    virtual const std::vector<Column>& Columns() const = 0;

    // Fills `row` with the next row; false at the end. Throws InputError.
    virtual bool Next(Row& row) = 0;
};

// An input that cannot be used. what() names the file, the line when there is one, and the reason.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The command line asks for something that cannot be, whatever the inputs hold.
class OptionError : public InputError {
public:
    using InputError::InputError;
};

// A line that was read but deserves a look.
struct Finding {
    enum class Kind {
        AMBIGUOUS,  // could be read in two ways; the likelier one was taken
        CUT,        // ends too early; what was there was taken
        FORGED,     // looks like a record that a job's name or another text typed by a user made up
        UNREADABLE,  // not a record; left out
    };
    Kind kind;
    std::string file;
    uint64_t line;
    std::string text;  // what is the matter and what was done, one sentence, no line break
};

using FindingSink = std::function<void(const Finding&)>;

}  // namespace tallyquist
