// From a document to XML text.
#pragma once

#include <string>

#include "plugins/zopmekxmlpxd/Handles.h"

enum class Layout {
    AS_IT_IS,  // with the document's own white space
    INDENTED,  // anew, for people, without change to any text
};

// Throws Refusal with `tooLarge` for a text that could not be read again.
std::string Serialized(const Document& document, Layout layout, XmlPxdError tooLarge);
