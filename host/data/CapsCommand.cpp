#include "host/data/CapsCommand.h"

#include "host/data/DataFileCommands.h"

namespace tallyquist {
namespace {

constexpr const char* COLUMNS =
    "The table is CSV in UTF-8 with a header and the columns\n"
    "  kind, id, color, tank, name, value, and name:LANG per language\n"
    "and a row per entry; what a kind has no column for stays empty:\n"
    "  ink             id, color, tank\n"
    "  media_type      id, name:LANG\n"
    "  media_size      id, name\n"
    "  unknown_joblog  value: whether job logs of unknown kinds are shown\n"
    "Columns that no row needs may be left out.";

}  // namespace

Command AddCapsCommand(CLI::App& program) {
    CLI::App* line = AddCommandLine(program, "caps", "Show or import what printers can use.");
    line->require_subcommand(1);
    return {line, RunOneOf({AddListOrShowCommand(*line, CAPABILITIES),
                            AddImportCommand(*line, CAPABILITIES, COLUMNS)})};
}

}  // namespace tallyquist
