// A table for people.
#pragma once

#include <string>
#include <vector>

namespace tallyquist {

// Columns are as wide as their longest cell, counted in characters, two blanks apart. What a
// terminal would obey or cannot show is made visible.
class TextTable {
public:
    using Cells = std::vector<std::string>;

    explicit TextTable(const Cells& header) { Add(header); }

    // As many cells as the header has.
    void Add(const Cells& cells);

    // All lines, each with a line feed and without blanks at its end.
    std::string Text() const;

private:
    std::vector<Cells> m_rows;
    std::vector<size_t> m_widths;
};

}  // namespace tallyquist
