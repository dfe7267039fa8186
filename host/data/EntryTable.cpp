// External interface: ReadEntryTable, EntryTableText.
//
// The columns are "kind", those of the fields, and "name:LANGUAGE". A cell with nothing is a field
// without text, or no name in that language. So that a name may be the empty text too, and that
// every text comes back, a text of apostrophes alone gets one more, as do texts that would be
// evaluated.
#include "host/data/EntryTable.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "compatible/Ascii.h"
#include "compatible/Utf8.h"
#include "host/common/Printable.h"
#include "host/data/LanguageTexts.h"
#include "host/input/DelimitedReader.h"

namespace tallyquist {
namespace {

constexpr const char* KIND = "kind";
constexpr std::string_view NAME_PREFIX = "name:";

// Whether an apostrophe is put in front: nothing, or what would be evaluated, after apostrophes.
bool IsProtected(std::string_view text) {
    const size_t at = std::min(text.find_first_not_of('\''), text.size());
    return at == text.size() || std::string_view("=+-@\t\r").find(text[at]) != std::string::npos;
}

std::string Protected(const std::string& text) {
    return IsProtected(text) ? std::string("'").append(text) : text;
}

std::string Unprotected(const std::string& cell) {
    return cell.starts_with('\'') && IsProtected(cell) ? cell.substr(1) : cell;
}

bool IsPrefixNoCase(std::string_view text, std::string_view prefix) {
    return IsEqualAsciiNoCase(text.substr(0, prefix.size()), prefix);
}

// What the first line tells, when it is one such as "sep=;" that is no part of the table.
std::optional<char> ToldSeparator(std::string_view text) {
    constexpr std::string_view PREFIX = "sep=";
    std::string_view line = text.substr(0, text.find('\n'));
    line = line.substr(0, line.find('\r'));
    const bool isTold =
        line.size() == PREFIX.size() + 1 && IsPrefixNoCase(line, PREFIX) && !line.ends_with('"');
    return isTold ? std::optional(line.back()) : std::nullopt;
}

// The first separator outside quotes in the first line that has any text, which is the header: what
// stands in its texts is none. A table with one column has none.
char SeparatorIn(std::string_view text) {
    const size_t start = std::min(text.find_first_not_of(",;\t\"\r\n"), text.size());
    text.remove_prefix(text.substr(0, start).rfind('\n') + 1);
    bool isQuoted = false;
    for (const char c : text.substr(0, text.find('\n'))) {
        isQuoted ^= c == '"';
        if (!isQuoted && (c == ',' || c == ';' || c == '\t')) {
            return c;
        }
    }
    return ',';
}

std::string NamesOf(EntryKinds kinds) {
    std::string names;
    for (const EntryKind& kind : kinds) {
        names.append(names.empty() ? "" : ", ").append(kind.name);
    }
    return names;
}

std::string InColumn(const std::string& column) {
    return std::string("column ").append(Printable(column)).append(": ");
}

class EntryTableReader {
public:
    EntryTableReader(std::unique_ptr<LineReader> lines, const FileKind& kind, DecimalMark mark)
        : m_name(lines->Name()), m_kind(kind), m_kinds(kind.entryKinds), m_mark(mark) {
        const std::string_view beginning = lines->Peek();
        const std::optional<char> told = ToldSeparator(beginning);
        const char separator = told ? *told : SeparatorIn(beginning);
        if (told) {
            Line passedOver;
            lines->Next(passedOver);
        }
        m_table.emplace(std::move(lines), separator, std::map<std::string, ColumnType>{},
                        RowShape::PADDED);
        ReadHeader();
    }

    TableContents ReadAll() {
        while (m_table->Next(m_record)) {
            ReadRow();
        }
        Complete(m_entries, m_kinds);
        std::stable_sort(m_entries.begin(), m_entries.end(),
                         [](const Entry& a, const Entry& b) { return a.kind < b.kind; });
        if (m_emptyNumbers > 0) {
            m_firstEmptyNumber.append("; empty ones in all: ")
                .append(std::to_string(m_emptyNumbers));
        }
        return {std::move(m_entries), std::move(m_firstEmptyNumber)};
    }

private:
    std::string Place(uint64_t line) const {
        return std::string(m_name).append(":").append(std::to_string(line)).append(": ");
    }
    [[noreturn]] void Fail(uint64_t line, const std::string& reason) const {
        throw InputError(Place(line).append(reason));
    }
    [[noreturn]] void FailInHeader(const std::string& reason) const {
        Fail(m_table->RowLine(), reason);
    }
    [[noreturn]] void FailInColumn(const std::string& column, const std::string& reason) const {
        Fail(m_record.line, InColumn(column).append(reason));
    }

    void ReadHeader();
    void AddColumn(const std::string& title);
    void AddLanguage(const std::string& title, size_t at);
    bool IsColumn(const std::string& name) const;
    void ReadRow();
    const EntryKind& KindOfRow() const;
    void RefuseStrayCells(const EntryKind& kind) const;
    std::string CheckedCell(size_t column) const;
    std::string ReadValue(const EntryKind& kind, const Field& field);
    void RefuseSecond(const Entry& entry);

    std::string m_name;
    const FileKind& m_kind;
    EntryKinds m_kinds;
    DecimalMark m_mark;
    std::optional<DelimitedReader> m_table;
    std::vector<std::string> m_titles;        // of all columns, as the header has them
    std::map<std::string, size_t> m_columns;  // by name in lower case
    std::vector<std::pair<std::string, size_t>> m_languages;
    Record m_record;
    Entries m_entries;
    std::string m_firstEmptyNumber;
    uint64_t m_emptyNumbers = 0;
    std::map<std::pair<const EntryKind*, std::vector<std::string>>, uint64_t> m_lines;  // by ids
};

bool EntryTableReader::IsColumn(const std::string& name) const {
    return name == KIND ||
           std::find(m_kind.columns.begin(), m_kind.columns.end(), name) != m_kind.columns.end();
}

void EntryTableReader::ReadHeader() {
    for (const Column& column : m_table->Columns()) {
        AddColumn(column.name);
    }
    if (!m_columns.contains(KIND)) {
        FailInHeader("the header has no column 'kind'");
    }
}

void EntryTableReader::AddColumn(const std::string& title) {
    const size_t at = m_titles.size();
    m_titles.push_back(title);
    if (title.empty()) {
        return;
    }
    if (IsPrefixNoCase(title, NAME_PREFIX)) {
        AddLanguage(title, at);
        return;
    }
    std::string name = title;
    std::transform(name.begin(), name.end(), name.begin(), AsciiLower);
    if (!IsColumn(name)) {
        FailInHeader(
            std::string("unknown column ")
                .append(Printable(title))
                .append(IsUtf8(title) ? "" : ", which is not UTF-8; save the table as UTF-8"));
    }
    if (!m_columns.emplace(name, at).second) {
        FailInHeader(std::string("two columns are named ").append(Printable(name)));
    }
}

// Files have language codes in one spelling, so their case is kept.
void EntryTableReader::AddLanguage(const std::string& title, size_t at) {
    const std::string language = title.substr(NAME_PREFIX.size());
    if (!IsLanguageCode(language)) {
        FailInHeader(InColumn(title).append("a language code such as en or pt-BR is wanted"));
    }
    for (const auto& [earlier, column] : m_languages) {
        if (IsSameLanguage(earlier, language)) {
            FailInHeader(std::string("the columns ")
                             .append(Printable(m_titles[column]))
                             .append(" and ")
                             .append(Printable(title))
                             .append(" are of one language"));
        }
    }
    m_languages.emplace_back(language, at);
}

// The text of a cell, after the checks that no kind matters for.
std::string EntryTableReader::CheckedCell(size_t column) const {
    const std::string& cell = m_record.values[column];
    if (!IsUtf8(cell)) {
        FailInColumn(m_titles[column],
                     Printable(cell).append(" is not UTF-8; save the table as UTF-8"));
    }
    return Unprotected(cell);
}

const EntryKind& EntryTableReader::KindOfRow() const {
    const std::string name = CheckedCell(m_columns.at(KIND));
    for (const EntryKind& kind : m_kinds) {
        // Spreadsheet programs turn the first letter of a cell into a capital one.
        if (IsEqualAsciiNoCase(kind.name, name)) {
            return kind;
        }
    }
    FailInColumn(m_titles[m_columns.at(KIND)],
                 Printable(name).append(" is no kind; there are ").append(NamesOf(m_kinds)));
}

// Cells that the kind has no use for: what a person wrote there would be lost.
void EntryTableReader::RefuseStrayCells(const EntryKind& kind) const {
    std::set<size_t> used{m_columns.at(KIND)};
    for (const Field& field : kind.fields) {
        const auto column = m_columns.find(field.column);
        if (column != m_columns.end()) {
            used.insert(column->second);
        }
    }
    if (kind.HasNames()) {
        for (const auto& [language, column] : m_languages) {
            used.insert(column);
        }
    }
    for (size_t at = 0; at < m_titles.size(); ++at) {
        if (!m_record.values[at].empty() && !used.contains(at)) {
            FailInColumn(m_titles[at], Printable(m_record.values[at])
                                           .append(" has no place in a row of kind ")
                                           .append(kind.name));
        }
    }
}

std::string EntryTableReader::ReadValue(const EntryKind& kind, const Field& field) {
    const auto column = m_columns.find(field.column);
    if (column == m_columns.end()) {
        if (field.use == NEEDED) {
            FailInColumn(field.column,
                         std::string("is missing, but ").append(kind.name).append(" needs it"));
        }
        return {};
    }
    const std::string& title = m_titles[column->second];
    if (field.use == NEEDED && column->second >= m_table->CellsGiven()) {
        FailInColumn(
            title,
            std::string("the row ends before it, but ").append(kind.name).append(" needs it"));
    }
    std::string value = CheckedCell(column->second);
    const std::string fault = AdoptValue(field, m_mark, &value);
    if (!fault.empty()) {
        FailInColumn(title, fault);
    }
    if (field.use == NEEDED && field.type == FieldType::NUMBER && value.empty() &&
        m_emptyNumbers++ == 0) {
        m_firstEmptyNumber = Place(m_record.line).append(InColumn(title)).append("is empty");
    }
    return value;
}

void EntryTableReader::RefuseSecond(const Entry& entry) {
    const auto [earlier, isFirst] =
        m_lines.emplace(std::pair(entry.kind, IdsOf(entry)), m_record.line);
    if (!isFirst) {
        FailInColumn(entry.kind->fields.front().column, EntryLabel(entry)
                                                            .append(" stands in line ")
                                                            .append(std::to_string(earlier->second))
                                                            .append(" already"));
    }
}

void EntryTableReader::ReadRow() {
    const EntryKind& kind = KindOfRow();
    RefuseStrayCells(kind);
    Entry entry{.kind = &kind, .values = {}, .names = {}};
    for (const Field& field : kind.fields) {
        entry.values.push_back(ReadValue(kind, field));
    }
    for (const auto& [language, column] : m_languages) {
        if (m_record.values[column].empty()) {
            continue;
        }
        const std::string& name = entry.names[language] = CheckedCell(column);
        const std::string fault = TextFault(name);
        if (!fault.empty()) {
            FailInColumn(m_titles[column], fault);
        }
    }
    RefuseSecond(entry);
    m_entries.push_back(std::move(entry));
}

// Puts rows together from cells.
class TableText {
public:
    void Add(const std::string& cell) {
        m_text.append(m_isRowBegun ? "," : "");
        m_isRowBegun = true;
        if (cell.find_first_of("\",\r\n") == std::string::npos) {
            m_text.append(cell);
            return;
        }
        m_text += '"';
        for (const char c : cell) {
            m_text.append(c == '"' ? 2 : 1, c);
        }
        m_text += '"';
    }
    void EndRow() {
        m_text += "\r\n";
        m_isRowBegun = false;
    }
    std::string Take() { return std::move(m_text); }

private:
    std::string m_text;
    bool m_isRowBegun = false;
};

// A number never needs protection, and a negative one must not get it.
std::string CellOf(const Entry& entry, std::string_view column) {
    for (size_t i = 0; i < entry.values.size(); ++i) {
        const Field& field = entry.kind->fields[i];
        if (field.column == column && !entry.values[i].empty()) {
            return field.type == FieldType::WHOLE ? entry.values[i] : Protected(entry.values[i]);
        }
    }
    return {};
}

}  // namespace

TableContents ReadEntryTable(std::unique_ptr<LineReader> lines, const FileKind& kind,
                             DecimalMark mark) {
    return EntryTableReader(std::move(lines), kind, mark).ReadAll();
}

std::string EntryTableText(const Entries& entries, const FileKind& kind) {
    const std::set<std::string> languages = LanguagesOf(entries);
    TableText table;
    table.Add(KIND);
    for (const char* column : kind.columns) {
        table.Add(column);
    }
    for (const std::string& language : languages) {
        table.Add(std::string(NAME_PREFIX).append(language));
    }
    table.EndRow();
    for (const Entry& entry : entries) {
        table.Add(entry.kind->name);
        for (const char* column : kind.columns) {
            table.Add(CellOf(entry, column));
        }
        for (const std::string& language : languages) {
            const auto name = entry.names.find(language);
            table.Add(name == entry.names.end() ? "" : Protected(name->second));
        }
        table.EndRow();
    }
    return table.Take();
}

}  // namespace tallyquist
