#include "host/data/EntryValues.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "compatible/Utf8.h"
#include "host/common/Printable.h"
#include "host/common/WholeNumber.h"
#include "plugins/zopmekxmlpxd/TextChecks.h"

namespace tallyquist {
namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Digits, and perhaps the mark and digits again.
bool IsDecimal(std::string_view text, char mark) {
    const size_t at = text.find(mark);
    const auto isDigits = [](std::string_view part) {
        return !part.empty() && std::all_of(part.begin(), part.end(), IsDigit);
    };
    return isDigits(text.substr(0, at)) &&
           (at == std::string_view::npos || isDigits(text.substr(at + 1)));
}

std::string AdoptNumber(DecimalMark mark, std::string* value) {
    const bool isComma = mark == DecimalMark::COMMA;
    if (value->empty()) {
        return {};
    }
    if (IsDecimal(*value, isComma ? ',' : '.')) {
        std::replace(value->begin(), value->end(), ',', '.');
        return {};
    }
    if (!isComma && IsDecimal(*value, ',')) {
        return Printable(*value).append(
            " has a decimal comma; write a point, or import the table with --decimal-comma");
    }
    // With decimal commas a point may separate thousands, so that it is not guessed at.
    return Printable(*value).append(isComma ? " is no plain number such as 12,5"
                                            : " is no plain number such as 12.5");
}

std::string AdoptWhole(std::string* value) {
    const std::optional<int32_t> number = WholeNumber<int32_t>(*value);
    if (!number) {
        return Printable(*value).append(" is no whole number from -2147483648 to 2147483647");
    }
    *value = std::to_string(*number);
    return {};
}

}  // namespace

std::string TextFault(std::string_view text) {
    if (!IsUtf8(text)) {
        return Printable(text).append(" is not UTF-8");
    }
    if (FindForbidden(text) != std::string_view::npos) {
        return Printable(text).append(" holds a character that an XML file cannot hold");
    }
    return {};
}

std::string AdoptValue(const Field& field, DecimalMark mark, std::string* value) {
    std::string fault = TextFault(*value);
    if (!fault.empty()) {
        return fault;
    }
    switch (field.type) {
        case FieldType::NUMBER:
            return AdoptNumber(mark, value);
        case FieldType::WHOLE:
            return AdoptWhole(value);
        case FieldType::ID:
            return value->empty() ? "is empty" : "";
        case FieldType::TEXT:
            break;
    }
    return {};
}

void Complete(Entries& entries, EntryKinds kinds) {
    for (const EntryKind& kind : kinds) {
        if (!kind.IsList() && CountOf(entries, kind) == 0) {
            entries.push_back({&kind, {kind.initially}, {}});
        }
    }
}

std::vector<std::string> IdsOf(const Entry& entry) {
    std::vector<std::string> ids;
    for (size_t i = 0; i < entry.values.size(); ++i) {
        if (entry.kind->fields[i].type == FieldType::ID) {
            ids.push_back(entry.values[i]);
        }
    }
    return ids;
}

std::string EntryLabel(const Entry& entry) {
    std::string label = entry.kind->name;
    for (const std::string& id : IdsOf(entry)) {
        label.append(" ").append(Printable(id));
    }
    return label;
}

}  // namespace tallyquist
