// What a printer record holds, as the command line takes it and as results show it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "CostCountCommon/CommonPrinterInfo.h"
#include "host/common/Command.h"
#include "host/common/Json.h"
#include "host/data/ArgumentChecks.h"

namespace tallyquist {

std::string SerialNumberOf(const CCommonPrinterInfo& printer);

// The first name, else the friendly name.
std::string ShownNameOf(const CCommonPrinterInfo& printer);

// All fields, called as in the file. Authentication information only with `showSecrets`.
Json JsonOf(const CCommonPrinterInfo& printer, bool showSecrets);
std::string TableOf(const CCommonPrinterInfo& printer, bool showSecrets);

// Throws UsageError for what is no MAC address; an empty one is taken.
void SetMacAddress(CCommonPrinterInfo& printer, const Argument& argument);

// The options that set fields.
class PrinterArguments {
public:
    // `isNew`: for a printer that does not exist yet; some options are then required, and none may
    // be empty. The object outlives the line.
    void AddTo(CLI::App& line, bool isNew);

    bool IsEmpty() const { return m_values.empty() && m_names.empty() && !m_dropTrackingName; }

    // Sets the fields that are given. Throws UsageError for what makes no sense; then the record is
    // of no more use.
    void ApplyTo(CCommonPrinterInfo& printer) const;

private:
    void ApplyNamesTo(CCommonPrinterInfo& printer) const;

    std::map<std::string, std::string> m_values;  // by option
    std::vector<std::string> m_names;             // LANG=TEXT
    bool m_isNew = false;
    bool m_dropTrackingName = false;
};

}  // namespace tallyquist
