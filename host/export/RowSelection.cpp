#include "host/export/RowSelection.h"

#include <algorithm>
#include <cstdlib>

#include "host/common/Errors.h"
#include "host/common/Printable.h"

namespace tallyquist {
namespace {

size_t Find(const std::vector<Column>& columns, const std::string& name,
            const std::string& option) {
    std::string known;
    for (size_t at = 0; at < columns.size(); ++at) {
        if (columns[at].name == name) {
            return at;
        }
        known += (at == 0 ? "" : ", ") + Visible(columns[at].name);
    }
    throw UsageError(option + ": the input has no column " + Printable(name) + "; it has " + known);
}

// A log's own time of completion where there is one, else the first time of any kind.
size_t FindTime(const std::vector<Column>& columns) {
    const auto isTime = [](const Column& column) { return column.type == ColumnType::DATE_TIME; };
    auto found = std::find_if(columns.begin(), columns.end(), [&](const Column& column) {
        return isTime(column) && column.name == "completed";
    });
    if (found == columns.end()) {
        found = std::find_if(columns.begin(), columns.end(), isTime);
    }
    if (found == columns.end()) {
        throw UsageError(
            "--from, --to: the input has no column of times; --type COLUMN=datetime marks one");
    }
    return static_cast<size_t>(found - columns.begin());
}

bool OneOf(const std::vector<std::string>& wanted, const Row& row, size_t column) {
    return wanted.empty() || std::find(wanted.begin(), wanted.end(), row[column]) != wanted.end();
}

}  // namespace

RowSelection::RowSelection(const SelectionOptions& options, const std::vector<Column>& columns)
    : m_options(options) {
    for (const std::string& name : options.columns) {
        m_chosen.push_back(Find(columns, name, "--columns"));
    }
    if (m_chosen.empty()) {
        for (size_t at = 0; at < columns.size(); ++at) {
            m_chosen.push_back(at);
        }
    }
    for (const size_t at : m_chosen) {
        m_columns.push_back(columns[at]);
    }
    if (!options.printers.empty()) {
        m_printer = Find(columns, "printer", "--printer");
    }
    if (!options.users.empty()) {
        m_user = Find(columns, "user", "--user");
    }
    if (options.from || options.to) {
        m_time = FindTime(columns);
    }
}

bool RowSelection::Wants(const Row& row) const {
    return (m_printer == NONE || OneOf(m_options.printers, row, m_printer)) &&
           (m_user == NONE || OneOf(m_options.users, row, m_user)) &&
           (m_time == NONE || WantsTime(row));
}

bool RowSelection::WantsTime(const Row& row) const {
    const std::string& text = row[m_time];
    const int64_t time = std::atoll(text.c_str());
    return !text.empty() && (!m_options.from || time >= *m_options.from) &&
           (!m_options.to || time <= *m_options.to);
}

void RowSelection::Choose(const Row& row, Row& chosen) const {
    chosen.resize(m_chosen.size());
    for (size_t at = 0; at < m_chosen.size(); ++at) {
        chosen[at] = row[m_chosen[at]];
    }
}

}  // namespace tallyquist
