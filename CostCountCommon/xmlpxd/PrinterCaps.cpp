// The printer capabilities file. Its external interface is the part of that name of CCommonXmlPxd.
//
// The messages are those that people who look for them know; the step of media sizes bears the name
// of that of media types in most of its own.
#include <exception>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/xmlpxd/ChildElements.h"
#include "CostCountCommon/xmlpxd/ElementWriter.h"
#include "CostCountCommon/xmlpxd/ListReader.h"
#include "CostCountCommon/xmlpxd/OpenedXml.h"
#include "CostCountCommon/xmlpxd/Print.h"
#include "CostCountCommon/xmlpxd/Steps.h"

namespace {

using xmlpxd::CurrentXml;
using xmlpxd::ElementWriter;
using xmlpxd::FAILED;
using xmlpxd::ListReader;
using xmlpxd::ListRow;
using xmlpxd::ListTexts;
using xmlpxd::NamesRow;
using xmlpxd::Print;
using xmlpxd::ReadList;
using xmlpxd::RequiredRow;
using xmlpxd::Step;
using xmlpxd::TextRow;
using xmlpxd::WriteList;
using xmlpxd::XmlNode;
using xmlpxd::XmlSource;

using Caps = CCommonXmlPxdDataPrinterCaps;
using Ink = CCommonXmlPxdDataInk;
using MediaType = CCommonXmlPxdDataMediaType;
using MediaSize = CCommonXmlPxdDataMediaSize;

// What writing gives when the file cannot be made up. That it cannot be told from success is
// deliberate: callers go by the printed lines.
constexpr unsigned int NOT_MADE_UP = 0;

constexpr const char* TEMPLATE = "/xmls/PrinterCapsBase.xml";

// --- What is written ---

constexpr ListRow INK_LIST = {
    XMLTAG_CAPS_INKLIST,
    "CCommonXmlPxd::CreatePrinterCapsFile_Ink() ERROR: SearchParentElement(XMLTAG_ID_PRINTERCAPS_INKLIST)",
    {XMLTAG_CAPS_INK, "CCommonXmlPxd::CreatePrinterCapsFile_Ink() ERROR:  m_XmlTagIDs.end()",
     "CCommonXmlPxd::CreatePrinterCapsFile_Ink() ERROR:  <Ink>"}};

constexpr TextRow<Ink> INK_ROWS[] = {
    {{XMLTAG_CAPS_INKID, "CCommonXmlPxd::CreatePrinterCapsFile_Ink() ERROR:  find <InkID>",
      "CCommonXmlPxd::CreatePrinterCapsFile_Ink() ERROR:  CreateElementWithValue <InkID>"},
     &Ink::m_InkID},
    {{XMLTAG_CAPS_INKCOLOR, "CCommonXmlPxd::CreatePrinterCapsFile_Ink() ERROR:  find <InkColor>",
      "CCommonXmlPxd::CreatePrinterCapsFile_Ink() ERROR:  CreateElementWithValue <InkColor>"},
     &Ink::m_InkColor},
    {{XMLTAG_CAPS_INKTANK, "CCommonXmlPxd::CreatePrinterCapsFile_Ink() ERROR:  find <InkTank>",
      "CCommonXmlPxd::CreatePrinterCapsFile_Ink() ERROR:  CreateElementWithValue <InkTank>"},
     &Ink::m_InkTank},
};

constexpr ListRow MEDIA_TYPE_LIST = {
    XMLTAG_CAPS_MEDIATYPELIST,
    "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR: SearchParentElement(XMLTAG_ID_PRINTERCAPS_MEDIATYPELIST)",
    {XMLTAG_CAPS_MEDIATYPE,
     "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  m_XmlTagIDs.end()",
     "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  <MediaType>"}};

constexpr TextRow<MediaType> MEDIA_TYPE_ID[] = {
    {{XMLTAG_CAPS_MEDIATYPEID,
      "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  find <MediaTypeID>",
      "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  CreateElementWithValue <MediaTypeID>"},
     &MediaType::m_MediaTypeID},
};

constexpr NamesRow MEDIA_TYPE_NAMES = {
    {XMLTAG_CAPS_MEDIATYPENAME,
     "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  find <MediaTypeName >",
     "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  CreateElementWithValue <MediaTypeName>"},
    {XMLTAG_ATTR_LANG,
     "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  find <lang ATTR>",
     "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  SetAttribute <lang ATTR>"}};

constexpr ListRow MEDIA_SIZE_LIST = {
    XMLTAG_CAPS_MEDIASIZELIST,
    "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR: SearchParentElement(XMLTAG_ID_PRINTERCAPS_MEDIASIZELIST)",
    {XMLTAG_CAPS_MEDIASIZE,
     "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  m_XmlTagIDs.end()",
     "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  <MediaSize>"}};

constexpr TextRow<MediaSize> MEDIA_SIZE_ROWS[] = {
    {{XMLTAG_CAPS_MEDIASIZEID,
      "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  find <MediaSizeID>",
      "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  CreateElementWithValue <MediaSizeID>"},
     &MediaSize::m_MediaSizeID},
    {{XMLTAG_CAPS_MEDIASIZENAME,
      "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  find <MediaSizeName>",
      "CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList() ERROR:  CreateElementWithValue <MediaSizeName>"},
     &MediaSize::m_MediaSizeName},
};

// --- What is read ---

constexpr ListTexts INKS_READ = {
    XMLTAG_CAPS_INKLIST,
    XMLTAG_CAPS_INK,
    "CCommonXmlPxd::GetPrinterCaps_Ink() ERROR: SearchParentElement(XMLTAG_ID_PRINTERCAPS_INKLIST)",
    "CCommonXmlPxd::GetPrinterCaps_Ink() ERROR:  find <Ink>",
    "CCommonXmlPxd::GetPrinterCaps_Ink() ERROR:  GetElementNumber()",
    "new PNODE[] failed. inkElementNum[%d]",
    "CCommonXmlPxd::GetPrinterCaps_Ink() ERROR:  GetElementsByElementName()"};

constexpr RequiredRow<Ink> INK_VALUES[] = {
    {{XMLTAG_CAPS_INKID,
      "CCommonXmlPxd::GetPrinterCaps_Ink() ERROR: GetElementValueWithSearch(XMLTAG_ID_PRINTERCAPS_INKID)"},
     &Ink::m_InkID},
    {{XMLTAG_CAPS_INKTANK,
      "CCommonXmlPxd::GetPrinterCaps_Ink() ERROR: GetElementValueWithSearch(XMLTAG_ID_PRINTERCAPS_INKTANK)"},
     &Ink::m_InkTank},
};

constexpr ListTexts MEDIA_TYPES_READ = {
    XMLTAG_CAPS_MEDIATYPELIST,
    XMLTAG_CAPS_MEDIATYPE,
    "CCommonXmlPxd::GetPrinterCaps_MediaTypeList() ERROR: SearchParentElement(XMLTAG_ID_PRINTERCAPS_MEDIATYPELIST)",
    "CCommonXmlPxd::GetPrinterCaps_MediaTypeList() ERROR:  find <MediaType>",
    "CCommonXmlPxd::GetPrinterCaps_MediaTypeList() ERROR:  GetElementNumber()",
    "new PNODE[] failed. mediaTypeElementNum[%d]",
    "CCommonXmlPxd::GetPrinterCaps_MediaTypeList() ERROR:  GetElementsByElementName()"};

constexpr RequiredRow<MediaType> MEDIA_TYPE_VALUES[] = {
    {{XMLTAG_CAPS_MEDIATYPEID,
      "CCommonXmlPxd::GetPrinterCaps_MediaTypeList() ERROR: GetElementValueWithSearch(XMLTAG_ID_PRINTERCAPS_MEDIATYPEID)"},
     &MediaType::m_MediaTypeID},
};

constexpr ListTexts MEDIA_SIZES_READ = {
    XMLTAG_CAPS_MEDIASIZELIST,
    XMLTAG_CAPS_MEDIASIZE,
    "CCommonXmlPxd::GetPrinterCaps_MediaSizeList() ERROR: SearchParentElement(XMLTAG_ID_PRINTERCAPS_MEDIASIZELIST)",
    "CCommonXmlPxd::GetPrinterCaps_MediaSizeList() ERROR:  find <MediaSize>",
    "CCommonXmlPxd::GetPrinterCaps_MediaSizeList() ERROR:  GetElementNumber()",
    "new PNODE[] failed. mediaSizeElementNum[%d]",
    "CCommonXmlPxd::GetPrinterCaps_MediaTypeList() ERROR:  GetElementsByElementName()"};

constexpr RequiredRow<MediaSize> MEDIA_SIZE_VALUES[] = {
    {{XMLTAG_CAPS_MEDIASIZEID,
      "CCommonXmlPxd::GetPrinterCaps_MediaSizeList() ERROR: GetElementValueWithSearch(XMLTAG_ID_PRINTERCAPS_MEDIASIZEID)"},
     &MediaSize::m_MediaSizeID},
};

// Sets a field to the text of each element of that tag; the last one stays.
template <typename Record>
struct LastText {
    unsigned int tag;
    std::string Record::*text;

    void Take(const CCommonXmlPxdElementData& element, Record* record) const {
        if (element.m_ElementID == tag) {
            record->*text = element.m_Values.front();
        }
    }
};

constexpr LastText<Ink> INK_COLOR = {XMLTAG_CAPS_INKCOLOR, &Ink::m_InkColor};
constexpr LastText<MediaSize> MEDIA_SIZE_NAME = {XMLTAG_CAPS_MEDIASIZENAME,
                                                 &MediaSize::m_MediaSizeName};

bool SetUnknownJoblog(CCommonXmlPxd& xml, const XMLPXD_FUNCLIST& functions, void* root,
                      const std::string& text) {
    const XmlNode element = xmlpxd::RequiredChild(
        xml, &functions, root, XMLTAG_CAPS_DISPUNKNOWNJOBLOG,
        "CCommonXmlPxd::CreatePrinterCapsFile() ERROR: SearchParentElement(XMLTAG_ID_PRINTERCAPS_DISPUNKNOWNJOBLOG)");
    if (!element) {
        return false;
    }
    const unsigned int err = xmlpxd::SetText(functions, element.Get(), text, XMLPXD_MACHINE_TEXT);
    if (err != XMLPXD_OK) {
        Print("CCommonXmlPxd::CreatePrinterCapsFile() ERROR: SetElementValue() out_errCode = %u\n",
              err);
        return false;
    }
    return true;
}

// --- The steps ---

constexpr Step<const Caps> WRITING[] = {
    {&CCommonXmlPxd::CreatePrinterCapsFile_Ink,
     "CCommonXmlPxd::CreatePrinterCapsFile() ERROR: CreatePrinterCapsFile_Ink()"},
    {&CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList,
     "CCommonXmlPxd::CreatePrinterCapsFile() ERROR: CreatePrinterCapsFile_MediaTypeList()"},
    {&CCommonXmlPxd::CreatePrinterCapsFile_MediaSizeList,
     "CCommonXmlPxd::CreatePrinterCapsFile() ERROR: CreatePrinterCapsFile_MediaSizeList()"},
};

constexpr Step<Caps> READING[] = {
    {&CCommonXmlPxd::GetPrinterCaps_Ink,
     "CCommonXmlPxd::GetPrinterCaps() ERROR: GetPrinterCaps_Ink()"},
    {&CCommonXmlPxd::GetPrinterCaps_MediaTypeList,
     "CCommonXmlPxd::GetPrinterCaps() ERROR: GetPrinterCaps_MediaTypeList()"},
    {&CCommonXmlPxd::GetPrinterCaps_MediaSizeList,
     "CCommonXmlPxd::GetPrinterCaps() ERROR: GetPrinterCaps_MediaSizeList()"},
};

// --- Where the file lies ---

// False when the user's data folder cannot be told.
bool FilePath(std::string& name, std::string* path) {
    std::erase(name, ':');
    if (!CCommonUtility::GetDataFolderBase(MANAGEMENT_DATA_PRINTER_CAPS, path)) {
        return false;
    }
    path->append("/PrinterCaps/").append(name);
    return true;
}

// --- Steps along the items ---

unsigned int ListTagOf(unsigned int itemTag) {
    switch (itemTag) {
        case XMLTAG_CAPS_INK:
            return XMLTAG_CAPS_INKLIST;
        case XMLTAG_CAPS_MEDIATYPE:
            return XMLTAG_CAPS_MEDIATYPELIST;
        case XMLTAG_CAPS_MEDIASIZE:
            return XMLTAG_CAPS_MEDIASIZELIST;
        default:
            return XMLTAG_NONE;
    }
}

}  // namespace

unsigned int CCommonXmlPxd::CreatePrinterCapsFile(std::string& name,
                                                  const CCommonXmlPxdDataPrinterCaps& caps) try {
    if (m_FunctionsXmlPxd == nullptr) {
        return FAILED;
    }
    const CurrentXml file(*this, TEMPLATE, XmlSource::TEMPLATE);
    if (file.Root() == nullptr) {
        Print("CCommonXmlPxd::CreatePrinterCapsFile() ERROR: OpenXml() PATH=%s\n", TEMPLATE);
        return NOT_MADE_UP;
    }
    if (!RunSteps(*this, WRITING, caps, file.Root()) ||
        !SetUnknownJoblog(*this, *m_FunctionsXmlPxd, file.Root(), caps.m_DispUnknownJoblog)) {
        return NOT_MADE_UP;
    }
    std::string path;
    return FilePath(name, &path) && xmlpxd::Save(*m_FunctionsXmlPxd, m_document, path) == XMLPXD_OK
               ? 0
               : FAILED;
} catch (const std::exception&) {
    return NOT_MADE_UP;  // out of memory
}

unsigned int CCommonXmlPxd::CreatePrinterCapsFile_Ink(const CCommonXmlPxdDataPrinterCaps& caps,
                                                      void* root) {
    return WriteList(*this, root, INK_LIST, caps.m_InkList,
                     [](const ElementWriter& writer, const XmlNode& item, const Ink& ink) {
                         return writer.Texts(item, INK_ROWS, ink);
                     });
}

unsigned int CCommonXmlPxd::CreatePrinterCapsFile_MediaTypeList(
    const CCommonXmlPxdDataPrinterCaps& caps, void* root) {
    return WriteList(*this, root, MEDIA_TYPE_LIST, caps.m_MediaTypeList,
                     [](const ElementWriter& writer, const XmlNode& item, const MediaType& type) {
                         return writer.Texts(item, MEDIA_TYPE_ID, type) &&
                                writer.Names(item, MEDIA_TYPE_NAMES, type.m_MediaTypeName);
                     });
}

unsigned int CCommonXmlPxd::CreatePrinterCapsFile_MediaSizeList(
    const CCommonXmlPxdDataPrinterCaps& caps, void* root) {
    return WriteList(*this, root, MEDIA_SIZE_LIST, caps.m_MediaSizeList,
                     [](const ElementWriter& writer, const XmlNode& item, const MediaSize& size) {
                         return writer.Texts(item, MEDIA_SIZE_ROWS, size);
                     });
}

bool CCommonXmlPxd::GetPrinterCaps(std::string& name, CCommonXmlPxdDataPrinterCaps& caps) try {
    std::string path;
    if (m_FunctionsXmlPxd == nullptr || !FilePath(name, &path)) {
        return false;
    }
    const CurrentXml file(*this, path, XmlSource::PATH);
    if (file.Root() == nullptr) {
        Print("CCommonXmlPxd::GetPrinterCaps() ERROR: OpenXml() PATH=%s\n", path.c_str());
        return false;
    }
    RunEachStep(*this, READING, caps, file.Root());
    unsigned int err = XMLPXD_OK;
    if (!GetElementValueWithSearch(file.Root(), XMLTAG_CAPS_DISPUNKNOWNJOBLOG, true,
                                   &caps.m_DispUnknownJoblog, &err)) {
        Print(
            "CCommonXmlPxd::GetPrinterCaps() ERROR: GetElementValueWithSearch(XMLTAG_ID_PRINTERCAPS_DISPUNKNOWNJOBLOG)");
    }
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

unsigned int CCommonXmlPxd::GetPrinterCaps_Ink(CCommonXmlPxdDataPrinterCaps& caps, void* root) {
    const auto read = [](ListReader& reader, const XmlNode& item, Ink* record) {
        const auto use = [record](const CCommonXmlPxdElementData& element) {
            INK_COLOR.Take(element, record);
        };
        return reader.Values(item, INK_VALUES, record) &&
               reader.Children(item, "CCommonXmlPxd::GetPrinterCaps_Ink() ERROR: GetElements()",
                               use);
    };
    return ReadList(*this, root, INKS_READ, &caps.m_InkList, read);
}

unsigned int CCommonXmlPxd::GetPrinterCaps_MediaTypeList(CCommonXmlPxdDataPrinterCaps& caps,
                                                         void* root) {
    const auto read = [](ListReader& reader, const XmlNode& item, MediaType* record) {
        const auto use = [record](const CCommonXmlPxdElementData& element) {
            if (element.m_ElementID == XMLTAG_CAPS_MEDIATYPENAME) {
                xmlpxd::AddName(record->m_MediaTypeName, element);
            }
        };
        return reader.Values(item, MEDIA_TYPE_VALUES, record) &&
               reader.Children(
                   item, "CCommonXmlPxd::GetPrinterCaps_MediaTypeList() ERROR: GetElements()", use);
    };
    return ReadList(*this, root, MEDIA_TYPES_READ, &caps.m_MediaTypeList, read);
}

unsigned int CCommonXmlPxd::GetPrinterCaps_MediaSizeList(CCommonXmlPxdDataPrinterCaps& caps,
                                                         void* root) {
    const auto read = [](ListReader& reader, const XmlNode& item, MediaSize* record) {
        const auto use = [record](const CCommonXmlPxdElementData& element) {
            MEDIA_SIZE_NAME.Take(element, record);
        };
        return reader.Values(item, MEDIA_SIZE_VALUES, record) &&
               reader.Children(
                   item, "CCommonXmlPxd::GetPrinterCaps_MediaSizeList() ERROR: GetElements()", use);
    };
    return ReadList(*this, root, MEDIA_SIZES_READ, &caps.m_MediaSizeList, read);
}

CCommonXmlPxdElementData* CCommonXmlPxd::GetPrinterCapsElements(void* node, bool first,
                                                                unsigned int tagId,
                                                                CCommonXmlPxdElementData** elements,
                                                                unsigned int* err) {
    if (elements != nullptr) {
        *elements = nullptr;
    }
    if (m_FunctionsXmlPxd == nullptr || node == nullptr || elements == nullptr || err == nullptr) {
        return nullptr;
    }
    const XMLPXD_FUNCLIST& functions = *m_FunctionsXmlPxd;
    XmlNode element;
    if (first) {
        const unsigned int listTag = ListTagOf(tagId);
        if (listTag == XMLTAG_NONE) {
            *err = XMLPXD_NOT_IN_CATALOGUE;
            return nullptr;
        }
        const XmlNode list(functions, SearchParentElement(node, listTag, err));
        element = XmlNode(functions, SearchElement(list.Get(), tagId, err));
    } else {
        element = xmlpxd::NodeFrom(functions, &XMLPXD_FUNCLIST::GetNextSibling, node, err);
        if (!element && *err == XMLPXD_NO_SUCH_NODE) {
            *err = XMLPXD_OK;
        }
    }
    if (!element || *err != XMLPXD_OK) {
        return nullptr;
    }
    ReadElements(element.Get(), elements, err);
    return *elements;
}
