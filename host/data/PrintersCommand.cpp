#include "host/data/PrintersCommand.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string>

#include "host/common/Errors.h"
#include "host/common/Json.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"
#include "host/common/TextTable.h"
#include "host/data/PrinterChoice.h"
#include "host/data/PrinterFields.h"
#include "host/data/PrinterListFile.h"

namespace tallyquist {
namespace {

struct PrintersOptions {
    bool json = false;
    bool showSecrets = false;
    PrinterChoice chosen;
    PrinterArguments added;
    PrinterArguments changed;
};

auto HasSerial(const std::string& serial) {
    return
        [&serial](const CCommonPrinterInfo& printer) { return SerialNumberOf(printer) == serial; };
}

void RefuseTwice(const PrinterListFile& file, const Printers& printers, const std::string& serial) {
    if (std::any_of(printers.begin(), printers.end(), HasSerial(serial))) {
        throw CommandError(Visible(file.Path()) + ": a printer has the serial number " +
                           Printable(serial) + " already");
    }
}

void Report(const PrinterListFile& file, const std::string& serial, const char* what) {
    WriteStandardOutput(Visible(file.Path()) + ": " + Visible(serial) + what + "\n");
}

std::string AddressOf(const Json& port) {
    const Json& address = port.at(port.at("host_name").is_null() ? "text" : "host_name");
    const auto location = port.at("location_id").get<unsigned int>();
    return address.get_ref<const std::string&>().empty() && location != 0
               ? std::string("location ").append(std::to_string(location))
               : address.get<std::string>();
}

std::string TextOf(const Printers& printers) {
    TextTable table({"serial", "model", "name", "port", "address", "mac"});
    for (const CCommonPrinterInfo& printer : printers) {
        const Json json = JsonOf(printer, false);
        table.Add({json.at("serial_number"), json.at("model_name"), ShownNameOf(printer),
                   json.at("port").at("type"), AddressOf(json.at("port")), json.at("mac_address")});
    }
    return table.Text();
}

void ListPrinters(const PrintersOptions& options) {
    PrinterListFile file;
    const std::optional<Printers> printers = file.Read();
    if (options.json) {
        Json list = Json::array();
        for (const CCommonPrinterInfo& printer : printers.value_or(Printers())) {
            list.push_back(JsonOf(printer, options.showSecrets));
        }
        WriteJson({{"file", file.Path()},
                   {"file_exists", printers.has_value()},
                   {"printers", std::move(list)}});
    } else if (!printers || printers->empty()) {
        WriteStandardOutput(Visible(file.Path()) + (printers
                                                        ? " holds no printers\n"
                                                        : " does not exist yet: no printers\n"));
    } else {
        WriteStandardOutput(TextOf(*printers));
    }
}

void ShowPrinter(const PrintersOptions& options) {
    PrinterListFile file;
    Printers printers = file.Read().value_or(Printers());
    const CCommonPrinterInfo& printer = *FindPrinter(file, printers, options.chosen);
    if (options.json) {
        WriteJson(JsonOf(printer, options.showSecrets));
    } else {
        WriteStandardOutput(TableOf(printer, options.showSecrets));
    }
}

void AddPrinter(const PrintersOptions& options) {
    CCommonPrinterInfo printer;
    options.added.ApplyTo(printer);
    const std::string serial = SerialNumberOf(printer);
    PrinterListFile file;
    file.Change([&](Printers& printers) {
        RefuseTwice(file, printers, serial);
        printers.push_back(printer);
    });
    Report(file, serial, " added");
}

// Changes a list that has the printer, if only because asking for one makes no folders.
void ChangePrinter(
    const PrintersOptions& options,
    const std::function<void(PrinterListFile&, Printers&, Printers::iterator)>& change,
    const char* what) {
    PrinterListFile file;
    if (!file.Read()) {
        FailToFindPrinter(file, options.chosen.serial);
    }
    file.Change([&](Printers& printers) {
        change(file, printers, FindPrinter(file, printers, options.chosen));
    });
    Report(file, options.chosen.serial, what);
}

void SetPrinter(const PrintersOptions& options) {
    if (options.changed.IsEmpty()) {
        throw UsageError("'set' needs an option that says what to change");
    }
    ChangePrinter(
        options,
        [&](const PrinterListFile& file, Printers& printers, Printers::iterator printer) {
            CCommonPrinterInfo changed = *printer;
            options.changed.ApplyTo(changed);
            const std::string serial = SerialNumberOf(changed);
            if (serial != options.chosen.serial) {
                RefuseTwice(file, printers, serial);
            }
            *printer = changed;
        },
        " changed");
}

void RemovePrinter(const PrintersOptions& options) {
    ChangePrinter(
        options,
        [](const PrinterListFile&, Printers& printers, Printers::iterator printer) {
            printers.erase(printer);
        },
        " removed");
}

}  // namespace

Command AddPrintersCommand(CLI::App& program) {
    const auto options = std::make_shared<PrintersOptions>();
    CLI::App* line =
        AddCommandLine(program, "printers", "List or change the printers that are managed.");
    line->require_subcommand(1);
    const auto add = [&](const char* name, const char* meaning) {
        CLI::App* command = AddCommandLine(*line, name, meaning);
        command->footer("Exit codes: 0 done, 1 failed or no such printer, 2 wrong usage.");
        return command;
    };
    const auto addReading = [&](const char* name, const char* meaning, const char* secrets) {
        CLI::App* command = add(name, meaning);
        command->add_flag("--json", options->json, "Print an object for programs.");
        command->add_flag("--show-secrets", options->showSecrets, secrets);
        return command;
    };
    const auto addSerial = [&](CLI::App* command) {
        const PrinterChoiceOptions given = AddPrinterChoice(*command, "SERIAL", options->chosen);
        given.serial->type_name("");
        command->callback([given] { given.Require(); });
        return command;
    };
    CLI::App* list = addReading("list", "List the printers.",
                                "With --json, print authentication information too.");
    CLI::App* show = addSerial(addReading("show", "Show all that is known of a printer.",
                                          "Show authentication information too."));
    CLI::App* added = add("add", "Add a printer to the list, which is made when missing.");
    options->added.AddTo(*added, true);
    CLI::App* set = addSerial(add("set",
                                  "Change what is given of a printer. An empty value clears "
                                  "a text."));
    options->changed.AddTo(*set, false);
    CLI::App* remove = addSerial(add("remove", "Remove a printer from the list."));
    return {line, RunOneOf({{list, [options] { ListPrinters(*options); }},
                            {show, [options] { ShowPrinter(*options); }},
                            {added, [options] { AddPrinter(*options); }},
                            {set, [options] { SetPrinter(*options); }},
                            {remove, [options] { RemovePrinter(*options); }}})};
}

}  // namespace tallyquist
