// A printer's values as files and messages have them.
#pragma once

#include <string>

#include "CostCountCommon/CommonPrinterInfo.h"

namespace xmlpxd {

// `Get` is the record's getter of a text.
template <void (CCommonPrinterInfo::*Get)(std::string*) const>
std::string PrinterText(const CCommonPrinterInfo& printer) {
    std::string text;
    (printer.*Get)(&text);
    return text;
}

// `Get` is the record's getter of a number.
template <auto Get>
std::string PrinterDecimal(const CCommonPrinterInfo& printer) {
    return std::to_string((printer.*Get)());
}

}  // namespace xmlpxd
