#include "host/data/SetPriceCommand.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/common/Errors.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"
#include "host/data/DataFiles.h"
#include "host/data/EntryValues.h"
#include "host/data/LanguageTexts.h"

namespace tallyquist {
namespace {

struct SetOptions {
    std::string name;
    std::string kind;
    std::vector<std::string> values;
    std::map<std::string, std::string> fields;  // by option
    std::vector<std::string> names;
};

struct FieldOption {
    const char* option;
    const char* column;
    const char* shape;
    const char* meaning;
};

constexpr FieldOption FIELD_OPTIONS[] = {
    {"--width", "width", "W", "Of media: the width that the price is for."},
    {"--length", "length", "L", "Of media: the length that the price is for."},
    {"--number", "number", "N", "Of media: the number that the price is for."},
    {"--cost", "cost", "C", "Of an extra: its price."},
    {"--calc", "calc", "T", "Of an extra: how it is computed."},
};

constexpr const char* NAME_OPTION = "--name";

const EntryKind& KindNamed(const std::string& name) {
    const EntryKinds kinds = PRICE_LIST.entryKinds;
    const auto kind = std::find_if(kinds.begin(), kinds.end(),
                                   [&](const EntryKind& one) { return name == one.name; });
    if (kind == kinds.end()) {
        throw UsageError(Printable(name).append(" is not one of ink, media, extra and hidden"));
    }
    return *kind;
}

std::string Adopted(const Field& field, std::string value) {
    const std::string fault = AdoptValue(field, DecimalMark::POINT, &value);
    if (!fault.empty()) {
        throw UsageError(std::string(field.column).append(": ").append(fault));
    }
    return value;
}

// What the command line says of one entry. A field that it does not tell is left out.
class GivenEntry {
public:
    explicit GivenEntry(const SetOptions& options) : m_kind(KindNamed(options.kind)) {
        TakeValues(options.values);
        for (const FieldOption& option : FIELD_OPTIONS) {
            const auto given = options.fields.find(option.option);
            if (given != options.fields.end()) {
                TakeOption(option, given->second);
            }
        }
        if (!options.names.empty() && !m_kind.HasNames()) {
            RefuseOption(NAME_OPTION);
        }
        m_names = ParseLanguageTexts(NAME_OPTION, options.names, true);
    }

    const EntryKind& Kind() const { return m_kind; }

    void ApplyTo(Entry& entry) const {
        entry.values.resize(m_kind.fields.size());
        for (const auto& [index, value] : m_values) {
            entry.values[index] = value;
        }
        for (const LanguageText& name : m_names) {
            ApplyName(name, entry.names);
        }
    }

private:
    // What a price cannot be without stands on the command line without an option.
    void TakeValues(const std::vector<std::string>& values) {
        std::string wanted;
        size_t taken = 0;
        for (size_t i = 0; i < m_kind.fields.size(); ++i) {
            const Field& field = m_kind.fields[i];
            if (field.use != NEEDED) {
                continue;
            }
            wanted.append(wanted.empty() ? " takes " : ", ").append(field.column);
            if (taken < values.size()) {
                m_values[i] = Adopted(field, values[taken]);
            }
            ++taken;
        }
        if (taken != values.size()) {
            throw UsageError(std::string(m_kind.name).append(wanted));
        }
    }

    void TakeOption(const FieldOption& option, const std::string& value) {
        for (size_t i = 0; i < m_kind.fields.size(); ++i) {
            const Field& field = m_kind.fields[i];
            if (field.use != NEEDED && std::string_view(option.column) == field.column) {
                m_values[i] = Adopted(field, value);
                return;
            }
        }
        RefuseOption(option.option);
    }

    // A name stays under the language as the file spells it.
    static void ApplyName(const LanguageText& name, std::map<std::string, std::string>& names) {
        const auto same = std::find_if(names.begin(), names.end(), [&](const auto& one) {
            return IsSameLanguage(one.first, name.language);
        });
        if (name.text.empty()) {
            if (same != names.end()) {
                names.erase(same);
            }
        } else {
            names[same != names.end() ? same->first : name.language] = name.text;
        }
    }

    [[noreturn]] void RefuseOption(const char* option) const {
        throw UsageError(std::string(m_kind.name).append(" takes no ").append(option));
    }

    const EntryKind& m_kind;
    std::map<size_t, std::string> m_values;  // by field
    std::vector<LanguageText> m_names;
};

// Whether the entry is a new one.
bool Apply(const GivenEntry& given, Entries& entries, const std::string& path) {
    Entry fresh{.kind = &given.Kind(), .values = {}, .names = {}};
    given.ApplyTo(fresh);
    const auto isSame = [&, ids = IdsOf(fresh)](const Entry& entry) {
        return entry.kind == fresh.kind && IdsOf(entry) == ids;
    };
    const auto same = std::find_if(entries.begin(), entries.end(), isSame);
    if (same == entries.end()) {
        const auto end = std::find_if(entries.begin(), entries.end(),
                                      [&](const Entry& entry) { return entry.kind > fresh.kind; });
        entries.insert(end, fresh);
        return true;
    }
    if (std::find_if(std::next(same), entries.end(), isSame) != entries.end()) {
        throw CommandError(Visible(path) + ": there are several of " + EntryLabel(fresh) +
                           ", so that none can be changed; export the list, correct and import it");
    }
    given.ApplyTo(*same);
    return false;
}

void SetPrice(const SetOptions& options) {
    const GivenEntry given(options);
    DataFiles files(PRICE_LIST);
    const std::string path = files.PathOf(options.name);
    Entry shown{.kind = &given.Kind(), .values = {}, .names = {}};
    given.ApplyTo(shown);
    bool isNew = false;
    files.Change(options.name, Damaged::REFUSE,
                 [&](Entries& entries) { isNew = Apply(given, entries, path); });
    WriteStandardOutput(Visible(path) + ": " + EntryLabel(shown) +
                        (isNew ? " added\n" : " changed\n"));
}

}  // namespace

Command AddSetPriceCommand(CLI::App& parent) {
    const auto options = std::make_shared<SetOptions>();
    CLI::App* line = AddCommandLine(
        parent, "set", "Change one price, or add it; a price list that is missing is made.");
    line->add_option("NAME", options->name, "The price list.")->type_name("")->required();
    line->add_option("KIND", options->kind, "ink, media, extra or hidden.")
        ->type_name("")
        ->required();
    line->add_option("VALUE", options->values, "What the kind needs, see below.")
        ->type_name("")
        ->required();
    for (const FieldOption& option : FIELD_OPTIONS) {
        line->add_option_function<std::string>(
                option.option,
                [options, key = option.option](const std::string& value) {
                    options->fields[key] = value;
                },
                option.meaning)
            ->option_text(option.shape);
    }
    line->add_option(NAME_OPTION, options->names,
                     "Of an extra: its name in a language; LANG= removes it. May be repeated.")
        ->option_text("LANG=TEXT")
        ->take_all()
        ->expected(1);
    line->footer(
        "  set NAME ink ID COST\n"
        "  set NAME media ID SIZE_ID COST [--width W] [--length L] [--number N]\n"
        "  set NAME extra ID [--name LANG=TEXT ...] [--cost C] [--calc T]\n"
        "  set NAME hidden NUMBER\n"
        "What is not given stays. A file that cannot be read is not touched.\n"
        "Exit codes: 0 done, 1 failed, 2 wrong usage.");
    return {line, [options] { SetPrice(*options); }};
}

}  // namespace tallyquist
