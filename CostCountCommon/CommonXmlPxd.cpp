// Binding to the parser plug-in, opening and closing documents. Its external interface is the
// binding and document parts of CCommonXmlPxd.
#include <cstring>
#include <exception>
#include <new>
#include <utility>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"
#include "compatible/osFree.h"

namespace {

using xmlpxd::XmlDocument;
using xmlpxd::XmlNode;

constexpr const char* SOURCE = "CommonXmlPxd";

}  // namespace

CCommonXmlPxd::~CCommonXmlPxd() {
    FinishXmlPxd();
}

const char* CCommonXmlPxd::getBNTCmdBase() const {
    return "/xmls/BNTCmdBase.xml";
}

// Interfaces of the class take texts by value.
// NOLINTBEGIN(performance-unnecessary-value-param)
bool CCommonXmlPxd::InitializeXmlPxd(std::string systemSettingPath, std::string installPath,
                                     std::string parserPath, bool joinPaths) try {
    if (systemSettingPath.empty()) {
        return false;
    }
    m_systemSettingFile.swap(systemSettingPath);  // deliberately also when the rest is refused
    if (installPath.empty() || m_library != nullptr || m_FunctionsXmlPxd != nullptr) {
        return false;
    }
    m_library = LoadLibrary((joinPaths ? installPath + parserPath : parserPath).c_str());
    if (m_library == nullptr || m_document != nullptr) {
        return false;
    }
    LoadAPIsXmlPxd();
    CreateMapSystemCommonSettingTags();
    CreateMapCommandKeys();
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}
// NOLINTEND(performance-unnecessary-value-param)

void CCommonXmlPxd::LoadAPIsXmlPxd() try {
    m_FunctionsXmlPxd.reset(new (std::nothrow) XMLPXD_FUNCLIST());
    if (m_FunctionsXmlPxd == nullptr) {
        return;
    }
    for (const XmlPxdEntry& entry : XMLPXD_LOAD_ORDER) {
        void* function = GetProcAddress(m_library, entry.name);
        if (function == nullptr) {
            if (entry.missing != nullptr) {
                LibLogger().WriteLog(SOURCE, __LINE__, 'e', GetLastError(), "%s", entry.missing);
            }
            return;
        }
        std::memcpy(reinterpret_cast<char*>(m_FunctionsXmlPxd.get()) + entry.offset, &function,
                    sizeof function);
    }
} catch (const std::exception&) {
    m_FunctionsXmlPxd.reset();  // out of memory
}

void CCommonXmlPxd::FinishXmlPxd() {
    CloseXml();
    m_FunctionsXmlPxd.reset();
    if (m_library != nullptr) {
        FreeLibrary(m_library);
        m_library = nullptr;
    }
}

// By value, as the interfaces of the class take texts.
// NOLINTBEGIN(performance-unnecessary-value-param)
void* CCommonXmlPxd::OpenXml(std::string path, void** document) {
    if (m_FunctionsXmlPxd == nullptr || path.empty() || document == nullptr) {
        return nullptr;
    }
    unsigned int err = XMLPXD_OK;
    XmlDocument opened = xmlpxd::OpenDocument(*m_FunctionsXmlPxd, path, &err);
    if (!opened) {
        return nullptr;
    }
    XmlNode root = xmlpxd::NodeFrom(*m_FunctionsXmlPxd, &XMLPXD_FUNCLIST::GetDocumentElement,
                                    opened.Get(), &err);
    if (!root) {
        return nullptr;
    }
    *document = opened.Release();
    m_root = root.Get();
    return root.Release();
}

void* CCommonXmlPxd::OpenXml(std::string path, bool fromResources) try {
    if (m_FunctionsXmlPxd == nullptr || path.empty()) {
        return nullptr;
    }
    CloseXml();
    if (fromResources) {
        const std::string resources = GetPluginResourcesPath();
        if (resources.empty()) {
            return nullptr;
        }
        path.insert(0, resources);
    }
    return OpenXml(path, &m_document);
} catch (const std::exception&) {
    return nullptr;  // out of memory
}
// NOLINTEND(performance-unnecessary-value-param)

void CCommonXmlPxd::CloseXml(void* document) {
    if (m_FunctionsXmlPxd != nullptr && document != nullptr) {
        const XmlDocument closed(*m_FunctionsXmlPxd, document);
        m_root = nullptr;
    }
}

void CCommonXmlPxd::CloseXml() {
    CloseXml(std::exchange(m_document, nullptr));
    m_root = nullptr;
}

void CCommonXmlPxd::DeleteNode(void* node) {
    if (m_FunctionsXmlPxd != nullptr) {
        const XmlNode given(*m_FunctionsXmlPxd, node);
    }
}
