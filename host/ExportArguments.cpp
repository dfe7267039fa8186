#include "host/ExportArguments.h"

#include <unistd.h>

#include <map>

#include "host/export/Errors.h"

namespace tallyquist {
namespace {

const std::map<std::string, InputKind> KINDS{{"auto", InputKind::AUTOMATIC},
                                             {"page-log", InputKind::PAGE_LOG},
                                             {"csv", InputKind::CSV},
                                             {"tsv", InputKind::TSV}};
const std::map<std::string, ValueMode> MODES{{"portable", ValueMode::PORTABLE},
                                             {"exact", ValueMode::EXACT}};
const std::map<std::string, ColumnType> TYPES{{"datetime", ColumnType::DATE_TIME},
                                              {"timespan", ColumnType::TIME_SPAN}};

}  // namespace

ExportArguments::ExportArguments(CLI::App& program)
    : m_command(program.add_subcommand(
          "export", "Turn printer job logs and tables into a file of comma-separated values.")) {
    m_command->footer(
        "The file appears under its name only when it is whole. Exit codes: 0 done, 1 failed, 2 "
        "wrong "
        "usage.");
    AddInputOptions();
    AddSelectionOptions();
    AddOutputOptions();
}

void ExportArguments::AddInputOptions() {
    m_command->add_option("INPUT", m_options.input.paths,
                          "Page logs, or CSV or TSV tables with a header; also gzipped. "
                          "None, or -, reads standard input.");
    m_command
        ->add_option("--input", m_options.input.kind,
                     "What the inputs are; recognised when not given.")
        ->transform(
            CLI::CheckedTransformer(KINDS, CLI::ignore_case).description("{auto,page-log,csv,tsv}"))
        ->option_text("KIND:{auto,page-log,csv,tsv}");
    m_command
        ->add_option("--log-format", m_options.input.logFormat,
                     "The PageLogFormat string that the page logs were written with.")
        ->option_text("FORMAT");
    m_command->add_flag(
        "--per-page", m_options.input.perPage,
        "Keep the lines of logs that have one per page, instead of one row per job.");
    m_command
        ->add_option(
            "--type", m_types,
            "Marks a table's column as whole seconds since 1970 UTC (datetime) or whole seconds "
            "of a duration (timespan). May be repeated.")
        ->option_text("COLUMN=datetime|timespan")
        ->take_all()
        ->expected(1);
    m_command->add_flag(
        "--strict", m_options.strict,
        "Fail when a line could be read in two ways, was cut, looks forged or cannot be "
        "read.");
}

void ExportArguments::AddSelectionOptions() {
    m_command
        ->add_option("--columns", m_options.selection.columns,
                     "The columns to write, in this order.")
        ->delimiter(',')
        ->option_text("A,B,...");
    m_command
        ->add_option("--from", m_options.from,
                     "Leave out what was before this date (2026-11-21, "
                     "or \"2026-11-21 09:46\").")
        ->option_text("DATE");
    m_command->add_option("--to", m_options.to, "Leave out what was after this date.")
        ->option_text("DATE");
    m_command
        ->add_option("--printer", m_options.selection.printers,
                     "Only this printer. May be repeated.")
        ->option_text("NAME")
        ->take_all()
        ->expected(1);
    m_command->add_option("--user", m_options.selection.users, "Only this user. May be repeated.")
        ->option_text("NAME")
        ->take_all()
        ->expected(1);
    m_command
        ->add_option("--timezone", m_options.timeZone,
                     "The zone of the times written and of the dates given, such as Europe/Berlin.")
        ->option_text("ZONE");
}

void ExportArguments::AddOutputOptions() {
    m_command
        ->add_option("-o,--output", m_options.output, "The file to write; - is standard output.")
        ->option_text("FILE")
        ->required();
    m_command
        ->add_option(
            "--values", m_options.values,
            "portable (the default): change what CSV readers and spreadsheet programs would "
            "misread; exact: keep every byte.")
        ->transform(CLI::CheckedTransformer(MODES, CLI::ignore_case))
        ->option_text("MODE:{portable,exact}");
    m_command->add_flag("--bom", m_options.byteOrderMark,
                        "Begin the file with a UTF-8 byte order mark.");
    m_command->add_flag("--force", m_options.force, "Replace an existing file.");
    m_command->add_flag("-q,--quiet", m_options.quiet, "Print nothing but errors.");
}

ExportOptions ExportArguments::Options() const {
    ExportOptions options = m_options;
    for (const std::string& text : m_types) {
        const size_t equals = text.rfind('=');
        const auto type =
            equals == std::string::npos ? TYPES.end() : TYPES.find(text.substr(equals + 1));
        if (type == TYPES.end() || equals == 0) {
            throw UsageError("--type " + text + ": must be COLUMN=datetime or COLUMN=timespan");
        }
        options.input.columnTypes[text.substr(0, equals)] = type->second;
    }
    if (options.input.paths.empty() && isatty(STDIN_FILENO) == 1) {
        throw UsageError("no INPUT was given, and standard input is a terminal");
    }
    return options;
}

}  // namespace tallyquist
