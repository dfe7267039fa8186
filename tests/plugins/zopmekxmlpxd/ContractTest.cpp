// What the contract promises, on the plug-in and on the counting one that other tests stand on.
#include <algorithm>
#include <cstdio>
#include <memory>

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
    template <typename List>
    std::string Listed(List list, unsigned int capacity) {
        std::vector<PNODE> nodes(capacity);
        unsigned int work = 0;
        const unsigned int count =
            list(capacity == 0 ? nullptr : nodes.data(), capacity, &work, &err);
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
    PNODE handle = nullptr;
    entries.GetAttributes(root.get(), &handle, 1, nullptr, &err);
    const Handle attribute = Node(handle);
    const auto check = [this](auto entry, const Handle& node, const std::string& expected) {
        const struct {
            size_t size;
            bool hasBuffer;
            bool isFilled;
        } cases[] = {{0, true, false},
                     {1, false, false},
                     {expected.size(), true, false},
                     {expected.size() + 1, true, true},
                     {expected.size() + 9, true, true}};
        for (const auto& c : cases) {
            std::string buffer(20, '?');
            EXPECT_EQ(c.isFilled ? expected.size() : XMLPXD_NO_LENGTH,
                      entry(node.get(), c.hasBuffer ? buffer.data() : nullptr, c.size, &err));
            EXPECT_EQ(c.isFilled ? 0U : 3U, err) << c.size;
            const std::string written = c.isFilled ? expected + '\0' : "";
            EXPECT_EQ(written + std::string(20 - written.size(), '?'), buffer) << c.size;
        }
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
    EXPECT_EQ(small, std::vector<unsigned char>(small.size()));
}

TEST_P(Contract, Lists) {
    const Handle document =
        Parse("<r x='1' y='2'>t<a><b/><a z='3'/></a><!--c--><b><a/></b>\n<a/></r>");
    const Handle root = Root(document);
    const Handle first = Child(root);
    const auto named = [&](const Handle& top, const char* name) {
        return [&, name](auto... rest) {
            return entries.GetElementsByElementName(top.get(), name, rest...);
        };
    };
    const auto children = [&](auto... rest) {
        return entries.GetAllChildElements(root.get(), rest...);
    };
    const auto attributes = [&](auto... rest) {
        return entries.GetAttributes(root.get(), rest...);
    };
    const auto selected = [&](const char* path) {
        return [&, path](auto... rest) {
            return entries.SelectNodesInElement(root.get(), path, rest...);
        };
    };
    EXPECT_EQ("4:", Listed(named(root, "a"), 0));
    EXPECT_EQ("4: a a a a", Listed(named(root, "a"), 4));
    EXPECT_EQ("2: b", Listed(named(root, "b"), 1));
    EXPECT_EQ("1: a", Listed(named(first, "a"), 9)) << "neither the start nor what follows it";
    EXPECT_EQ("0:", Listed(named(root, "r"), 2));
    EXPECT_EQ("3: a b a", Listed(children, 5));
    EXPECT_EQ("2: @x @y", Listed(attributes, 2));
    EXPECT_EQ("4: a @z a a", Listed(selected(".//@z | b/a | /r/a | //text()"), 9));
    EXPECT_EQ(0U, err);
    for (const char* wrong : {"a[", "count(a)", "", "\xFF", "unknown()"}) {
        EXPECT_EQ("0:", Listed(selected(wrong), 1)) << wrong;
        EXPECT_EQ(3U, err) << wrong;
    }
    EXPECT_EQ(0U, entries.GetAllChildElements(root.get(), nullptr, 1, nullptr, &err));
    EXPECT_EQ(3U, err);
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
    PNODE handle = nullptr;
    entries.GetAttributes(root.get(), &handle, 1, nullptr, &err);
    const Handle attribute = Node(handle);
    const auto& e = entries;
    const unsigned char text[] = "<r/>";
    const auto refused = [this](auto&& call) {
        err = 0;
        call();
        return err == 3;
    };
    for (PNODE const no : {static_cast<PNODE>(nullptr), attribute.get()}) {
        EXPECT_TRUE(refused([&] { e.GetFirstChild(no, &err); }));
        EXPECT_TRUE(refused([&] { e.GetNextSibling(no, &err); }));
        EXPECT_TRUE(refused([&] { e.GetParentNode(no, &err); }));
        EXPECT_TRUE(refused([&] { e.CreateElement(no, "a", &err); }));
        EXPECT_TRUE(refused([&] { e.CreateElementWithValue(no, "a", "", nullptr, 0, &err); }));
        EXPECT_TRUE(refused([&] { e.GetElementName(no, nullptr, 0, &err); }));
        EXPECT_TRUE(refused([&] { e.GetElementText(no, nullptr, 0, &err); }));
        EXPECT_TRUE(refused([&] { e.GetAllChildElements(no, nullptr, 0, nullptr, &err); }));
        EXPECT_TRUE(refused([&] { e.GetAttributes(no, nullptr, 0, nullptr, &err); }));
        EXPECT_TRUE(refused([&] { e.SelectNodesInElement(no, "a", nullptr, 0, nullptr, &err); }));
        EXPECT_TRUE(
            refused([&] { e.GetElementsByElementName(no, "a", nullptr, 0, nullptr, &err); }));
        EXPECT_EQ(3U, e.SetElementValue(no, "", 0));
        EXPECT_EQ(3U, e.SetAttribute(no, "a", ""));
        EXPECT_EQ(3U, e.RemoveElement(no));
    }
    for (PNODE const no : {static_cast<PNODE>(nullptr), root.get()}) {
        EXPECT_TRUE(refused([&] { e.GetAttributeName(no, nullptr, 0, &err); }));
        EXPECT_TRUE(refused([&] { e.GetAttributeValue(no, nullptr, 0, &err); }));
    }
    EXPECT_TRUE(refused([&] { e.CreateElement(root.get(), nullptr, &err); }));
    EXPECT_TRUE(
        refused([&] { e.CreateElementWithValue(root.get(), "a", nullptr, nullptr, 0, &err); }));
    EXPECT_TRUE(
        refused([&] { e.CreateElementWithValue(root.get(), "a", "", attribute.get(), 0, &err); }));
    EXPECT_TRUE(refused([&] { e.CreateElementWithValue(root.get(), "a", "", nullptr, 2, &err); }));
    EXPECT_TRUE(refused(
        [&] { e.GetElementsByElementName(root.get(), nullptr, nullptr, 0, nullptr, &err); }));
    EXPECT_TRUE(
        refused([&] { e.SelectNodesInElement(root.get(), nullptr, nullptr, 0, nullptr, &err); }));
    EXPECT_EQ(3U, e.SetElementValue(root.get(), nullptr, 0));
    EXPECT_EQ(3U, e.SetAttribute(root.get(), "a", nullptr));
    EXPECT_EQ(3U, e.SetAttribute(root.get(), nullptr, ""));
    EXPECT_EQ(3U, e.Save(document.get(), nullptr));
    EXPECT_EQ(3U, e.Save(nullptr, "x"));
    EXPECT_TRUE(refused([&] { e.CreateDocByBin(nullptr, 1, 0, &err); }));
    EXPECT_TRUE(refused([&] { e.CreateDocByBin(text, 4, 1, &err); }));
    EXPECT_TRUE(refused([&] { e.CreateDocByFile(nullptr, &err); }));
    EXPECT_TRUE(refused([&] { e.CreateNewDoc(nullptr, &err); }));
    EXPECT_TRUE(refused([&] { e.GetDocumentElement(nullptr, &err); }));
    EXPECT_TRUE(refused([&] { e.GetXMLandAppDataBin(nullptr, nullptr, 0, &err); }));
    e.DeleteNode(nullptr);
    e.DeleteDoc(nullptr);
    EXPECT_EQ(HEAD + "<r a=\"1\"><b/></r>\n", Block(document)) << "nothing was changed";
}

TEST_P(Contract, MemoryExhausted) {
    const TempFolder folder;
    const std::string large(1 << 20, 'x');
    const Handle document = Parse("<r>" + large + "</r>");
    const Handle root = Root(document);
    const FailingAllocation failing(1 << 19);
    EXPECT_EQ(3U, entries.SetElementValue(root.get(), nullptr, 0)) << "the program itself goes on";
    EXPECT_EQ(6U, entries.SetElementValue(root.get(), large.c_str(), 0));
    EXPECT_EQ(-1, entries.GetXMLandAppDataBin(document.get(), nullptr, 0, &err));
    EXPECT_EQ(6U, err);
    EXPECT_EQ(0U, entries.Save(document.get(), folder.Path("large.xml").c_str()))
        << "saving needs no room for the whole text";
    EXPECT_EQ(nullptr, entries.CreateDocByBin(reinterpret_cast<const unsigned char*>(large.data()),
                                              large.size(), 0, &err));
    EXPECT_EQ(6U, err);
}

TEST(ParserModule, ExportsTheEntriesAndNothingElse) {
    Names expected;
    for (const XmlPxdEntry& entry : XMLPXD_LOAD_ORDER) {
        expected.push_back(std::string("T ").append(entry.name));
    }
    const std::unique_ptr<FILE, int (*)(FILE*)> list(
        popen(NM_PROGRAM " -D --defined-only " XML_PARSER, "r"), pclose);
    Names actual;
    char line[256];
    while (std::fgets(line, sizeof(line), list.get()) != nullptr) {
        const std::string text = line;
        actual.push_back(text.substr(17, text.size() - 18));
    }
    std::sort(expected.begin(), expected.end());
    std::sort(actual.begin(), actual.end());
    EXPECT_EQ(expected, actual);
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
        EXPECT_EQ("a", parser.Name(parser.Child(root)));
        EXPECT_FALSE(CountingParser::HasFailed());
        EXPECT_EQ(nullptr, parser.Child(root));
        EXPECT_EQ(6U, parser.err);
        EXPECT_TRUE(CountingParser::HasFailed());
        EXPECT_EQ("a", parser.Name(parser.Child(root))) << "only once";
        EXPECT_EQ(3, CountingParser::CallCount("GetFirstChild"));

        CountingParser::Fail("", 2, 8);
        EXPECT_EQ(0U, parser.entries.SetElementValue(root.get(), "x", 0));
        EXPECT_EQ(8U, parser.entries.SetElementValue(root.get(), "y", 0));
        EXPECT_EQ("x", parser.Value(root));
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
