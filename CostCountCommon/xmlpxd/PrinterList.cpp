// The printer list. Its external interface is the part of that name of CCommonXmlPxd.
#include <exception>
#include <list>
#include <new>
#include <string>
#include <utility>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/xmlpxd/ElementChain.h"
#include "CostCountCommon/xmlpxd/ElementWriter.h"
#include "CostCountCommon/xmlpxd/NumberOf.h"
#include "CostCountCommon/xmlpxd/OpenedXml.h"
#include "CostCountCommon/xmlpxd/Print.h"
#include "CostCountCommon/xmlpxd/PrinterTexts.h"

namespace {

using xmlpxd::CurrentXml;
using xmlpxd::ElementChain;
using xmlpxd::ElementWriter;
using xmlpxd::FAILED;
using xmlpxd::NamesRow;
using xmlpxd::NewItem;
using xmlpxd::NumberOf;
using xmlpxd::OpenedXml;
using xmlpxd::Print;
using xmlpxd::PrinterDecimal;
using xmlpxd::PrinterText;
using xmlpxd::XmlNode;
using xmlpxd::XmlSource;

constexpr const char* SOURCE = "CommonXmlPxd";

constexpr const char* TEMPLATE = "/xmls/PrinterListBase.xml";

// A port of this type is told by the printer's host name, which the record keeps as its port
// number and the file as an attribute.
constexpr const char* BONJOUR = "bonjour";

// --- Elements and attributes with their fields ---

template <void (CCommonPrinterInfo::*Set)(std::string)>
void SetText(CCommonPrinterInfo& printer, const std::string& text) {
    (printer.*Set)(text);
}

template <void (CCommonPrinterInfo::*Set)(int)>
void SetNumber(CCommonPrinterInfo& printer, const std::string& text) {
    (printer.*Set)(NumberOf(text));
}

void SetLocationId(CCommonPrinterInfo& printer, const std::string& text) {
    printer.SetLocationId(static_cast<unsigned int>(NumberOf(text)));
}

struct Row {
    NewItem item;
    std::string (*get)(const CCommonPrinterInfo& printer);
    void (*set)(CCommonPrinterInfo& printer, const std::string& text);
};

constexpr Row ROWS_BEFORE_PORT[] = {
    {{XMLTAG_PRN_MODEL_NAME, "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <model_name>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <model_name>"},
     PrinterText<&CCommonPrinterInfo::GetModelName>,
     SetText<&CCommonPrinterInfo::SetModelName>},
    {{XMLTAG_PRN_SERIAL_NUMBER,
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <serial_number>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <serial_number>"},
     PrinterText<&CCommonPrinterInfo::GetSerialNumber>,
     SetText<&CCommonPrinterInfo::SetSerialNumber>},
    {{XMLTAG_PRN_MAC_ADDRESS, "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <mac_address>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <mac_address>"},
     PrinterText<&CCommonPrinterInfo::GetMacAddress>,
     SetText<&CCommonPrinterInfo::SetMacAddress>},
};

constexpr Row PORT_ATTRIBUTES[] = {
    {{XMLTAG_ATTR_TYPE, "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <port type ATTR>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  SetAttribute <port type ATTR>"},
     PrinterText<&CCommonPrinterInfo::GetPortType>,
     SetText<&CCommonPrinterInfo::SetPortType>},
    {{XMLTAG_ATTR_LOCATION_ID,
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <port location_id ATTR>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  SetAttribute <port location_id ATTR>"},
     PrinterDecimal<&CCommonPrinterInfo::GetLocationId>,
     SetLocationId},
    {{XMLTAG_ATTR_NIC_INDEX,
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <port nic_index ATTR>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  SetAttribute <port nic_index ATTR>"},
     PrinterDecimal<&CCommonPrinterInfo::GetNicIndex>,
     SetNumber<&CCommonPrinterInfo::SetNicIndex>},
};

constexpr Row ROWS_AFTER_PORT[] = {
    {{XMLTAG_PRN_SUPPORT_OXAL_SERVICE,
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <support_oxal_service>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <support_oxal_service>"},
     PrinterText<&CCommonPrinterInfo::GetOXALServices>,
     SetText<&CCommonPrinterInfo::SetOXALServices>},
    {{XMLTAG_PRN_FRIENDLY_NAME,
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <friendly_name>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <friendly_name>"},
     PrinterText<&CCommonPrinterInfo::GetFriendlyName>,
     SetText<&CCommonPrinterInfo::SetFriendlyName>},
    {{XMLTAG_PRN_AUTH_INFO, "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <auth_info>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <auth_info>"},
     PrinterText<&CCommonPrinterInfo::GetAuthInfo>,
     SetText<&CCommonPrinterInfo::SetAuthInfo>},
    {{XMLTAG_PRN_ADDITIONAL_INFO,
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <additional_info>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <additional_info>"},
     PrinterText<&CCommonPrinterInfo::GetAdditionalInfo>,
     SetText<&CCommonPrinterInfo::SetAdditionalInfo>},
    {{XMLTAG_PRN_CYCLE_TIME, "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <cycle_time>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <cycle_time>"},
     PrinterDecimal<&CCommonPrinterInfo::GetPrinterTick>,
     SetNumber<&CCommonPrinterInfo::SetPrinterTick>},
    {{XMLTAG_PRN_CYCLE_ACQUISITION,
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <cycle_acquisition>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <cycle_acquisition>"},
     PrinterText<&CCommonPrinterInfo::GetPrinterCycleAcquisition>,
     SetText<&CCommonPrinterInfo::SetPrinterCycleAcquisition>},
    {{XMLTAG_PRN_REGIST_PRINTER,
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <regist_printer>",
      "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <regist_printer>"},
     PrinterText<&CCommonPrinterInfo::GetRegist>,
     SetText<&CCommonPrinterInfo::SetRegist>},
};

constexpr NewItem PRINTER = {XMLTAG_PRN_PRINTER,
                             "CCommonXmlPxd::CreatePrinterListFile() ERROR:  m_XmlTagIDs.end()",
                             "CCommonXmlPxd::CreatePrinterListFile() ERROR:  <printer>"};
constexpr NamesRow NAME = {
    {XMLTAG_PRN_NAME, "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <lang name>",
     "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <lang name>"},
    {XMLTAG_ATTR_LANG, "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <lang ATTR>",
     "CCommonXmlPxd::CreatePrinterListFile() ERROR:  SetAttribute <lang ATTR>"}};
constexpr NewItem PORT = {
    XMLTAG_PRN_PORT, "CCommonXmlPxd::CreatePrinterListFile() ERROR:  find <port type>",
    "CCommonXmlPxd::CreatePrinterListFile() ERROR:  CreateElementWithValue <port type>"};

// --- Writing ---

class PrinterWriter {
public:
    PrinterWriter(const ElementWriter& writer, const XMLPXD_FUNCLIST& functions)
        : m_writer(writer), m_functions(functions) {}

    bool Write(const XmlNode& list, const CCommonPrinterInfo& printer) const {
        const XmlNode element = m_writer.Element(list, PRINTER);
        return element && WriteNames(element, printer) &&
               WriteRows(element, ROWS_BEFORE_PORT, printer) && WritePort(element, printer) &&
               WriteRows(element, ROWS_AFTER_PORT, printer);
    }

private:
    template <size_t N>
    bool WriteRows(const XmlNode& element, const Row (&rows)[N],
                   const CCommonPrinterInfo& printer) const {
        for (const Row& row : rows) {
            if (!m_writer.Text(element, row.item, row.get(printer))) {
                return false;
            }
        }
        return true;
    }

    // The first empty name ends them, whatever later slots hold.
    bool WriteNames(const XmlNode& element, const CCommonPrinterInfo& printer) const {
        for (unsigned int slot = 0; slot < CCommonPrinterInfo::NAMES; ++slot) {
            if (!m_writer.IsKnown(NAME.name)) {
                return false;
            }
            std::string name;
            std::string language;
            printer.GetPrinterName(&name, slot);
            printer.GetLanguage(&language, slot);
            if (name.empty()) {
                break;
            }
            if (!m_writer.Name(element, NAME, name, language)) {
                return false;
            }
        }
        return true;
    }

    bool WritePort(const XmlNode& element, const CCommonPrinterInfo& printer) const {
        const std::string number = PrinterText<&CCommonPrinterInfo::GetPortNumber>(printer);
        const bool isBonjour = PrinterText<&CCommonPrinterInfo::GetPortType>(printer) == BONJOUR;
        const XmlNode port = m_writer.Text(element, PORT, isBonjour ? std::string() : number);
        if (!port) {
            return false;
        }
        for (const Row& row : PORT_ATTRIBUTES) {
            if (!m_writer.Attribute(port, row.item, row.get(printer))) {
                return false;
            }
        }
        WriteTrackingName(port, printer);
        if (isBonjour) {
            WriteHostName(port, number);
        }
        return true;
    }

    // A tracking name that cannot be written is deliberately passed over in silence.
    void WriteTrackingName(const XmlNode& port, const CCommonPrinterInfo& printer) const {
        const std::string* attribute = m_writer.NameOf(XMLTAG_ATTR_TRACKING_NAME);
        if (printer.GetExistTrackingName() && attribute != nullptr) {
            xmlpxd::SetAttribute(m_functions, port.Get(), *attribute,
                                 PrinterText<&CCommonPrinterInfo::GetTrackingName>(printer));
        }
    }

    // A host name that cannot be written is deliberately logged and no more.
    void WriteHostName(const XmlNode& port, const std::string& hostName) const {
        const std::string* attribute = m_writer.NameOf(XMLTAG_ATTR_HOST_NAME);
        if (attribute == nullptr) {
            LibLogger().WriteLog(
                SOURCE, __LINE__, 'e', 0,
                "CCommonXmlPxd::CreatePrinterListFile() ERROR: find <host_name ATTR>");
            return;
        }
        const unsigned int err =
            xmlpxd::SetAttribute(m_functions, port.Get(), *attribute, hostName);
        if (err != XMLPXD_OK) {
            LibLogger().WriteLog(
                SOURCE, __LINE__, 'e', err,
                "CCommonXmlPxd::CreatePrinterListFile() ERROR: SetAttribute <port host_name ATTR>");
        }
    }

    const ElementWriter& m_writer;
    const XMLPXD_FUNCLIST& m_functions;
};

// --- Reading ---

template <size_t N>
bool TakeRow(const Row (&rows)[N], unsigned int tag, const std::string& text,
             CCommonPrinterInfo& printer) {
    for (const Row& row : rows) {
        if (row.item.tag == tag) {
            row.set(printer, text);
            return true;
        }
    }
    return false;
}

// Gives the attributes to use(tag, value), in order, but those without a name. The lists of an
// element that a caller made up may differ in length.
template <typename Use>
void ForEachAttribute(const CCommonXmlPxdElementData& element, Use use) {
    auto tag = element.m_AttributeIDs.begin();
    auto value = element.m_AttributeValues.begin();
    for (const std::string& name : element.m_AttributeNames) {
        if (tag == element.m_AttributeIDs.end() || value == element.m_AttributeValues.end()) {
            return;
        }
        if (!name.empty()) {
            use(*tag, *value);
        }
        ++tag;
        ++value;
    }
}

const std::string& TextOf(const CCommonXmlPxdElementData& element) {
    static const std::string NONE;
    return element.m_Values.empty() ? NONE : element.m_Values.front();
}

void TakeName(const CCommonXmlPxdElementData& element, unsigned int slot,
              CCommonPrinterInfo& printer) {
    printer.SetPrinterName(TextOf(element), slot);
    // Only the first attribute may tell the language.
    const bool hasLanguage =
        !element.m_AttributeNames.empty() && !element.m_AttributeNames.front().empty() &&
        !element.m_AttributeIDs.empty() && element.m_AttributeIDs.front() == XMLTAG_ATTR_LANG;
    if (hasLanguage && !element.m_AttributeValues.empty()) {
        printer.SetLanguage(element.m_AttributeValues.front(), slot);
    }
}

void TakePort(const CCommonXmlPxdElementData& element, CCommonPrinterInfo& printer) {
    printer.SetPortNumber(TextOf(element));
    std::string type;
    std::string hostName;
    ForEachAttribute(element, [&](unsigned int tag, const std::string& value) {
        if (tag == XMLTAG_ATTR_TRACKING_NAME) {
            printer.SetTrackingName(value);
            printer.SetExistTrackingName(true);
        } else if (tag == XMLTAG_ATTR_HOST_NAME) {
            hostName = value;
        } else {
            TakeRow(PORT_ATTRIBUTES, tag, value, printer);
        }
        if (tag == XMLTAG_ATTR_TYPE) {
            type = value;
        }
    });
    if (type == BONJOUR) {
        printer.SetPortNumber(std::move(hostName));
    }
}

void TakeElements(const CCommonXmlPxdElementData& first, CCommonPrinterInfo& printer) {
    unsigned int slot = 0;
    for (const CCommonXmlPxdElementData* element = &first; element != nullptr;
         element = element->m_Next) {
        if (element->m_ElementID == XMLTAG_PRN_NAME) {
            TakeName(*element, slot++, printer);
        } else if (element->m_ElementID == XMLTAG_PRN_PORT) {
            TakePort(*element, printer);
        } else if (!TakeRow(ROWS_BEFORE_PORT, element->m_ElementID, TextOf(*element), printer)) {
            TakeRow(ROWS_AFTER_PORT, element->m_ElementID, TextOf(*element), printer);
        }
    }
}

// A chain that is being read.
class PrinterChain {
public:
    PrinterChain() = default;
    ~PrinterChain() {
        while (m_first != nullptr) {
            delete std::exchange(m_first, m_first->GetNextPrinterInfo());
        }
    }
    PrinterChain(const PrinterChain&) = delete;
    PrinterChain& operator=(const PrinterChain&) = delete;

    // A new last record; null when memory runs out.
    CCommonPrinterInfo* Add() {
        auto* const record = new (std::nothrow) CCommonPrinterInfo;
        if (m_last == nullptr) {
            m_first = record;
        } else {
            m_last->SetNextPrinterInfo(record);
        }
        return m_last = record;
    }
    [[nodiscard]] CCommonPrinterInfo* Release() { return std::exchange(m_first, nullptr); }

private:
    CCommonPrinterInfo* m_first = nullptr;
    CCommonPrinterInfo* m_last = nullptr;
};

}  // namespace

// Interfaces of the class take texts by value.
// NOLINTBEGIN(performance-unnecessary-value-param)
unsigned int CCommonXmlPxd::CreatePrinterListFile(
    std::string path, const std::list<CCommonPrinterInfo>& printers) try {
    if (m_FunctionsXmlPxd == nullptr) {
        return FAILED;
    }
    CurrentXml file(*this, TEMPLATE, XmlSource::TEMPLATE);
    if (file.Root() == nullptr) {
        Print("CCommonXmlPxd::CreatePrinterListFile() ERROR: OpenXml() PATH=%s\n", TEMPLATE);
        return FAILED;
    }
    unsigned int err = XMLPXD_OK;
    const XmlNode list(*m_FunctionsXmlPxd,
                       SearchParentElement(file.Root(), XMLTAG_PRN_PRINTER_LIST, &err));
    if (!list || err != XMLPXD_OK) {
        // The text names another element than the one that was looked for.
        Print(
            "CCommonXmlPxd::CreatePrinterListFile() ERROR: SearchParentElement(bntinfo) errCode=%u\n",
            err);
        return FAILED;
    }
    const ElementWriter elements(*this);
    const PrinterWriter writer(elements, *m_FunctionsXmlPxd);
    unsigned int count = 0;
    for (const CCommonPrinterInfo& printer : printers) {
        if (!writer.Write(list, printer)) {
            return FAILED;
        }
        ++count;
    }
    if (xmlpxd::Save(*m_FunctionsXmlPxd, m_document, path) != XMLPXD_OK) {
        file.LeaveOpen();
        return FAILED;
    }
    return count;
} catch (const std::exception&) {
    return FAILED;  // out of memory
}

bool CCommonXmlPxd::GetPrinterList(std::string path, CCommonPrinterInfo** head) try {
    if (m_FunctionsXmlPxd == nullptr || head == nullptr) {
        return false;
    }
    const OpenedXml file(*this, path);
    if (file.Root() == nullptr) {
        return false;
    }
    PrinterChain chain;
    CCommonPrinterInfo* printer = chain.Add();
    if (printer == nullptr) {
        return false;
    }
    unsigned int err = XMLPXD_OK;
    const unsigned int count = CountPrinters(file.Root(), &err);
    if (err != XMLPXD_OK || static_cast<int>(count) <= 0) {
        return err == XMLPXD_OK && count == 0;
    }
    *head = nullptr;
    XmlNode cursor;
    for (unsigned int i = 0; i < count; ++i) {
        printer = i == 0 ? printer : chain.Add();
        if (printer == nullptr) {
            return false;
        }
        ElementChain elements(*this);
        cursor = XmlNode(*m_FunctionsXmlPxd, GetPrinterElements(i == 0 ? file.Root() : cursor.Get(),
                                                                i == 0, elements.Out(), &err));
        if (!cursor || err != XMLPXD_OK) {
            // Fewer printers than were counted: those that lie within others are no part of a list.
            return err == XMLPXD_OK;
        }
        if (elements.First() != nullptr) {
            TakeElements(*elements.First(), *printer);
        }
    }
    *head = chain.Release();
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

// NOLINTEND(performance-unnecessary-value-param)

// How many printers the list below the root holds, 0 with an error when there is no list.
unsigned int CCommonXmlPxd::CountPrinters(void* root, unsigned int* err) {
    const auto printer = m_XmlTagIDs.find(XMLTAG_PRN_PRINTER);
    if (printer == m_XmlTagIDs.end()) {
        *err = XMLPXD_NOT_IN_CATALOGUE;
        return 0;
    }
    const XmlNode list(*m_FunctionsXmlPxd, SearchElement(root, XMLTAG_PRN_PRINTER_LIST, err));
    if (!list) {
        *err = *err == XMLPXD_OK ? XMLPXD_NO_SUCH_NODE : *err;
        return 0;
    }
    return GetElementNumber(list.Get(), printer->second, err);
}

void* CCommonXmlPxd::GetPrinterElements(void* node, bool first, CCommonXmlPxdElementData** elements,
                                        unsigned int* err) {
    if (elements != nullptr) {
        *elements = nullptr;
    }
    if (m_FunctionsXmlPxd == nullptr || node == nullptr || elements == nullptr || err == nullptr) {
        return nullptr;
    }
    const XMLPXD_FUNCLIST& functions = *m_FunctionsXmlPxd;
    XmlNode printer;
    if (first) {
        const XmlNode list(functions, SearchParentElement(node, XMLTAG_PRN_PRINTER_LIST, err));
        printer = XmlNode(functions, SearchElement(list.Get(), XMLTAG_PRN_PRINTER, err));
    } else {
        printer = xmlpxd::NodeFrom(functions, &XMLPXD_FUNCLIST::GetNextSibling, node, err);
        if (!printer && *err == XMLPXD_NO_SUCH_NODE) {
            *err = XMLPXD_OK;
        }
    }
    if (!printer || *err != XMLPXD_OK || !ReadElements(printer.Get(), elements, err)) {
        return nullptr;
    }
    return printer.Release();
}

void CCommonXmlPxd::SetPrinterData(const CCommonXmlPxdElementData& elements,
                                   CCommonPrinterInfo& printer) try {
    TakeElements(elements, printer);
} catch (const std::exception&) {
    return;  // out of memory: the rest of the record stays as it was
}
