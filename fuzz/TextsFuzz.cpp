// Any bytes as one of the texts that people and other programs write. The first one chooses which.
#include <filesystem>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "CostCountCommon/StringUtils.h"
#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/platform/linux/PropertyList.h"
#include "CostCountCommon/src/platform/linux/StringsFile.h"
#include "compatible/ReplaceAll.h"
#include "compatible/Utf8.h"
#include "fuzz/Fuzz.h"
#include "host/data/EntryTable.h"
#include "host/input/MediaSize.h"
#include "host/input/PageLogMatcher.h"
#include "tests/support/TempFolder.h"

namespace {

using namespace tallyquist;

std::string Replaced(std::string text, const char* from, const char* to) {
    ReplaceAll(text, from, to);
    return text;
}

// Nothing but quotes gets lost, and fields survive being quoted.
void SplitFields(const std::string& text) {
    const std::vector<std::string> fields = CStringUtils::SplitCsv(text.data(), text.size());
    std::string joined;
    std::string quoted;
    for (const std::string& field : fields) {
        joined.append(field).append(",");
        quoted.append("\"").append(Replaced(field, "\"", "\"\"")).append("\",");
    }
    Check(Replaced(joined, "\"", "") == Replaced(text, "\"", "").append(","));
    Check(CStringUtils::SplitCsv(quoted.data(), quoted.size() - 1) == fields);
}

// A size that is understood is one in millimetres too, also in a list.
void ReadMediaName(const std::string& name) {
    const auto size = ResolveMedia(name);
    Check(size == ResolveMedia("nothing," + name));
    if (size) {
        Check(size->width > 0 && size->height > 0);
        Check(size->width <= 1000000000 && size->height <= 1000000000);
        const std::string width = FormatMillimetres(size->width);
        const std::string height = FormatMillimetres(size->height);
        Check(ResolveMedia("Custom." + width + "x" + height + "MM") == size);
    }
}

// A line in the format is read as it was written, unless it is told to be ambiguous.
void ReadLogFormat(const std::string& text) try {
    constexpr const char* VALUES[] = {  // in the order of FieldKind
        "p",     "u u", "7", "[21/Nov/2026:09:46:54 +0100]",
        "total", "3",   "-", "localhost",
        "n n",   "-",   "-", "-",
        "-",     "t t"};
    const MatcherPair matchers = MakeMatchers(ParsePageLogFormat(text));
    for (const auto& matcher : {matchers.bare, matchers.quoted}) {
        std::string line;
        std::vector<std::string_view> values;
        for (const FormatPart& part : matcher->Format().parts) {
            if (part.IsField()) {
                values.emplace_back(VALUES[static_cast<size_t>(part.kind)]);
            }
            line.append(part.IsField() ? values.back() : part.literal);
        }
        Reading reading;
        Check(matcher->Completes(line) && matcher->StartsRecord(line));
        Check(matcher->Match(line, reading));
        Check(reading.ambiguous || reading.fields == values);
        for (const Column& column : LayOut(matcher->Format(), false).columns) {
            Check(column.name.find_first_of("\r\n") == std::string::npos);
        }
    }
} catch (const OptionError&) {
    return;  // no format
}

// Whether the table survives being written, in front of a mistake.
bool IsKept(const std::map<std::string, std::string>& table) {
    std::string text;
    for (const auto& [key, value] : table) {
        for (const std::string* part : {&key, &value}) {
            const std::string inner = Replaced(Replaced(*part, "\\", "\\\\"), "\"", "\\\"");
            text.append("\"").append(inner).append(part == &key ? "\"=" : "\";");
        }
    }
    return platform::ParseStringsFile(text + "\"a\" \"b\";") == table;
}

void ReadStringsFile(const std::string& bytes) {
    const auto table = platform::ParseStringsFile(bytes);
    for (const auto& [key, value] : table) {
        Check(IsUtf8(key) && IsUtf8(value));
    }
    Check(IsKept(table) && (!IsUtf8(bytes) || IsKept({{bytes, bytes}})));
}

// Any text survives as a value.
void ReadPropertyList(const std::string& text) {
    Check(platform::PropertyListString(text, "k").size() <= text.size());
    const std::string value = Replaced(Replaced(text, "&", "&amp;"), "<", "&lt;");
    const std::string list = "<!-- <key>k</key> --><key>k</key>\n<string>" + value;
    Check(platform::PropertyListString(list + "<!-- - --></string>", "k") == text);
}

// Whatever the file holds, the preference can be set, once. Each change takes a carriage return
// from the ends of lines.
void ReadPreferences(const std::string& text) {
    static const TempFolder home;
    constexpr const char* KEY = "ErrorLogConfirmTime";
    const std::string folder = home.Path("Norvane/Tallyquist");
    const std::string path = folder + "/preferences";
    setenv("XDG_CONFIG_HOME", home.Path().c_str(), 1);
    std::filesystem::create_directories(folder);
    WriteFile(path, text);
    std::string value;
    GetPreferenceValue(KEY, value);
    const std::string expected = value.empty() ? "-42" : value;
    SetPreferenceValue(KEY, expected.c_str());
    GetPreferenceValue(KEY, value);
    const std::string file = Replaced(ReadFile(path), "\r", "");
    SetPreferenceValue(KEY, value.c_str());
    Check(value == expected && Replaced(ReadFile(path), "\r", "") == file);
}

// The entries survive being written.
void ReadPriceList(const std::string& text) try {
    const auto read = [](const std::string& table) {
        return ReadEntryTable(std::make_unique<LineReader>("table", table), PRICE_LIST,
                              DecimalMark::POINT)
            .entries;
    };
    const Entries entries = read(text);
    const std::string table = EntryTableText(entries, PRICE_LIST);
    try {
        Check(read(table) == entries);
    } catch (const InputError&) {
        Check(false);
    }
} catch (const InputError&) {
    return;  // no price list
}

constexpr void (*READERS[])(const std::string&) = {
    SplitFields,      ReadMediaName,   ReadLogFormat, ReadStringsFile,
    ReadPropertyList, ReadPreferences, ReadPriceList};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const size_t choice = size > 0 ? *data - size_t{'0'} : 0;
    READERS[choice % std::size(READERS)](TextOf(data, size).erase(0, 1));
    return 0;
}
