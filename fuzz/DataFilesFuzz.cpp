// Any bytes as each of the data files: read what there is and give it back. Printers that were read
// must be the same after they were written and read again.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <list>
#include <string>
#include <utility>

#include "CostCountCommon/CommonXMLPxd.h"
#include "tests/support/PrinterRecords.h"
#include "tests/support/TempFolder.h"

namespace {

using Printers = std::list<CCommonPrinterInfo>;

void Check(bool condition) {
    if (!condition) {
        std::abort();
    }
}

class DataFiles {
public:
    DataFiles() {
        // The application in the build tree, beside this program's folder.
        const auto program = std::filesystem::read_symlink("/proc/self/exe");
        const std::string contents =
            program.parent_path().parent_path() / "Tallyquist.app/Contents";
        setenv("TALLYQUIST_CONTENTS", contents.c_str(), 1);
        setenv("XDG_DATA_HOME", m_folder.Path().c_str(), 1);
        std::filesystem::create_directories(Capabilities());
        std::filesystem::create_hard_link(Write(""), Capabilities() + "/caps");
        Check(m_xml.InitializeXmlPxd("settings", contents, "/PlugIns/zopmekxmlpxd.plugin", true));
    }

    const std::string& Write(const std::string& bytes) const {
        WriteFile(m_path, bytes);
        return m_path;
    }

    void ReadPrinters() {
        Printers printers;
        if (!ReadList(m_path, &printers)) {
            return;
        }
        // Names behind an empty one are not written.
        for (CCommonPrinterInfo& printer : printers) {
            bool isWritten = true;
            for (unsigned int slot = 0; slot < CCommonPrinterInfo::NAMES; ++slot) {
                std::string name;
                printer.GetPrinterName(&name, slot);
                isWritten = isWritten && !name.empty();
                if (!isWritten) {
                    printer.SetPrinterName("", slot);
                    printer.SetLanguage("", slot);
                }
            }
        }
        const std::string copy = m_folder.Path("copy");
        Check(m_xml.CreatePrinterListFile(copy, printers) == printers.size());
        Printers again;
        Check(ReadList(copy, &again) && again.size() == printers.size());
        for (const CCommonPrinterInfo& printer : printers) {
            Check(PrinterFields(printer) == PrinterFields(again.front()));
            again.pop_front();
        }
    }

    void ReadOthers() {
        std::string name = "file";
        CCommonXmlPxdDataUnitCost cost;
        const bool isOpened = m_xml.GetUnitCost(name, m_folder.Path(), cost);
        name = ":caps";
        CCommonXmlPxdDataPrinterCaps caps;
        Check(m_xml.GetPrinterCaps(name, caps) == isOpened && name == "caps");

        void* document = nullptr;
        void* root = m_xml.OpenXml(m_path, &document);
        Check((root != nullptr) == isOpened);
        CCommonXmlPxdDataUserSettings settings;
        m_xml.GetUserSetting_Scales(settings, root);
        m_xml.GetUserSetting_JobCostList(settings, root);
        m_xml.GetUserSetting_FilterConditon(settings, root);
        m_xml.DeleteNode(root);
        m_xml.CloseXml(document);
    }

private:
    std::string Capabilities() const { return m_folder.Path("Norvane/Tallyquist/PrinterCaps"); }

    bool ReadList(const std::string& path, Printers* printers) {
        CCommonPrinterInfo* head = nullptr;
        const bool isRead = m_xml.GetPrinterList(path, &head);
        Check(isRead || head == nullptr);
        while (head != nullptr) {
            printers->push_back(*head);
            delete std::exchange(head, head->GetNextPrinterInfo());
        }
        return isRead;
    }

    const TempFolder m_folder;
    const std::string m_path = m_folder.Path("file");
    CCommonXmlPxd m_xml;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static DataFiles files;
    files.Write(std::string(reinterpret_cast<const char*>(data), size));
    files.ReadPrinters();
    files.ReadOthers();
    return 0;
}
