#include "host/data/PrinterChoice.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "host/common/Errors.h"
#include "host/common/Printable.h"
#include "host/data/PrinterFields.h"

namespace tallyquist {

void PrinterChoiceOptions::Require() const {
    if (!IsGiven()) {
        throw CLI::RequiredError(serial->get_name());
    }
}

PrinterChoiceOptions AddPrinterChoice(CLI::App& line, const char* serialName,
                                      PrinterChoice& choice) {
    CLI::Option* serial =
        line.add_option(serialName, choice.serial,
                        "The printer's serial number; may be left out with --nth.")
            ->type_name("SERIAL")
            ->check(NotEmpty());
    CLI::Option* nth =
        line.add_option("--nth", choice.nth,
                        "Which one of several of that serial number, or of those without one, "
                        "in the order of the list.")
            ->option_text("NUMBER")
            ->check(CLI::Range(1U, std::numeric_limits<unsigned int>::max()));
    return {serial, nth};
}

Printers::iterator FindPrinter(const PrinterListFile& file, Printers& printers,
                               const PrinterChoice& choice) {
    std::vector<Printers::iterator> found;
    for (auto printer = printers.begin(); printer != printers.end(); ++printer) {
        if (SerialNumberOf(*printer) == choice.serial) {
            found.push_back(printer);
        }
    }
    if (found.empty()) {
        FailToFindPrinter(file, choice.serial);
    }
    if (choice.nth == 0 ? found.size() > 1 : choice.nth > found.size()) {
        throw CommandError(Visible(file.Path()) + ": " + std::to_string(found.size()) +
                           (found.size() > 1 ? " printers have" : " printer has") +
                           " the serial number " + Printable(choice.serial) +
                           "; --nth tells which one, in the order of 'tallyquist printers list'");
    }
    return found.at(std::max(choice.nth, 1U) - 1);
}

void FailToFindPrinter(const PrinterListFile& file, const std::string& serial) {
    throw CommandError(Visible(file.Path()) + ": no printer has the serial number " +
                       Printable(serial));
}

}  // namespace tallyquist
