#include "host/data/DataFileCommands.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "CostCountCommon/src/FileDescriptor.h"
#include "host/common/Errors.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"
#include "host/common/TextTable.h"
#include "host/data/DataFiles.h"
#include "host/data/EntryOutput.h"
#include "host/data/EntryTable.h"
#include "host/export/OutputFile.h"
#include "host/input/RowSource.h"

namespace tallyquist {
namespace {

constexpr const char* EXIT_CODES = "Exit codes: 0 done, 1 failed, 2 wrong usage.";

// --- list, show ---

struct ShowOptions {
    std::string name;  // empty: all
    bool json = false;
};

// One file of the list.
struct Listed {
    std::string name;
    std::optional<Entries> entries;  // none: damaged
    std::string fault;
};

std::vector<Listed> ReadAll(DataFiles& files) {
    std::vector<Listed> all;
    for (const std::string& name : files.Names()) {
        Listed& listed = all.emplace_back(Listed{name, {}, {}});
        try {
            listed.entries = files.Read(name);
            listed.fault = listed.entries ? "" : Visible(files.Folder() + name) + " is missing";
        } catch (const std::runtime_error& error) {
            listed.fault = error.what();
        }
    }
    return all;
}

std::string TextOf(const std::vector<Listed>& all, EntryKinds kinds) {
    TextTable::Cells header{"name"};
    for (const EntryKind& kind : kinds) {
        if (kind.IsList()) {
            header.emplace_back(kind.name);
        }
    }
    header.emplace_back("state");
    TextTable table(header);
    for (const Listed& listed : all) {
        TextTable::Cells cells{listed.name};
        for (const EntryKind& kind : kinds) {
            if (kind.IsList()) {
                cells.push_back(listed.entries ? std::to_string(CountOf(*listed.entries, kind))
                                               : "-");
            }
        }
        cells.emplace_back(listed.entries ? "ok" : "damaged");
        table.Add(cells);
    }
    return table.Text();
}

Json JsonOf(const std::vector<Listed>& all, const DataFiles& files) {
    Json json = Json::array();
    for (const Listed& listed : all) {
        Json& file = json.emplace_back(Json{{"name", listed.name}});
        file["path"] = files.Folder() + listed.name;
        for (const EntryKind& kind : files.Kind().entryKinds) {
            if (kind.IsList()) {
                file[kind.name] =
                    listed.entries ? Json(CountOf(*listed.entries, kind)) : Json(nullptr);
            }
        }
        file["error"] = listed.entries ? Json(nullptr) : Json(listed.fault);
    }
    return json;
}

void ListFiles(const FileKind& kind, bool json) {
    DataFiles files(kind);
    const std::vector<Listed> all = ReadAll(files);
    if (json) {
        WriteJson(JsonOf(all, files));
    } else {
        WriteStandardOutput(TextOf(all, kind.entryKinds));
        if (all.empty()) {
            std::fprintf(stderr, "tallyquist: there are no %s in %s\n", kind.nouns,
                         Visible(files.Folder()).c_str());
        }
    }
    std::string faults;
    for (const Listed& listed : all) {
        if (!listed.entries) {
            faults.append(faults.empty() ? "" : "\n").append(listed.fault);
        }
    }
    if (!faults.empty()) {
        throw CommandError(faults);
    }
}

Entries ReadExisting(DataFiles& files, const std::string& name) {
    std::optional<Entries> entries = files.Read(name);
    if (!entries) {
        throw CommandError(std::string("there is no ")
                               .append(files.Kind().noun)
                               .append(" ")
                               .append(Visible(files.PathOf(name))));
    }
    return std::move(*entries);
}

void ShowFile(const FileKind& kind, const ShowOptions& options) {
    DataFiles files(kind);
    const Entries entries = ReadExisting(files, options.name);
    if (options.json) {
        Json json{{"name", options.name}, {"path", files.PathOf(options.name)}};
        json.update(JsonOf(entries, files));
        WriteJson(json);
    } else {
        WriteStandardOutput(TextOf(entries, kind.entryKinds));
    }
}

CLI::Option* AddName(CLI::App& line, std::string& name, const char* meaning) {
    return line.add_option("NAME", name, meaning)->type_name("");
}

// --- import ---

struct ImportOptions {
    std::string name;
    std::string table;
    bool decimalComma = false;
    bool force = false;
};

// Whether a list has any entry.
bool HasListed(const Entries& entries) {
    return std::any_of(entries.begin(), entries.end(),
                       [](const Entry& entry) { return entry.kind->IsList(); });
}

void ImportTable(const FileKind& kind, const ImportOptions& options) {
    DataFiles files(kind);
    const std::string path = files.PathOf(options.name);
    const TableContents table =
        ReadEntryTable(std::make_unique<LineReader>(options.table), kind,
                       options.decimalComma ? DecimalMark::COMMA : DecimalMark::POINT);
    files.Change(
        options.name, options.force ? Damaged::REPLACE : Damaged::REFUSE, [&](Entries& changed) {
            if (!options.force && !HasListed(table.entries) && HasListed(changed)) {
                throw CommandError(InputName(options.table) + " has no entries, but " +
                                   Visible(path) + " has: " + CountsOf(changed, kind.entryKinds) +
                                   "; to remove them all, import with --force");
            }
            changed = table.entries;
        });
    if (!table.emptyNumbers.empty()) {
        std::fprintf(stderr, "tallyquist: %s\n", Visible(table.emptyNumbers).c_str());
    }
    WriteStandardOutput(Visible(path) + ": imported: " + CountsOf(table.entries, kind.entryKinds) +
                        "\n");
}

// --- export ---

struct ExportTableOptions {
    std::string name;
    std::string output = "-";
    bool force = false;
    bool bom = false;
};

void WriteFile(OutputFile& output, const std::string& text) {
    const std::string& path = output.CreateTemporary();
    const FileDescriptor file = FileDescriptor::Open(path.c_str(), O_WRONLY);
    if (!file.IsOpen() || !WriteWhole(file.Number(), text.data(), text.size())) {
        throw CommandError(std::string("cannot write ")
                               .append(output.ShownAs())
                               .append(": ")
                               .append(std::strerror(errno)));
    }
    output.Commit();
}

// Other programs may have written what a table for import may not hold, such as two entries of one
// id. It is exported all the same.
void TellOfTroubleOnImport(const std::string& text, const std::string& name, const Entries& entries,
                           const FileKind& kind) {
    std::string trouble;
    try {
        const auto table =
            ReadEntryTable(std::make_unique<LineReader>(name, text), kind, DecimalMark::POINT);
        if (table.entries != entries) {
            trouble = name + " does not give the same entries";
        }
    } catch (const InputError& error) {
        trouble = error.what();
    }
    if (!trouble.empty()) {
        std::fprintf(stderr, "tallyquist: the table cannot be imported as it is: %s\n",
                     trouble.c_str());
    }
}

void ExportTable(const FileKind& kind, const ExportTableOptions& options) {
    DataFiles files(kind);
    const Entries entries = ReadExisting(files, options.name);
    const std::string table = EntryTableText(entries, kind);
    const std::string text = (options.bom ? "\xEF\xBB\xBF" : "") + table;
    const bool toFile = options.output != "-";
    if (toFile) {
        OutputFile output(options.output, options.force);
        WriteFile(output, text);
    }
    TellOfTroubleOnImport(table, Visible(toFile ? options.output : options.name), entries, kind);
    if (!toFile) {
        WriteStandardOutput(text);
    }
}

}  // namespace

Command AddListCommand(CLI::App& parent, const FileKind& kind) {
    const auto json = std::make_shared<bool>();
    CLI::App* line = AddCommandLine(
        parent, "list", std::string("List the ").append(kind.nouns).append(" with their entries."));
    line->add_flag("--json", *json, "Print an array of objects for programs.");
    line->footer("Exit codes: 0 done, 1 failed or a file is damaged, 2 wrong usage.");
    return {line, [json, &kind] { ListFiles(kind, *json); }};
}

Command AddShowCommand(CLI::App& parent, const FileKind& kind) {
    const auto options = std::make_shared<ShowOptions>();
    CLI::App* line = AddCommandLine(parent, "show", std::string("Show a ").append(kind.noun) + ".");
    AddName(*line, options->name, "Its name.")->required();
    line->add_flag("--json", options->json, "Print an object, with the names that the file has.");
    line->footer(EXIT_CODES);
    return {line, [options, &kind] { ShowFile(kind, *options); }};
}

Command AddListOrShowCommand(CLI::App& parent, const FileKind& kind) {
    const auto options = std::make_shared<ShowOptions>();
    CLI::App* line = AddCommandLine(
        parent, "show", std::string("List the ").append(kind.nouns).append(", or show one."));
    AddName(*line, options->name, "The one to show.")->check(NotEmpty());
    line->add_flag("--json", options->json,
                   "Print an array of objects, or an object with the names that the file has.");
    line->footer("Exit codes: 0 done, 1 failed or a file is damaged, 2 wrong usage.");
    return {line, [options, &kind] {
                if (options->name.empty()) {
                    ListFiles(kind, options->json);
                } else {
                    ShowFile(kind, *options);
                }
            }};
}

Command AddImportCommand(CLI::App& parent, const FileKind& kind, const char* columns) {
    const auto options = std::make_shared<ImportOptions>();
    CLI::App* line = AddCommandLine(parent, "import",
                                    std::string("Replace the contents of a ").append(kind.noun) +
                                        ", or make one, from a table.");
    AddName(*line, options->name, "Its name.")->required();
    line->add_option("FILE", options->table, "The table; - is standard input.")
        ->type_name("")
        ->required()
        ->check(NotEmpty());
    line->add_flag("--decimal-comma", options->decimalComma,
                   "Numbers have a decimal comma: 12,5 is read as 12.5.");
    line->add_flag("--force", options->force,
                   "Replace also a file that cannot be read, and a list by an empty one.");
    line->footer(std::string(columns).append("\n").append(EXIT_CODES));
    return {line, [options, &kind] { ImportTable(kind, *options); }};
}

Command AddExportCommand(CLI::App& parent, const FileKind& kind) {
    const auto options = std::make_shared<ExportTableOptions>();
    CLI::App* line = AddCommandLine(
        parent, "export",
        std::string("Write a ").append(kind.noun) + " as a table that 'import' reads.");
    AddName(*line, options->name, "Its name.")->required();
    AddText(*line, "-o,--output", options->output, "FILE",
            "The file to write; standard output without it, or for -.");
    line->add_flag("--force", options->force, "Replace an existing file.");
    line->add_flag("--bom", options->bom,
                   "Begin the file with a UTF-8 byte order mark, which some spreadsheet programs "
                   "need.");
    line->footer(
        "Texts that a spreadsheet program would evaluate get an apostrophe in front, which 'import' "
        "takes away.\nExit codes: 0 done, 1 failed, 2 wrong usage.");
    return {line, [options, &kind] { ExportTable(kind, *options); }};
}

}  // namespace tallyquist
