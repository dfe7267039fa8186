// The names of elements, attributes and keywords, and looking them up. Its external interface is
// the catalogue part of CCommonXmlPxd, and IsContainer.
#include "CostCountCommon/xmlpxd/TagCatalogue.h"

#include <algorithm>
#include <array>
#include <exception>
#include <iterator>
#include <utility>

#include "CostCountCommon/CommonXMLPxd.h"

namespace {

struct Name {
    unsigned int id;
    const char* text;
};

// Spellings are those of the files and messages, "massagetype", "regist_printer" and "ReqSatrt"
// among them.
constexpr Name TAGS[] = {
    {XMLTAG_SYS_CMSYSTEM, "cmsystem"},
    {XMLTAG_SYS_CMSERVICENAME, "CMServiceName"},
    {XMLTAG_SYS_BASECYCLE, "BaseCycle"},
    {XMLTAG_SYS_BNTPIPENAMEAPPIN, "BntPipeNameAppIn"},
    {XMLTAG_SYS_BNTPIPENAMEAPPOUT, "BntPipeNameAppOut"},
    {XMLTAG_SYS_BNTPIPENAMECMSIN, "BntPipeNameCMSIn"},
    {XMLTAG_SYS_BNTPIPENAMECMSOUT, "BntPipeNameCMSOut"},
    {XMLTAG_SYS_MAXDETCH, "MaxDetch"},
    {XMLTAG_SYS_DEFAULTPRINTERCYCLE, "DefaultPrinterCycle"},
    {XMLTAG_SYS_USBRETRYCOUNT, "UsbRetryCount"},
    {XMLTAG_SYS_USBRETRYINTERVAL, "UsbRetryInterval"},
    {XMLTAG_SYS_COMMURETRYCOUNT, "CommuRetryCount"},
    {XMLTAG_SYS_COMMURETRYINTERVAL, "CommuRetryInterval"},
    {XMLTAG_SYS_CHECKCMSINTERVAL, "CheckCMSInterval"},
    {XMLTAG_SYS_CHECKJOBLOGERRINTERVAL, "CheckJobLogErrInterval"},
    {XMLTAG_SYS_PRINTERLISTPATH, "PrinterListPath"},
    {XMLTAG_SYS_PRINTERCAPSPATH, "PrinterCapsPath"},
    {XMLTAG_SYS_JOBLOGDBSETTINGPATH, "JobLogDBSettingPath"},
    {XMLTAG_SYS_ACTIONLOGPATH, "ActionLogPath"},
    {XMLTAG_SYS_ACTIONLOGPATHREGIDENT, "ActionLogPathRegident"},
    {XMLTAG_SYS_GETERRJOBLOGPATH, "GetErrJobLogPath"},
    {XMLTAG_SYS_LASTGETLOGPATH, "LastGetLogPath"},
    {XMLTAG_SYS_COSTSETTINGPATH, "CostSettingPath"},
    {XMLTAG_SYS_USERSETTINGPATH, "UserSettingPath"},
    {XMLTAG_SYS_CANCELINTERVAL, "CancelInterval"},
    {XMLTAG_SYS_SEARCHTIMEOUT, "SearchTimeOut"},
    {XMLTAG_SYS_SEARCHTTL, "SearchTTL"},
    {XMLTAG_SYS_ACTIONLOGLEVEL, "ActionLogLevel"},
    {XMLTAG_SYS_GETERRJOBLOGLEVEL, "GetErrJobLogLevel"},
    {XMLTAG_SYS_SCHEDULESETTINGPATH, "ScheduleSettingPath"},
    {XMLTAG_SYS_SCHEDULEDEXPORTLOGPATH, "ScheduledExportLogPath"},
    {XMLTAG_PRN_MNGPRINTER, "mngprinter"},
    {XMLTAG_PRN_APP_INFO, "app_info"},
    {XMLTAG_PRN_PRINTER_LIST, "printer_list"},
    {XMLTAG_PRN_PRINTER, "printer"},
    {XMLTAG_PRN_NAME, "name"},
    {XMLTAG_PRN_MODEL_NAME, "model_name"},
    {XMLTAG_PRN_SERIAL_NUMBER, "serial_number"},
    {XMLTAG_PRN_MAC_ADDRESS, "mac_address"},
    {XMLTAG_PRN_PORT, "port"},
    {XMLTAG_PRN_SUPPORT_OXAL_SERVICE, "support_oxal_service"},
    {XMLTAG_PRN_FRIENDLY_NAME, "friendly_name"},
    {XMLTAG_PRN_AUTH_INFO, "auth_info"},
    {XMLTAG_PRN_ADDITIONAL_INFO, "additional_info"},
    {XMLTAG_PRN_CYCLE_TIME, "cycle_time"},
    {XMLTAG_PRN_CYCLE_ACQUISITION, "cycle_acquisition"},
    {XMLTAG_PRN_REGIST_PRINTER, "regist_printer"},
    {XMLTAG_CAPS_PRINTERCAPS, "printercaps"},
    {XMLTAG_CAPS_INKLIST, "InkList"},
    {XMLTAG_CAPS_INK, "Ink"},
    {XMLTAG_CAPS_INKID, "InkID"},
    {XMLTAG_CAPS_INKCOLOR, "InkColor"},
    {XMLTAG_CAPS_INKTANK, "InkTank"},
    {XMLTAG_CAPS_MEDIATYPELIST, "MediaTypeList"},
    {XMLTAG_CAPS_MEDIATYPE, "MediaType"},
    {XMLTAG_CAPS_MEDIATYPEID, "MediaTypeID"},
    {XMLTAG_CAPS_MEDIATYPENAME, "MediaTypeName"},
    {XMLTAG_CAPS_MEDIASIZELIST, "MediaSizeList"},
    {XMLTAG_CAPS_MEDIASIZE, "MediaSize"},
    {XMLTAG_CAPS_MEDIASIZEID, "MediaSizeID"},
    {XMLTAG_CAPS_MEDIASIZENAME, "MediaSizeName"},
    {XMLTAG_CAPS_DISPUNKNOWNJOBLOG, "DispUnknownJoblog"},
    {XMLTAG_COST_MNGPRINTER, "mngprinter"},
    {XMLTAG_COST_INKLIST, "InkList"},
    {XMLTAG_COST_INK, "Ink"},
    {XMLTAG_COST_INKID, "InkID"},
    {XMLTAG_COST_INKCOST, "InkCost"},
    {XMLTAG_COST_RSV, "rsv"},
    {XMLTAG_COST_MEDIALIST, "MediaList"},
    {XMLTAG_COST_MEDIA, "Media"},
    {XMLTAG_COST_MEDIATYPEID, "MediaTypeID"},
    {XMLTAG_COST_MEDIASIZEID, "MediaSizeID"},
    {XMLTAG_COST_MEDIASIZEW, "MediaSizeW"},
    {XMLTAG_COST_MEDIASIZEL, "MediaSizeL"},
    {XMLTAG_COST_MEDIANUM, "MediaNum"},
    {XMLTAG_COST_MEDIACOST, "MediaCost"},
    {XMLTAG_COST_MEDIA_RSV, "rsv"},
    {XMLTAG_COST_EXTRALIST, "ExtraList"},
    {XMLTAG_COST_EXTRA, "Extra"},
    {XMLTAG_COST_EXTRAID, "ExtraID"},
    {XMLTAG_COST_EXTRANAME, "ExtraName"},
    {XMLTAG_COST_EXTRACOST, "ExtraCost"},
    {XMLTAG_COST_EXTRACALC, "ExtraCalc"},
    {XMLTAG_COST_EXTRAHIDDENNUMBER, "ExtraHiddenNumber"},
    {XMLTAG_USER_CMUSERSETTING, "CMUserSetting"},
    {XMLTAG_USER_DATE, "date"},
    {XMLTAG_USER_CURRENCY, "currency"},
    {XMLTAG_USER_SEPARATOR, "separator"},
    {XMLTAG_USER_DECIMALPOINT, "decimalPoint"},
    {XMLTAG_USER_INKUNIT, "inkUnit"},
    {XMLTAG_USER_PAPERWIDTH, "paperWidth"},
    {XMLTAG_USER_PAPERLENGTH, "paperLength"},
    {XMLTAG_USER_SQUAREUNIT, "squareUnit"},
    {XMLTAG_USER_ONEPAGEJOBNUMBER, "onePageJobNumber"},
    {XMLTAG_USER_SPANDATE, "spanDate"},
    {XMLTAG_USER_STARTDATE, "startDate"},
    {XMLTAG_USER_JOBCOSTLISTSETTING, "jobCostListSetting"},
    {XMLTAG_USER_JOBCOSTSETTING, "jobCostSetting"},
    {XMLTAG_USER_LANGUAGE, "language"},
    {XMLTAG_USER_FILTERCONDITION, "FilterCondition"},
    {XMLTAG_USER_PRINTERLIST, "printerList"},
    {XMLTAG_USER_PRINTER, "printer"},
    {XMLTAG_USER_SPANLIST, "spanList"},
    {XMLTAG_USER_SPAN, "span"},
    {XMLTAG_USER_OTHERLIST, "otherList"},
    {XMLTAG_USER_OTHER, "other"},
    {XMLTAG_DB_JOBLOGDBSETTING, "joblogdbsetting"},
    {XMLTAG_DB_JOBLOGDB_PATH, "joblogdb_path"},
    {XMLTAG_DB_JOBLOGDB_VOLUME, "joblogdb_volume"},
    {XMLTAG_BNTSTART_BNTSTART, "bntstart"},
    {XMLTAG_BNTSTART_BNTINFO, "bntinfo"},
    {XMLTAG_BNTSTART_DETCH_PATH, "detch_path"},
    {XMLTAG_BNTSTART_COMMUNAME_CMS, "communame_cms"},
    {XMLTAG_BNTSTART_COMMUNAME_CMA, "communame_cma"},
    {XMLTAG_BNTSTART_COMMUNAME_DETCH, "communame_detch"},
    {XMLTAG_BNTSTART_DETCH_MAX, "detch_max"},
    {XMLTAG_BNTSTART_EXECLOG_PATH, "execlog_path"},
    {XMLTAG_BNTSTART_EXECLOG_LEVEL, "execlog_level"},
    {XMLTAG_BNTSTART_DETCHINFO, "detchinfo"},
    {XMLTAG_BNTSTART_VELSJOBLOG_PATH, "velsJoblog_path"},
    {XMLTAG_BNTSTART_JOBLOGDB_PATH, "joblogdb_path"},
    {XMLTAG_BNTSTART_JOBLOGDB_VOLUME, "joblogdb_volume"},
    {XMLTAG_BNTSTART_PRINTERLOG_PATH, "printerlog_path"},
    {XMLTAG_BNTSTART_LASTGETLOG_PATH, "lastgetlog_path"},
    {XMLTAG_BNTCMD_BNTCMD, "bntcmd"},
    {XMLTAG_BNTCMD_MASSAGETYPE, "massagetype"},
    {XMLTAG_BNTCMD_MASSAGEPRIORITY, "massagepriority"},
    {XMLTAG_BNTCMD_ISREPLY, "isreply"},
    {XMLTAG_BNTCMD_PROCESSID, "processid"},
    {XMLTAG_BNTCMD_PRINTERID, "printerid"},
    {XMLTAG_BNTCMD_IFTYPE, "iftype"},
    {XMLTAG_BNTCMD_ADDRESS, "address"},
    {XMLTAG_BNTCMD_PASSWORD, "password"},
    {XMLTAG_BNTCMD_LOCATION_ID, "location_id"},
    {XMLTAG_BNTCMD_NIC_INDEX, "nic_index"},
    {XMLTAG_BNTCMD_USBRETRY_COUNT, "usbretry_count"},
    {XMLTAG_BNTCMD_USBRETRY_INTERVAL, "usbretry_interval"},
    {XMLTAG_BNTCMD_COMMURETRY_COUNT, "commuretry_count"},
    {XMLTAG_BNTCMD_COMMURETRY_INTERVAL, "commuretry_interval"},
    {XMLTAG_BNTCMD_EVENT_NAME, "event_name"},
    {XMLTAG_CMDRET_BNTCMDRET, "bntcmdret"},
    {XMLTAG_CMDRET_RET, "ret"},
    {XMLTAG_CMDRET_PARAM, "param"},
    {XMLTAG_RESULT_BNTRESULT, "bntresult"},
    {XMLTAG_RESULT_PRINTERID, "printerid"},
    {XMLTAG_RESULT_RESULT, "result"},
    {XMLTAG_RESULT_LAST, "last"},
    {XMLTAG_RESULT_IP_CHANGED, "ip_changed"},
    {XMLTAG_DETCHCMD_DETCHCMD, "detchcmd"},
    {XMLTAG_DETCHCMD_DETCHINFO, "detchinfo"},
    {XMLTAG_DETCHCMD_VELSJOBLOG_PATH, "velsJoblog_path"},
    {XMLTAG_DETCHCMD_JOBLOGDB_PATH, "joblogdb_path"},
    {XMLTAG_DETCHCMD_JOBLOGDB_VOLUME, "joblogdb_volume"},
    {XMLTAG_DETCHCMD_PRINTERLOG_PATH, "printerlog_path"},
    {XMLTAG_DETCHCMD_LASTGETLOG_PATH, "lastgetlog_path"},
    {XMLTAG_CMD_CMD, "cmd"},
    {XMLTAG_CMD_PRINTERID, "printerid"},
    {XMLTAG_CMD_IFTYPE, "iftype"},
    {XMLTAG_CMD_ADDRESS, "address"},
    {XMLTAG_CMD_PASSWORD, "password"},
    {XMLTAG_CMD_LOCATION_ID, "location_id"},
    {XMLTAG_CMD_NIC_INDEX, "nic_index"},
    {XMLTAG_CMD_USBRETRY_COUNT, "usbretry_count"},
    {XMLTAG_CMD_USBRETRY_INTERVAL, "usbretry_interval"},
    {XMLTAG_CMD_COMMURETRY_COUNT, "commuretry_count"},
    {XMLTAG_CMD_COMMURETRY_INTERVAL, "commuretry_interval"},
    {XMLTAG_DETCHRESULT_DETCHRESULT, "detchresult"},
    {XMLTAG_DETCHRESULT_RESULT, "result"},
    {XMLTAG_SCHED_SCHEDULEDEXPORTSETTING, "scheduledexportsetting"},
    {XMLTAG_SCHED_CYCLE, "cycle"},
    {XMLTAG_SCHED_DAY, "day"},
    {XMLTAG_SCHED_DEEP_RECOVERY, "deep_recovery"},
    {XMLTAG_SCHED_DESTINATION_DIRPATH, "destination_dirpath"},
    {XMLTAG_SCHED_UPDATE_TIME, "update_time"},
    {XMLTAG_SCHED_LANGUAGE, "language"},
    {XMLTAG_SCHED_COSTSETTING_DIRPATH, "costsetting_dirpath"},
    {XMLTAG_SCHEDLOG_SCHEDULEDEXPORTLOG, "scheduledexportlog"},
    {XMLTAG_SCHEDLOG_LOG, "log"},
    {XMLTAG_SCHEDLOG_EXECUTION_TIME, "execution_time"},
    {XMLTAG_SCHEDLOG_ERR_CODE, "err_code"},
    {XMLTAG_SCHEDLOG_FILE_PATH, "file_path"},
    {XMLTAG_SCHEDLOG_CYCLE, "cycle"},
    {XMLTAG_SCHEDLOG_DAY, "day"},
    {XMLTAG_SCHEDLOG_START_TIME, "start_time"},
    {XMLTAG_SCHEDLOG_END_TIME, "end_time"},
    {XMLTAG_SCHEDLOG_PRINTER_ID, "printer_id"},
    {XMLTAG_ATTR_ATTRIBUTETOP, "ATTRIBUTETOP"},
    {XMLTAG_ATTR_VERSION, "version"},
    {XMLTAG_ATTR_LANG, "lang"},
    {XMLTAG_ATTR_TYPE, "type"},
    {XMLTAG_ATTR_KEY, "key"},
    {XMLTAG_ATTR_ID, "id"},
    {XMLTAG_ATTR_NAME, "name"},
    {XMLTAG_ATTR_VISIBLE, "visible"},
    {XMLTAG_ATTR_FROM, "from"},
    {XMLTAG_ATTR_TO, "to"},
    {XMLTAG_ATTR_SELECT, "select"},
    {XMLTAG_ATTR_LOCATION_ID, "location_id"},
    {XMLTAG_ATTR_NIC_INDEX, "nic_index"},
    {XMLTAG_ATTR_TRACKING_NAME, "tracking_name"},
    {XMLTAG_ATTR_HOST_NAME, "host_name"},
};

constexpr Name KEYWORDS[] = {
    {COMMANDKEY_GET, "get"},
    {COMMANDKEY_END, "end"},
    {COMMANDKEY_OK, "ok"},
    {COMMANDKEY_NGCMD, "ngcmd"},
    {COMMANDKEY_NGQUEUE, "ngqueue"},
    {COMMANDKEY_SUCCESS_NONE, "success_none"},
    {COMMANDKEY_SUCCESS_NEW, "success_new"},
    {COMMANDKEY_FAILURE, "failure"},
    {COMMANDKEY_UNEXECUTE, "unexecute"},
    {COMMANDKEY_USB, "usb"},
    {COMMANDKEY_IPV4, "ipv4"},
    {COMMANDKEY_IPV6, "ipv6"},
    {COMMANDKEY_BONJOUR, "bonjour"},
    {COMMANDKEY_REQSATRT, "ReqSatrt"},
    {COMMANDKEY_REQEND, "ReqEnd"},
    {COMMANDKEY_REQRESULT, "ReqResult"},
    {COMMANDKEY_REQCANCEL, "ReqCancel"},
    {COMMANDKEY_NORMAL, "normal"},
    {COMMANDKEY_HIGH, "high"},
    {COMMANDKEY_SCHEDULEDEXPORT, "ScheduledExport"},
    {COMMANDKEY_FAILURE_INCOMP, "failure_incomp"},
    {COMMANDKEY_LOCK_TIMEOUT, "lock_timeout"},
    {COMMANDKEY_LOCK_TIMEOUT_INCOMP, "lock_timeout_incomp"},
};

template <size_t N>
constexpr bool IsAscendingWithout(const Name (&names)[N], unsigned int unused) {
    unsigned int expected = 1;
    for (const Name& name : names) {
        expected += expected == unused ? 1 : 0;
        if (name.id != expected++) {
            return false;
        }
    }
    return true;
}

static_assert(std::size(TAGS) == 201 && IsAscendingWithout(TAGS, 25));
static_assert(TAGS[std::size(TAGS) - 1].id == XMLTAG_LAST);
static_assert(std::size(KEYWORDS) == 23 && IsAscendingWithout(KEYWORDS, 14));

constexpr unsigned int CONTAINERS[] = {
    XMLTAG_SYS_CMSYSTEM,
    XMLTAG_PRN_MNGPRINTER,
    XMLTAG_PRN_PRINTER_LIST,
    XMLTAG_PRN_PRINTER,
    XMLTAG_CAPS_PRINTERCAPS,
    XMLTAG_CAPS_INKLIST,
    XMLTAG_CAPS_INK,
    XMLTAG_CAPS_MEDIATYPELIST,
    XMLTAG_CAPS_MEDIATYPE,
    XMLTAG_CAPS_MEDIASIZELIST,
    XMLTAG_CAPS_MEDIASIZE,
    XMLTAG_COST_MNGPRINTER,
    XMLTAG_COST_INK,
    XMLTAG_COST_MEDIA,
    XMLTAG_COST_EXTRA,
    XMLTAG_USER_CMUSERSETTING,
    XMLTAG_USER_JOBCOSTLISTSETTING,
    XMLTAG_USER_FILTERCONDITION,
    XMLTAG_USER_PRINTERLIST,
    XMLTAG_USER_SPANLIST,
    XMLTAG_USER_OTHERLIST,
    XMLTAG_DB_JOBLOGDBSETTING,
    XMLTAG_BNTSTART_BNTSTART,
    XMLTAG_BNTSTART_BNTINFO,
    XMLTAG_BNTSTART_DETCHINFO,
    XMLTAG_BNTCMD_BNTCMD,
    XMLTAG_CMDRET_BNTCMDRET,
    XMLTAG_RESULT_BNTRESULT,
    XMLTAG_DETCHCMD_DETCHCMD,
    XMLTAG_DETCHCMD_DETCHINFO,
    XMLTAG_CMD_CMD,
    XMLTAG_DETCHRESULT_DETCHRESULT,
};

// By tag, because a walk asks for every element.
constexpr auto IS_CONTAINER = [] {
    std::array<bool, XMLTAG_LAST + 1> flags{};
    for (const unsigned int id : CONTAINERS) {
        flags.at(id) = true;
    }
    return flags;
}();

struct AttributeCount {
    unsigned int id;
    unsigned int count;
};

constexpr AttributeCount ATTRIBUTE_COUNTS[] = {
    {XMLTAG_SYS_CMSYSTEM, 1},
    {XMLTAG_PRN_MNGPRINTER, 1},
    {XMLTAG_PRN_APP_INFO, 1},
    {XMLTAG_PRN_NAME, 1},
    {XMLTAG_PRN_PORT, 1},
    {XMLTAG_CAPS_PRINTERCAPS, 1},
    {XMLTAG_CAPS_INKCOLOR, 1},
    {XMLTAG_CAPS_MEDIATYPENAME, 1},
    {XMLTAG_CAPS_MEDIASIZENAME, 1},
    {XMLTAG_COST_EXTRANAME, 1},
    {XMLTAG_USER_JOBCOSTSETTING, 3},
    {XMLTAG_USER_PRINTER, 1},
    {XMLTAG_USER_SPAN, 2},
    {XMLTAG_USER_OTHER, 2},
};

template <size_t N>
void Fill(std::map<unsigned int, std::string>& map, const Name (&names)[N]) {
    if (map.empty()) {
        for (const Name& name : names) {
            map.emplace_hint(map.end(), name.id, name.text);
        }
    }
}

}  // namespace

bool xmlpxd::IsContainer(unsigned int tagId) {
    return tagId < IS_CONTAINER.size() && IS_CONTAINER[tagId];
}

void CCommonXmlPxd::CreateMapSystemCommonSettingTags() try {
    Fill(m_XmlTagIDs, TAGS);
} catch (const std::exception&) {
    m_XmlTagIDs.clear();  // out of memory: no catalogue rather than half of one
}

void CCommonXmlPxd::CreateMapCommandKeys() try {
    Fill(m_CommandKeys, KEYWORDS);
} catch (const std::exception&) {
    m_CommandKeys.clear();
}

// Interfaces of the class take texts by value.
// NOLINTBEGIN(performance-unnecessary-value-param)
unsigned int CCommonXmlPxd::GetElementID(std::string name, bool second) {
    for (const auto& [id, text] : m_XmlTagIDs) {
        if (text == name && !std::exchange(second, false)) {
            return id;
        }
    }
    return XMLTAG_NONE;
}

unsigned int CCommonXmlPxd::GetAttributeID(std::string name) {
    return AttributeID(name);
}
// NOLINTEND(performance-unnecessary-value-param)

unsigned int CCommonXmlPxd::AttributeID(std::string_view name) const {
    const auto found = std::find_if(m_XmlTagIDs.find(XMLTAG_ATTR_ATTRIBUTETOP), m_XmlTagIDs.end(),
                                    [&](const auto& entry) { return entry.second == name; });
    return found == m_XmlTagIDs.end() ? XMLTAG_NONE : found->first;
}

// Every element that is read asks for its number. A derived class may have changed any entry since
// the last operation, so the whole catalogue is compared, once for all the elements that an
// operation reads.
void CCommonXmlPxd::IndexTags() {
    if (m_isIndexed || std::equal(m_XmlTagIDs.begin(), m_XmlTagIDs.end(), m_indexedTags.begin(),
                                  m_indexedTags.end(), [](const auto& tag, const auto& indexed) {
                                      return tag.first == indexed.first &&
                                             tag.second == indexed.second;
                                  })) {
        return;
    }
    decltype(m_indexedTags) tags(m_XmlTagIDs.begin(), m_XmlTagIDs.end());
    decltype(m_tagIndex) index;
    for (const auto& [id, text] : tags) {
        index.emplace(text, id);  // the first of a name stays
    }
    m_indexedTags.swap(tags);
    m_tagIndex.swap(index);
}

unsigned int CCommonXmlPxd::FirstElementID(std::string_view name) const {
    const auto found = m_tagIndex.find(name);
    return found == m_tagIndex.end() ? static_cast<unsigned int>(XMLTAG_NONE) : found->second;
}

unsigned int CCommonXmlPxd::hasAttribute(unsigned int id) const {
    const auto* found =
        std::find_if(std::begin(ATTRIBUTE_COUNTS), std::end(ATTRIBUTE_COUNTS),
                     [&](const AttributeCount& attributes) { return attributes.id == id; });
    return found == std::end(ATTRIBUTE_COUNTS) ? 0 : found->count;
}
