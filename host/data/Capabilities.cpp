// Printer capabilities as entries. External interface: CAPABILITIES.
#include <filesystem>

#include "host/data/FileKind.h"
#include "host/data/RecordEntries.h"

namespace tallyquist {
namespace {

using Ink = CCommonXmlPxdDataInk;
using MediaType = CCommonXmlPxdDataMediaType;
using MediaSize = CCommonXmlPxdDataMediaSize;

constexpr Field INK_FIELDS[] = {
    {"id", XMLTAG_CAPS_INKID, FieldType::ID, NEEDED},
    {"color", XMLTAG_CAPS_INKCOLOR, FieldType::TEXT, MAY_BE_ABSENT},
    {"tank", XMLTAG_CAPS_INKTANK, FieldType::TEXT, OPTIONAL},
};
constexpr std::string Ink::*INK_MEMBERS[] = {&Ink::m_InkID, &Ink::m_InkColor, &Ink::m_InkTank};

constexpr Field MEDIA_TYPE_FIELDS[] = {
    {"id", XMLTAG_CAPS_MEDIATYPEID, FieldType::ID, NEEDED},
};
constexpr std::string MediaType::*MEDIA_TYPE_MEMBERS[] = {&MediaType::m_MediaTypeID};

constexpr Field MEDIA_SIZE_FIELDS[] = {
    {"id", XMLTAG_CAPS_MEDIASIZEID, FieldType::ID, NEEDED},
    {"name", XMLTAG_CAPS_MEDIASIZENAME, FieldType::TEXT, MAY_BE_ABSENT},
};
constexpr std::string MediaSize::*MEDIA_SIZE_MEMBERS[] = {&MediaSize::m_MediaSizeID,
                                                          &MediaSize::m_MediaSizeName};

constexpr Field UNKNOWN_JOBLOG_FIELDS[] = {
    {"value", XMLTAG_CAPS_DISPUNKNOWNJOBLOG, FieldType::TEXT, NEEDED},
};

constexpr EntryKind KINDS[] = {
    {"ink", XMLTAG_CAPS_INKLIST, XMLTAG_CAPS_INK, INK_FIELDS, XMLTAG_NONE, ""},
    {"media_type", XMLTAG_CAPS_MEDIATYPELIST, XMLTAG_CAPS_MEDIATYPE, MEDIA_TYPE_FIELDS,
     XMLTAG_CAPS_MEDIATYPENAME, ""},
    {"media_size", XMLTAG_CAPS_MEDIASIZELIST, XMLTAG_CAPS_MEDIASIZE, MEDIA_SIZE_FIELDS, XMLTAG_NONE,
     ""},
    {"unknown_joblog", XMLTAG_NONE, XMLTAG_NONE, UNKNOWN_JOBLOG_FIELDS, XMLTAG_NONE, ""},
};
constexpr const char* COLUMNS[] = {"id", "color", "tank", "name", "value"};

constexpr const EntryKind& UNKNOWN_JOBLOG = KINDS[3];

constexpr RecordShape<Ink> INK{KINDS[0], INK_MEMBERS};
constexpr RecordShape<MediaType> MEDIA_TYPE{KINDS[1], MEDIA_TYPE_MEMBERS,
                                            &MediaType::m_MediaTypeName};
constexpr RecordShape<MediaSize> MEDIA_SIZE{KINDS[2], MEDIA_SIZE_MEMBERS};

Entries Read(XmlLayer& xml, const std::string& path) {
    CCommonXmlPxdDataPrinterCaps caps;
    std::string name = std::filesystem::path(path).filename();
    xml.GetPrinterCaps(name, caps);
    Entries entries;
    AppendEntries(caps.m_InkList, INK, entries);
    AppendEntries(caps.m_MediaTypeList, MEDIA_TYPE, entries);
    AppendEntries(caps.m_MediaSizeList, MEDIA_SIZE, entries);
    entries.push_back({&UNKNOWN_JOBLOG, {caps.m_DispUnknownJoblog}, {}});
    return entries;
}

bool Write(XmlLayer& xml, const std::string& path, const Entries& entries) {
    CCommonXmlPxdDataPrinterCaps caps;
    AppendRecords(entries, INK, caps.m_InkList);
    AppendRecords(entries, MEDIA_TYPE, caps.m_MediaTypeList);
    AppendRecords(entries, MEDIA_SIZE, caps.m_MediaSizeList);
    caps.m_DispUnknownJoblog = entries.back().values.front();
    std::string name = std::filesystem::path(path).filename();
    return xml.CreatePrinterCapsFile(name, caps) == 0;
}

}  // namespace

const FileKind CAPABILITIES = {
    .noun = "capabilities file",
    .nouns = "capabilities files",
    .place = MANAGEMENT_DATA_PRINTER_CAPS,
    .folder = "/PrinterCaps/",
    .base = "/xmls/PrinterCapsBase.xml",
    .root = XMLTAG_CAPS_PRINTERCAPS,
    .entryKinds = KINDS,
    .columns = COLUMNS,
    .read = Read,
    .write = Write,
};

}  // namespace tallyquist
