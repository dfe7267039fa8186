#include <cstring>
#include <functional>
#include <list>
#include <optional>
#include <set>

#include "CostCountCommon/xmlpxd/XmlNode.h"
#include "tests/CostCountCommon/BoundXml.h"
#include "tests/CostCountCommon/SettingsFixture.h"

namespace {

constexpr unsigned int BEFORE = 77;     // an error code that nobody sets
constexpr unsigned int REFUSED = 4711;  // one that only the parser of these tests gives

const std::string SEARCH = "CCommonXmlPxd::SearchParentElement() ERROR: ";
const std::string VALUE = "CCommonXmlPxd::GetDBSetting() ERROR: ";

constexpr const char* PRINTERS =
    "<mngprinter version='1.0'><app_info>some</app_info>"
    "<printer_list><printer>a<name lang='en'>One</name><port type='usb' odd='' host_name='h'/>"
    "</printer><printer>b<model_name> M<![CDATA[<&>]]>\n</model_name></printer></printer_list>"
    "<FilterCondition><printerList><printer id='7'>c<name>n</name></printer></printerList>"
    "</FilterCondition><stranger><name/></stranger></mngprinter>";

class ElementAccess : public SettingsFixture {
protected:
    void SetUp() override {
        SettingsFixture::SetUp();
        m_text.emplace(m_xml, PRINTERS);
    }
    void TearDown() override {
        m_text.reset();
        SettingsFixture::TearDown();
    }

    void* Root() const { return m_text->Root(); }
    XmlNode Element(const char* xpath) {
        unsigned int err = 0;
        unsigned int work = 0;
        void* found = nullptr;
        m_xml.m_FunctionsXmlPxd->SelectNodesInElement(Root(), xpath, &found, 1, &work, &err);
        EXPECT_NE(nullptr, found) << xpath;
        return {*m_xml.m_FunctionsXmlPxd, found};
    }
    // Gives the handle back.
    std::string NameAndText(void* node) {
        const XmlNode given(*m_xml.m_FunctionsXmlPxd, node);
        CCommonXmlPxdElementData record;
        unsigned int err = 0;
        EXPECT_TRUE(m_xml.GetElementData(node, &record, &err));
        return record.m_Name + "=" + record.m_Values.front();
    }

    BoundXml m_xml;
    std::optional<OpenedText> m_text;
};

TEST_F(ElementAccess, AnElementIsReadIntoARecord) {
    const struct {
        const char* xpath;
        unsigned int id;
        const char* text;
        std::list<std::string> names;
        std::list<unsigned int> ids;
        std::list<std::string> values;
    } rows[] = {
        {"//port", 41, "", {"type", "odd", "host_name"}, {191, 0, 202}, {"usb", "", "h"}},
        {"//model_name", 38, " M<&>\n", {}, {}, {}},
        {"//printer_list/printer[2]", 36, "b", {}, {}, {}},
        {"//printerList/printer", 103, "c", {"id"}, {193}, {"7"}},
    };
    CCommonXmlPxdElementData next;
    CCommonXmlPxdElementData record;
    record.m_Next = &next;
    unsigned int err = BEFORE;
    for (const auto& row : rows) {
        EXPECT_TRUE(m_xml.GetElementData(Element(row.xpath).Get(), &record, &err)) << row.xpath;
        EXPECT_EQ(0U, err);
        EXPECT_EQ(row.id, record.m_ElementID) << row.xpath;
        EXPECT_EQ(std::list<std::string>{row.text}, record.m_Values);
        EXPECT_EQ(row.names, record.m_AttributeNames);
        EXPECT_EQ(row.ids, record.m_AttributeIDs);
        EXPECT_EQ(row.values, record.m_AttributeValues);
        EXPECT_EQ(&next, record.m_Next);
    }
    EXPECT_FALSE(m_xml.GetElementData(Element("stranger").Get(), &record, &err));
    EXPECT_EQ(2U, err);
    EXPECT_EQ("printer", record.m_Name) << "what cannot be read leaves the record alone";
}

TEST_F(ElementAccess, SearchesGiveTheFirstMatchOrTheReason) {
    const struct {
        bool childOnly;
        const char* start;
        unsigned int tag;
        const char* found;  // null for none
        unsigned int err;
        std::string printed;
    } rows[] = {
        {false, ".", 34, "app_info=some", 0, ""},
        {true, ".", 34, "app_info=some", 0, ""},
        {false, ".", 103, "printer=a", 0, ""},  // the name decides
        {false, ".", 33, nullptr, 1, ""},       // never the start itself
        {false, "//printer_list/printer[1]", 36, "printer=b", 0, ""},
        {false, "//printerList", 37, "name=n", 0, ""},  // any printer on the way is a container
        {false, "//model_name", 101, nullptr, 1, ""},   // two levels up
        {false, "stranger", 37, nullptr, 2, ""},
        {true, ".", 36, nullptr, 1, SEARCH + "GetNextSibling() errcode=1\n"},
        {true, "//app_info", 36, nullptr, 1, SEARCH + "GetFirstChild() errcode=1\n"},
        {true, "stranger", 37, "name=", 0, ""},
        {false, ".", 25, nullptr, 2, ""},
        {true, ".", 25, nullptr, 2, SEARCH + "m_XmlTagIDs.end()\n"},
        {false, ".", 0, nullptr, BEFORE, ""},
        {true, ".", 203, nullptr, BEFORE, ""},
        {false, ".", NODE_SELF, nullptr, BEFORE, ""},
    };
    for (const auto& row : rows) {
        const std::string what = std::string(row.start) + " " + std::to_string(row.tag);
        const XmlNode start = Element(row.start);
        void* found = nullptr;
        unsigned int err = BEFORE;
        EXPECT_EQ(row.printed, Printed([&] {
                      found = row.childOnly ? m_xml.SearchParentElement(start.Get(), row.tag, &err)
                                            : m_xml.SearchElement(start.Get(), row.tag, &err);
                  }))
            << what;
        EXPECT_EQ(row.err, err) << what;
        ASSERT_EQ(row.found != nullptr, found != nullptr) << what;
        if (found != nullptr) {
            EXPECT_EQ(row.found, NameAndText(found));
        }
    }
    unsigned int err = BEFORE;
    EXPECT_EQ(nullptr, m_xml.SearchElement(nullptr, 34, &err));
    EXPECT_EQ(nullptr, m_xml.SearchElement(Root(), 34, nullptr));
    EXPECT_EQ(nullptr, m_xml.SearchParentElement(nullptr, 34, &err));
    EXPECT_EQ(nullptr, m_xml.SearchParentElement(Root(), 34, nullptr));
    EXPECT_EQ(BEFORE, err);
}

TEST_F(ElementAccess, TheValueOfAnElementIsReadOrTheFailedCallIsNamed) {
    const std::string parameter = "CCommonXmlPxd::GetElementValueWithSearch() ERROR: PARAMETER\n";
    const std::string notFound = VALUE + "SearchParentElement(ElementID=35)\n";
    const struct {
        const char* failing;  // an entry of the parser, or null
        int nth;
        int tag;
        bool childOnly;
        const char* value;  // null on failure
        unsigned int err;
        std::string printed;
    } rows[] = {
        {nullptr, 0, 34, true, "some", 0, ""},
        {nullptr, 0, 37, false, "One", 0, ""},
        {nullptr, 0, 42, false, nullptr, 1, VALUE + "SearchElement(ElementID=42)\n"},
        {nullptr, 0, 0, true, nullptr, BEFORE, parameter},
        {nullptr, 0, -1, true, nullptr, BEFORE, parameter},
        {nullptr, 0, 203, false, nullptr, BEFORE, parameter},
        {"GetFirstChild", 1, 35, true, nullptr, REFUSED,
         SEARCH + "GetFirstChild() errcode=4711\n" + notFound},
        {"GetElementName", 1, 35, true, nullptr, REFUSED,
         SEARCH + "GetElementName(1) errcode=4711\n" + notFound},
        {"GetElementName", 2, 35, true, nullptr, REFUSED,
         SEARCH + "GetElementName(2) errcode=4711\n" + notFound},
        {"GetNextSibling", 1, 35, true, nullptr, REFUSED,
         SEARCH + "GetNextSibling() errcode=4711\n" + notFound},
        {"GetElementText", 2, 34, true, nullptr, REFUSED,
         VALUE + "GetElementData(ElementID=34), err_code=4711\n"},
    };
    for (const auto& row : rows) {
        const std::string what = std::to_string(row.tag).append(row.failing ? row.failing : "");
        std::string value = "kept";
        unsigned int err = BEFORE;
        if (row.failing != nullptr) {
            CountingParser::Fail(row.failing, row.nth, REFUSED);
        }
        EXPECT_EQ(row.printed, Printed([&] {
                      EXPECT_EQ(row.value != nullptr,
                                m_xml.GetElementValueWithSearch(Root(), row.tag, row.childOnly,
                                                                &value, &err));
                  }))
            << what;
        EXPECT_EQ(row.value != nullptr ? row.value : "kept", value) << what;
        EXPECT_EQ(row.err, err) << what;
    }
    unsigned int err = BEFORE;
    std::string value;
    EXPECT_EQ(parameter + parameter + parameter, Printed([&] {
                  m_xml.GetElementValueWithSearch(nullptr, 34, true, &value, &err);
                  m_xml.GetElementValueWithSearch(Root(), 34, true, nullptr, &err);
                  m_xml.GetElementValueWithSearch(Root(), 34, true, &value, nullptr);
              }));
}

TEST_F(ElementAccess, TheTextOfTheFirstMatchIsSet) {
    const std::string set = "CCommonXmlPxd::SetElementBySettingValue() ERROR: ";
    const struct {
        unsigned int tag;
        const char* value;
        std::string printed;
    } rows[] = {
        {37, "<Zwei> & \xC3\xA4", ""},
        {34, "", ""},
        {38, "bell \x07", set + "SetElementValue(2) errCode = 7\n"},
        {42, "v", set + "SearchElement(1) in_CmdTagID=42, errCode=1\n"},
        {203, "v", set + "SearchElement(1) in_CmdTagID=203, errCode=0\n"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.printed, Printed([&] {
                      EXPECT_EQ(row.printed.empty(),
                                m_xml.SetElementBySettingValue(Root(), row.tag, row.value));
                  }));
    }
    EXPECT_EQ("name=<Zwei> & \xC3\xA4", NameAndText(Element("//name").Release()));
    EXPECT_EQ("app_info=", NameAndText(Element("app_info").Release()));
    EXPECT_EQ("model_name= M<&>\n", NameAndText(Element("//model_name").Release()));
}

TEST_F(ElementAccess, ElementsBelowAreCounted) {
    unsigned int err = BEFORE;
    EXPECT_EQ(3U, m_xml.GetElementNumber(Root(), "printer", &err));
    EXPECT_EQ(2U, m_xml.GetElementNumber(Element("printer_list").Get(), "printer", &err));
    EXPECT_EQ(0U, m_xml.GetElementNumber(Root(), "mngprinter", &err));
    EXPECT_EQ(0U, err);
    EXPECT_EQ(0xFFFFFFFF, m_xml.GetElementNumber(nullptr, "printer", &err));
    EXPECT_EQ(0xFFFFFFFF, m_xml.GetElementNumber(Root(), "printer", nullptr));
    CountingParser::Fail("GetElementsByElementName", 1, REFUSED);
    EXPECT_EQ(0xFFFFFFFF, m_xml.GetElementNumber(Root(), "printer", &err));
    EXPECT_EQ(REFUSED, err);
}

TEST_F(ElementAccess, FailsWithoutTheEntryOfTheParserThatItNeeds) {
    WriteFile(m_folder.Path("a.xml"), PRINTERS);
    unsigned int err = 0;
    const struct {
        std::set<std::string> needed;
        std::function<bool()> operation;
    } rows[] = {
        {{"GetElementName", "GetElementText", "GetAttributes", "GetFirstChild", "GetNextSibling"},
         [&] {
             std::string value;
             return m_xml.GetElementValueWithSearch(Root(), 35, true, &value, &err);
         }},
        {{"GetElementsByElementName"},
         [&] { return m_xml.GetElementNumber(Root(), "printer", &err) == 3; }},
        {{"GetElementName", "GetElementText", "GetAttributes", "GetAttributeName",
          "GetAttributeValue", "GetAllChildElements", "GetFirstChild", "GetNextSibling",
          "GetParentNode"},
         [&] {
             CCommonXmlPxdElementData* first = nullptr;
             const bool isRead = m_xml.GetElements(Root(), &first, &err);
             m_xml.releaseElementData(first);
             return isRead;
         }},
        {{"SetElementValue", "GetFirstChild", "GetElementName"},
         [&] { return m_xml.SetElementBySettingValue(Root(), 34, "some"); }},
        {{"CreateDocByFile", "GetDocumentElement"},
         [&] {
             void* document = nullptr;
             void* root = m_xml.OpenXml(m_folder.Path("a.xml"), &document);
             m_xml.DeleteNode(root);
             m_xml.CloseXml(document);
             return root != nullptr;
         }},
    };
    XMLPXD_FUNCLIST& table = *m_xml.m_FunctionsXmlPxd;
    const XMLPXD_FUNCLIST complete = table;
    for (const XmlPxdEntry& entry : XMLPXD_LOAD_ORDER) {
        const std::string name = entry.name;
        if (name == "DeleteNode" || name == "DeleteDoc" || name == "SelectNodesInElement") {
            continue;  // without which the test itself could not do
        }
        void* const none = nullptr;
        std::memcpy(reinterpret_cast<char*>(&table) + entry.offset, &none, sizeof none);
        for (const auto& row : rows) {
            bool isDone = false;
            Printed([&] { isDone = row.operation(); });
            EXPECT_EQ(row.needed.count(name) == 0, isDone) << name << " " << &row - rows;
        }
        table = complete;
    }
}

TEST_F(ElementAccess, ACallersDocumentIsOpenedOrLeftAlone) {
    WriteFile(m_folder.Path("good.xml"), "<cmsystem/>");
    WriteFile(m_folder.Path("bad.xml"), "<cmsystem>");
    int untouched = 0;
    void* document = &untouched;
    for (const char* bad : {"", "none.xml", "bad.xml"}) {
        EXPECT_EQ(nullptr, m_xml.OpenXml(*bad == '\0' ? "" : m_folder.Path(bad), &document));
        EXPECT_EQ(&untouched, document);
    }
    void** const none = nullptr;
    EXPECT_EQ(nullptr, m_xml.OpenXml(m_folder.Path("good.xml"), none));
    EXPECT_EQ("cmsystem=", NameAndText(m_xml.OpenXml(m_folder.Path("good.xml"), &document)));
    m_xml.CloseXml(document);
}

TEST_F(ElementAccess, TheObjectHasOneDocumentOfItsOwnAtATime) {
    const std::string templates = CorePlugin() + "/Contents/Resources/xmls";
    std::filesystem::remove(CorePlugin());
    std::filesystem::create_directories(templates);
    WriteFile(templates + "/a.xml", "<cmsystem>template</cmsystem>");
    WriteFile(m_folder.Path("b.xml"), "<cmsystem>file</cmsystem>");
    const int others = CountingParser::LiveDocuments();
    const struct {
        std::string path;
        bool fromResources;
        const char* root;  // null for none
        int documents;
    } rows[] = {
        {"/xmls/a.xml", true, "cmsystem=template", 1},
        {m_folder.Path("b.xml"), false, "cmsystem=file", 1},
        {"", true, nullptr, 1},  // leaves the earlier one open
        {"/xmls/none.xml", true, nullptr, 0},
        {"/xmls/a.xml", false, nullptr, 0},
    };
    for (const auto& row : rows) {
        void* root = m_xml.OpenXml(row.path, row.fromResources);
        EXPECT_EQ(row.documents, CountingParser::LiveDocuments() - others) << row.path;
        ASSERT_EQ(row.root != nullptr, root != nullptr) << row.path;
        if (root != nullptr) {
            EXPECT_EQ(row.root, NameAndText(root));
        }
    }
    m_xml.CloseXml();
    m_xml.CloseXml();  // again
}

}  // namespace
