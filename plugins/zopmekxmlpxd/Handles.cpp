#include "plugins/zopmekxmlpxd/Handles.h"

#include <cstdint>

#include "plugins/zopmekxmlpxd/Entry.h"

namespace {

constexpr uintptr_t ATTRIBUTE_BIT = 1;

bool IsAttribute(PNODE handle) {
    return (reinterpret_cast<uintptr_t>(handle) & ATTRIBUTE_BIT) != 0;
}

}  // namespace

PNODE HandleOf(pugi::xml_node element) {
    return element.internal_object();
}

PNODE HandleOf(pugi::xml_attribute attribute) {
    // Nodes and attributes lie at multiples of a pointer's size.
    return reinterpret_cast<char*>(attribute.internal_object()) + ATTRIBUTE_BIT;
}

Document& DocumentOf(PDOC handle) {
    Require(handle != nullptr, XMLPXD_INVALID_ARGUMENT);
    return *static_cast<Document*>(handle);
}

pugi::xml_node ElementOf(PNODE handle) {
    Require(handle != nullptr && !IsAttribute(handle), XMLPXD_INVALID_ARGUMENT);
    return pugi::xml_node(static_cast<pugi::xml_node_struct*>(handle));
}

pugi::xml_attribute AttributeOf(PNODE handle) {
    Require(handle != nullptr && IsAttribute(handle), XMLPXD_INVALID_ARGUMENT);
    return pugi::xml_attribute(
        reinterpret_cast<pugi::xml_attribute_struct*>(static_cast<char*>(handle) - ATTRIBUTE_BIT));
}

bool IsText(pugi::xml_node node) {
    const pugi::xml_node_type type = node.type();
    return type == pugi::node_pcdata || type == pugi::node_cdata;
}

pugi::xml_node ElementFrom(pugi::xml_node node) {
    while (node && node.type() != pugi::node_element) {
        node = node.next_sibling();
    }
    return node;
}
