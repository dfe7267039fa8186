// Which rows and columns of the input are exported.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/input/RowSource.h"

namespace tallyquist {

struct SelectionOptions {
    std::vector<std::string> columns;   // in this order; none means all
    std::vector<std::string> printers;  // rows of one of these; none means all
    std::vector<std::string> users;
    std::optional<int64_t> from;  // first and last second, of the column for time
    std::optional<int64_t> to;
};

class RowSelection {
public:
    // Throws UsageError for a column that the input does not have, naming those that it has.
    RowSelection(const SelectionOptions& options, const std::vector<Column>& columns);

    const std::vector<Column>& Columns() const { return m_columns; }

    // Whether the row is wanted. A row without a time is not, when times are limited.
    bool Wants(const Row& row) const;

    // Fills `chosen` with the cells of the chosen columns.
    void Choose(const Row& row, Row& chosen) const;

private:
    static constexpr size_t NONE = SIZE_MAX;

    bool WantsTime(const Row& row) const;

    SelectionOptions m_options;
    std::vector<size_t> m_chosen;  // places in the input's rows
    std::vector<Column> m_columns;
    size_t m_printer = NONE;
    size_t m_user = NONE;
    size_t m_time = NONE;
};

}  // namespace tallyquist
