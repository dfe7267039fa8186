// The walk over random documents against a slow model of it over a tree of its own.
#include <algorithm>
#include <memory>
#include <optional>
#include <random>
#include <utility>
#include <vector>

#include "tests/CostCountCommon/BoundXml.h"

namespace {

struct Tag {
    const char* name;
    unsigned int first;   // number, 0 for a name that nobody knows
    unsigned int second;  // of a printer in a printerList
};

const Tag TAGS[] = {
    {"mngprinter", 33, 0}, {"printer_list", 35, 0}, {"printer", 36, 103}, {"name", 37, 0},
    {"port", 41, 0},       {"InkList", 50, 0},      {"Ink", 51, 0},       {"MediaList", 70, 0},
    {"Media", 71, 0},      {"ExtraList", 79, 0},    {"Extra", 80, 0},     {"printerList", 102, 0},
    {"spanList", 104, 0},  {"select", 198, 0},      {"unknown", 0, 0},
};
const unsigned int CONTAINERS[] = {33, 35, 36, 50, 51, 71, 80, 102, 104};

constexpr unsigned int NONE_LEFT = 1;
constexpr unsigned int UNKNOWN = 2;

struct Element {
    int number = 0;  // in document order
    const Tag* tag = nullptr;
    Element* parent = nullptr;
    std::vector<std::unique_ptr<Element>> children;
};

struct Found {
    const Element* element;
    unsigned int err;
};

Found OrNone(const Element* element) {
    return {element, element != nullptr ? 0 : NONE_LEFT};
}

const Element* Sibling(const Element& element) {
    if (element.parent == nullptr) {
        return nullptr;
    }
    const auto& all = element.parent->children;
    const auto self = std::find_if(all.begin(), all.end(),
                                   [&](const auto& child) { return child.get() == &element; });
    return self + 1 == all.end() ? nullptr : (self + 1)->get();
}

Found Next(const Element& element, unsigned int id) {
    if (std::count(std::begin(CONTAINERS), std::end(CONTAINERS), id) != 0) {
        return OrNone(element.children.empty() ? nullptr : element.children.front().get());
    }
    if (const Element* sibling = Sibling(element)) {
        return {sibling, 0};
    }
    return OrNone(element.parent == nullptr ? nullptr : Sibling(*element.parent));
}

unsigned int IdOf(const Element& element) {
    const bool isUsers =
        element.tag->first == 36 && element.parent != nullptr && element.parent->tag->first == 102;
    return isUsers ? element.tag->second : element.tag->first;
}

Found NextOfSelf(const Element& element) {
    return IdOf(element) == 0 ? Found{nullptr, UNKNOWN} : Next(element, IdOf(element));
}

Found Search(const Element& start, const Tag& wanted) {
    Found found = NextOfSelf(start);
    while (found.element != nullptr && found.element->tag != &wanted) {
        // The search deliberately takes a candidate for what its name means first.
        const unsigned int id = found.element->tag->first;
        found = id == 0 ? Found{nullptr, UNKNOWN} : Next(*found.element, id);
    }
    return found;
}

struct Records {
    std::vector<std::pair<int, unsigned int>> read;  // element and its identifier
    unsigned int err = 0;
};

Records Read(const Element& parent) {
    Records records;
    Found current = {&parent, 0};
    while (records.read.size() < parent.children.size() && records.err == 0) {
        current = NextOfSelf(*current.element);
        records.err = current.err;
        if (current.element != nullptr && IdOf(*current.element) == 0) {
            records.err = UNKNOWN;
        }
        if (records.err == 0) {
            records.read.emplace_back(current.element->number, IdOf(*current.element));
        }
    }
    return records;
}

class RandomDocument {
public:
    explicit RandomDocument(std::mt19937& random) : m_random(random) { m_root = Grow(nullptr, 4); }

    const std::string& Text() const { return m_text; }
    const std::vector<const Element*>& Elements() const { return m_elements; }

private:
    int Pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }

    // The text of each element is its number.
    std::unique_ptr<Element> Grow(Element* parent, int levels) {
        auto element = std::make_unique<Element>();
        // Names that nobody knows end a walk, so most documents have none.
        const int known = static_cast<int>(std::size(TAGS)) - 1;
        const bool isListed = parent != nullptr && Pick(2) == 0 &&
                              (parent->tag->first == 102 || parent->tag->first == 35);
        element->tag = isListed ? &TAGS[2] : &TAGS[Pick(40) == 0 ? known : Pick(known)];
        element->number = static_cast<int>(m_elements.size());
        element->parent = parent;
        m_elements.push_back(element.get());
        m_text.append(Pick(4) == 0 ? "\n<!-- note -->" : "").append("<");
        m_text.append(element->tag->name).append(">").append(std::to_string(element->number));
        for (int child = levels == 0 ? 0 : Pick(parent == nullptr ? 6 : 3); child > 0; --child) {
            element->children.push_back(Grow(element.get(), levels - 1));
        }
        m_text.append("</").append(element->tag->name).append(">");
        return element;
    }

    std::mt19937& m_random;
    std::unique_ptr<Element> m_root;
    std::vector<const Element*> m_elements;
    std::string m_text;
};

class Walk : public testing::Test {
protected:
    void HandlesBelow(void* node, std::vector<void*>* handles) {
        handles->push_back(node);
        unsigned int err = 0;
        void* child = m_xml.m_FunctionsXmlPxd->GetFirstChild(node, &err);
        while (child != nullptr) {
            HandlesBelow(child, handles);
            child = m_xml.m_FunctionsXmlPxd->GetNextSibling(child, &err);
        }
    }

    // Which element it is; gives the handle back.
    int Number(void* node) {
        unsigned int err = 0;
        char text[16] = "";
        m_xml.m_FunctionsXmlPxd->GetElementText(node, text, sizeof text, &err);
        EXPECT_EQ(0U, err);
        m_xml.DeleteNode(node);
        return std::atoi(text);
    }

    void Compare(const Found& expected, void* node, unsigned int err, const std::string& what) {
        EXPECT_EQ(expected.err, err) << what;
        ASSERT_EQ(expected.element != nullptr, node != nullptr) << what;
        if (node != nullptr) {
            EXPECT_EQ(expected.element->number, Number(node)) << what;
        }
    }

    void CompareRecords(const Element& element, void* node, const std::string& what) {
        const Records expected = Read(element);
        CCommonXmlPxdElementData* first = nullptr;
        unsigned int err = 0;
        const bool isRead = m_xml.GetElements(node, &first, &err);
        EXPECT_EQ(expected.err == 0, isRead) << what;
        EXPECT_EQ(expected.err, err) << what;
        std::vector<std::pair<int, unsigned int>> read;
        for (const auto* record = first; record != nullptr; record = record->m_Next) {
            read.emplace_back(std::stoi(record->m_Values.front()), record->m_ElementID);
        }
        EXPECT_EQ(expected.read, read) << what;
        m_xml.releaseElementData(first);
    }

    BoundXml m_xml;
};

TEST_F(Walk, FollowsTheModel) {
    constexpr int DOCUMENTS = 3000;
    std::mt19937 random(20261121);
    for (int round = 0; round < DOCUMENTS && !HasFailure(); ++round) {
        const RandomDocument document(random);
        SCOPED_TRACE(document.Text());
        const OpenedText opened(m_xml, document.Text());
        std::vector<void*> handles;
        HandlesBelow(opened.Root(), &handles);
        ASSERT_EQ(document.Elements().size(), handles.size());
        for (size_t at = 0; at < handles.size(); ++at) {
            const Element& element = *document.Elements()[at];
            const std::string what = "from " + std::to_string(at);
            unsigned int err = 77;
            void* node = m_xml.GetNextNode(handles[at], NODE_SELF, &err);
            Compare(NextOfSelf(element), node, err, what);
            // What the caller says an element is counts, not what it is.
            for (const unsigned int id : {36U, 103U, 79U, 25U, 202U}) {
                node = m_xml.GetNextNode(handles[at], id, &err);
                Compare(Next(element, id), node, err, what);
            }
            for (int search = 0; search < 4; ++search) {
                const Tag& tag = TAGS[random() % (std::size(TAGS) - 1)];
                node = m_xml.SearchElement(handles[at], tag.first, &err);
                Compare(Search(element, tag), node, err, tag.name + (" " + what));
            }
            CompareRecords(element, handles[at], what);
        }
        std::for_each(handles.begin() + 1, handles.end(),
                      [&](void* handle) { m_xml.DeleteNode(handle); });
    }
    EXPECT_EQ(0, CountingParser::LiveNodes());
    EXPECT_EQ(0, CountingParser::LiveDocuments());
    EXPECT_EQ(0, CountingParser::StrayReleases());
}

}  // namespace
