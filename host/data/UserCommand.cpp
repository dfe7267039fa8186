#include "host/data/UserCommand.h"

#include <array>
#include <memory>
#include <string>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"
#include "host/common/Errors.h"
#include "host/common/Json.h"
#include "host/common/LibraryOutput.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"
#include "host/common/TextTable.h"
#include "host/settings/XmlFile.h"
#include "host/settings/XmlLayer.h"

namespace tallyquist {
namespace {

using Settings = CCommonXmlPxdDataUserSettings;

constexpr const char* FILE_NAME = "/CMUserSetting.cfg";

struct Value {
    unsigned int tagId;
    std::string Settings::*field;
};

// In the order in which they are read, which ends at the first that is missing.
constexpr auto VALUES = std::to_array<Value>({
    {XMLTAG_USER_DATE, &Settings::m_date},
    {XMLTAG_USER_CURRENCY, &Settings::m_currency},
    {XMLTAG_USER_SEPARATOR, &Settings::m_separator},
    {XMLTAG_USER_DECIMALPOINT, &Settings::m_decimalPoint},
    {XMLTAG_USER_INKUNIT, &Settings::m_inkUnit},
    {XMLTAG_USER_PAPERWIDTH, &Settings::m_paperWidth},
    {XMLTAG_USER_PAPERLENGTH, &Settings::m_paperLength},
    {XMLTAG_USER_SQUAREUNIT, &Settings::m_squareUnit},
    {XMLTAG_USER_ONEPAGEJOBNUMBER, &Settings::m_onePageJobNumber},
    {XMLTAG_USER_SPANDATE, &Settings::m_spanDate},
    {XMLTAG_USER_STARTDATE, &Settings::m_startDate},
    {XMLTAG_USER_LANGUAGE, &Settings::m_language},
});

struct Part {
    unsigned int tagId;
    unsigned int (CCommonXmlPxd::*read)(Settings& settings, void* node);
    const char* entries;  // what those must be that programs read
};

constexpr Part COLUMNS = {XMLTAG_USER_JOBCOSTLISTSETTING,
                          &CCommonXmlPxd::GetUserSetting_JobCostList,
                          "elements with three attributes"};

// Those of the filter condition.
constexpr auto FILTERS = std::to_array<Part>({
    {XMLTAG_USER_PRINTERLIST, &CCommonXmlPxd::GetUserSetting_FC_PrinterList, "printers"},
    {XMLTAG_USER_SPANLIST, &CCommonXmlPxd::GetUserSetting_FC_SpanList,
     "elements with two attributes"},
    {XMLTAG_USER_OTHERLIST, &CCommonXmlPxd::GetUserSetting_FC_OtherList,
     "elements with two attributes"},
});

// Reads the settings, part by part, so that it can tell which parts were not read: what reads all
// of them gives only that the file could be opened.
class Reader {
public:
    explicit Reader(const std::string& path) : m_path(path) {
        const LibraryOutput quiet;
        m_xml.Bind();
        if (!OpenXmlFile(m_xml, XMLTAG_USER_CMUSERSETTING, path)) {
            throw CommandError(Visible(path) + " is missing");
        }
        const XmlNode root(m_xml.Parser(), m_xml.OpenXml(FILE_NAME, true));
        if (!root) {
            throw CommandError("cannot read " + Visible(path));
        }
        ReadValues(root);
        ReadPart(COLUMNS, root);
        ReadFilters(root);
    }

    const Settings& Record() const { return m_settings; }
    // How many of VALUES were read.
    size_t ValueCount() const { return m_valueCount; }
    std::string NameOf(unsigned int tagId) const { return m_xml.Names().at(tagId); }
    // In lines.
    const std::string& Faults() const { return m_faults; }

private:
    void AddFault(unsigned int tagId, const std::string& text) {
        m_faults.append(m_faults.empty() ? "" : "\n")
            .append(Visible(m_path))
            .append(": ")
            .append(NameOf(tagId))
            .append(text);
    }

    void ReadValues(const XmlNode& root) {
        const bool areAll = m_xml.GetUserSetting_Scales(m_settings, root.Get()) == 0;
        for (const Value& value : VALUES) {
            std::string text;
            unsigned int err = XMLPXD_OK;
            if (!areAll && !m_xml.GetElementValueWithSearch(
                               root.Get(), static_cast<int>(value.tagId), true, &text, &err)) {
                AddFault(value.tagId, " is missing, and programs read none of the values after it");
                return;
            }
            ++m_valueCount;
        }
    }

    void ReadPart(const Part& part, const XmlNode& parent) {
        if (!Child(parent, part.tagId)) {
            AddFault(part.tagId, " is missing");
        } else if ((m_xml.*part.read)(m_settings, parent.Get()) != 0) {
            AddFault(part.tagId, std::string(" holds something but ").append(part.entries) +
                                     ", and programs read nothing from there on");
        }
    }

    void ReadFilters(const XmlNode& root) {
        const XmlNode condition = Child(root, XMLTAG_USER_FILTERCONDITION);
        if (!condition) {
            AddFault(XMLTAG_USER_FILTERCONDITION, " is missing");
            return;
        }
        for (const Part& part : FILTERS) {
            ReadPart(part, condition);
        }
    }

    XmlNode Child(const XmlNode& parent, unsigned int tagId) {
        unsigned int err = XMLPXD_OK;
        return {m_xml.Parser(), m_xml.SearchParentElement(parent.Get(), tagId, &err)};
    }

    std::string m_path;
    XmlLayer m_xml;
    Settings m_settings;
    size_t m_valueCount = 0;
    std::string m_faults;
};

bool WasRead(const Reader& reader, size_t value) {
    return value < reader.ValueCount();
}

Json JsonOf(const Reader& reader, const std::string& path) {
    const Settings& settings = reader.Record();
    Json json{{"file", path}};
    for (size_t at = 0; at < VALUES.size(); ++at) {
        const Value& value = VALUES.at(at);
        json[reader.NameOf(value.tagId)] =
            WasRead(reader, at) ? Json(settings.*value.field) : Json(nullptr);
    }
    Json columns = Json::array();
    for (const CCommonXmlPxdDataJobCost& column : settings.m_JobCostList) {
        columns.push_back(
            {{"id", column.m_id}, {"name", column.m_name}, {"value", column.m_value}});
    }
    Json spans = Json::array();
    for (const CCommonXmlPxdDataDateSpan& span : settings.m_SpanList) {
        spans.push_back({{"from", span.m_from}, {"to", span.m_to}});
    }
    Json others = Json::array();
    for (const CCommonXmlPxdDataOther& other : settings.m_OtherList) {
        others.push_back({{"select", other.m_select}, {"value", other.m_value}});
    }
    json[reader.NameOf(XMLTAG_USER_JOBCOSTLISTSETTING)] = std::move(columns);
    json[reader.NameOf(XMLTAG_USER_FILTERCONDITION)] = {
        {reader.NameOf(XMLTAG_USER_PRINTERLIST), settings.m_PrinterList},
        {reader.NameOf(XMLTAG_USER_SPANLIST), std::move(spans)},
        {reader.NameOf(XMLTAG_USER_OTHERLIST), std::move(others)}};
    return json;
}

std::string TextOf(const Reader& reader, const std::string& path) {
    const Settings& settings = reader.Record();
    TextTable values({"key", "value"});
    for (size_t at = 0; at < VALUES.size(); ++at) {
        const Value& value = VALUES.at(at);
        values.Add({reader.NameOf(value.tagId),
                    WasRead(reader, at) ? settings.*value.field : "(not read)"});
    }
    values.Add({"file", path});
    const auto addNone = [](bool isNone, TextTable& table) {
        if (isNone) {
            table.Add({"(none)", "", ""});
        }
    };
    TextTable columns({"column", "name", "value"});
    for (const CCommonXmlPxdDataJobCost& column : settings.m_JobCostList) {
        columns.Add({column.m_id, column.m_name, column.m_value});
    }
    addNone(settings.m_JobCostList.empty(), columns);
    TextTable filters({"filter", "value", ""});
    for (const std::string& printer : settings.m_PrinterList) {
        filters.Add({"printer", printer, ""});
    }
    for (const CCommonXmlPxdDataDateSpan& span : settings.m_SpanList) {
        filters.Add({"dates", span.m_from, span.m_to});
    }
    for (const CCommonXmlPxdDataOther& other : settings.m_OtherList) {
        filters.Add({"other", other.m_select, other.m_value});
    }
    addNone(settings.m_PrinterList.empty() && settings.m_SpanList.empty() &&
                settings.m_OtherList.empty(),
            filters);
    return values.Text() + "\n" + columns.Text() + "\n" + filters.Text();
}

void ShowUserSettings(bool json) {
    const std::string path = GetPluginResourcesPath() + FILE_NAME;
    const Reader reader(path);
    if (json) {
        WriteJson(JsonOf(reader, path));
    } else {
        WriteStandardOutput(TextOf(reader, path));
    }
    if (!reader.Faults().empty()) {
        throw CommandError(reader.Faults());
    }
}

}  // namespace

Command AddUserCommand(CLI::App& program) {
    const auto json = std::make_shared<bool>(false);
    CLI::App* line =
        AddCommandLine(program, "user", "Show how the application shows job costs, and of what.");
    line->require_subcommand(1);
    CLI::App* show = AddCommandLine(
        *line, "show",
        "Show the user settings: formats and units, the columns of job costs, and the filters.");
    show->add_flag("--json", *json, "Print an object for programs.");
    show->footer(
        "What programs cannot read of the file is told on standard error after what they can.\n"
        "Exit codes: 0 done, 1 failed or not all was read, 2 wrong usage.");
    return {line, [json] { ShowUserSettings(*json); }};
}

}  // namespace tallyquist
