#include "CostCountCommon/src/platform/linux/PropertyList.h"

#include <array>
#include <cstddef>
#include <utility>

namespace platform {
namespace {

std::string WithoutComments(std::string_view xml) {
    std::string text;
    for (size_t from = 0;;) {
        const size_t open = xml.find("<!--", from);
        text += xml.substr(from, open - from);
        const size_t close = open == std::string_view::npos ? open : xml.find("-->", open);
        if (close == std::string_view::npos) {
            return text;
        }
        from = close + 3;
    }
}

std::string WithoutEntities(std::string_view text) {
    static constexpr std::array<std::pair<std::string_view, char>, 5> ENTITIES{
        {{"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}}};
    std::string plain;
    while (!text.empty()) {
        std::string_view taken = text.substr(0, 1);
        char character = text.front();
        for (const auto& [entity, meaning] : ENTITIES) {
            if (text.starts_with(entity)) {
                taken = entity;
                character = meaning;
            }
        }
        plain += character;
        text.remove_prefix(taken.size());
    }
    return plain;
}

}  // namespace

std::string PropertyListString(std::string_view xml, std::string_view key) {
    const std::string text = WithoutComments(xml);
    const std::string element = "<key>" + std::string(key) + "</key>";
    const size_t at = text.find(element);
    if (at == std::string::npos) {
        return {};
    }
    constexpr std::string_view OPEN = "<string>";
    const size_t value = text.find_first_not_of(" \t\r\n", at + element.size());
    if (value == std::string::npos || text.compare(value, OPEN.size(), OPEN) != 0) {
        return {};
    }
    const size_t begin = value + OPEN.size();
    const size_t end = text.find("</string>", begin);
    return end == std::string::npos
               ? std::string()
               : WithoutEntities(std::string_view(text).substr(begin, end - begin));
}

}  // namespace platform
