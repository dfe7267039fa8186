// The fields of a printer record, one row of a table each. External interface: PrinterFields.h.
#include "host/data/PrinterFields.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include "compatible/Ascii.h"
#include "host/common/Errors.h"
#include "host/common/TextTable.h"
#include "host/data/LanguageTexts.h"

namespace tallyquist {
namespace {

using Printer = CCommonPrinterInfo;

template <auto GET>
std::string TextOf(const Printer& printer) {
    std::string text;
    (printer.*GET)(&text);
    return text;
}

template <auto GET>
Json GetText(const Printer& printer) {
    return TextOf<GET>(printer);
}

template <auto SET>
void SetText(Printer& printer, const Argument& argument) {
    (printer.*SET)(argument.text);
}

template <auto GET>
Json GetNumber(const Printer& printer) {
    return (printer.*GET)();
}

template <auto SET, auto FIRST, auto LAST>
void SetNumber(Printer& printer, const Argument& argument) {
    (printer.*SET)(ParseNumber(argument, FIRST, LAST));
}

void SetSerialNumber(Printer& printer, const Argument& argument) {
    if (argument.text.empty()) {
        throw UsageError(std::string(argument.option).append(": must not be empty"));
    }
    printer.SetSerialNumber(argument.text);
}

bool IsHexDigit(char c) {
    const char lower = AsciiLower(c);
    return (c >= '0' && c <= '9') || (lower >= 'a' && lower <= 'f');
}

// Six pairs of digits, with colons or hyphens between them or nothing.
bool IsMacAddress(const std::string& text) {
    const bool isBare = text.size() == 12;
    if (!isBare && (text.size() != 17 || (text[2] != ':' && text[2] != '-'))) {
        return false;
    }
    for (size_t at = 0; at < text.size(); ++at) {
        const bool isSign = !isBare && at % 3 == 2;
        if (isSign ? text[at] != text[2] : !IsHexDigit(text[at])) {
            return false;
        }
    }
    return true;
}

}  // namespace

void SetMacAddress(Printer& printer, const Argument& argument) {
    if (!argument.text.empty() && !IsMacAddress(argument.text)) {
        Refuse(argument, " is not a MAC address such as 00:1B:44:11:3A:B7");
    }
    printer.SetMacAddress(argument.text);
}

namespace {

constexpr const char* BONJOUR = "bonjour";
constexpr auto PORT_TYPES = std::to_array<std::string_view>({"usb", "ipv4", "ipv6", BONJOUR});

bool IsBonjour(const Printer& printer) {
    return TextOf<&Printer::GetPortType>(printer) == BONJOUR;
}

void SetPortType(Printer& printer, const Argument& argument) {
    if (std::find(PORT_TYPES.begin(), PORT_TYPES.end(), argument.text) == PORT_TYPES.end()) {
        Refuse(argument, " is not one of usb, ipv4, ipv6, bonjour");
    }
    printer.SetPortType(argument.text);
}

// A record keeps the host name of a bonjour port where it keeps the text of others.
Json GetPortText(const Printer& printer) {
    return IsBonjour(printer) ? std::string() : TextOf<&Printer::GetPortNumber>(printer);
}

Json GetHostName(const Printer& printer) {
    return IsBonjour(printer) ? Json(TextOf<&Printer::GetPortNumber>(printer)) : Json(nullptr);
}

Json GetTrackingName(const Printer& printer) {
    return printer.GetExistTrackingName() ? Json(TextOf<&Printer::GetTrackingName>(printer))
                                          : Json(nullptr);
}

void SetTrackingName(Printer& printer, const Argument& argument) {
    printer.SetTrackingName(argument.text);
    printer.SetExistTrackingName(true);
}

enum Trait : unsigned int {
    PLAIN = 0,
    OF_PORT = 1,   // the port's text or an attribute of it
    REQUIRED = 2,  // of a new printer
    SECRET = 4,
};

struct Field {
    const char* key;  // as the file has it
    unsigned int traits;
    const char* option;  // empty: another field's sets it
    const char* shape;
    const char* meaning;
    Json (*get)(const Printer& printer);  // null for a text that the file does not have
    void (*set)(Printer& printer, const Argument& argument);
};

constexpr int LAST_INT = std::numeric_limits<int>::max();
constexpr int FIRST_INT = std::numeric_limits<int>::min();
constexpr unsigned int LAST_UINT = std::numeric_limits<unsigned int>::max();

// In the order of the file. The type of the port comes before its text, which depends on it.
constexpr auto FIELDS = std::to_array<Field>({
    {"model_name", PLAIN, "--model", "TEXT", "The model.", GetText<&Printer::GetModelName>,
     SetText<&Printer::SetModelName>},
    {"serial_number", REQUIRED, "--serial", "TEXT",
     "The serial number, which no other printer of the list has.",
     GetText<&Printer::GetSerialNumber>, SetSerialNumber},
    {"mac_address", PLAIN, "--mac", "ADDRESS", "The MAC address.", GetText<&Printer::GetMacAddress>,
     SetMacAddress},
    {"type", OF_PORT | REQUIRED, "--port-type", "usb|ipv4|ipv6|bonjour",
     "How the printer is connected.", GetText<&Printer::GetPortType>, SetPortType},
    {"text", OF_PORT, "--port", "TEXT",
     "The port's address or number; the host name for a bonjour port, which needs one.",
     GetPortText, SetText<&Printer::SetPortNumber>},
    {"location_id", OF_PORT, "--location-id", "NUMBER", "The location of a USB port.",
     GetNumber<&Printer::GetLocationId>, SetNumber<&Printer::SetLocationId, 0U, LAST_UINT>},
    {"nic_index", OF_PORT, "--nic-index", "NUMBER",
     "The index of the network interface through which the printer is reached.",
     GetNumber<&Printer::GetNicIndex>, SetNumber<&Printer::SetNicIndex, FIRST_INT, LAST_INT>},
    {"tracking_name", OF_PORT, "--tracking-name", "TEXT", "The port's tracking name.",
     GetTrackingName, SetTrackingName},
    {"host_name", OF_PORT, "", "", "", GetHostName, nullptr},
    {"support_oxal_service", PLAIN, "--services", "TEXT", "The services that the printer supports.",
     GetText<&Printer::GetOXALServices>, SetText<&Printer::SetOXALServices>},
    {"friendly_name", PLAIN, "--friendly-name", "TEXT", "The name that its users gave it.",
     GetText<&Printer::GetFriendlyName>, SetText<&Printer::SetFriendlyName>},
    {"auth_info", SECRET, "--auth-info", "TEXT", "Authentication information; it is not shown.",
     GetText<&Printer::GetAuthInfo>, SetText<&Printer::SetAuthInfo>},
    {"additional_info", PLAIN, "--additional-info", "TEXT", "Anything else.",
     GetText<&Printer::GetAdditionalInfo>, SetText<&Printer::SetAdditionalInfo>},
    {"cycle_time", PLAIN, "--cycle-time", "NUMBER",
     "The cycle in which data is fetched, in seconds.", GetNumber<&Printer::GetPrinterTick>,
     SetNumber<&Printer::SetPrinterTick, 0, LAST_INT>},
    {"cycle_acquisition", PLAIN, "--cycle-acquisition", "TEXT",
     "The setting of acquisition in cycles.", GetText<&Printer::GetPrinterCycleAcquisition>,
     SetText<&Printer::SetPrinterCycleAcquisition>},
    {"regist_printer", PLAIN, "--regist", "TEXT", "The state of the registration.",
     GetText<&Printer::GetRegist>, SetText<&Printer::SetRegist>},
});

constexpr const char* NAME_OPTION = "--name";

std::vector<LanguageText> NamesOf(const Printer& printer) {
    std::vector<LanguageText> names;
    size_t used = 0;
    for (unsigned int slot = 0; slot < Printer::NAMES; ++slot) {
        LanguageText& name = names.emplace_back();
        printer.GetPrinterName(&name.text, slot);
        printer.GetLanguage(&name.language, slot);
        used = name.text.empty() ? used : names.size();
    }
    names.resize(used);
    return names;
}

}  // namespace

std::string SerialNumberOf(const Printer& printer) {
    return TextOf<&Printer::GetSerialNumber>(printer);
}

std::string ShownNameOf(const Printer& printer) {
    const std::vector<LanguageText> names = NamesOf(printer);
    const auto found = std::find_if(names.begin(), names.end(),
                                    [](const LanguageText& name) { return !name.text.empty(); });
    return found != names.end() ? found->text : TextOf<&Printer::GetFriendlyName>(printer);
}

Json JsonOf(const Printer& printer, bool showSecrets) {
    Json names = Json::array();
    for (const LanguageText& name : NamesOf(printer)) {
        names.push_back({{"lang", name.language}, {"text", name.text}});
    }
    Json json{{"name", names}};
    for (const Field& field : FIELDS) {
        Json& parent = (field.traits & OF_PORT) != 0 ? json["port"] : json;
        const bool isHidden = (field.traits & SECRET) != 0 && !showSecrets;
        parent[field.key] = isHidden ? Json(nullptr) : field.get(printer);
    }
    return json;
}

std::string TableOf(const Printer& printer, bool showSecrets) {
    TextTable table({"key", "value"});
    for (const LanguageText& name : NamesOf(printer)) {
        table.Add({std::string("name ").append(name.language), name.text});
    }
    for (const Field& field : FIELDS) {
        const Json value = field.get(printer);
        std::string shown = value.is_null()     ? "(none)"
                            : value.is_string() ? value.get<std::string>()
                                                : value.dump();
        if ((field.traits & SECRET) != 0 && (!showSecrets || shown.empty())) {
            shown = shown.empty() ? "(not set)" : "(set)";
        }
        table.Add(
            {std::string((field.traits & OF_PORT) != 0 ? "port " : "").append(field.key), shown});
    }
    return table.Text();
}

void PrinterArguments::AddTo(CLI::App& line, bool isNew) {
    m_isNew = isNew;
    CLI::Option* trackingName = nullptr;
    for (const Field& field : FIELDS) {
        if (field.set == nullptr) {
            continue;
        }
        const bool isRequired = isNew && (field.traits & REQUIRED) != 0;
        const char* key = field.option;
        CLI::Option* option =
            line.add_option_function<std::string>(
                    field.option, [this, key](const std::string& value) { m_values[key] = value; },
                    field.meaning)
                ->option_text(std::string(field.shape).append(isRequired ? " (required)" : ""))
                ->required(isRequired);
        if (isNew) {
            option->check(NotEmpty());
        }
        trackingName = field.set == SetTrackingName ? option : trackingName;
    }
    line.add_option(NAME_OPTION, m_names,
                    isNew ? "The name in a language. Up to 10, in this order."
                          : "The name in a language, added or changed; LANG= removes it. May be "
                            "repeated.")
        ->option_text("LANG=TEXT")
        ->take_all()
        ->expected(1);
    if (!isNew) {
        line.add_flag("--no-tracking-name", m_dropTrackingName, "Take the tracking name away.")
            ->excludes(trackingName);
    }
}

void PrinterArguments::ApplyTo(Printer& printer) const {
    const bool wasBonjour = IsBonjour(printer);
    for (const Field& field : FIELDS) {
        const auto given = m_values.find(field.option);
        if (given != m_values.end()) {
            const Argument argument{field.option, given->second};
            CheckHeldByXml(argument);
            field.set(printer, argument);
        }
    }
    if (m_dropTrackingName) {
        printer.SetTrackingName("");
        printer.SetExistTrackingName(false);
    }
    const bool hasPort = m_values.contains("--port");
    if (!m_isNew && wasBonjour != IsBonjour(printer) && !hasPort) {
        throw UsageError(
            "--port is needed: a bonjour port has a host name where others have an address or a "
            "number");
    }
    if (IsBonjour(printer) && (hasPort || m_isNew) &&
        TextOf<&Printer::GetPortNumber>(printer).empty()) {
        throw UsageError("--port is needed: a bonjour port has a host name");
    }
    ApplyNamesTo(printer);
}

// A name that becomes empty leaves the list, because programs read names up to the first empty one.
void PrinterArguments::ApplyNamesTo(Printer& printer) const {
    if (m_names.empty()) {
        return;
    }
    std::vector<LanguageText> names = NamesOf(printer);
    for (const LanguageText& given : ParseLanguageTexts(NAME_OPTION, m_names, !m_isNew)) {
        const auto same = std::find_if(names.begin(), names.end(), [&](const LanguageText& name) {
            return IsSameLanguage(name.language, given.language);
        });
        if (same != names.end()) {
            same->text = given.text;
        } else {
            names.push_back(given);
        }
    }
    std::erase_if(names, [](const LanguageText& name) { return name.text.empty(); });
    if (names.size() > Printer::NAMES) {
        throw UsageError(std::string(NAME_OPTION)
                             .append(": a printer has at most 10 names, not ")
                             .append(std::to_string(names.size())));
    }
    names.resize(Printer::NAMES);
    for (unsigned int slot = 0; slot < Printer::NAMES; ++slot) {
        printer.SetPrinterName(names[slot].text, slot);
        printer.SetLanguage(names[slot].language, slot);
    }
}

}  // namespace tallyquist
