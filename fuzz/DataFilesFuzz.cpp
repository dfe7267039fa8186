// Any bytes as each of the data files: read what there is and give it back. Printers that were read
// must be the same after they were written and read again.
#include <filesystem>
#include <list>
#include <string>
#include <utility>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/CommonXMLPxd.h"
#include "fuzz/Fuzz.h"
#include "tests/support/PrinterRecords.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr const char* SYSTEM_SETTINGS = "CMSystemSetting.cfg";

using Printers = std::list<CCommonPrinterInfo>;

class DataFiles {
public:
    DataFiles() {
        const std::string contents = ApplicationContents();
        setenv("TALLYQUIST_CONTENTS", contents.c_str(), 1);
        setenv("XDG_DATA_HOME", m_folder.Path().c_str(), 1);
        Write("");
        Link(FolderOf(MANAGEMENT_DATA_PRINTER_CAPS, "/PrinterCaps/") + "caps");
        Link(FolderOf(MANAGEMENT_DATA_SYSTEM_SETTING, "/") + SYSTEM_SETTINGS);
        Link(m_folder.Path() + CCommonUtility::GetDBSettingsFileName());
        Check(m_xml.InitializeXmlPxd(SYSTEM_SETTINGS, contents, "/PlugIns/zopmekxmlpxd.plugin",
                                     true));
    }

    void Write(const std::string& bytes) const { WriteFile(m_path, bytes); }

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

    // The user's copy counts; what it lacks is in the installed one.
    void ReadSystemSettings() {
        void* document = nullptr;
        void* root = m_xml.OpenXml(m_path, &document);
        for (const unsigned int tag : {XMLTAG_SYS_BASECYCLE, XMLTAG_SYS_USBRETRYCOUNT}) {
            std::string value;
            std::string own;
            unsigned int err = 0;
            Check(m_xml.GetElementValueSysCommSettingFile(tag, &value));
            Check(
                !m_xml.GetElementValueWithSearch(root, static_cast<int>(tag), false, &own, &err) ||
                value == own);
        }
        m_xml.DeleteNode(root);
        m_xml.CloseXml(document);
    }

    void ReadDbSettings() {
        std::string path = "earlier";
        std::string volume = "earlier";
        const bool isRead = m_xml.GetDBSetting(m_folder.Path(), &path, &volume);
        if (!isRead) {
            Check(path == "earlier" && volume == "earlier");
            return;
        }
        const std::string copies = m_folder.Path("copies");
        std::filesystem::create_directory(copies);
        const bool isWritten = m_xml.CreateDBSettingFile(copies, path, volume) == 0;
        Check(isWritten == (!path.empty() && !volume.empty()));
        std::string pathAgain;
        std::string volumeAgain;
        Check(!isWritten || (m_xml.GetDBSetting(copies, &pathAgain, &volumeAgain) &&
                             pathAgain == path && volumeAgain == volume));
    }

private:
    static std::string FolderOf(MANAGEMENT_DATA_TYPE kind, const char* below) {
        std::string folder;
        Check(CCommonUtility::GetDataFolderBase(kind, &folder));
        std::filesystem::create_directories(folder.append(below));
        return folder;
    }

    // The file has that name too.
    void Link(const std::string& name) const { std::filesystem::create_hard_link(m_path, name); }

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
    files.Write(TextOf(data, size));
    files.ReadPrinters();
    files.ReadOthers();
    files.ReadSystemSettings();
    files.ReadDbSettings();
    return 0;
}
