#include "host/settings/XmlFault.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <pugixml.hpp>
#include <string_view>

#include "compatible/Utf8.h"
#include "host/common/Printable.h"
#include "plugins/zopmekxmlpxd/TextChecks.h"
#include "plugins/zopmekxmlpxd/WellFormed.h"

namespace tallyquist {
namespace {

constexpr const char* NOT_WELL_FORMED = "not well-formed XML";

struct Fault {
    size_t at;
    std::string reason;
};

// No character goes across a line's end, so that the line in which one is wrong is not UTF-8.
std::optional<size_t> FindNoUtf8(std::string_view text) {
    for (size_t start = 0; start < text.size();) {
        const size_t end = std::min(text.find('\n', start), text.size() - 1) + 1;
        if (!IsUtf8(text.substr(start, end - start))) {
            return start;
        }
        start = end;
    }
    return std::nullopt;
}

// The checks of the parser plug-in, of which the parser library has the best words.
std::optional<Fault> FindFault(std::string_view text) {
    if (const auto at = FindNoUtf8(text)) {
        return Fault{*at, "not UTF-8"};
    }
    const size_t forbidden = FindForbidden(text);
    if (forbidden != std::string_view::npos) {
        return Fault{forbidden, "a character that XML cannot hold"};
    }
    pugi::xml_document tree;
    const pugi::xml_parse_result parsed =
        tree.load_buffer(text.data(), text.size(), pugi::parse_full, pugi::encoding_utf8);
    if (!parsed && parsed.status != pugi::status_out_of_memory) {
        return Fault{static_cast<size_t>(parsed.offset),
                     std::string(NOT_WELL_FORMED).append(": ").append(parsed.description())};
    }
    const size_t unread = FindIllFormed(text, "UTF-8");
    if (unread != std::string_view::npos) {
        return Fault{unread, NOT_WELL_FORMED};
    }
    return std::nullopt;
}

}  // namespace

std::string DescribeXmlFault(const std::string& path) {
    constexpr std::string_view UTF8_MARK = "\xEF\xBB\xBF";
    const std::string shown = Visible(path);
    std::ifstream file(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), {});
    std::string_view text = bytes;
    if (text.starts_with(UTF8_MARK)) {
        text.remove_prefix(UTF8_MARK.size());
    }
    // The place in a file in UTF-16 is not looked for.
    const bool isUtf16 = text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
    const std::optional<Fault> fault = isUtf16 ? std::nullopt : FindFault(text);
    if (!fault) {
        return shown + ": " + NOT_WELL_FORMED;
    }
    const std::string_view before = text.substr(0, fault->at);
    return shown + ":" + std::to_string(std::count(before.begin(), before.end(), '\n') + 1) + ": " +
           fault->reason;
}

}  // namespace tallyquist
