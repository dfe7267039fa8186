// Files that are wrong, by accident or on purpose: refused with their own error, at once, and
// without a look outside.
#include <sys/stat.h>

#include "tests/plugins/zopmekxmlpxd/XmlFixture.h"
#include "tests/support/TempFolder.h"

namespace {

using namespace std::string_literals;

class HostileFiles : public testing::Test, protected XmlParser {
protected:
    static std::string Utf16(const std::u16string& text, bool isBigEndian) {
        std::string bytes;
        for (const char16_t unit : u"\uFEFF" + text) {
            const auto high = static_cast<char>(unit >> 8);
            const auto low = static_cast<char>(unit & 0xFF);
            bytes += isBigEndian ? high : low;
            bytes += isBigEndian ? low : high;
        }
        return bytes;
    }

    const TempFolder m_folder;
};

TEST_F(HostileFiles, NotWellFormed) {
    const std::string refused[] = {
        // structure
        "", " ", "x", "<r>", "<r/><r/>", "<r/>x", "x<r/>", "<r></s>", "<r><a></r></a>", "</r>",
        "<r/></r>", "<r", "<r a='1'", "<r><!--</r>", "<r><!-- -- --></r>", "<r><![CDATA[</r>",
        "<![CDATA[x]]><r/>", "<r>]]></r>", "<!--x-->", "<?pi?>",
        // tags and attributes
        "<1r/>", "< r/>", "<r></ r>", "<r a/>", "<r a=1/>", "<r a='1\"/>", "<r a='<'/>",
        "<r a='1'b='2'/>", "<r a='1' b='2' a='3'/>", "<r \xC3\x97='1'/>", "<r / >", "<r></r a='1'>",
        // characters
        "<r>\0</r>"s, "<r/>\0"s, "<r>\x01</r>", "<r a='\x1F'/>", "<!--\x02--><r/>", "<r>\xFF</r>",
        "<r>\xC3</r>", "<r>\xC0\xBC/r>", "<r>\xED\xA0\x80</r>", "<r>\xEF\xBF\xBE</r>",
        // references
        "<r>&#0;</r>", "<r>&#x0;</r>", "<r>&#xD800;</r>", "<r>&#xFFFF;</r>", "<r>&#8;</r>",
        "<r>&#x110000;</r>", "<r>&#x100000041;</r>", "<r>&#18446744073709551681;</r>", "<r>&#;</r>",
        "<r>&#x;</r>", "<r>&#X41;</r>", "<r>&#-1;</r>", "<r>&#6A;</r>", "<r>&</r>", "<r>&amp</r>",
        "<r>a & b;</r>", "<r>&unknown;</r>", "<r a='&unknown;'/>", "<r a='&#0;'/>",
        // declarations
        " <?xml version='1.0'?><r/>", "<?xml?><r/>", "<?xml version='2.0'?><r/>",
        "<?xml version='1.0' encoding='ISO-8859-1'?><r>\xC3\xA9</r>",
        "<?xml version='1.0' encoding='UTF-16'?><r/>", "<?xml version='1.0' x='y'?><r/>",
        "<?xml version='1.0' standalone='maybe'?><r/>", "<r><?xml version='1.0'?></r>",
        "<r/><!DOCTYPE r>", "<!DOCTYPE r><!DOCTYPE r><r/>", "<!DOCTYPE><r/>", "<!DOCTYPE r [<r/>",
        "<!DOCTYPE r [<![INCLUDE[ ]]>]><r/>", "<r><!DOCTYPE r></r>",
        // entities: from outside, and ones that grow
        "<!DOCTYPE r [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><r>&e;</r>",
        "<!DOCTYPE r [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;'>]><r>&b;</r>",
        // other encodings
        "\xFF\xFE\0\0<\0\0\0r\0\0\0/\0\0\0>\0\0\0"s, "<\0r\0/\0>\0"s, "\xFF\xFE<\0r"s,
        Utf16(u"<r>\xD800</r>", false), Utf16(u"<?xml version='1.0' encoding='UTF-8'?><r/>", true)};
    for (const std::string& text : refused) {
        EXPECT_EQ(nullptr, Parse(text)) << text;
        EXPECT_EQ(5U, err) << text;
    }
}

TEST_F(HostileFiles, UnusualButWellFormed) {
    const std::string accepted[] = {
        "\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8' standalone='yes' ?>\r\n<r>\xC3\xA9</r>",
        "<?xml version=\"1.1\"?><!-- a > b --><?pi <&> ?><r\n>\xC3\xA9</r\t>\n<!---->",
        R"(<!DOCTYPE r SYSTEM "x>" [<!-- ]> ' --><?p ]> "?><!ENTITY e '&#0;>'> %pe;]  ><r>&#xE9;</r>)",
        "<r a:b = '>\"'\tc=\"'\"><![CDATA[]]>&#xe9;</r>",
        Utf16(u"<r>\xE9</r>", false),
        Utf16(u"<?xml version='1.0' encoding='UTF-16'?><r>\xE9</r>", true)};
    for (const std::string& text : accepted) {
        const Handle document = Parse(text);
        ASSERT_NE(nullptr, document) << text;
        EXPECT_EQ("\xC3\xA9", Value(Root(document))) << text;
        const std::string block = Block(document);
        EXPECT_EQ(block, Block(Parse(block))) << text;
    }
}

TEST_F(HostileFiles, DeeperThanTheStack) {
    constexpr size_t DEPTH = 1000000;
    std::string text;
    for (size_t level = 0; level < DEPTH; ++level) {
        text += "<a>";
    }
    for (size_t level = 0; level < DEPTH; ++level) {
        text += "</a>";
    }
    const Handle document = Parse(text);
    ASSERT_NE(nullptr, document);
    const Handle root = Root(document);
    unsigned int work = 0;
    EXPECT_EQ(DEPTH - 1,
              entries.GetElementsByElementName(root.get(), "a", nullptr, 0, &work, &err));
    EXPECT_EQ(1U, entries.SelectNodesInElement(root.get(), "//a[not(a)]", nullptr, 0, &work, &err));
    EXPECT_EQ(0U, entries.Save(document.get(), m_folder.Path("deep").c_str()))
        << "the indentation has an end";
    EXPECT_NE(nullptr, Document(entries.CreateDocByFile(m_folder.Path("deep").c_str(), &err)));
    EXPECT_EQ(0U, entries.RemoveElement(Child(root).get()));
    EXPECT_NE(std::string::npos, Block(document).find("\n<a/>\n"));
}

TEST_F(HostileFiles, LargerThanTheLimit) {
    constexpr size_t LIMIT = 128UL << 20;
    const std::string path = m_folder.Path("large");
    std::string text = "<r>" + std::string(LIMIT - 7, 'x') + "</r>";
    WriteFile(path, text);
    const Handle document = Document(entries.CreateDocByFile(path.c_str(), &err));
    ASSERT_NE(nullptr, document);
    EXPECT_EQ(8U, entries.Save(document.get(), path.c_str()))
        << "with a declaration it is too large";
    EXPECT_EQ("error", Block(document));
    EXPECT_EQ(6U, err);
    EXPECT_EQ(text.size(), ReadFile(path).size());

    text += '\n';
    WriteFile(path, text);
    EXPECT_EQ(nullptr, Parse(text));
    EXPECT_EQ(5U, err);
    EXPECT_EQ(nullptr, entries.CreateDocByFile(path.c_str(), &err));
    EXPECT_EQ(5U, err);
}

TEST_F(HostileFiles, NotAFile) {
    const std::string pipe = m_folder.Path("pipe");
    ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
    for (const std::string& path :
         {m_folder.Path("none"), m_folder.Path(), pipe, "/dev/zero"s, ""s}) {
        EXPECT_EQ(nullptr, entries.CreateDocByFile(path.c_str(), &err)) << path;
        EXPECT_EQ(4U, err) << path;
    }
}

}  // namespace
