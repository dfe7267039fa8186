#include "host/data/PrinterListFile.h"

#include <cerrno>
#include <filesystem>
#include <memory>
#include <utility>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/xmlpxd/OpenedXml.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"
#include "host/common/Errors.h"
#include "host/common/LibraryOutput.h"
#include "host/common/Printable.h"
#include "host/data/KeepOriginal.h"
#include "host/settings/FolderLock.h"
#include "host/settings/SaveFault.h"
#include "host/settings/XmlFile.h"

namespace tallyquist {
namespace {

// Reads a printer list as CCommonXmlPxd::GetPrinterList does, but says what is wrong where that
// gives up, and does not take what follows a printer for one.
class Reader {
public:
    // `path` names a file whose root is that of a printer list.
    Reader(XmlLayer& xml, const std::string& path)
        : m_xml(xml), m_shown(Visible(path)), m_file(xml, path) {
        if (m_file.Root() == nullptr) {
            throw CommandError("cannot read " + m_shown);
        }
    }

    Printers ReadAll() {
        const unsigned int count = Count();
        Printers printers;
        while (printers.size() < count && ReadNext(printers)) {
        }
        if (printers.size() != count) {
            throw CommandError(m_shown +
                               ": a printer does not lie right below 'printer_list', so that "
                               "programs do not find the printers");
        }
        return printers;
    }

private:
    struct Release {
        XmlLayer* xml;
        void operator()(CCommonXmlPxdElementData* first) const { xml->releaseElementData(first); }
    };

    unsigned int Count() {
        unsigned int err = XMLPXD_OK;
        const XmlNode list(m_xml.Parser(),
                           m_xml.SearchElement(m_file.Root(), XMLTAG_PRN_PRINTER_LIST, &err));
        if (!list) {
            throw CommandError(m_shown + ": programs find no 'printer_list' in it");
        }
        const unsigned int count =
            m_xml.GetElementNumber(list.Get(), m_xml.Names().at(XMLTAG_PRN_PRINTER), &err);
        if (err != XMLPXD_OK) {
            throw CommandError("cannot read " + m_shown);
        }
        return count;
    }

    // False at the end.
    bool ReadNext(Printers& printers) {
        CCommonXmlPxdElementData* first = nullptr;
        unsigned int err = XMLPXD_OK;
        XmlNode printer(m_xml.Parser(),
                        m_xml.GetPrinterElements(printers.empty() ? m_file.Root() : m_last.Get(),
                                                 printers.empty(), &first, &err));
        const std::unique_ptr<CCommonXmlPxdElementData, Release> elements(first, Release{&m_xml});
        if (err != XMLPXD_OK) {
            throw CommandError(
                m_shown + ": programs read no printers, because in or before printer " +
                std::to_string(printers.size() + 1) + " stands an element that they do not know");
        }
        if (!printer) {
            return false;
        }
        const std::string name = m_xml.NameOf(printer);
        if (name != m_xml.Names().at(XMLTAG_PRN_PRINTER)) {
            throw CommandError(m_shown + ": 'printer_list' holds " + Printable(name) +
                               ", which programs take for a printer");
        }
        CCommonPrinterInfo& record = printers.emplace_back();
        if (elements != nullptr) {
            m_xml.SetPrinterData(*elements, record);
        }
        m_last = std::move(printer);
        return true;
    }

    XmlLayer& m_xml;
    std::string m_shown;
    xmlpxd::OpenedXml m_file;
    XmlNode m_last;  // the printer that was read last
};

std::string PathFromSettings(XmlLayer& xml) {
    std::string path;
    if (!xml.GetPrinterListFilePath(&path)) {
        throw CommandError("the system settings do not tell where the printer list lies");
    }
    return path;
}

}  // namespace

PrinterListFile::PrinterListFile() {
    const LibraryOutput quiet;
    m_xml.Bind();
    m_path = PathFromSettings(m_xml);
}

std::optional<Printers> PrinterListFile::Read() {
    const LibraryOutput quiet;
    if (!OpenXmlFile(m_xml, XMLTAG_PRN_MNGPRINTER, m_path)) {
        return std::nullopt;
    }
    return Reader(m_xml, m_path).ReadAll();
}

void PrinterListFile::Change(const std::function<void(Printers&)>& change) {
    const FolderLock turn(std::filesystem::path(m_path).parent_path().string());
    const Printers unchanged = Read().value_or(Printers());
    Printers changed = unchanged;
    change(changed);
    KeepOriginal(m_path, [&](const std::string& target) { Write(unchanged, target); });
    Write(changed, m_path);
}

void PrinterListFile::Write(const Printers& printers, const std::string& target) {
    const LibraryOutput quiet;
    errno = 0;
    if (m_xml.CreatePrinterListFile(target, printers) == printers.size()) {
        return;
    }
    const int reason = errno;
    m_xml.CloseXml();
    const std::string base = GetPluginResourcesPath() + "/xmls/PrinterListBase.xml";
    if (!OpenXmlFile(m_xml, XMLTAG_PRN_MNGPRINTER, base)) {
        throw CommandError(Visible(base) + " is missing");
    }
    throw CannotWrite(m_path, reason);
}

}  // namespace tallyquist
