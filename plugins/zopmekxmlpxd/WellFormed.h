// Whether a text is a well-formed XML document, as far as the parser library does not look.
#pragma once

#include <cstddef>
#include <string_view>

// The library takes much that is no XML: it cuts text at &#0;, keeps unknown entities as text and
// so changes their meaning when it writes, and knows nothing of doubled attributes. This reads the
// whole grammar of XML 1.0 without a document type's declarations, except that an end tag matches
// its start tag, which the library sees to. Only the five predefined entities are accepted.
//
// `text` is UTF-8 with its line breaks already normalised, `encoding` what it was in: the one that
// a declaration may name.
bool IsWellFormed(std::string_view text, std::string_view encoding);

// Where reading ended because the text is not well-formed, which is at or after the mistake; npos
// when it is.
size_t FindIllFormed(std::string_view text, std::string_view encoding);
