// Makes texts fit for the programs that read the exported file.
#pragma once

#include <cstdint>
#include <string>

namespace tallyquist {

enum class ValueMode {
    PORTABLE,  // so that common CSV readers and spreadsheet programs see the text as it is meant
    EXACT,     // every byte as it is
};

// The exporter quotes a text that holds a comma, a quote or a line break twice, which no common
// reader decodes, and spreadsheet programs evaluate what looks like a formula even in a quoted
// cell.
class CellValues {
public:
    explicit CellValues(ValueMode mode) : m_mode(mode) {}

    // Changes the text as the mode asks.
    void Prepare(std::string& text);

    // Portable: texts that were changed. Exact: texts that the exporter will quote twice.
    uint64_t Count() const { return m_count; }

private:
    ValueMode m_mode;
    uint64_t m_count = 0;
};

// The text with `"` replaced by a typographic quote, `,` by `;`, each line break by a blank, and an
// apostrophe before what a spreadsheet program would evaluate. Numbers such as -5 or -12,50 get
// none.
std::string PortableText(const std::string& text);

}  // namespace tallyquist
