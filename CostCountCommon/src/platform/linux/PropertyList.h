// The little of the XML property-list format that an Info.plist needs: one text by its key,
// wherever that stands, with comments and the five named entities, but without CDATA and numbered
// characters.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// The <string> that follows <key>`key`</key> in the property list `xml`, with its entities
// resolved; empty when the key is missing or its value is not a text.
std::string PropertyListString(std::string_view xml, std::string_view key);

}  // namespace platform
