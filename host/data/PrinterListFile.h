// The printer list: the file in which the application keeps the printers that it manages.
#pragma once

#include <functional>
#include <list>
#include <optional>
#include <string>

#include "CostCountCommon/CommonPrinterInfo.h"
#include "host/settings/XmlLayer.h"

namespace tallyquist {

using Printers = std::list<CCommonPrinterInfo>;

// Failures are CommandErrors that name the file.
class PrinterListFile {
public:
    // The file that the system settings name.
    PrinterListFile();

    const std::string& Path() const { return m_path; }

    // Nothing when there is no such file. What programs could not read, or would misread, is a
    // failure.
    std::optional<Printers> Read();

    // Reads, has the printers changed and writes them, all of it before anybody else's turn. A
    // missing file is an empty list, and is made with its folder. When `change` throws, or writing
    // fails, the file stays as it was.
    void Change(const std::function<void(Printers&)>& change);

private:
    void Write(const Printers& printers, const std::string& target);

    XmlLayer m_xml;
    std::string m_path;
};

}  // namespace tallyquist
