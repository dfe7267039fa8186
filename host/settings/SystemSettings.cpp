#include "host/settings/SystemSettings.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <string_view>

#include "compatible/Ascii.h"
#include "host/common/Errors.h"
#include "host/common/Printable.h"
#include "host/common/WholeNumber.h"
#include "host/settings/SettingsFile.h"

namespace tallyquist {
namespace {

constexpr unsigned int NUMBERS[] = {
    XMLTAG_SYS_BASECYCLE,          XMLTAG_SYS_MAXDETCH,         XMLTAG_SYS_DEFAULTPRINTERCYCLE,
    XMLTAG_SYS_USBRETRYCOUNT,      XMLTAG_SYS_USBRETRYINTERVAL, XMLTAG_SYS_COMMURETRYCOUNT,
    XMLTAG_SYS_COMMURETRYINTERVAL, XMLTAG_SYS_CHECKCMSINTERVAL, XMLTAG_SYS_CHECKJOBLOGERRINTERVAL,
    XMLTAG_SYS_CANCELINTERVAL,     XMLTAG_SYS_SEARCHTIMEOUT,    XMLTAG_SYS_SEARCHTTL,
};

// Those that programs append to the path of a folder.
constexpr unsigned int PATHS[] = {
    XMLTAG_SYS_PRINTERLISTPATH,        XMLTAG_SYS_PRINTERCAPSPATH,
    XMLTAG_SYS_JOBLOGDBSETTINGPATH,    XMLTAG_SYS_ACTIONLOGPATH,
    XMLTAG_SYS_ACTIONLOGPATHREGIDENT,  XMLTAG_SYS_GETERRJOBLOGPATH,
    XMLTAG_SYS_LASTGETLOGPATH,         XMLTAG_SYS_COSTSETTINGPATH,
    XMLTAG_SYS_USERSETTINGPATH,        XMLTAG_SYS_SCHEDULESETTINGPATH,
    XMLTAG_SYS_SCHEDULEDEXPORTLOGPATH,
};

constexpr unsigned int LEVELS[] = {XMLTAG_SYS_ACTIONLOGLEVEL, XMLTAG_SYS_GETERRJOBLOGLEVEL};

template <size_t COUNT>
bool IsAmong(const unsigned int (&ids)[COUNT], unsigned int id) {
    return std::find(std::begin(ids), std::end(ids), id) != std::end(ids);
}

bool IsNumber(const std::string& value) {
    return WholeNumber<int>(value) && value.front() != '-';
}

// Below a folder, and not out of it again.
bool IsRelativePath(const std::string& value) {
    return value.starts_with('/') && (value + "/").find("/../") == std::string::npos &&
           std::none_of(value.begin(), value.end(),
                        [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

// How many letters must be added, taken away or replaced to make one text of the other, whatever
// the case.
size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t replaced = diagonal + (AsciiLower(a[i]) == AsciiLower(b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::vector<unsigned int> SystemSettingIds(const XmlLayer& xml) {
    std::vector<unsigned int> ids;
    for (const auto& [id, name] : xml.Names()) {
        if (id >= SYSTEM_SETTINGS.first && id <= SYSTEM_SETTINGS.last) {
            ids.push_back(id);
        }
    }
    return ids;
}

unsigned int SystemSettingId(const XmlLayer& xml, const std::string& name) {
    constexpr size_t LONGEST = 64;  // nobody means a setting by more
    size_t nearest = std::max<size_t>(1, name.size() / 3) + 1;
    std::string meant;
    for (const unsigned int id : SystemSettingIds(xml)) {
        const std::string& known = xml.Names().at(id);
        if (known == name) {
            return id;
        }
        const size_t distance = name.size() > LONGEST ? nearest : EditDistance(name, known);
        if (distance < nearest) {
            nearest = distance;
            meant = known;
        }
    }
    throw UsageError(Printable(name) + " is not a setting; " +
                     (meant.empty() ? "'tallyquist settings' lists them"
                                    : std::string("did you mean ").append(meant).append("?")));
}

void CheckSystemSetting(const XmlLayer& xml, unsigned int tagId, const std::string& value) {
    const std::string& name = xml.Names().at(tagId);
    if (IsAmong(NUMBERS, tagId) && !IsNumber(value)) {
        throw UsageError(name + " is a number from 0 to 2147483647, not " + Printable(value));
    }
    if (IsAmong(PATHS, tagId) && !IsRelativePath(value)) {
        throw UsageError(name +
                         " is appended to the path of a folder: it begins with a slash and does "
                         "not lead out again, unlike " +
                         Printable(value));
    }
    if (IsAmong(LEVELS, tagId) && value != "e" && value != "w" && value != "i" && value != "d") {
        throw UsageError(name + " is one of e, w, i, d, not " + Printable(value));
    }
}

}  // namespace tallyquist
