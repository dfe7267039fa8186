#include "host/data/CostsCommand.h"

#include "host/data/DataFileCommands.h"
#include "host/data/SetPriceCommand.h"

namespace tallyquist {
namespace {

constexpr const char* COLUMNS =
    "The table is CSV in UTF-8 with a header and the columns\n"
    "  kind, id, size_id, width, length, number, cost, calc, rsv, and name:LANG per language\n"
    "and a row per price; what a kind has no column for stays empty:\n"
    "  ink     id, cost, rsv\n"
    "  media   id (of the media type), size_id, width, length, number, cost, rsv\n"
    "  extra   id, name:LANG, cost, calc\n"
    "  hidden  number: the number of hidden extra costs\n"
    "Columns that no row needs may be left out. Separators may be commas, semicolons or tabs.";

}  // namespace

Command AddCostsCommand(CLI::App& program) {
    CLI::App* line =
        AddCommandLine(program, "costs", "Show, change, import or export price lists.");
    line->require_subcommand(1);
    return {line, RunOneOf({AddListCommand(*line, PRICE_LIST), AddShowCommand(*line, PRICE_LIST),
                            AddSetPriceCommand(*line), AddImportCommand(*line, PRICE_LIST, COLUMNS),
                            AddExportCommand(*line, PRICE_LIST)})};
}

}  // namespace tallyquist
