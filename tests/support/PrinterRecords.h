// Printer records for tests: what files tell of a printer as a list of texts, and a filled record.
#pragma once

#include <string>
#include <vector>

#include "CostCountCommon/CommonPrinterInfo.h"

struct PrinterText {
    void (CCommonPrinterInfo::*get)(std::string*) const;
    void (CCommonPrinterInfo::*set)(std::string);
};

inline constexpr PrinterText PRINTER_TEXTS[] = {
    {&CCommonPrinterInfo::GetModelName, &CCommonPrinterInfo::SetModelName},
    {&CCommonPrinterInfo::GetSerialNumber, &CCommonPrinterInfo::SetSerialNumber},
    {&CCommonPrinterInfo::GetMacAddress, &CCommonPrinterInfo::SetMacAddress},
    {&CCommonPrinterInfo::GetPortNumber, &CCommonPrinterInfo::SetPortNumber},
    {&CCommonPrinterInfo::GetPortType, &CCommonPrinterInfo::SetPortType},
    {&CCommonPrinterInfo::GetOXALServices, &CCommonPrinterInfo::SetOXALServices},
    {&CCommonPrinterInfo::GetFriendlyName, &CCommonPrinterInfo::SetFriendlyName},
    {&CCommonPrinterInfo::GetAuthInfo, &CCommonPrinterInfo::SetAuthInfo},
    {&CCommonPrinterInfo::GetAdditionalInfo, &CCommonPrinterInfo::SetAdditionalInfo},
    {&CCommonPrinterInfo::GetPrinterCycleAcquisition,
     &CCommonPrinterInfo::SetPrinterCycleAcquisition},
    {&CCommonPrinterInfo::GetRegist, &CCommonPrinterInfo::SetRegist},
};

// Names and languages slot by slot, the texts of the table, the rest.
inline std::vector<std::string> PrinterFields(const CCommonPrinterInfo& printer) {
    std::vector<std::string> fields;
    for (unsigned int slot = 0; slot < CCommonPrinterInfo::NAMES; ++slot) {
        printer.GetPrinterName(&fields.emplace_back(), slot);
        printer.GetLanguage(&fields.emplace_back(), slot);
    }
    for (const PrinterText& text : PRINTER_TEXTS) {
        (printer.*text.get)(&fields.emplace_back());
    }
    printer.GetTrackingName(&fields.emplace_back());
    fields.emplace_back(printer.GetExistTrackingName() ? "true" : "false");
    fields.push_back(std::to_string(printer.GetLocationId()));
    fields.push_back(std::to_string(printer.GetNicIndex()));
    fields.push_back(std::to_string(printer.GetPrinterTick()));
    return fields;
}

// Every text is `mark` and a number of its own.
inline CCommonPrinterInfo FilledPrinter(const std::string& mark) {
    CCommonPrinterInfo printer;
    int texts = 0;
    const auto next = [&] { return mark + std::to_string(++texts); };
    for (unsigned int slot = 0; slot < CCommonPrinterInfo::NAMES; ++slot) {
        printer.SetPrinterName(next(), slot);
        printer.SetLanguage(next(), slot);
    }
    for (const PrinterText& text : PRINTER_TEXTS) {
        (printer.*text.set)(next());
    }
    printer.SetTrackingName(next());
    printer.SetExistTrackingName(true);
    printer.SetLocationId(4294967295);
    printer.SetNicIndex(-1);
    printer.SetPrinterTick(-2147483647 - 1);
    return printer;
}
