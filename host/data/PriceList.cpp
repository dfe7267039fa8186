// Price lists as entries. External interface: PRICE_LIST.
#include <filesystem>

#include "host/data/FileKind.h"
#include "host/data/RecordEntries.h"

namespace tallyquist {
namespace {

using Ink = CCommonXmlPxdDataUnitCostInk;
using Media = CCommonXmlPxdDataUnitCostMedia;
using Extra = CCommonXmlPxdDataUnitCostExtra;

constexpr Field INK_FIELDS[] = {
    {"id", XMLTAG_COST_INKID, FieldType::ID, NEEDED},
    {"cost", XMLTAG_COST_INKCOST, FieldType::NUMBER, NEEDED},
    {"rsv", XMLTAG_COST_RSV, FieldType::TEXT, OPTIONAL},
};
constexpr std::string Ink::*INK_MEMBERS[] = {&Ink::m_InkID, &Ink::m_InkCost, &Ink::m_rsv};

constexpr Field MEDIA_FIELDS[] = {
    {"id", XMLTAG_COST_MEDIATYPEID, FieldType::ID, NEEDED},
    {"size_id", XMLTAG_COST_MEDIASIZEID, FieldType::ID, NEEDED},
    {"width", XMLTAG_COST_MEDIASIZEW, FieldType::NUMBER, OPTIONAL},
    {"length", XMLTAG_COST_MEDIASIZEL, FieldType::NUMBER, OPTIONAL},
    {"number", XMLTAG_COST_MEDIANUM, FieldType::NUMBER, OPTIONAL},
    {"cost", XMLTAG_COST_MEDIACOST, FieldType::NUMBER, NEEDED},
    {"rsv", XMLTAG_COST_MEDIA_RSV, FieldType::TEXT, OPTIONAL},
};
constexpr std::string Media::*MEDIA_MEMBERS[] = {
    &Media::m_MediaTypeID, &Media::m_MediaSizeID, &Media::m_MediaSizeW, &Media::m_MediaSizeL,
    &Media::m_MediaNum,    &Media::m_MediaCost,   &Media::m_rsv};

constexpr Field EXTRA_FIELDS[] = {
    {"id", XMLTAG_COST_EXTRAID, FieldType::ID, NEEDED},
    {"cost", XMLTAG_COST_EXTRACOST, FieldType::NUMBER, OPTIONAL},
    {"calc", XMLTAG_COST_EXTRACALC, FieldType::TEXT, OPTIONAL},
};
constexpr std::string Extra::*EXTRA_MEMBERS[] = {&Extra::m_ExtraID, &Extra::m_ExtraCost,
                                                 &Extra::m_ExtraCalc};

constexpr Field HIDDEN_FIELDS[] = {
    {"number", XMLTAG_COST_EXTRAHIDDENNUMBER, FieldType::WHOLE, NEEDED},
};

constexpr EntryKind KINDS[] = {
    {"ink", XMLTAG_COST_INKLIST, XMLTAG_COST_INK, INK_FIELDS, XMLTAG_NONE, ""},
    {"media", XMLTAG_COST_MEDIALIST, XMLTAG_COST_MEDIA, MEDIA_FIELDS, XMLTAG_NONE, ""},
    {"extra", XMLTAG_COST_EXTRALIST, XMLTAG_COST_EXTRA, EXTRA_FIELDS, XMLTAG_COST_EXTRANAME, ""},
    {"hidden", XMLTAG_NONE, XMLTAG_NONE, HIDDEN_FIELDS, XMLTAG_NONE, "0"},
};
constexpr const char* COLUMNS[] = {"id",     "size_id", "width", "length",
                                   "number", "cost",    "calc",  "rsv"};

constexpr const EntryKind& HIDDEN = KINDS[3];

constexpr RecordShape<Ink> INK{KINDS[0], INK_MEMBERS};
constexpr RecordShape<Media> MEDIA{KINDS[1], MEDIA_MEMBERS};
constexpr RecordShape<Extra> EXTRA{KINDS[2], EXTRA_MEMBERS, &Extra::m_ExtraName};

std::string FolderIn(const std::filesystem::path& path) {
    return path.parent_path().string().append("/");
}

Entries Read(XmlLayer& xml, const std::string& path) {
    CCommonXmlPxdDataUnitCost cost;
    std::string name = std::filesystem::path(path).filename();
    xml.GetUnitCost(name, FolderIn(path), cost);
    Entries entries;
    AppendEntries(cost.m_InkList, INK, entries);
    AppendEntries(cost.m_MediaList, MEDIA, entries);
    AppendEntries(cost.m_ExtraList, EXTRA, entries);
    entries.push_back({&HIDDEN, {std::to_string(cost.m_ExtraHiddenNumber)}, {}});
    return entries;
}

bool Write(XmlLayer& xml, const std::string& path, const Entries& entries) {
    CCommonXmlPxdDataUnitCost cost;
    AppendRecords(entries, INK, cost.m_InkList);
    AppendRecords(entries, MEDIA, cost.m_MediaList);
    AppendRecords(entries, EXTRA, cost.m_ExtraList);
    cost.m_ExtraHiddenNumber = std::stoi(entries.back().values.front());
    std::string name = std::filesystem::path(path).filename();
    return xml.CreateUnitCostFile(name, FolderIn(path), cost) == 0;
}

}  // namespace

const FileKind PRICE_LIST = {
    .noun = "price list",
    .nouns = "price lists",
    .place = MANAGEMENT_DATA_UNIT_COST,
    .folder = "/Cost/",
    .base = "/xmls/UnitCostBase.xml",
    .root = XMLTAG_COST_MNGPRINTER,
    .entryKinds = KINDS,
    .columns = COLUMNS,
    .read = Read,
    .write = Write,
};

}  // namespace tallyquist
