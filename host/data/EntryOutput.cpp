#include "host/data/EntryOutput.h"

#include <algorithm>
#include <iterator>

#include "host/common/TextTable.h"

namespace tallyquist {
namespace {

Entries OfKind(const Entries& entries, const EntryKind& kind) {
    Entries some;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(some),
                 [&](const Entry& entry) { return entry.kind == &kind; });
    return some;
}

// The column of the first id bears the name of the kind.
std::string TableOf(const Entries& entries, const EntryKind& kind) {
    const std::set<std::string> languages = LanguagesOf(entries);
    TextTable::Cells header;
    for (const Field& field : kind.fields) {
        header.emplace_back(header.empty() ? kind.name : field.column);
    }
    for (const std::string& language : languages) {
        header.push_back(std::string("name:").append(language));
    }
    TextTable table(header);
    for (const Entry& entry : entries) {
        TextTable::Cells cells = entry.values;
        for (const std::string& language : languages) {
            const auto name = entry.names.find(language);
            cells.push_back(name == entry.names.end() ? "" : name->second);
        }
        table.Add(cells);
    }
    return table.Text();
}

Json JsonValue(const std::string& value, const Field& field) {
    return field.type == FieldType::WHOLE ? Json(std::stoi(value)) : Json(value);
}

Json JsonItem(const Entry& entry, const DataFiles& files) {
    const EntryKind& kind = *entry.kind;
    Json json = Json::object();
    for (size_t i = 0; i < entry.values.size(); ++i) {
        json[files.ElementName(kind.fields[i].tag)] = JsonValue(entry.values[i], kind.fields[i]);
    }
    if (kind.HasNames()) {
        Json& names = json[files.ElementName(kind.nameTag)] = Json::object();
        for (const auto& [language, name] : entry.names) {
            names[language] = name;
        }
    }
    return json;
}

}  // namespace

std::string TextOf(const Entries& entries, EntryKinds kinds) {
    std::string text;
    for (const EntryKind& kind : kinds) {
        const Entries some = OfKind(entries, kind);
        text.append(text.empty() ? "" : "\n");
        text.append(kind.IsList() ? TableOf(some, kind)
                                  : TextTable({kind.name, some.front().values.front()}).Text());
    }
    return text;
}

Json JsonOf(const Entries& entries, const DataFiles& files) {
    Json json = Json::object();
    for (const EntryKind& kind : files.Kind().entryKinds) {
        const Entries some = OfKind(entries, kind);
        if (!kind.IsList()) {
            json[files.ElementName(kind.fields.front().tag)] =
                JsonValue(some.front().values.front(), kind.fields.front());
            continue;
        }
        Json& list = json[files.ElementName(kind.list)] = Json::array();
        for (const Entry& entry : some) {
            list.push_back(JsonItem(entry, files));
        }
    }
    return json;
}

std::string CountsOf(const Entries& entries, EntryKinds kinds) {
    std::string text;
    for (const EntryKind& kind : kinds) {
        if (kind.IsList()) {
            text.append(text.empty() ? "" : ", ")
                .append(kind.name)
                .append(" ")
                .append(std::to_string(CountOf(entries, kind)));
        }
    }
    return text;
}

}  // namespace tallyquist
