// The user settings. Its external interface is the part of that name of CCommonXmlPxd.
//
// The messages are those that people who look for them know: they call the steps
// GetUserSettingFile_, and those of GetUserSetting name the reader of the database settings and end
// with an open parenthesis.
#include <exception>
#include <list>
#include <string>
#include <utility>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/xmlpxd/ChildElements.h"
#include "CostCountCommon/xmlpxd/ElementChain.h"
#include "CostCountCommon/xmlpxd/OpenedXml.h"
#include "CostCountCommon/xmlpxd/Print.h"
#include "CostCountCommon/xmlpxd/Steps.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"

namespace {

using xmlpxd::CurrentXml;
using xmlpxd::ElementChain;
using xmlpxd::FAILED;
using xmlpxd::Print;
using xmlpxd::RequiredChild;
using xmlpxd::ResultOf;
using xmlpxd::Step;
using xmlpxd::XmlNode;
using xmlpxd::XmlSource;

using Settings = CCommonXmlPxdDataUserSettings;
using JobCost = CCommonXmlPxdDataJobCost;
using DateSpan = CCommonXmlPxdDataDateSpan;
using Other = CCommonXmlPxdDataOther;

constexpr const char* FILE_NAME = "/CMUserSetting.cfg";

constexpr Step<Settings> STEPS[] = {
    {&CCommonXmlPxd::GetUserSetting_Scales,
     "CCommonXmlPxd::GetDBSetting() ERROR: GetUserSettingFile_Scales("},
    {&CCommonXmlPxd::GetUserSetting_JobCostList,
     "CCommonXmlPxd::GetDBSetting() ERROR: GetUserSettingFile_JobCostList("},
    {&CCommonXmlPxd::GetUserSetting_FilterConditon,
     "CCommonXmlPxd::GetDBSetting() ERROR: GetUserSettingFile_FilterConditon("},
};

constexpr Step<Settings> FILTER_STEPS[] = {
    {&CCommonXmlPxd::GetUserSetting_FC_PrinterList,
     "CCommonXmlPxd::GetUserSettingFile_FilterConditon() ERROR: GetUserSettingFile_FC_PrinterList()"},
    {&CCommonXmlPxd::GetUserSetting_FC_SpanList,
     "CCommonXmlPxd::GetUserSettingFile_FilterConditon() ERROR: GetUserSettingFile_FC_SpanList()"},
    {&CCommonXmlPxd::GetUserSetting_FC_OtherList,
     "CCommonXmlPxd::GetUserSettingFile_FilterConditon() ERROR: GetUserSettingFile_FC_OtherList()"},
};

struct Scale {
    unsigned int tag;
    std::string Settings::*text;
    const char* missing;
};

constexpr Scale SCALES[] = {
    {XMLTAG_USER_DATE, &Settings::m_date,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_DATE)"},
    {XMLTAG_USER_CURRENCY, &Settings::m_currency,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_CURRENCY)"},
    {XMLTAG_USER_SEPARATOR, &Settings::m_separator,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_SEPARATOR)"},
    {XMLTAG_USER_DECIMALPOINT, &Settings::m_decimalPoint,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_DECIMALPOINT)"},
    {XMLTAG_USER_INKUNIT, &Settings::m_inkUnit,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_INKUINT)"},
    {XMLTAG_USER_PAPERWIDTH, &Settings::m_paperWidth,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_PAPERWIDTH)"},
    {XMLTAG_USER_PAPERLENGTH, &Settings::m_paperLength,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_PAPERLENGTH)"},
    {XMLTAG_USER_SQUAREUNIT, &Settings::m_squareUnit,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_SUQAREUINIT)"},
    {XMLTAG_USER_ONEPAGEJOBNUMBER, &Settings::m_onePageJobNumber,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_ONEPAGEJOBNUMBER)"},
    {XMLTAG_USER_SPANDATE, &Settings::m_spanDate,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_SPANDATE)"},
    {XMLTAG_USER_STARTDATE, &Settings::m_startDate,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_STARTDATE)"},
    {XMLTAG_USER_LANGUAGE, &Settings::m_language,
     "CCommonXmlPxd::GetUserSettingFile_Scales() ERROR: GetElementValueWithSearch(XMLTAG_ID_USRSETTING_LANGUAGE)"},
};

// A list element whose entries are its child elements, whatever their names.
struct EntryList {
    unsigned int list;
    const char* noList;
    const char* notRead;
};

constexpr EntryList JOB_COSTS = {
    XMLTAG_USER_JOBCOSTLISTSETTING,
    "CCommonXmlPxd::GetUserSettingFile_JobCostList() ERROR: SearchParentElement(XMLTAG_ID_USRSETTING_JOBCOSTLISTSETTING)",
    "CCommonXmlPxd::GetUserSettingFile_JobCostList() ERROR: GetElements()"};
constexpr const char* OTHER_COUNT_OF_JOB_COST =
    "CCommonXmlPxd::GetUserSettingFile_JobCostList() ERROR: attrValueList Number";

constexpr EntryList PRINTERS = {
    XMLTAG_USER_PRINTERLIST,
    "CCommonXmlPxd::GetUserSettingFile_FC_PrinterList() ERROR: SearchParentElement(XMLTAG_ID_USRSETTING_PRINTERLIST)",
    "CCommonXmlPxd::GetUserSettingFile_FC_PrinterList() ERROR: GetElements()"};

constexpr EntryList SPANS = {
    XMLTAG_USER_SPANLIST,
    "CCommonXmlPxd::GetUserSettingFile_FC_SpanList() ERROR: SearchParentElement(XMLTAG_ID_USRSETTING_SPANLIST)",
    "CCommonXmlPxd::GetUserSettingFile_FC_SpanList() ERROR: GetElements()"};
constexpr const char* OTHER_COUNT_OF_SPAN =
    "CCommonXmlPxd::GetUserSettingFile_FC_SpanList() ERROR: attrValueList Number";

constexpr EntryList OTHERS = {
    XMLTAG_USER_OTHERLIST,
    "CCommonXmlPxd::GetUserSettingFile_FC_OtherList() ERROR: SearchParentElement(XMLTAG_ID_USRSETTING_OTHERLIST)",
    "CCommonXmlPxd::GetUserSettingFile_FC_OtherList() ERROR: GetElements()"};
constexpr const char* OTHER_COUNT_OF_OTHER =
    "CCommonXmlPxd::GetUserSettingFile_FC_OtherList() ERROR: attrValueList Number";

// Where the value of an attribute goes; XMLTAG_NONE stands for every attribute that no row before
// it names.
template <typename Record>
struct AttributeRow {
    unsigned int tag;
    std::string Record::*text;
};

constexpr AttributeRow<JobCost> JOB_COST_ROWS[] = {{XMLTAG_ATTR_NAME, &JobCost::m_name},
                                                   {XMLTAG_ATTR_ID, &JobCost::m_id},
                                                   {XMLTAG_NONE, &JobCost::m_value}};
constexpr AttributeRow<DateSpan> SPAN_ROWS[] = {{XMLTAG_ATTR_FROM, &DateSpan::m_from},
                                                {XMLTAG_NONE, &DateSpan::m_to}};
constexpr AttributeRow<Other> OTHER_ROWS[] = {{XMLTAG_ATTR_SELECT, &Other::m_select},
                                              {XMLTAG_NONE, &Other::m_value}};

// An entry has exactly as many attributes as there are rows.
template <typename Record, size_t N>
bool TakeAttributes(const CCommonXmlPxdElementData& entry, const AttributeRow<Record> (&rows)[N],
                    const char* otherCount, std::list<Record>* records) {
    if (entry.m_AttributeValues.size() != N) {
        Print("%s", otherCount);
        return false;
    }
    Record record;
    auto value = entry.m_AttributeValues.begin();
    for (const unsigned int tag : entry.m_AttributeIDs) {
        const AttributeRow<Record>* row = rows;
        while (row->tag != tag && row->tag != XMLTAG_NONE) {
            ++row;
        }
        record.*row->text = *value++;
    }
    records->push_back(std::move(record));
    return true;
}

// Gives each entry to take(entry), up to the first that gives false.
template <typename Take>
bool TakeEntries(CCommonXmlPxd& xml, const XmlNode& list, const EntryList& row, Take take) {
    ElementChain entries(xml);
    unsigned int err = XMLPXD_OK;
    if (!xml.GetElements(list.Get(), entries.Out(), &err)) {
        Print("%s", row.notRead);
        return false;
    }
    for (const CCommonXmlPxdElementData* entry = entries.First(); entry != nullptr;
         entry = entry->m_Next) {
        if (!take(*entry)) {
            return false;
        }
    }
    return true;
}

// A step that reads a list, quiet for an unbound object.
template <typename Take>
unsigned int ReadEntries(CCommonXmlPxd& xml, const XMLPXD_FUNCLIST* functions, void* parent,
                         const EntryList& row, Take take) {
    return ResultOf([&] {
        const XmlNode list = RequiredChild(xml, functions, parent, row.list, row.noList);
        return list && TakeEntries(xml, list, row, take);
    });
}

}  // namespace

bool CCommonXmlPxd::GetUserSetting(CCommonXmlPxdDataUserSettings& settings) try {
    if (m_FunctionsXmlPxd == nullptr) {
        return false;
    }
    const CurrentXml file(*this, FILE_NAME, XmlSource::TEMPLATE);
    if (file.Root() == nullptr) {
        Print("CCommonXmlPxd::GetDBSetting() ERROR: OpenXml() PATH=%s\n", FILE_NAME);
        return false;
    }
    RunEachStep(*this, STEPS, settings, file.Root());
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

unsigned int CCommonXmlPxd::GetUserSetting_Scales(CCommonXmlPxdDataUserSettings& settings,
                                                  void* root) try {
    if (m_FunctionsXmlPxd == nullptr) {
        return FAILED;
    }
    if (root == nullptr) {
        return 0;  // deliberately no failure, other than in the other steps
    }
    for (const Scale& scale : SCALES) {
        unsigned int err = XMLPXD_OK;
        if (!GetElementValueWithSearch(root, static_cast<int>(scale.tag), true,
                                       &(settings.*scale.text), &err)) {
            Print("%s", scale.missing);
            return FAILED;
        }
    }
    return 0;
} catch (const std::exception&) {
    return FAILED;  // out of memory
}

unsigned int CCommonXmlPxd::GetUserSetting_JobCostList(CCommonXmlPxdDataUserSettings& settings,
                                                       void* root) try {
    const XmlNode list =
        RequiredChild(*this, m_FunctionsXmlPxd.get(), root, JOB_COSTS.list, JOB_COSTS.noList);
    if (!list) {
        return FAILED;
    }
    if (!m_XmlTagIDs.contains(XMLTAG_USER_JOBCOSTSETTING)) {
        Print("CCommonXmlPxd::GetUserSettingFile_JobCostList() ERROR:  m_XmlTagIDs.end()");
        return FAILED;
    }
    const auto take = [&settings](const CCommonXmlPxdElementData& entry) {
        return TakeAttributes(entry, JOB_COST_ROWS, OTHER_COUNT_OF_JOB_COST,
                              &settings.m_JobCostList);
    };
    return TakeEntries(*this, list, JOB_COSTS, take) ? 0 : FAILED;
} catch (const std::exception&) {
    return FAILED;  // out of memory
}

unsigned int CCommonXmlPxd::GetUserSetting_FilterConditon(CCommonXmlPxdDataUserSettings& settings,
                                                          void* root) try {
    const XmlNode condition = RequiredChild(
        *this, m_FunctionsXmlPxd.get(), root, XMLTAG_USER_FILTERCONDITION,
        "CCommonXmlPxd::GetUserSettingFile_FilterConditon() ERROR: SearchParentElement(XMLTAG_ID_USRSETTING_FILTERCONDITION)");
    if (!condition) {
        return FAILED;
    }
    RunEachStep(*this, FILTER_STEPS, settings, condition.Get());
    return 0;
} catch (const std::exception&) {
    return FAILED;  // out of memory
}

unsigned int CCommonXmlPxd::GetUserSetting_FC_PrinterList(CCommonXmlPxdDataUserSettings& settings,
                                                          void* node) {
    return ReadEntries(*this, m_FunctionsXmlPxd.get(), node, PRINTERS,
                       [&settings](const CCommonXmlPxdElementData& entry) {
                           // An entry without attributes names no printer.
                           if (!entry.m_AttributeValues.empty()) {
                               settings.m_PrinterList.push_back(entry.m_AttributeValues.front());
                           }
                           return true;
                       });
}

unsigned int CCommonXmlPxd::GetUserSetting_FC_SpanList(CCommonXmlPxdDataUserSettings& settings,
                                                       void* node) {
    return ReadEntries(*this, m_FunctionsXmlPxd.get(), node, SPANS,
                       [&settings](const CCommonXmlPxdElementData& entry) {
                           return TakeAttributes(entry, SPAN_ROWS, OTHER_COUNT_OF_SPAN,
                                                 &settings.m_SpanList);
                       });
}

unsigned int CCommonXmlPxd::GetUserSetting_FC_OtherList(CCommonXmlPxdDataUserSettings& settings,
                                                        void* node) {
    return ReadEntries(*this, m_FunctionsXmlPxd.get(), node, OTHERS,
                       [&settings](const CCommonXmlPxdElementData& entry) {
                           return TakeAttributes(entry, OTHER_ROWS, OTHER_COUNT_OF_OTHER,
                                                 &settings.m_OtherList);
                       });
}
