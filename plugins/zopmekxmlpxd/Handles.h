// Handles of nodes and documents, and what they stand for.
#pragma once

#include <pugixml.hpp>
#include <string>

#include "CostCountCommon/include/XmlPxdFunctions.h"

struct Document {
    std::string m_text;  // the tree points into it
    pugi::xml_document m_tree;
};

// A handle of a node is the address that the parser library knows it by, with the lowest bit set
// for an attribute: making and giving back handles, which the library does at every step through a
// document, costs nothing.
PNODE HandleOf(pugi::xml_node element);
PNODE HandleOf(pugi::xml_attribute attribute);

// Each throws Refusal for a null handle or one of the other kind.
Document& DocumentOf(PDOC handle);
pugi::xml_node ElementOf(PNODE handle);
pugi::xml_attribute AttributeOf(PNODE handle);

// Whether the node is text or a CDATA section.
bool IsText(pugi::xml_node node);

// `node` itself or the first sibling after it that is an element; none when there is none.
pugi::xml_node ElementFrom(pugi::xml_node node);
