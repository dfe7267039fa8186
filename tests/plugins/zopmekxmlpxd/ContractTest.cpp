// What the contract promises, on the plug-in and on the counting one that other tests stand on.
#include <algorithm>
#include <vector>

#include "tests/plugins/zopmekxmlpxd/XmlFixture.h"
#include "tests/support/CountingParser.h"
#include "tests/support/FailingAllocation.h"
#include "tests/support/TempFolder.h"

namespace {

const std::string HEAD = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

class Contract : public testing::TestWithParam<std::string>, protected XmlParser {
protected:
    Contract() : XmlParser(GetParam() == "real" ? XML_PARSER : COUNTING_PARSER) {}

    ~Contract() override {
        EXPECT_EQ(0, CountingParser::LiveNodes());
        EXPECT_EQ(0, CountingParser::LiveDocuments());
        EXPECT_EQ(0, CountingParser::StrayReleases());
    }

    // What a listing call gives: "count:" and the name of each node handed out.
    template <typename List, typename... Wanted>
    std::string Listed(unsigned int capacity, List list, const Handle& element, Wanted... wanted) {
        std::vector<PNODE> nodes(capacity);
        unsigned int work = 0;
        const unsigned int count =
            list(element.get(), wanted..., nodes.data(), capacity, &work, &err);
        std::string listed = std::to_string(count) + ":";
        for (unsigned int at = 0; at < std::min(count, capacity); ++at) {
            const Handle node = Node(nodes[at]);
            const std::string name = Name(node);
            const bool isElement = err == XMLPXD_OK;
            listed.append(isElement ? " " : " @")
                .append(isElement ? name : Text(entries.GetAttributeName, node));
        }
        return listed;
    }

    // The only one of an element.
    Handle Attribute(const Handle& element) {
        PNODE attribute = nullptr;
        EXPECT_EQ(1U, entries.GetAttributes(element.get(), &attribute, 1, nullptr, &err));
        return Node(attribute);
    }

    // The path of steps c (first child), n (next sibling) and p (parent) from the root.
    Handle Walk(const Handle& document, const std::string& steps) {
        Handle node = Root(document);
        for (const char step : steps) {
            const auto go = step == 'c'   ? entries.GetFirstChild
                            : step == 'n' ? entries.GetNextSibling
                                          : entries.GetParentNode;
            node = Node(go(node.get(), &err));
        }
        return node;
    }
};

INSTANTIATE_TEST_SUITE_P(Parsers, Contract, testing::Values("real", "counting"));

TEST_P(Contract, WalksElementsOnly) {
    const Handle document =
        Parse("<!--x--><r>\n text <!--y--><a><b/></a><?pi?><![CDATA[z]]><c/> \n</r><?end?>");
    const struct {
        const char* steps;
        const char* name;
        unsigned int error;
    } cases[] = {{"", "r", 0},    {"c", "a", 0},   {"cc", "b", 0}, {"cn", "c", 0},
                 {"cnp", "r", 0}, {"ccp", "a", 0}, {"cnn", "", 1}, {"ccc", "", 1},
                 {"ccn", "", 1},  {"p", "", 1},    {"n", "", 1}};
    for (const auto& c : cases) {
        const Handle node = Walk(document, c.steps);
        EXPECT_EQ(c.error, err) << c.steps;
        EXPECT_EQ(c.error == 0, node != nullptr) << c.steps;
        EXPECT_EQ(c.name, node ? Name(node) : "") << c.steps;
    }
}

TEST_P(Contract, TextOfAnElement) {
    const struct {
        const char* xml;
        const char* text;
    } cases[] = {{"<r/>", ""},
                 {"<r>  </r>", "  "},
                 {"<r>\n a\t</r>", "\n a\t"},
                 {"<r>a\r\nb\rc&#13;d</r>", "a\nb\nc\rd"},
                 {"<r>a<!-- no -->b<x>no</x><![CDATA[<&c]]> d</r>", "ab<&c d"},
                 {"<r> <x/> </r>", "  "},
                 {"<r>&lt;&gt;&amp;&apos;&quot;&#65;&#x1F5A8;\xE6\x9D\xB1</r>",
                  "<>&'\"A\xF0\x9F\x96\xA8\xE6\x9D\xB1"}};
    for (const auto& c : cases) {
        const Handle document = Parse(c.xml);
        EXPECT_EQ(c.text, Value(Root(document))) << c.xml;
        EXPECT_EQ(0U, err);
    }
}

TEST_P(Contract, BuffersOfEverySize) {
    const Handle document = Parse("<name attr='value'>text</name>");
    const Handle root = Root(document);
    const Handle attribute = Attribute(root);
    const auto check = [this](auto entry, const Handle& node, const std::string& expected) {
        for (size_t size = 0; size <= expected.size() + 2; ++size) {
            const bool isFilled = size > expected.size();
            std::string buffer(20, '?');
            EXPECT_EQ(isFilled ? expected.size() : XMLPXD_NO_LENGTH,
                      entry(node.get(), buffer.data(), size, &err));
            EXPECT_EQ(isFilled ? 0U : 3U, err) << size;
            const std::string written = isFilled ? expected + '\0' : "";
            EXPECT_EQ(written + std::string(20 - written.size(), '?'), buffer) << size;
        }
        EXPECT_EQ(XMLPXD_NO_LENGTH, entry(node.get(), nullptr, 1, &err));
    };
    check(entries.GetElementName, root, "name");
    check(entries.GetElementText, root, "text");
    check(entries.GetAttributeName, attribute, "attr");
    check(entries.GetAttributeValue, attribute, "value");

    const std::string block = HEAD + "<name attr=\"value\">text</name>\n";
    EXPECT_EQ(block, Block(document));
    std::vector<unsigned char> small(block.size() - 1);
    EXPECT_EQ(-1, entries.GetXMLandAppDataBin(document.get(), small.data(), small.size(), &err));
    EXPECT_EQ(3U, err);
}

TEST_P(Contract, Lists) {
    const Handle document =
        Parse("<r x='1' y='2'>t<a><b/><a z='3'/></a><!--c--><b><a/></b>\n<a/></r>");
    const Handle root = Root(document);
    const Handle first = Child(root);
    const auto named = entries.GetElementsByElementName;
    const auto selected = entries.SelectNodesInElement;
    EXPECT_EQ("4:", Listed(0, named, root, "a"));
    EXPECT_EQ("4: a a a a", Listed(4, named, root, "a"));
    EXPECT_EQ("2: b", Listed(1, named, root, "b"));
    EXPECT_EQ("1: a", Listed(9, named, first, "a")) << "neither the start nor what follows it";
    EXPECT_EQ("0:", Listed(2, named, root, "r"));
    EXPECT_EQ("3: a b a", Listed(5, entries.GetAllChildElements, root));
    EXPECT_EQ("2: @x @y", Listed(2, entries.GetAttributes, root));
    EXPECT_EQ("4: a @z a a", Listed(9, selected, root, ".//@z | b/a | /r/a | //text()"));
    EXPECT_EQ(0U, err);
    for (const char* wrong : {"a[", "count(a)", "", "\xFF", "unknown()"}) {
        EXPECT_EQ("0:", Listed(1, selected, root, wrong)) << wrong;
        EXPECT_EQ(3U, err) << wrong;
    }
}

TEST_P(Contract, BuildsADocument) {
    const Handle document = Document(entries.CreateNewDoc("r", &err));
    const Handle root = Root(document);
    const Handle last = Node(entries.CreateElement(root.get(), "last", &err));
    const Handle text =
        Node(entries.CreateElementWithValue(root.get(), "n", "a<b>&\r\n\t]]>", nullptr, 0, &err));
    const Handle before =
        Node(entries.CreateElementWithValue(root.get(), "m", "", last.get(), 1, &err));
    EXPECT_EQ(nullptr, entries.CreateElementWithValue(root.get(), "m", "", root.get(), 0, &err));
    EXPECT_EQ(3U, err) << "not a child";
    EXPECT_EQ(0U, entries.SetAttribute(last.get(), "one", "1"));
    EXPECT_EQ(0U, entries.SetAttribute(last.get(), "two", "\"<&>'\r\n\t"));
    EXPECT_EQ(0U, entries.SetAttribute(last.get(), "one", ""));
    const std::string expected = HEAD +
                                 "<r><m/><last one=\"\" two=\"&quot;&lt;&amp;>'&#13;&#10;&#9;\"/>"
                                 "<n>a&lt;b&gt;&amp;&#13;\n\t]]&gt;</n></r>\n";
    EXPECT_EQ(expected, Block(document));
    const Handle again = Parse(expected);
    EXPECT_EQ(expected, Block(again));
    EXPECT_EQ("a<b>&\r\n\t]]>", Value(Walk(again, "cnn")));
}

TEST_P(Contract, ChangesElements) {
    const Handle document = Parse("<r><a>1<b><c/></b><![CDATA[2]]><!--k-->3</a><d/></r>");
    const Handle root = Root(document);
    const Handle a = Child(root);
    const Handle b = Child(a);
    EXPECT_EQ(0U, entries.SetElementValue(a.get(), "new", 0));
    EXPECT_EQ(HEAD + "<r><a>new<b><c/></b><!--k--></a><d/></r>\n", Block(document));
    EXPECT_EQ(0U, entries.SetElementValue(a.get(), "", 0));
    EXPECT_EQ(0U, entries.RemoveElement(b.get()));
    EXPECT_EQ(HEAD + "<r><a><!--k--></a><d/></r>\n", Block(document));
    EXPECT_EQ(3U, entries.RemoveElement(root.get())) << "a document has a root";
}

TEST_P(Contract, WhatXmlCannotHold) {
    const Handle document = Document(entries.CreateNewDoc("r", &err));
    const Handle root = Root(document);
    const auto newElement = [&](const std::string& name) {
        Node(entries.CreateElement(root.get(), name.c_str(), &err));
        return err;
    };
    for (const char* name : {"", "1a", "-a", "a b", "a\n", "a&b", "<", "\xFF", "a\xC3", "\xC3\x97",
                             "\xEF\xBF\xBE", "a\xED\xA0\x80"}) {
        EXPECT_EQ(7U, newElement(name)) << name;
        EXPECT_EQ(7U, entries.SetAttribute(root.get(), name, "")) << name;
        EXPECT_EQ(nullptr, entries.CreateNewDoc(name, &err)) << name;
        EXPECT_EQ(7U, err) << name;
    }
    for (const char* name : {"a", "_", "n:a-1.b", "\xC3\xA9t\xC3\xA9", "\xE5\x90\x8D\xC2\xB7"}) {
        EXPECT_EQ(0U, newElement(name)) << name;
    }
    const struct {
        const char* value;
        const char* mended;  // null: refused as either kind
    } values[] = {{"\x01 \x1F\x01", "\xEF\xBF\xBD \xEF\xBF\xBD\xEF\xBF\xBD"},
                  {"a\xEF\xBF\xBE\xEF\xBF\xBF", "a\xEF\xBF\xBD\xEF\xBF\xBD"},
                  {"\x80", nullptr},
                  {"\xC0\x80", nullptr},
                  {"\xED\xA0\x80", nullptr},
                  {"\x01\xF5", nullptr}};
    for (const auto& v : values) {
        EXPECT_EQ(0U, entries.SetElementValue(root.get(), "old", 0));
        EXPECT_EQ(7U, entries.SetElementValue(root.get(), v.value, 0));
        EXPECT_EQ(7U, entries.SetAttribute(root.get(), "a", v.value));
        EXPECT_EQ("old", Value(root));
        EXPECT_EQ(v.mended ? 0U : 7U, entries.SetElementValue(root.get(), v.value, 1));
        EXPECT_EQ(v.mended ? v.mended : "old", Value(root));
    }
    EXPECT_EQ(0U, entries.SetElementValue(root.get(), "\x7F\xC2\x80\t", 0)) << "it can hold these";
}

TEST_P(Contract, InvalidArguments) {
    const Handle document = Parse("<r a='1'><b/></r>");
    const Handle root = Root(document);
    const Handle attribute = Attribute(root);
    const auto& e = entries;
    const auto* text = reinterpret_cast<const unsigned char*>("<r/>");
    const char* const none = nullptr;
    PNODE const r = root.get();
    const auto refused = [this](auto entry, auto... arguments) {
        err = 0;
        entry(arguments..., &err);
        return err == 3;
    };
    // Every entry asks the same function for its element, and another for its attribute.
    EXPECT_TRUE(refused(e.GetFirstChild, nullptr));
    EXPECT_TRUE(refused(e.GetFirstChild, attribute.get()));
    EXPECT_TRUE(refused(e.GetAttributeName, nullptr, nullptr, 0U));
    EXPECT_TRUE(refused(e.GetAttributeName, r, nullptr, 0U));
    EXPECT_TRUE(refused(e.GetDocumentElement, nullptr));
    EXPECT_TRUE(refused(e.CreateElement, r, none));
    EXPECT_TRUE(refused(e.CreateElementWithValue, r, "a", none, nullptr, 0U));
    EXPECT_TRUE(refused(e.CreateElementWithValue, r, "a", "", attribute.get(), 0U));
    EXPECT_TRUE(refused(e.CreateElementWithValue, r, "a", "", nullptr, 2U));
    EXPECT_TRUE(refused(e.GetElementsByElementName, r, none, nullptr, 0U, nullptr));
    EXPECT_TRUE(refused(e.GetAllChildElements, r, nullptr, 1U, nullptr));
    EXPECT_TRUE(refused(e.SelectNodesInElement, r, none, nullptr, 0U, nullptr));
    EXPECT_TRUE(refused(e.CreateDocByBin, nullptr, 1U, 0U));
    EXPECT_TRUE(refused(e.CreateDocByBin, text, 4U, 1U));
    EXPECT_TRUE(refused(e.CreateDocByFile, nullptr));
    EXPECT_EQ(3U, e.SetElementValue(nullptr, "", 0));
    EXPECT_EQ(3U, e.SetAttribute(r, "a", nullptr));
    EXPECT_EQ(3U, e.Save(document.get(), nullptr));
    e.DeleteNode(nullptr);
    e.DeleteDoc(nullptr);
    EXPECT_EQ(HEAD + "<r a=\"1\"><b/></r>\n", Block(document)) << "nothing was changed";
}

// That nothing is lost when memory is exhausted, the campaign of faults tries; here, what is told.
TEST_P(Contract, MemoryExhausted) {
    const TempFolder folder;
    const std::string large(1 << 20, 'x');
    const Handle document = Parse("<r>" + large + "</r>");
    const Handle root = Root(document);
    const FailingAllocation failing(1 << 19);
    EXPECT_EQ(6U, entries.SetElementValue(root.get(), large.c_str(), 0));
    EXPECT_EQ(0U, entries.Save(document.get(), folder.Path("large.xml").c_str()))
        << "saving needs no room for the whole text";
}

// The counting parser's own promises; that it forwards, the tests above show.
TEST(CountingParserModule, CountsAndFails) {
    XmlParser parser(COUNTING_PARSER);
    const Handle document = parser.Parse("<r><a/></r>");
    {
        const Handle root = parser.Root(document);
        const Handle again = parser.Root(document);
        EXPECT_EQ(2, CountingParser::LiveNodes());
        EXPECT_EQ(1, CountingParser::LiveDocuments());
        CountingParser::Fail("GetFirstChild", 2, 6);
        EXPECT_NE(nullptr, parser.Child(root));
        EXPECT_FALSE(CountingParser::HasFailed());
        EXPECT_EQ(nullptr, parser.Child(root));
        EXPECT_EQ(6U, parser.err);
        EXPECT_TRUE(CountingParser::HasFailed());
        EXPECT_NE(nullptr, parser.Child(root)) << "only once";
        EXPECT_EQ(3, CountingParser::CallCount("GetFirstChild"));
        CountingParser::Fail("", 2, 8);
        EXPECT_EQ(0U, parser.entries.SetElementValue(root.get(), "x", 0));
        EXPECT_EQ(8U, parser.entries.SetElementValue(root.get(), "y", 0));
        EXPECT_EQ("x", parser.Value(root)) << "the call was not forwarded";
    }
    EXPECT_EQ(0, CountingParser::LiveNodes());
    int foreign = 0;
    parser.entries.DeleteNode(&foreign);
    EXPECT_EQ(1, CountingParser::StrayReleases());
    CountingParser::Reset();
    EXPECT_EQ(0, CountingParser::StrayReleases());
    EXPECT_EQ(0, CountingParser::CallCount("DeleteNode"));
}

}  // namespace
