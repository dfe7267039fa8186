#include "host/export/ExportCommand.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "CostCountCommon/include/PluginLocations.h"
#include "host/common/Errors.h"
#include "host/export/DateArgument.h"
#include "host/export/ExporterPlugin.h"
#include "host/export/FindingReport.h"
#include "host/export/OutputFile.h"
#include "host/export/ProgressBar.h"
#include "host/export/TimeZone.h"

namespace tallyquist {
namespace {

const char* TypeName(ColumnType type) {
    switch (type) {
        case ColumnType::DATE_TIME:
            return "datetime";
        case ColumnType::TIME_SPAN:
            return "timespan";
        case ColumnType::TEXT:
            break;
    }
    return nullptr;
}

// The dates are read in the zone of the export, so that is set first.
void ReadDates(ExportOptions& options) {
    if (!options.timeZone.empty()) {
        UseTimeZone(options.timeZone);
    }
    if (!options.from.empty()) {
        options.selection.from = ParseDateArgument("--from", options.from).first;
    }
    if (!options.to.empty()) {
        options.selection.to = ParseDateArgument("--to", options.to).last;
    }
    if (options.selection.from && options.selection.to &&
        *options.selection.from > *options.selection.to) {
        throw UsageError("--from " + options.from + " lies after --to " + options.to);
    }
}

void RefuseInputAsOutput(const OutputFile& output, std::vector<std::string> inputs) {
    if (inputs.empty()) {
        inputs.emplace_back("-");
    }
    for (const std::string& input : inputs) {
        std::error_code error;
        const std::string path = input == "-" ? "/dev/stdin" : input;
        if (!output.Target().empty() && std::filesystem::equivalent(output.Target(), path, error)) {
            throw UsageError("-o " + output.ShownAs() + ": that is one of the inputs");
        }
    }
}

ExporterPlugin LoadPlugin() {
    std::string path;
    if (!GetPluginFilePath("JobCostExporter_path", &path)) {
        throw CommandError("cannot tell where the exporter plug-in lies");
    }
    return ExporterPlugin(path);
}

// Writes rows as they come and counts them.
class RowWriter {
public:
    RowWriter(ExportFile& file, const RowSelection& selection, ValueMode mode)
        : m_file(file), m_selection(selection), m_values(mode) {}

    void WriteHeader() {
        for (const Column& column : m_selection.Columns()) {
            m_cells.push_back(column.name);
            m_values.Prepare(m_cells.back());
        }
        m_types.assign(m_cells.size(), nullptr);
        m_file.WriteRow(m_cells, m_types);
    }

    void Write(const Row& row) {
        m_selection.Choose(row, m_cells);
        for (size_t at = 0; at < m_cells.size(); ++at) {
            const ColumnType type = m_selection.Columns()[at].type;
            // A typed cell without a value stays empty; the plug-in would write the time 0.
            m_types[at] = m_cells[at].empty() ? nullptr : TypeName(type);
            if (type == ColumnType::TEXT) {
                m_values.Prepare(m_cells[at]);
            }
        }
        m_file.WriteRow(m_cells, m_types);
        ++m_rows;
    }

    uint64_t Rows() const { return m_rows; }
    uint64_t Cells() const { return m_values.Count(); }

private:
    ExportFile& m_file;
    const RowSelection& m_selection;
    CellValues m_values;
    Row m_cells;
    std::vector<const char*> m_types;
    uint64_t m_rows = 0;
};

void PrintSummary(const ExportOptions& options, const OutputFile& output, const RowWriter& writer,
                  const FindingReport& findings) {
    const auto print = [](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); };
    const std::string rows =
        std::to_string(writer.Rows()) + (writer.Rows() == 1 ? " row" : " rows");
    print(output.ShownAs() + ": " + rows + " exported");
    if (findings.Total() != 0) {
        print(findings.Summary());
    }
    if (writer.Cells() == 0) {
        return;
    }
    const std::string cells =
        std::to_string(writer.Cells()) + (writer.Cells() == 1 ? " cell" : " cells");
    print(options.values == ValueMode::PORTABLE
              ? cells + " changed for spreadsheets and CSV readers; --values exact keeps every byte"
              : "warning: " + cells + " quoted twice, which common CSV readers do not decode");
}

void CopyRows(RowSource& source, const RowSelection& selection, RowWriter& writer,
              const Progress& progress, ProgressBar& bar) {
    Row row;
    for (uint64_t read = 1; source.Next(row); ++read) {
        if (selection.Wants(row)) {
            writer.Write(row);
        }
        bar.Update(read, progress);
    }
    bar.Clear();
}

}  // namespace

void RunExport(ExportOptions options) {
    ReadDates(options);
    OutputFile output(options.output, options.force);
    RefuseInputAsOutput(output, options.input.paths);

    ProgressBar bar(!options.quiet);
    FindingReport findings(options.quiet, bar);
    Progress progress;
    const auto source = OpenInputs(
        options.input, [&](const Finding& finding) { findings.Add(finding); }, &progress);
    const RowSelection selection(options.selection, source->Columns());

    const ExporterPlugin plugin = LoadPlugin();
    ExportFile file(plugin, output.CreateTemporary(), output.ShownAs());
    if (options.byteOrderMark) {
        file.WriteByteOrderMark();
    }
    RowWriter writer(file, selection, options.values);
    writer.WriteHeader();
    CopyRows(*source, selection, writer, progress, bar);
    file.Close();
    if (options.strict && findings.Total() != 0) {
        throw CommandError(findings.Summary() + "; nothing was written because of --strict");
    }
    output.Commit();
    if (!options.quiet) {
        PrintSummary(options, output, writer, findings);
    }
}

}  // namespace tallyquist
