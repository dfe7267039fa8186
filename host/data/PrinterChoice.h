// The choice of one printer of the printer list on a command line.
#pragma once

#include <string>

#include "host/common/Command.h"
#include "host/data/PrinterListFile.h"

namespace tallyquist {

struct PrinterChoice {
    std::string serial;
    unsigned int nth = 0;  // of those with that serial number; 0: there is only one
};

// The options that choose.
struct PrinterChoiceOptions {
    CLI::Option* serial;
    CLI::Option* nth;

    bool IsGiven() const { return serial->count() != 0 || nth->count() != 0; }
    // For the line's callback: throws CLI::RequiredError without a choice.
    void Require() const;
};

// `serialName` is what the line calls the serial number. `choice` outlives the line.
PrinterChoiceOptions AddPrinterChoice(CLI::App& line, const char* serialName,
                                      PrinterChoice& choice);

// Other programs may list printers of one serial number, or without any; none of them is guessed
// at. Throws CommandError.
Printers::iterator FindPrinter(const PrinterListFile& file, Printers& printers,
                               const PrinterChoice& choice);

// Throws the CommandError of a serial number that no printer has.
[[noreturn]] void FailToFindPrinter(const PrinterListFile& file, const std::string& serial);

}  // namespace tallyquist
