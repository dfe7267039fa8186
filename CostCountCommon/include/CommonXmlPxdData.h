// The value records of the XML layer. Fields are named as the elements and attributes that they
// come from; texts are as the files have them, not looked into.
#pragma once

#include <list>
#include <map>
#include <string>

// One element as it was read, chained to the next. Made by CCommonXmlPxd::GetElements, given back
// with CCommonXmlPxd::releaseElementData.
struct CCommonXmlPxdElementData {
    std::string m_Name;
    std::list<std::string> m_Values;  // one entry, the element's text, empty or not
    unsigned int m_ElementID = 0;
    // One entry per attribute each, in document order.
    std::list<std::string> m_AttributeNames;
    std::list<unsigned int> m_AttributeIDs;
    std::list<std::string> m_AttributeValues;
    CCommonXmlPxdElementData* m_Next = nullptr;
};

// --- Unit costs: the prices that job costs are computed with ---

struct CCommonXmlPxdDataUnitCostInk {
    std::string m_InkID;
    std::string m_InkCost;
    std::string m_rsv;  // reserved
};

struct CCommonXmlPxdDataUnitCostMedia {
    std::string m_MediaTypeID;
    std::string m_MediaSizeID;
    std::string m_MediaSizeW;
    std::string m_MediaSizeL;
    std::string m_MediaNum;
    std::string m_MediaCost;
    std::string m_rsv;  // reserved
};

struct CCommonXmlPxdDataUnitCostExtra {
    std::string m_ExtraID;
    std::map<std::string, std::string> m_ExtraName;  // by language code
    std::string m_ExtraCost;
    std::string m_ExtraCalc;
};

struct CCommonXmlPxdDataUnitCost {
    std::list<CCommonXmlPxdDataUnitCostInk> m_InkList;
    std::list<CCommonXmlPxdDataUnitCostMedia> m_MediaList;
    std::list<CCommonXmlPxdDataUnitCostExtra> m_ExtraList;
    int m_ExtraHiddenNumber = 0;
};

// --- Printer capabilities: what a printer can use ---

struct CCommonXmlPxdDataInk {
    std::string m_InkID;
    std::string m_InkColor;
    std::string m_InkTank;
};

struct CCommonXmlPxdDataMediaType {
    std::string m_MediaTypeID;
    std::map<std::string, std::string> m_MediaTypeName;  // by language code
};

struct CCommonXmlPxdDataMediaSize {
    std::string m_MediaSizeID;
    std::string m_MediaSizeName;
};

struct CCommonXmlPxdDataPrinterCaps {
    std::list<CCommonXmlPxdDataInk> m_InkList;
    std::list<CCommonXmlPxdDataMediaType> m_MediaTypeList;
    std::list<CCommonXmlPxdDataMediaSize> m_MediaSizeList;
    std::string m_DispUnknownJoblog;  // whether job logs of unknown kinds are shown
};

// --- User settings: how the application shows costs and which jobs ---

struct CCommonXmlPxdDataJobCost {
    std::string m_id;
    std::string m_name;
    std::string m_value;  // of the third attribute, whatever its name
};

struct CCommonXmlPxdDataDateSpan {
    std::string m_from;
    std::string m_to;
};

struct CCommonXmlPxdDataOther {
    std::string m_select;
    std::string m_value;  // of the second attribute, whatever its name
};

struct CCommonXmlPxdDataUserSettings {
    std::string m_date;
    std::string m_currency;
    std::string m_separator;
    std::string m_decimalPoint;
    std::string m_inkUnit;
    std::string m_paperWidth;
    std::string m_paperLength;
    std::string m_squareUnit;
    std::string m_onePageJobNumber;
    std::string m_spanDate;
    std::string m_startDate;
    std::string m_language;
    std::list<CCommonXmlPxdDataJobCost> m_JobCostList;
    std::list<std::string> m_PrinterList;
    std::list<CCommonXmlPxdDataDateSpan> m_SpanList;
    std::list<CCommonXmlPxdDataOther> m_OtherList;
};

// --- Messages to and from the background tools ---

// What a command asks for. The numbers 3 and 6 are no commands.
enum BNTCOMMAND_TYPE : int {
    BNTCOMMAND_GET = 0,
    BNTCOMMAND_END = 1,
    BNTCOMMAND_REQUEST_START = 2,
    BNTCOMMAND_REQUEST_END = 4,
    BNTCOMMAND_REQUEST_RESULT = 5,
    BNTCOMMAND_SCHEDULED_EXPORT = 7,
};

// Whatever is not high is normal.
enum BNTCOMMAND_PRIORITY : int {
    BNTCOMMAND_NORMAL = 0,
    BNTCOMMAND_HIGH = 1,
};

// How a command was received.
enum BNTCMDRET_TYPE : int {
    BNTCMDRET_OK = 0,
    BNTCMDRET_NGCMD = 1,    // rejected
    BNTCMDRET_NGQUEUE = 2,  // not queued
};

// How a job ended, as CCommonXmlPxd::CreateResultCommand takes it; other numbers are sent as a
// failure.
enum BNTRESULT_TYPE : unsigned int {
    BNTRESULT_SUCCESS_NONE = 0,  // no new data
    BNTRESULT_SUCCESS_NEW = 1,   // new data
    BNTRESULT_FAILURE = 2,
    BNTRESULT_UNEXECUTE = 3,  // not executed
    BNTRESULT_FAILURE_INCOMP = 4,
    BNTRESULT_LOCK_TIMEOUT = 5,
    BNTRESULT_LOCK_TIMEOUT_INCOMP = 6,
};

// A command as it was received.
struct CBntCommandValue {
    std::string m_MessageType;  // the keyword
    std::string m_MessagePriority;
    bool m_IsReply = false;
    std::string m_ProcessId;
    std::string m_PrinterId;  // the printer's serial number
    std::string m_IfType;
    std::string m_Address;
    std::string m_Password;
    std::string m_UsbRetryCount;
    std::string m_UsbRetryInterval;
    std::string m_CommuRetryCount;
    std::string m_CommuRetryInterval;
    std::string m_EventName;
    int m_LocationId = 0;
    int m_NicIndex = 0;
};
