// From a document to XML text.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "plugins/zopmekxmlpxd/Handles.h"

enum class Layout {
    AS_IT_IS,  // with the document's own white space
    INDENTED,  // anew, for people, without change to any text
};

// Takes the text in pieces, so that a large one need not lie in memory.
using TextSink = std::function<void(std::string_view)>;

// Both throw Refusal with `tooLarge` for a text that could not be read again; some of it may have
// been given to the sink then.
void Serialize(const Document& document, Layout layout, XmlPxdError tooLarge, const TextSink& sink);
std::string Serialized(const Document& document, Layout layout, XmlPxdError tooLarge);
