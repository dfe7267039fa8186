// The entries for one element: making, removing, moving about, name and text.
#include <cstring>
#include <string>

#include "plugins/zopmekxmlpxd/Entry.h"
#include "plugins/zopmekxmlpxd/Handles.h"
#include "plugins/zopmekxmlpxd/TextChecks.h"

namespace {

// `node` itself or the first sibling after it that is text; none when there is none.
pugi::xml_node TextFrom(pugi::xml_node node) {
    while (node && !IsText(node)) {
        node = node.next_sibling();
    }
    return node;
}

pugi::xml_node FirstText(pugi::xml_node element) {
    return TextFrom(element.first_child());
}

PNODE Existing(pugi::xml_node node, unsigned int* err) {
    *err = node ? XMLPXD_OK : XMLPXD_NO_SUCH_NODE;
    return HandleOf(node);
}

// Removes a node and all below it from the leaves up. The parser library would recurse, and a
// document may be deeper than the stack.
void RemoveTree(pugi::xml_node top) {
    pugi::xml_node node = top;
    while (true) {
        while (const pugi::xml_node child = node.first_child()) {
            node = child;
        }
        pugi::xml_node parent = node.parent();
        parent.remove_child(node);
        if (node == top) {
            return;
        }
        node = parent;
    }
}

void SetText(pugi::xml_node element, const std::string& text) {
    const pugi::xml_node old = FirstText(element);
    if (!text.empty()) {
        pugi::xml_node added = old ? element.insert_child_before(pugi::node_pcdata, old)
                                   : element.prepend_child(pugi::node_pcdata);
        if (!added.set_value(text.c_str())) {
            element.remove_child(added);
            throw Refusal(XMLPXD_OUT_OF_MEMORY);
        }
    }
    // Only now is there nothing left to fail.
    for (pugi::xml_node node = old; node;) {
        const pugi::xml_node next = node.next_sibling();
        if (IsText(node)) {
            element.remove_child(node);
        }
        node = next;
    }
}

pugi::xml_node AddElement(pugi::xml_node parent, const char* name, pugi::xml_node before) {
    pugi::xml_node element = before ? parent.insert_child_before(pugi::node_element, before)
                                    : parent.append_child(pugi::node_element);
    if (!element.set_name(name)) {
        parent.remove_child(element);
        throw Refusal(XMLPXD_OUT_OF_MEMORY);
    }
    return element;
}

}  // namespace

void DeleteNode(PNODE /*node*/) {}  // a handle is an address in the tree and owns nothing

PNODE GetDocumentElement(PDOC document, unsigned int* err) {
    return Answer(err, PNODE{},
                  [=] { return HandleOf(DocumentOf(document).m_tree.document_element()); });
}

PNODE CreateElement(PNODE parent, const char* name, unsigned int* err) {
    return Answer(err, PNODE{},
                  [=] { return HandleOf(AddElement(ElementOf(parent), CheckedName(name), {})); });
}

PNODE CreateElementWithValue(PNODE parent, const char* name, const char* value, PNODE before,
                             unsigned int valueKind, unsigned int* err) {
    return Answer(err, PNODE{}, [=] {
        pugi::xml_node parentElement = ElementOf(parent);
        const pugi::xml_node place = before == nullptr ? pugi::xml_node() : ElementOf(before);
        Require(!place || place.parent() == parentElement, XMLPXD_INVALID_ARGUMENT);
        const std::string text = CheckedValue(value, valueKind);
        const pugi::xml_node element = AddElement(parentElement, CheckedName(name), place);
        try {
            SetText(element, text);
        } catch (const Refusal&) {
            parentElement.remove_child(element);
            throw;
        }
        return HandleOf(element);
    });
}

unsigned int RemoveElement(PNODE element) {
    return Outcome([=] {
        const pugi::xml_node node = ElementOf(element);
        Require(node.parent().type() == pugi::node_element, XMLPXD_INVALID_ARGUMENT);
        RemoveTree(node);
    });
}

PNODE GetFirstChild(PNODE element, unsigned int* err) {
    return Answer(err, PNODE{},
                  [=] { return Existing(ElementFrom(ElementOf(element).first_child()), err); });
}

PNODE GetNextSibling(PNODE element, unsigned int* err) {
    return Answer(err, PNODE{},
                  [=] { return Existing(ElementFrom(ElementOf(element).next_sibling()), err); });
}

PNODE GetParentNode(PNODE element, unsigned int* err) {
    return Answer(err, PNODE{}, [=] {
        const pugi::xml_node parent = ElementOf(element).parent();
        return Existing(parent.type() == pugi::node_element ? parent : pugi::xml_node(), err);
    });
}

unsigned long GetElementName(PNODE element, char* buffer, unsigned long size, unsigned int* err) {
    return Answer(err, XMLPXD_NO_LENGTH,
                  [=] { return CopyText(ElementOf(element).name(), buffer, size); });
}

unsigned long GetElementText(PNODE element, char* buffer, unsigned long size, unsigned int* err) {
    return Answer(err, XMLPXD_NO_LENGTH, [=] {
        const pugi::xml_node node = ElementOf(element);
        size_t length = 0;
        for (pugi::xml_node text = FirstText(node); text; text = TextFrom(text.next_sibling())) {
            length += std::strlen(text.value());
        }
        if (IsFilling(buffer, size, length + 1)) {
            char* end = buffer;
            for (pugi::xml_node text = FirstText(node); text;
                 text = TextFrom(text.next_sibling())) {
                const size_t part = std::strlen(text.value());
                std::memcpy(end, text.value(), part);
                end += part;
            }
            *end = '\0';
        }
        return static_cast<unsigned long>(length);
    });
}

unsigned int SetElementValue(PNODE element, const char* value, unsigned int valueKind) {
    return Outcome([=] { SetText(ElementOf(element), CheckedValue(value, valueKind)); });
}
