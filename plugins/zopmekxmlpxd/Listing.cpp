// The entries that list nodes.
#include <locale.h>
#if __has_include(<xlocale.h>)
#include <xlocale.h>  // where some systems declare the locales of threads
#endif

#include <string_view>

#include "compatible/Utf8.h"
#include "plugins/zopmekxmlpxd/Entry.h"
#include "plugins/zopmekxmlpxd/Handles.h"

namespace {

// Counts all nodes and hands out the first ones.
class List {
public:
    List(PNODE* nodes, unsigned int capacity) : m_nodes(nodes), m_capacity(capacity) {
        Require(nodes != nullptr || capacity == 0, XMLPXD_INVALID_ARGUMENT);
    }

    void Add(PNODE node) {
        if (m_count < m_capacity) {
            m_nodes[m_count] = node;
        }
        ++m_count;
    }

    unsigned int Count() const { return m_count; }

private:
    PNODE* m_nodes;
    unsigned int m_capacity;
    unsigned int m_count = 0;
};

// Numbers of expressions have a decimal point, whatever the locale of the program: the parser
// library reads and writes them by functions that follow the locale.
class PlainNumbers {
public:
    PlainNumbers() : m_plain(newlocale(LC_ALL_MASK, "C", nullptr)) {
        Require(m_plain != nullptr, XMLPXD_OUT_OF_MEMORY);
        m_earlier = uselocale(m_plain);
    }
    ~PlainNumbers() {
        uselocale(m_earlier);
        freelocale(m_plain);
    }
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;

private:
    locale_t m_plain;
    locale_t m_earlier = nullptr;
};

// The next node below `top` in document order; none after the last.
pugi::xml_node NextBelow(pugi::xml_node node, pugi::xml_node top) {
    if (node.first_child()) {
        return node.first_child();
    }
    while (node != top && !node.next_sibling()) {
        node = node.parent();
    }
    return node == top ? pugi::xml_node() : node.next_sibling();
}

}  // namespace

unsigned int GetElementsByElementName(PNODE element, const char* name, PNODE* nodes,
                                      unsigned int capacity, unsigned int* /*work*/,
                                      unsigned int* err) {
    return Answer(err, 0U, [=] {
        Require(name != nullptr, XMLPXD_INVALID_ARGUMENT);
        const pugi::xml_node top = ElementOf(element);
        const std::string_view wanted = name;
        List list(nodes, capacity);
        for (pugi::xml_node node = NextBelow(top, top); node; node = NextBelow(node, top)) {
            if (node.type() == pugi::node_element && wanted == node.name()) {
                list.Add(HandleOf(node));
            }
        }
        return list.Count();
    });
}

unsigned int GetAllChildElements(PNODE element, PNODE* nodes, unsigned int capacity,
                                 unsigned int* /*work*/, unsigned int* err) {
    return Answer(err, 0U, [=] {
        List list(nodes, capacity);
        for (pugi::xml_node child = ElementFrom(ElementOf(element).first_child()); child;
             child = ElementFrom(child.next_sibling())) {
            list.Add(HandleOf(child));
        }
        return list.Count();
    });
}

unsigned int GetAttributes(PNODE element, PNODE* attributes, unsigned int capacity,
                           unsigned int* /*work*/, unsigned int* err) {
    return Answer(err, 0U, [=] {
        List list(attributes, capacity);
        for (const pugi::xml_attribute attribute : ElementOf(element).attributes()) {
            list.Add(HandleOf(attribute));
        }
        return list.Count();
    });
}

unsigned int SelectNodesInElement(PNODE element, const char* xpath, PNODE* nodes,
                                  unsigned int capacity, unsigned int* /*work*/,
                                  unsigned int* err) {
    return Answer(err, 0U, [=] {
        Require(xpath != nullptr && IsUtf8(xpath), XMLPXD_INVALID_ARGUMENT);
        List list(nodes, capacity);
        const PlainNumbers numbers;
        pugi::xpath_node_set found = ElementOf(element).select_nodes(xpath);
        found.sort();
        for (const pugi::xpath_node& node : found) {
            if (node.attribute()) {
                list.Add(HandleOf(node.attribute()));
            } else if (node.node().type() == pugi::node_element) {
                list.Add(HandleOf(node.node()));
            }
        }
        return list.Count();
    });
}
