#include <cstring>
#include <list>
#include <optional>

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
        return m_xml.Own(found);
    }
    // Gives the handle back.
    std::string NameAndText(void* node) {
        const XmlNode given = m_xml.Own(node);
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
    CountingParser::Fail("GetAttributes", 2, REFUSED);
    EXPECT_FALSE(m_xml.GetElementData(Element("//port").Get(), &record, &err));
    EXPECT_EQ(REFUSED, err);
    EXPECT_EQ("printer", record.m_Name) << "what cannot be read leaves the record alone";
}

TEST_F(ElementAccess, TheValueOfTheFirstMatchIsReadOrTheReasonPrinted) {
    constexpr bool CHILDREN = true;
    constexpr bool WALK = false;
    const std::string parameter = "CCommonXmlPxd::GetElementValueWithSearch() ERROR: PARAMETER\n";
    const struct {
        bool childOnly;
        const char* start;
        int tag;
        const char* value;  // null for none
        unsigned int err;
        std::string printed;
    } rows[] = {
        {WALK, ".", 34, "some", 0, ""},
        {CHILDREN, ".", 34, "some", 0, ""},
        {WALK, ".", 103, "a", 0, ""},  // the name decides
        {WALK, "//printer_list/printer[1]", 36, "b", 0, ""},
        {WALK, "//printerList", 37, "n", 0, ""},  // any printer on the way is a container
        {CHILDREN, "stranger", 37, "", 0, ""},
        // Never the start itself, nor what lies two levels up.
        {WALK, ".", 33, nullptr, 1, VALUE + "SearchElement(ElementID=33)\n"},
        {WALK, "//model_name", 101, nullptr, 1, VALUE + "SearchElement(ElementID=101)\n"},
        {WALK, "stranger", 37, nullptr, 2, VALUE + "SearchElement(ElementID=37)\n"},
        {WALK, ".", 25, nullptr, 2, VALUE + "SearchElement(ElementID=25)\n"},
        {CHILDREN, ".", 25, nullptr, 2,
         SEARCH + "m_XmlTagIDs.end()\n" + VALUE + "SearchParentElement(ElementID=25)\n"},
        {CHILDREN, ".", 36, nullptr, 1,
         SEARCH + "GetNextSibling() errcode=1\n" + VALUE + "SearchParentElement(ElementID=36)\n"},
        {CHILDREN, "//app_info", 36, nullptr, 1,
         SEARCH + "GetFirstChild() errcode=1\n" + VALUE + "SearchParentElement(ElementID=36)\n"},
        {CHILDREN, ".", 0, nullptr, BEFORE, parameter},
        {CHILDREN, ".", -1, nullptr, BEFORE, parameter},
        {WALK, ".", 203, nullptr, BEFORE, parameter},
    };
    for (const auto& row : rows) {
        const std::string what = std::string(row.start) + " " + std::to_string(row.tag);
        const XmlNode start = Element(row.start);
        std::string value = "kept";
        unsigned int err = BEFORE;
        EXPECT_EQ(row.printed, Printed([&] {
                      EXPECT_EQ(row.value != nullptr,
                                m_xml.GetElementValueWithSearch(start.Get(), row.tag, row.childOnly,
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

TEST_F(ElementAccess, TheFailedCallIsNamed) {
    const struct {
        const char* entry;
        int nth;
        std::string printed;
    } rows[] = {
        {"GetFirstChild", 1, SEARCH + "GetFirstChild() errcode=4711\n"},
        {"GetElementName", 1, SEARCH + "GetElementName(1) errcode=4711\n"},
        {"GetElementName", 2, SEARCH + "GetElementName(2) errcode=4711\n"},
        {"GetNextSibling", 1, SEARCH + "GetNextSibling() errcode=4711\n"},
        {"GetElementText", 2, VALUE + "GetElementData(ElementID=35), err_code=4711\n"},
    };
    for (const auto& row : rows) {
        std::string value;
        unsigned int err = 0;
        CountingParser::Fail(row.entry, row.nth, REFUSED);
        const std::string printed = Printed(
            [&] { EXPECT_FALSE(m_xml.GetElementValueWithSearch(Root(), 35, true, &value, &err)); });
        EXPECT_EQ(row.printed, printed.substr(0, row.printed.size()));
        EXPECT_EQ(REFUSED, err);
    }
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

TEST_F(ElementAccess, FailsWithoutAnEntryOfTheParserThatItNeeds) {
    WriteFile(m_folder.Path("a.xml"), PRINTERS);
    XMLPXD_FUNCLIST& table = *m_xml.m_FunctionsXmlPxd;
    const XMLPXD_FUNCLIST complete = table;
    std::string openingNeeds;
    std::string readingNeeds;
    std::string settingNeeds;
    for (const XmlPxdEntry& entry : XMLPXD_LOAD_ORDER) {
        const std::string name = std::string(entry.name) + " ";
        if (name.starts_with("Delete")) {
            continue;  // without which handles stay
        }
        void* const none = nullptr;
        std::memcpy(reinterpret_cast<char*>(&table) + entry.offset, &none, sizeof none);
        unsigned int err = 0;
        void* document = nullptr;
        CCommonXmlPxdElementData* first = nullptr;
        void* root = m_xml.OpenXml(m_folder.Path("a.xml"), &document);
        const bool isRead = m_xml.GetElements(Root(), &first, &err);
        bool isSet = false;
        Printed([&] { isSet = m_xml.SetElementBySettingValue(Root(), 34, "some"); });
        table = complete;
        openingNeeds += root != nullptr ? "" : name;
        readingNeeds += isRead ? "" : name;
        settingNeeds += isSet ? "" : name;
        m_xml.releaseElementData(first);
        m_xml.DeleteNode(root);
        m_xml.CloseXml(document);
    }
    EXPECT_EQ("CreateDocByFile GetDocumentElement ", openingNeeds);
    EXPECT_EQ(
        "GetAllChildElements GetFirstChild GetNextSibling GetParentNode GetElementName "
        "GetElementText GetAttributes GetAttributeName GetAttributeValue ",
        readingNeeds);
    EXPECT_EQ("GetFirstChild GetElementName SetElementValue ", settingNeeds);
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
    CountingParser::Fail("GetDocumentElement", 1, REFUSED);
    EXPECT_EQ(nullptr, m_xml.OpenXml(m_folder.Path("good.xml"), &document));
    EXPECT_EQ(&untouched, document);
    void** const none = nullptr;
    EXPECT_EQ(nullptr, m_xml.OpenXml(m_folder.Path("good.xml"), none));
    EXPECT_EQ("cmsystem=", NameAndText(m_xml.OpenXml(m_folder.Path("good.xml"), &document)));
    m_xml.CloseXml(document);
}

TEST_F(ElementAccess, TheObjectHasOneDocumentOfItsOwnAtATime) {
    WriteFile(m_folder.Path("a.xml"), "<cmsystem>file</cmsystem>");
    const int others = CountingParser::LiveDocuments();
    const struct {
        std::string path;
        bool fromResources;
        const char* root;  // null for none
        int documents;
    } rows[] = {
        {"/xmls/BNTRetBase.xml", true, "bntcmdret", 1},
        {m_folder.Path("a.xml"), false, "cmsystem=file", 1},
        {"", true, nullptr, 1},  // leaves the earlier one open
        {"/xmls/none.xml", true, nullptr, 0},
        {"/xmls/BNTRetBase.xml", false, nullptr, 0},
    };
    for (const auto& row : rows) {
        void* root = m_xml.OpenXml(row.path, row.fromResources);
        EXPECT_EQ(row.documents, CountingParser::LiveDocuments() - others) << row.path;
        ASSERT_EQ(row.root != nullptr, root != nullptr) << row.path;
        EXPECT_TRUE(root == nullptr || NameAndText(root).starts_with(row.root));
    }
}

}  // namespace
