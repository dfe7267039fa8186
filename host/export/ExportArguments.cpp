#include "host/export/ExportArguments.h"

#include <unistd.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/common/Errors.h"
#include "host/common/Printable.h"
#include "host/export/ExportCommand.h"

namespace tallyquist {
namespace {

template <typename Value>
using Words = std::map<std::string, Value>;

const Words<InputKind> KINDS{{"auto", InputKind::AUTOMATIC},
                             {"page-log", InputKind::PAGE_LOG},
                             {"csv", InputKind::CSV},
                             {"tsv", InputKind::TSV}};
const Words<ValueMode> MODES{{"portable", ValueMode::PORTABLE}, {"exact", ValueMode::EXACT}};
const Words<ColumnType> TYPES{{"datetime", ColumnType::DATE_TIME},
                              {"timespan", ColumnType::TIME_SPAN}};

template <typename Value>
Value ValueOf(const std::string& option, const std::string& word, const Words<Value>& words) {
    const auto found = words.find(word);
    if (found != words.end()) {
        return found->second;
    }
    std::string known;
    for (const auto& [name, value] : words) {
        known += (known.empty() ? "" : ", ") + name;
    }
    throw UsageError(option + ": " + Printable(word) + " is not one of " + known);
}

// What CLI11 fills; Options turns it into what the command takes.
class ExportArguments {
public:
    explicit ExportArguments(CLI::App& program);

    CLI::App* Line() const { return m_line; }

    // Throws UsageError.
    ExportOptions Options() const;

private:
    void AddInputOptions();
    void AddSelectionOptions();
    void AddOutputOptions();

    CLI::App* m_line;
    ExportOptions m_options;
    std::string m_kind;
    std::string m_values;
    std::vector<std::string> m_types;
};

ExportArguments::ExportArguments(CLI::App& program)
    : m_line(AddCommandLine(
          program, "export",
          "Turn printer job logs and tables into a file of comma-separated values.")) {
    m_line->footer(
        "The file appears under its name only when it is whole. Exit codes: 0 done, 1 failed, 2 "
        "wrong usage.");
    AddInputOptions();
    AddSelectionOptions();
    AddOutputOptions();
}

void ExportArguments::AddInputOptions() {
    m_line
        ->add_option("INPUT", m_options.input.paths,
                     "Page logs, or CSV or TSV tables with a header; also gzipped. "
                     "None, or -, reads standard input.")
        ->type_name("");
    AddText(*m_line, "--input", m_kind, "auto|page-log|csv|tsv",
            "What the inputs are; recognised when not given.");
    AddText(*m_line, "--log-format", m_options.input.logFormat, "FORMAT",
            "The PageLogFormat string that the page logs were written with.");
    m_line->add_flag("--per-page", m_options.input.perPage,
                     "Keep the lines of logs that have one per page, instead of one row per job.");
    AddText(
        *m_line, "--type", m_types, "COLUMN=datetime|timespan",
        "Marks a table's column as whole seconds since 1970 UTC (datetime) or whole seconds of a "
        "duration (timespan). May be repeated.")
        ->take_all()
        ->expected(1);
    m_line->add_flag(
        "--strict", m_options.strict,
        "Fail when a line could be read in two ways, was cut, looks forged or cannot be "
        "read.");
}

void ExportArguments::AddSelectionOptions() {
    AddText(*m_line, "--columns", m_options.selection.columns, "A,B,...",
            "The columns to write, in this order.")
        ->delimiter(',');
    AddText(*m_line, "--from", m_options.from, "DATE",
            "Leave out what was before this date (2026-11-21, or \"2026-11-21 09:46\").");
    AddText(*m_line, "--to", m_options.to, "DATE", "Leave out what was after this date.");
    AddText(*m_line, "--printer", m_options.selection.printers, "NAME",
            "Only this printer. May be repeated.")
        ->take_all()
        ->expected(1);
    AddText(*m_line, "--user", m_options.selection.users, "NAME",
            "Only this user. May be repeated.")
        ->take_all()
        ->expected(1);
    AddText(*m_line, "--timezone", m_options.timeZone, "ZONE",
            "The zone of the times written and of the dates given, such as Europe/Berlin.");
}

void ExportArguments::AddOutputOptions() {
    AddText(*m_line, "-o,--output", m_options.output, "FILE (required)",
            "The file to write; - is standard output.")
        ->required();
    AddText(
        *m_line, "--values", m_values, "portable|exact",
        "portable (the default): change what CSV readers and spreadsheet programs would misread; "
        "exact: keep every byte.");
    m_line->add_flag("--bom", m_options.byteOrderMark,
                     "Begin the file with a UTF-8 byte order mark.");
    m_line->add_flag("--force", m_options.force, "Replace an existing file.");
    m_line->add_flag("-q,--quiet", m_options.quiet, "Print nothing but errors.");
}

ExportOptions ExportArguments::Options() const {
    ExportOptions options = m_options;
    if (!m_kind.empty()) {
        options.input.kind = ValueOf("--input", m_kind, KINDS);
    }
    if (!m_values.empty()) {
        options.values = ValueOf("--values", m_values, MODES);
    }
    for (const std::string& text : m_types) {
        const size_t equals = text.rfind('=');
        if (equals == std::string::npos || equals == 0) {
            throw UsageError("--type: " + Printable(text) +
                             " is not COLUMN=datetime or COLUMN=timespan");
        }
        options.input.columnTypes[text.substr(0, equals)] =
            ValueOf("--type", text.substr(equals + 1), TYPES);
    }
    const bool table = options.input.kind == InputKind::CSV || options.input.kind == InputKind::TSV;
    if (table && !options.input.logFormat.empty()) {
        throw UsageError("--log-format is for page logs, not for --input " + m_kind);
    }
    if (options.input.paths.empty() && isatty(STDIN_FILENO) == 1) {
        throw UsageError("no INPUT was given, and standard input is a terminal");
    }
    return options;
}

}  // namespace

Command AddExportCommand(CLI::App& program) {
    const auto arguments = std::make_shared<ExportArguments>(program);
    return {arguments->Line(), [arguments] { RunExport(arguments->Options()); }};
}

}  // namespace tallyquist
