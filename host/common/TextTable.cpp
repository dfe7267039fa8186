#include "host/common/TextTable.h"

#include <algorithm>

#include "host/common/Printable.h"

namespace tallyquist {
namespace {

constexpr size_t GAP = 2;

// UTF-8 characters have one byte each that continues no other.
size_t CharactersIn(const std::string& text) {
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    }));
}

}  // namespace

void TextTable::Add(const Cells& cells) {
    Cells& row = m_rows.emplace_back();
    m_widths.resize(cells.size());
    for (size_t at = 0; at < cells.size(); ++at) {
        row.push_back(Visible(cells[at]));
        m_widths[at] = std::max(m_widths[at], CharactersIn(row.back()));
    }
}

std::string TextTable::Text() const {
    std::string text;
    for (const Cells& row : m_rows) {
        size_t blanks = 0;
        for (size_t at = 0; at < row.size(); ++at) {
            if (!row[at].empty()) {
                text.append(blanks, ' ').append(row[at]);
                blanks = 0;
            }
            blanks += m_widths[at] - CharactersIn(row[at]) + GAP;
        }
        text += '\n';
    }
    return text;
}

}  // namespace tallyquist
