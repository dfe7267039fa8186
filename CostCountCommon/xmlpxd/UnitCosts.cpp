// The unit cost file. Its external interface is the part of that name of CCommonXmlPxd.
//
// The messages are those that people who look for them know, with the names of other steps and
// elements in some of them.
#include <exception>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/xmlpxd/ElementWriter.h"
#include "CostCountCommon/xmlpxd/ListReader.h"
#include "CostCountCommon/xmlpxd/NumberOf.h"
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
using xmlpxd::NewItem;
using xmlpxd::NumberOf;
using xmlpxd::Print;
using xmlpxd::ReadList;
using xmlpxd::RequiredRow;
using xmlpxd::ResultOf;
using xmlpxd::Step;
using xmlpxd::TextRow;
using xmlpxd::WriteList;
using xmlpxd::XmlNode;
using xmlpxd::XmlSource;

using Cost = CCommonXmlPxdDataUnitCost;
using Ink = CCommonXmlPxdDataUnitCostInk;
using Media = CCommonXmlPxdDataUnitCostMedia;
using Extra = CCommonXmlPxdDataUnitCostExtra;

constexpr const char* TEMPLATE = "/xmls/UnitCostBase.xml";

// --- What is written ---

constexpr ListRow INK_LIST = {
    XMLTAG_COST_INKLIST,
    "CCommonXmlPxd::CreateUnitCostFile_Ink() ERROR: SearchParentElement(XMLTAG_ID_UNITCOST_INKLIST)",
    {XMLTAG_COST_INK, "CCommonXmlPxd::CreateUnitCostFile_Ink() ERROR:  m_XmlTagIDs.end()",
     "CCommonXmlPxd::CreateUnitCostFile_Ink() ERROR:  <MediaType>"}};

constexpr TextRow<Ink> INK_ROWS[] = {
    {{XMLTAG_COST_INKID, "CCommonXmlPxd::CreateUnitCostFile_Ink() ERROR:  find <InkID>",
      "CCommonXmlPxd::CreateUnitCostFile_Ink() ERROR:  CreateElementWithValue <InkID>"},
     &Ink::m_InkID},
    {{XMLTAG_COST_INKCOST, "CCommonXmlPxd::CreateUnitCostFile_Ink() ERROR:  find <InkCost>",
      "CCommonXmlPxd::CreateUnitCostFile_Ink() ERROR:  CreateElementWithValue <InkCost>"},
     &Ink::m_InkCost},
    {{XMLTAG_COST_RSV, "CCommonXmlPxd::CreateUnitCostFile_Ink() ERROR:  find <rsv>",
      "CCommonXmlPxd::CreateUnitCostFile_Ink() ERROR:  CreateElementWithValue <rsv>"},
     &Ink::m_rsv},
};

constexpr ListRow MEDIA_LIST = {
    XMLTAG_COST_MEDIALIST,
    "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR: SearchParentElement(XMLTAG_ID_UNITCOST_MEDIALIST)",
    {XMLTAG_COST_MEDIA, "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  m_XmlTagIDs.end()",
     "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  <MediaType>"}};

// The reserved value has one tag in both lists.
constexpr TextRow<Media> MEDIA_ROWS[] = {
    {{XMLTAG_COST_MEDIATYPEID,
      "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  find <MediaTypeID>",
      "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  CreateElementWithValue <MediaTypeID>"},
     &Media::m_MediaTypeID},
    {{XMLTAG_COST_MEDIASIZEID,
      "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  find <MediaSizeID>",
      "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  CreateElementWithValue <MediaSizeID>"},
     &Media::m_MediaSizeID},
    {{XMLTAG_COST_MEDIASIZEW, "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  find <MediaSizeW>",
      "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  CreateElementWithValue <MediaSizeW>"},
     &Media::m_MediaSizeW},
    {{XMLTAG_COST_MEDIASIZEL, "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  find <MediaSizeL>",
      "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  CreateElementWithValue <MediaSizeL>"},
     &Media::m_MediaSizeL},
    {{XMLTAG_COST_MEDIANUM, "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  find <MediaNum>",
      "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  CreateElementWithValue <MediaNum>"},
     &Media::m_MediaNum},
    {{XMLTAG_COST_MEDIACOST, "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  find <MediaCost>",
      "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  CreateElementWithValue <MediaCost>"},
     &Media::m_MediaCost},
    {{XMLTAG_COST_RSV, "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  find <rsv>",
      "CCommonXmlPxd::CreateUnitCostFile_Media() ERROR:  CreateElementWithValue <rsv>"},
     &Media::m_rsv},
};

constexpr ListRow EXTRA_LIST = {
    XMLTAG_COST_EXTRALIST,
    "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR: SearchParentElement(XMLTAG_ID_UNITCOST_EXTRALIST)",
    {XMLTAG_COST_EXTRA, "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  m_XmlTagIDs.end()",
     "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  <Extra>"}};

constexpr NewItem HIDDEN_NUMBER = {
    XMLTAG_COST_EXTRAHIDDENNUMBER,
    "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  find <ExtraHiddenNumber>",
    "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  CreateElementWithValue <ExtraHiddenNumber>"};

constexpr TextRow<Extra> EXTRA_ID[] = {
    {{XMLTAG_COST_EXTRAID, "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  find <ExtraID>",
      "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  CreateElementWithValue <ExtraID>"},
     &Extra::m_ExtraID},
};

constexpr NamesRow EXTRA_NAMES = {
    {XMLTAG_COST_EXTRANAME, "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  find <ExtraName >",
     "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  CreateElementWithValue <lang name>"},
    {XMLTAG_ATTR_LANG, "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  find <lang ATTR>",
     "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  SetAttribute <lang ATTR>"}};

constexpr TextRow<Extra> EXTRA_ROWS[] = {
    {{XMLTAG_COST_EXTRACOST, "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  find <ExtraCost>",
      "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  CreateElementWithValue <ExtraCost>"},
     &Extra::m_ExtraCost},
    {{XMLTAG_COST_EXTRACALC, "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  find <ExtraCalc>",
      "CCommonXmlPxd::CreateUnitCostFile_Extra() ERROR:  CreateElementWithValue <ExtraCalc>"},
     &Extra::m_ExtraCalc},
};

// --- What is read ---

constexpr ListTexts INKS_READ = {
    XMLTAG_COST_INKLIST,
    XMLTAG_COST_INK,
    "CCommonXmlPxd::GetUnitCost_Ink() ERROR: SearchParentElement(XMLTAG_ID_UNITCOST_INKLIST)",
    "CCommonXmlPxd::GetUnitCost_Ink() ERROR:  find <Ink>",
    "CCommonXmlPxd::GetUnitCost_Ink() ERROR:  GetElementNumber()",
    "new PNODE[] failed. inkElementNum[%d]",
    "CCommonXmlPxd::GetUnitCost_Ink() ERROR:  GetElementsByElementName()"};

constexpr RequiredRow<Ink> INK_VALUES[] = {
    {{XMLTAG_COST_INKID,
      "CCommonXmlPxd::GetUnitCost_Ink() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_INKID)"},
     &Ink::m_InkID},
    {{XMLTAG_COST_INKCOST,
      "CCommonXmlPxd::GetUnitCost_Ink() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_INKCOST)"},
     &Ink::m_InkCost},
    {{XMLTAG_COST_RSV,
      "CCommonXmlPxd::GetUnitCost_Ink() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_X)"},
     &Ink::m_rsv},
};

constexpr ListTexts MEDIA_READ = {
    XMLTAG_COST_MEDIALIST,
    XMLTAG_COST_MEDIA,
    "CCommonXmlPxd::GetUnitCost_Media() ERROR: SearchParentElement(XMLTAG_ID_UNITCOST_MEDIALIST)",
    "CCommonXmlPxd::GetUnitCost_Media() ERROR:  find <Ink>",
    "CCommonXmlPxd::GetUnitCost_Media() ERROR:  GetElementNumber()",
    "new PNODE[] failed. mediaElementNum[%d]",
    "CCommonXmlPxd::GetUnitCost_Media() ERROR:  GetElementsByElementName()"};

constexpr RequiredRow<Media> MEDIA_VALUES[] = {
    {{XMLTAG_COST_MEDIATYPEID,
      "CCommonXmlPxd::GetUnitCost_Media() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_MEDIATYPEID)"},
     &Media::m_MediaTypeID},
    {{XMLTAG_COST_MEDIASIZEID,
      "CCommonXmlPxd::GetUnitCost_Media() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_MEDIASIZEID)"},
     &Media::m_MediaSizeID},
    {{XMLTAG_COST_MEDIASIZEW,
      "CCommonXmlPxd::GetUnitCost_Media() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_MEDIASIZEW)"},
     &Media::m_MediaSizeW},
    {{XMLTAG_COST_MEDIASIZEL,
      "CCommonXmlPxd::GetUnitCost_Media() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_MEDIASIZEL)"},
     &Media::m_MediaSizeL},
    {{XMLTAG_COST_MEDIANUM,
      "CCommonXmlPxd::GetUnitCost_Media() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_MEDIANUM)"},
     &Media::m_MediaNum},
    {{XMLTAG_COST_MEDIACOST,
      "CCommonXmlPxd::GetUnitCost_Media() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_MEDIACOST)"},
     &Media::m_MediaCost},
    {{XMLTAG_COST_RSV,
      "CCommonXmlPxd::GetUnitCost_Ink() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_X)"},
     &Media::m_rsv},
};

constexpr ListTexts EXTRAS_READ = {
    XMLTAG_COST_EXTRALIST,
    XMLTAG_COST_EXTRA,
    "CCommonXmlPxd::GetUnitCost_Extra() ERROR: SearchParentElement(XMLTAG_ID_UNITCOST_EXTRALIST)",
    "CCommonXmlPxd::GetUnitCost_Extra() ERROR:  find <Extra>",
    "CCommonXmlPxd::GetUnitCost_Extra() ERROR:  GetElementNumber()",
    "new PNODE[] failed. extraElementNum[%d]",
    "CCommonXmlPxd::GetUnitCost_Extra() ERROR:  GetElementsByElementName()"};

constexpr RequiredRow<Extra> EXTRA_ID_VALUE[] = {
    {{XMLTAG_COST_EXTRAID,
      "CCommonXmlPxd::GetUnitCost_Extra() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_EXTRAID)"},
     &Extra::m_ExtraID},
};

constexpr RequiredRow<Extra> EXTRA_VALUES[] = {
    {{XMLTAG_COST_EXTRACOST,
      "CCommonXmlPxd::GetUnitCost_Extra() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_EXTRACOST)"},
     &Extra::m_ExtraCost},
    {{XMLTAG_COST_EXTRACALC,
      "CCommonXmlPxd::GetUnitCost_Extra() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_EXTRACALC)"},
     &Extra::m_ExtraCalc},
};

// --- The steps ---

constexpr Step<const Cost> WRITING[] = {
    {&CCommonXmlPxd::CreateUnitCostFile_Ink,
     "CCommonXmlPxd::CreateUnitCostFile() ERROR: CreateUnitCostFile_Ink()"},
    {&CCommonXmlPxd::CreateUnitCostFile_Media,
     "CCommonXmlPxd::CreateUnitCostFile() ERROR: CreateUnitCostFile_Media()"},
    {&CCommonXmlPxd::CreateUnitCostFile_Extra,
     "CCommonXmlPxd::CreateUnitCostFile() ERROR: CreateUnitCostFile_Extra()"},
};

// The messages call the steps GetUnitCostFile_.
constexpr Step<Cost> READING[] = {
    {&CCommonXmlPxd::GetUnitCost_Ink, "CCommonXmlPxd::GetUnitCost() ERROR: GetUnitCostFile_Ink()"},
    {&CCommonXmlPxd::GetUnitCost_Media,
     "CCommonXmlPxd::GetUnitCost() ERROR: GetUnitCostFile_Media()"},
    {&CCommonXmlPxd::GetUnitCost_Extra,
     "CCommonXmlPxd::GetUnitCost() ERROR: GetUnitCostFile_Extra()"},
};

// --- Where the file lies ---

// False when the user's data folder cannot be told.
bool FilePath(std::string& name, const std::string& folder, std::string* path) {
    std::erase(name, ':');
    if (!folder.empty()) {
        path->assign(folder).append(name);
        return true;
    }
    if (!CCommonUtility::GetDataFolderBase(MANAGEMENT_DATA_UNIT_COST, path)) {
        return false;
    }
    path->append("/Cost/").append(name);
    return true;
}

}  // namespace

unsigned int CCommonXmlPxd::CreateUnitCostFile(std::string& name, const std::string& folder,
                                               const CCommonXmlPxdDataUnitCost& cost) try {
    if (m_FunctionsXmlPxd == nullptr) {
        return FAILED;
    }
    const CurrentXml file(*this, TEMPLATE, XmlSource::TEMPLATE);
    if (file.Root() == nullptr) {
        Print("CCommonXmlPxd::CreateUnitCostFile() ERROR: OpenXml() PATH=%s\n", TEMPLATE);
        return FAILED;
    }
    std::string path;
    return RunSteps(*this, WRITING, cost, file.Root()) && FilePath(name, folder, &path) &&
                   xmlpxd::Save(*m_FunctionsXmlPxd, m_document, path) == XMLPXD_OK
               ? 0
               : FAILED;
} catch (const std::exception&) {
    return FAILED;  // out of memory
}

unsigned int CCommonXmlPxd::CreateUnitCostFile_Ink(const CCommonXmlPxdDataUnitCost& cost,
                                                   void* root) {
    return WriteList(*this, root, INK_LIST, cost.m_InkList,
                     [](const ElementWriter& writer, const XmlNode& item, const Ink& ink) {
                         return writer.Texts(item, INK_ROWS, ink);
                     });
}

unsigned int CCommonXmlPxd::CreateUnitCostFile_Media(const CCommonXmlPxdDataUnitCost& cost,
                                                     void* root) {
    return WriteList(*this, root, MEDIA_LIST, cost.m_MediaList,
                     [](const ElementWriter& writer, const XmlNode& item, const Media& media) {
                         return writer.Texts(item, MEDIA_ROWS, media);
                     });
}

unsigned int CCommonXmlPxd::CreateUnitCostFile_Extra(const CCommonXmlPxdDataUnitCost& cost,
                                                     void* root) {
    const auto fill = [](const ElementWriter& writer, const XmlNode& item, const Extra& extra) {
        return writer.Texts(item, EXTRA_ID, extra) &&
               writer.Names(item, EXTRA_NAMES, extra.m_ExtraName) &&
               writer.Texts(item, EXTRA_ROWS, extra);
    };
    // The hidden number is written also when there are no extras.
    return ResultOf([&] {
        const ElementWriter writer(*this);
        const XmlNode list = writer.List(root, EXTRA_LIST);
        return list && writer.Text(list, HIDDEN_NUMBER, std::to_string(cost.m_ExtraHiddenNumber)) &&
               writer.Items(list, EXTRA_LIST, cost.m_ExtraList, fill);
    });
}

bool CCommonXmlPxd::GetUnitCost(std::string& name, const std::string& folder,
                                CCommonXmlPxdDataUnitCost& cost) try {
    std::string path;
    if (m_FunctionsXmlPxd == nullptr || !FilePath(name, folder, &path)) {
        return false;
    }
    const CurrentXml file(*this, path, XmlSource::PATH);
    if (file.Root() == nullptr) {
        Print("CCommonXmlPxd::GetUnitCost() ERROR: OpenXml() PATH=%s\n", path.c_str());
        return false;
    }
    RunEachStep(*this, READING, cost, file.Root());
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

unsigned int CCommonXmlPxd::GetUnitCost_Ink(CCommonXmlPxdDataUnitCost& cost, void* root) {
    return ReadList(*this, root, INKS_READ, &cost.m_InkList,
                    [](ListReader& reader, const XmlNode& item, Ink* ink) {
                        return reader.Values(item, INK_VALUES, ink);
                    });
}

unsigned int CCommonXmlPxd::GetUnitCost_Media(CCommonXmlPxdDataUnitCost& cost, void* root) {
    return ReadList(*this, root, MEDIA_READ, &cost.m_MediaList,
                    [](ListReader& reader, const XmlNode& item, Media* media) {
                        return reader.Values(item, MEDIA_VALUES, media);
                    });
}

unsigned int CCommonXmlPxd::GetUnitCost_Extra(CCommonXmlPxdDataUnitCost& cost, void* root) {
    const auto read = [](ListReader& reader, const XmlNode& item, Extra* extra) {
        const auto addName = [extra](const CCommonXmlPxdElementData& element) {
            if (element.m_ElementID == XMLTAG_COST_EXTRANAME) {
                xmlpxd::AddName(extra->m_ExtraName, element);
            }
        };
        // That names which cannot be read are not told of is deliberate.
        return reader.Values(item, EXTRA_ID_VALUE, extra) &&
               reader.Children(item, nullptr, addName) && reader.Values(item, EXTRA_VALUES, extra);
    };
    return ResultOf([&] {
        ListReader reader(*this);
        const XmlNode list = reader.List(root, EXTRAS_READ);
        if (!list) {
            return false;
        }
        std::string hiddenNumber;
        unsigned int err = XMLPXD_OK;
        if (!GetElementValueWithSearch(list.Get(), XMLTAG_COST_EXTRAHIDDENNUMBER, true,
                                       &hiddenNumber, &err)) {
            Print(
                "CCommonXmlPxd::GetUnitCost_Extra() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_EXTRAINDEX)");
        }
        cost.m_ExtraHiddenNumber = NumberOf(hiddenNumber);  // 0 of none
        return reader.Items(list, EXTRAS_READ, &cost.m_ExtraList, read);
    });
}
