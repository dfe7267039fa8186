// Any bytes as one of the texts that people and other programs write. The first one chooses which.
#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "CostCountCommon/StringUtils.h"
#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/platform/linux/PropertyList.h"
#include "CostCountCommon/src/platform/linux/StringsFile.h"
#include "compatible/ReplaceAll.h"
#include "compatible/Utf16.h"
#include "compatible/Utf8.h"
#include "fuzz/Fuzz.h"
#include "host/input/MediaSize.h"
#include "host/input/PageLogMatcher.h"
#include "tests/support/TempFolder.h"

namespace {

using namespace tallyquist;

std::string Replaced(std::string text, const char* from, const char* to) {
    ReplaceAll(text, from, to);
    return text;
}

std::string Joined(const std::vector<std::string>& fields, const std::string& quote) {
    std::string text;
    for (const std::string& field : fields) {
        text.append(&field == &fields.front() ? "" : ",");
        text.append(quote).append(quote.empty() ? field : Replaced(field, "\"", "\"\""));
        text.append(quote);
    }
    return text;
}

// Nothing but quotes gets lost, and fields survive being quoted.
void SplitFields(const std::string& text) {
    const std::vector<std::string> fields = CStringUtils::SplitCsv(text.data(), text.size());
    Check(Replaced(Joined(fields, ""), "\"", "") == Replaced(text, "\"", ""));
    const std::string quoted = Joined(fields, "\"");
    Check(CStringUtils::SplitCsv(quoted.data(), quoted.size()) == fields);
    const std::wstring wide(text.begin(), text.end());
    const std::vector<std::wstring> wideFields = CStringUtils::SplitCsv(wide.data(), wide.size());
    Check(wideFields.size() == fields.size());
    for (size_t i = 0; i < fields.size(); ++i) {
        Check(wideFields[i] == std::wstring(fields[i].begin(), fields[i].end()));
    }
}

// A size that is understood is one in millimetres too, also in a list.
void ReadMediaName(const std::string& name) {
    const std::optional<MediaSize> size = ResolveMedia(name);
    Check(size == ResolveMedia("nothing," + name));
    if (size) {
        Check(size->width > 0 && size->height > 0);
        Check(size->width <= 1000000000 && size->height <= 1000000000);
        const std::string width = FormatMillimetres(size->width);
        const std::string height = FormatMillimetres(size->height);
        Check(ResolveMedia("Custom." + width + "x" + height + "MM") == size);
    }
}

const char* ValueOf(FieldKind kind) {
    switch (kind) {
        case FieldKind::JOB:
            return "7";
        case FieldKind::TIME:
            return "[21/Nov/2026:09:46:54 +0100]";
        case FieldKind::PAGE:
            return "total";
        case FieldKind::COUNT:
            return "3";
        case FieldKind::HOST:
            return "localhost";
        case FieldKind::PRINTER:
        case FieldKind::USER:
        case FieldKind::NAME:
            return "x";
        default:
            return "-";
    }
}

// A line in the format is read as it was written, unless it is told to be ambiguous.
void ReadLogFormat(const std::string& text) try {
    const MatcherPair matchers = MakeMatchers(ParsePageLogFormat(text));
    for (const auto& matcher : {matchers.bare, matchers.quoted}) {
        std::string line;
        std::vector<std::string_view> values;
        bool isField = !matcher->Format().parts.front().IsField();
        for (const FormatPart& part : matcher->Format().parts) {
            Check(part.IsField() != isField);
            isField = part.IsField();
            if (isField) {
                values.emplace_back(ValueOf(part.kind));
            }
            line.append(isField ? ValueOf(part.kind) : part.literal);
        }
        Reading reading;
        Check(matcher->Completes(line) && matcher->StartsRecord(line));
        Check(matcher->Match(line, reading));
        Check(reading.ambiguous || reading.fields == values);
        const RecordLayout layout = LayOut(matcher->Format(), false);
        Check(layout.columnOf.size() == values.size());
        for (const size_t column : layout.columnOf) {
            Check(layout.columns.at(column).name.find_first_of("\r\n") == std::string::npos);
        }
    }
} catch (const OptionError&) {
    return;  // no format
}

std::string Escaped(const std::string& text) {
    const std::string inner = Replaced(Replaced(text, "\\", "\\\\"), "\"", "\\\"");
    return std::string("\"").append(inner).append("\"");
}

// The table survives being written, in either encoding, and what follows a mistake.
void ReadStringsFile(const std::string& bytes) {
    const auto table = platform::ParseStringsFile(bytes);
    std::string text;
    for (const auto& [key, value] : table) {
        Check(IsUtf8(key) && IsUtf8(value));
        text.append(Escaped(key)).append("=").append(Escaped(value)).append(";");
    }
    text.append("\"a\" \"b\";");
    Check(platform::ParseStringsFile(text) == table);
    std::u16string units;
    Check(Utf16FromUtf8("\xEF\xBB\xBF" + text, &units));
    std::string utf16(units.size() * sizeof units.front(), '\0');
    std::memcpy(utf16.data(), units.data(), utf16.size());
    Check(platform::ParseStringsFile(utf16) == table);
}

// Any text survives as a value.
void ReadPropertyList(const std::string& text) {
    Check(platform::PropertyListString(text, "k").size() <= text.size());
    const std::string value = Replaced(Replaced(text, "&", "&amp;"), "<", "&lt;");
    const std::string list = "<!-- <key>k</key> --><key>k</key>\n<string>" + value + "</string>";
    Check(platform::PropertyListString(list, "k") == text);
}

// Whatever the file holds, the preference can be set, once. Each change takes a carriage return
// from the ends of lines.
void ReadPreferences(const std::string& text) {
    static const TempFolder home;
    const std::string folder = home.Path("Norvane/Tallyquist");
    setenv("XDG_CONFIG_HOME", home.Path().c_str(), 1);
    std::filesystem::create_directories(folder);
    constexpr const char* KEY = "ErrorLogConfirmTime";
    const std::string path = folder + "/preferences";
    WriteFile(path, text);
    std::string value;
    GetPreferenceValue(KEY, value);
    const std::string expected = value.empty() ? "-42" : value;
    SetPreferenceValue(KEY, expected.c_str());
    GetPreferenceValue(KEY, value);
    Check(value == expected);
    const std::string file = Replaced(ReadFile(path), "\r", "");
    SetPreferenceValue(KEY, value.c_str());
    Check(Replaced(ReadFile(path), "\r", "") == file);
    Check(file.ends_with(std::string(KEY) + "=" + value + "\n"));
}

constexpr void (*READERS[])(const std::string&) = {
    SplitFields, ReadMediaName, ReadLogFormat, ReadStringsFile, ReadPropertyList, ReadPreferences};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 0) {
        READERS[*data % std::size(READERS)](TextOf(data + 1, size - 1));
    }
    return 0;
}
